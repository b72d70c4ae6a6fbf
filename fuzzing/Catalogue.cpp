#include "catalogue/CatalogueReader.h"
#include "fuzzing/Targets.h"

#include <QTemporaryFile>

#include <cstdlib>

namespace cinedisc::fuzzing {

void catalogue(Bytes bytes) {
    static QTemporaryFile file;
    if (!file.open()) std::abort();
    file.resize(0);
    file.seek(0);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<qint64>(bytes.size()));
    file.close();  // which removes nothing
    (void)readCatalogue(file.fileName());
}

}  // namespace cinedisc::fuzzing
