#include "catalogue/Catalogue.h"

#include "catalogue/CatalogueReader.h"
#include "platform/Paths.h"
#include "platform/RunTimeError.h"

#include <QFileInfo>

namespace cinedisc {

QString Catalogue::path() const { return findIgnoringCase(programFolder_, {"CD.xml"}); }

bool Catalogue::exists() const { return QFileInfo(path()).isFile(); }

std::optional<CatalogueNode> Catalogue::readable() const {
    return exists() ? readCatalogue(path()) : std::nullopt;
}

CatalogueNode Catalogue::documentElement() const {
    auto root = readCatalogue(path());
    if (!root) throw RunTimeError::objectNotSet();
    return std::move(*root);
}

}  // namespace cinedisc
