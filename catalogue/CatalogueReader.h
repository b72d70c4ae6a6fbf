#pragma once

#include "catalogue/CatalogueNode.h"

#include <QString>

#include <optional>

namespace cinedisc {

/// Reads an XML file and returns its document element; nothing when it cannot be read or is not well-formed.
///
/// Any encoding that the declaration names is read. White-space-only text between elements is dropped. No
/// external entity or network address is followed; nesting (256 levels), file size and entity expansion are
/// bounded, and a file beyond the bounds counts as not well-formed.
std::optional<CatalogueNode> readCatalogue(const QString& path);

}  // namespace cinedisc
