#include "tests/fidelity/Comparison.h"

#include "control/ViewPainter.h"
#include "control/picture/ViewState.h"
#include "tests/fidelity/ReferencePictures.h"

#include <algorithm>
#include <cstdlib>

namespace cinedisc::fidelity {

namespace {

/// What the viewer component makes of a file.
struct ComponentPicture {
    Pixels first, last;  ///< the first and the last frame at 100 %; empty when there is no picture
    int frames = 0;
    QString notice;  ///< what stands in place of the picture, "" when there is one
};

Pixels drawn(ViewState& view) {
    view.deviceSize = view.renderer.squareSize();
    const QImage image = view.renderer.part(view.placement(), view.placement().visible(), Smoothing::Smooth);
    Pixels picture{image.height(), image.width(), {}};
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            for (const int sample : {qRed(pixel), qGreen(pixel), qBlue(pixel)})
                picture.rgb.push_back(static_cast<std::uint8_t>(sample));
        }
    }
    return picture;
}

/// Opens a file and draws it through the component's own pipeline.
ComponentPicture componentPicture(const QString& path) {
    ViewState view(ImageLibrary::shared());
    view.picture.load(path);
    ComponentPicture picture;
    picture.frames = view.picture.frameCount();
    if (const auto notice = noticeFor(view.picture)) picture.notice = notice->reason;
    if (picture.frames == 0) return picture;
    picture.first = drawn(view);
    view.picture.show(picture.frames);
    picture.last = drawn(view);
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
