#pragma once

#include "catalogue/CatalogueNode.h"

#include <QString>

namespace cinedisc {

/// The catalogue file beside the program, found whatever its letter case, read afresh at each call.
class Catalogue {
  public:
    explicit Catalogue(QString programFolder) : programFolder_(std::move(programFolder)) {}

    bool exists() const;
    /// Its document element; run-time error 91 when there is none.
    CatalogueNode documentElement() const;

  private:
    QString path() const;

    QString programFolder_;
};

}  // namespace cinedisc
