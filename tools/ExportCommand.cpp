#include "tools/ExportCommand.h"

#include "platform/RunTimeError.h"
#include "viewer/WindowWords.h"

namespace cinedisc {

void ExportCommand::cmdExport_Click() {
    trapErrors([this] {
        if (ezDicom_.FileName().isEmpty()) return;
        // What is exported is what was shown: the cine waits for the dialogs.
        struct Pause {
            explicit Pause(TimerControl& clock) : clock_(clock), wasPlaying_(clock.Enabled()) {
                clock_.putEnabled(false);
            }
            ~Pause() { clock_.putEnabled(wasPlaying_); }
            TimerControl& clock_;
            bool wasPlaying_;
        } pause(Timer4_);
        exportShownFrame();
    });
}

void ExportCommand::exportShownFrame() {
    const QString format = format_.frmdicom.chooseFormat();
    QString filter;
    if (format == "JPEG") {
        filter = "(*.jpg)|*.jpg";
    } else if (format == "BMP") {
        filter = "(*.bmp)|*.bmp";
    } else {
        return;
    }
    const QString name = cdcExport_.saveFileName(windowWords::saveDialogTitle(), filter);
    if (name.isEmpty()) return;
    format_.tellView(format);
    ezDicom_.putExportFile(name);
}

}  // namespace cinedisc
