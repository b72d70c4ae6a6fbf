#include "tools/ExportCommand.h"

#include "platform/RunTimeError.h"
#include "tools/CinePause.h"
#include "viewer/WindowWords.h"

namespace cinedisc {

void ExportCommand::cmdExport_Click() {
    trapErrors([this] {
        if (ezDicom_.FileName().isEmpty()) return;
        const CinePause pause(Timer4_);
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
