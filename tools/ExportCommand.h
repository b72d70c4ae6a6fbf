#pragma once

#include "platform/Dialogs.h"
#include "platform/TimerControl.h"
#include "tools/ExportFormatDialog.h"
#include "viewer/ViewerControl.h"

#include <QString>

#include <functional>
#include <utility>

namespace cinedisc {

/// Writes the shown picture to a JPEG or BMP file that the user names. Errors end it quietly.
class ExportCommand {
  public:
    /// Who is asked for the format, and who is told it: a name without a known extension is written in the
    /// chosen format.
    struct Format {
        ExportFormatDialog& frmdicom;
        std::function<void(const QString& format)> tellView;
    };
    ExportCommand(ViewerControl& view, TimerControl& cineClock, Format format, Dialogs& dialogs)
        : ezDicom_(view), Timer4_(cineClock), format_(std::move(format)), cdcExport_(dialogs) {}

    void cmdExport_Click();

  private:
    void exportShownFrame();

    ViewerControl& ezDicom_;
    TimerControl& Timer4_;
    Format format_;
    Dialogs& cdcExport_;
};

}  // namespace cinedisc
