#include "catalogue/ModeProbe.h"

namespace cinedisc {

void ModeProbe::chkImage() {
    form_.File1.putPath(firstSeries(place_.position().CurrentFolder));
    form_.File1.Refresh();
    place_.putStillsMode(isStill(form_.File1.fullPath(0)));
}

bool ModeProbe::isStill(const QString& path) {
    ezTest_.putFileName(path);
    // A disc that gives no answer does not make stills of a cine, whose panel shows single frames too.
    return ezTest_.FrameCount() <= 1 && !ezTest_.isReading();
}

QString ModeProbe::firstSeries(const Folder& patient) {
    const Folder study = patient.Items().Item(0).GetFolder();
    return study.Items().Item(0).GetFolder().Items().Item().Path();
}

}  // namespace cinedisc
