#pragma once

#include <QString>

namespace cinedisc {

/// A view that knows whose name stands beside it, and warns by itself while its own file is not that
/// patient's.
class NamedPatientView {
  public:
    virtual ~NamedPatientView() = default;
    /// The folder of the patient whose name is shown, "" when nobody's is.
    virtual void putNamedPatientFolder(const QString& folder) = 0;
};

}  // namespace cinedisc
