#pragma once

#include "catalogue/CatalogueNode.h"

#include <QString>

#include <optional>

namespace cinedisc {

/// The catalogue file beside the program, found whatever its letter case, read afresh at each call.
class Catalogue {
  public:
    explicit Catalogue(QString programFolder) : programFolder_(std::move(programFolder)) {}

    bool exists() const;
    /// Its document element; nothing when it is missing, cannot be read or is not well-formed.
    std::optional<CatalogueNode> readable() const;
    /// The same; run-time error 91 when there is none.
    CatalogueNode documentElement() const;

  private:
    QString path() const;

    QString programFolder_;
};

}  // namespace cinedisc
