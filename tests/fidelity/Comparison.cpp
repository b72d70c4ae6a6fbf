#include "tests/fidelity/Comparison.h"

#include "control/ViewPainter.h"
#include "control/picture/ViewState.h"
#include "tests/fidelity/ReferencePictures.h"

#include <algorithm>
#include <cstdlib>
#include <set>

namespace cinedisc::fidelity {

namespace {

/// What the component shows at 100 %, through its own pipeline.
Pixels drawn(ViewState& view) {
    view.deviceSize = view.renderer.squareSize();
    const QImage image = view.renderer.part(view.placement(), view.placement().visible(), Smoothing::Smooth);
    Pixels picture{image.height(), image.width(), {}};
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            for (const int sample : {qRed(pixel), qGreen(pixel), qBlue(pixel)})
                picture.rgb.push_back(static_cast<std::uint8_t>(sample));
        }
    return picture;
}

/// The largest difference of any sample, -1 when the sizes are not the same.
int largestDifference(const Pixels& a, const Pixels& b) {
    if (a.rows != b.rows || a.columns != b.columns || a.rgb.size() != b.rgb.size()) return -1;
    int largest = 0;
    for (std::size_t i = 0; i < a.rgb.size(); ++i) largest = std::max(largest, std::abs(a.rgb[i] - b.rgb[i]));
    return largest;
}

/// Pictures of another size stay the worst.
void take(std::optional<int>& worst, const Pixels& ours, const Pixels& reference) {
    if (reference.empty() || worst == -1) return;
    const int difference = largestDifference(ours, reference);
    worst = difference < 0 ? -1 : std::max(worst.value_or(0), difference);
}

}  // namespace

Comparison compare(const QString& path) {
    ReferenceFile file(path.toStdString());
    ViewState view(ImageLibrary::shared());
    view.picture.load(path);
    Comparison result;
    result.syntaxUid = QString::fromStdString(file.syntaxUid());
    result.decoder = QString::fromStdString(file.decoderName());
    result.isLossless = file.isLossless();
    result.frames = view.picture.frameCount();
    result.expectedFrames = file.isDicom() && file.hasPixels() ? file.frames() : 0;
    if (const auto notice = noticeFor(view.picture)) result.notice = notice->reason;
    if (result.frames == 0) return result;
    for (const int frame : std::set{1, result.frames}) {
        view.picture.show(frame);
        const Pixels shown = drawn(view);
        take(result.toPlain, shown, plainPicture(file, frame - 1));
        take(result.toDcmtk, shown, dcmtkPicture(file, frame - 1));
    }
    return result;
}

}  // namespace cinedisc::fidelity
