#include "catalogue/CatalogueReader.h"
#include "discmaker/SourceDirectory.h"
#include "fuzzing/Targets.h"

#include <QFile>
#include <QTemporaryDir>
#include <dcmtk/config/osconfig.h>
#include <dcmtk/oflog/oflog.h>

#include <cstdlib>

/// Asked for by the sanitizer of leaks. What the library has taken for a directory is lost when it throws:
/// some hundred bytes of a program that then goes on to look for files.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() { return "leak:libdcmdata"; }

namespace cinedisc::fuzzing {

namespace {

/// A file of these bytes, alone in its folder.
QString written(Bytes bytes) {
    static const QTemporaryDir folder;
    QFile file(folder.filePath("file"));
    if (!file.open(QIODevice::WriteOnly)) std::abort();
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<qint64>(bytes.size()));
    return file.fileName();
}

}  // namespace

void catalogue(Bytes bytes) { (void)readCatalogue(written(bytes)); }

void directory(Bytes bytes) {
    OFLog::configure(OFLogger::OFF_LOG_LEVEL);
    const std::string path = written(bytes).toStdString();
    (void)discmaker::readDirectory(path, path + ".scratch");
}

}  // namespace cinedisc::fuzzing
