#pragma once

#include "platform/Dialogs.h"
#include "platform/TimerControl.h"
#include "tools/ExportFormatDialog.h"
#include "viewer/ViewerControl.h"

namespace cinedisc {

/// Writes the shown picture to a JPEG or BMP file that the user names. Errors end it quietly.
class ExportCommand {
  public:
    ExportCommand(ViewerControl& view, TimerControl& cineClock, ExportFormatDialog& formatDialog,
                  Dialogs& dialogs)
        : ezDicom_(view), Timer4_(cineClock), frmdicom_(formatDialog), cdcExport_(dialogs) {}

    void cmdExport_Click();

  private:
    void exportShownFrame();

    ViewerControl& ezDicom_;
    TimerControl& Timer4_;
    ExportFormatDialog& frmdicom_;
    Dialogs& cdcExport_;
};

}  // namespace cinedisc
