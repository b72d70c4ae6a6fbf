#include "tests/fidelity/Comparison.h"

#include "tests/fidelity/ComponentPicture.h"
#include "tests/fidelity/ReferencePictures.h"

#include <algorithm>

namespace cinedisc::fidelity {

namespace {

/// Pictures of another size stay the worst.
void take(std::optional<int>& worst, const Pixels& ours, const Pixels& reference) {
    if (reference.empty() || worst == -1) return;
    const int difference = largestDifference(ours, reference);
    worst = difference < 0 ? -1 : std::max(worst.value_or(0), difference);
}

}  // namespace

Comparison compare(const QString& path) {
    ReferenceFile file(path.toStdString());
    const ComponentPicture ours = componentPicture(path);
    Comparison result;
    result.syntaxUid = QString::fromStdString(file.syntaxUid());
    result.decoder = QString::fromStdString(file.decoderName());
    result.isLossless = file.isLossless();
    result.frames = ours.frames;
    result.expectedFrames = file.isDicom() && file.hasPixels() ? file.frames() : 0;
    result.notice = ours.notice;
    if (ours.frames == 0) return result;
    const auto takeFrame = [&](const Pixels& shown, int frame) {
        take(result.toPlain, shown, plainPicture(file, frame));
        take(result.toDcmtk, shown, dcmtkPicture(file, frame));
    };
    takeFrame(ours.first, 0);
    if (ours.frames > 1) takeFrame(ours.last, ours.frames - 1);
    return result;
}

}  // namespace cinedisc::fidelity
