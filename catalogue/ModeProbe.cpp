#include "catalogue/ModeProbe.h"

namespace cinedisc {

void ModeProbe::chkImage() {
    const Folder study = disc_.position.CurrentFolder.Items().Item(0).GetFolder();
    const Folder series = study.Items().Item(0).GetFolder();
    form_.File1.putPath(series.Items().Item().Path());
    form_.File1.Refresh();
    probeFirstFile();
}

void ModeProbe::probeFirstFile() {
    disc_.ezTest.putFileName(form_.File1.fullPath(0));
    // A disc that gives no answer does not make stills of a cine, whose panel shows single frames too.
    const bool stills = disc_.ezTest.FrameCount() <= 1 && !disc_.ezTest.isReading();
    disc_.position.StillsMode = stills;
    disc_.Frame8.putVisible(stills);
    disc_.Frame9.putVisible(!stills);
}

}  // namespace cinedisc
