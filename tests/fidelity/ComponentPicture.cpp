#include "tests/fidelity/ComponentPicture.h"

#include "control/ViewPainter.h"
#include "control/picture/ViewState.h"

namespace cinedisc::fidelity {

namespace {

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

}  // namespace

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

}  // namespace cinedisc::fidelity
