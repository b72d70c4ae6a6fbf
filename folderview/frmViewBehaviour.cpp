#include "folderview/frmViewBehaviour.h"

#include "viewer/WindowWords.h"

namespace cinedisc {

void frmViewBehaviour::cmdOpen_Click() {
    trapErrors([this] {
        const QString chosen = dialogs_.browseForFolder(windowWords::folderDialogTitle());
        if (chosen.isEmpty() || form.File1.filesIn(chosen).isEmpty()) return;
        form.File1.putPath(chosen);
        strip.clear();
        strip.initialFill(FitPreview::AfterLoad);
        strip.ChkThumb();
    });
}

void frmViewBehaviour::thumb_Click(Int16 index) {
    const ViewerControl& preview = form.thumb(index);
    if (preview.FileName().isEmpty()) return;
    form.ezDicom.putFileName(preview.FileName());
    // Here either option alone opens the file at its end.
    if (form.Option11.Value() || form.Option10.Value()) {
        form.ezDicom.putCurrentFrame(form.ezDicom.FrameCount());
    }
    const Int16 position = form.File1.positionOf(preview.FileName());
    if (position >= 0) form.sb1.putValue((position + 1).value());
    form.showImagePosition();
    form.Timer4.putEnabled(true);
}

}  // namespace cinedisc
