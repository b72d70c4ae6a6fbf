#pragma once

#include <QString>

namespace cinedisc {

/// Asks for the format of an export: "JPEG", "BMP", or "" when the user cancels.
class ExportFormatDialog {
  public:
    virtual ~ExportFormatDialog() = default;
    virtual QString chooseFormat() = 0;
};

}  // namespace cinedisc
