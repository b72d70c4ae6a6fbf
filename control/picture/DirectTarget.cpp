#include "control/picture/DirectTarget.h"

#include <QImage>
#include <QPaintEngine>

#include <cmath>

namespace cinedisc {

namespace {

bool isSame(double a, double b) { return std::abs(a - b) < 1e-6; }

bool isShift(const QTransform& transform, double pixelRatio) {
    return transform.type() <= QTransform::TxScale && isSame(transform.m11(), pixelRatio) &&
           isSame(transform.m22(), pixelRatio);
}

bool isPlain(const QPainter& painter) {
    return !painter.hasClipping() && painter.opacity() == 1 &&
           painter.compositionMode() == QPainter::CompositionMode_SourceOver;
}

bool holdsOpaquePixels(QImage::Format format) {
    return format == QImage::Format_RGB32 || format == QImage::Format_ARGB32 ||
           format == QImage::Format_ARGB32_Premultiplied;
}

}  // namespace

std::optional<DirectTarget> DirectTarget::of(const QPainter& painter, double pixelRatio) {
    const QPaintEngine* engine = painter.paintEngine();
    if (!engine || engine->type() != QPaintEngine::Raster || !isPlain(painter)) return std::nullopt;
    const auto* image = dynamic_cast<const QImage*>(engine->paintDevice());
    // A picture with a second owner would have to be copied first, unknown to the painter.
    if (!image || !holdsOpaquePixels(image->format()) || !image->isDetached()) return std::nullopt;
    const QTransform transform = painter.deviceTransform();
    const QRegion clip = engine->systemClip();
    if (!isShift(transform, pixelRatio) || clip.rectCount() > 1) return std::nullopt;

    DirectTarget target;
    target.bits_ = const_cast<std::uint8_t*>(image->constBits());
    target.bytesPerRow_ = image->bytesPerLine();
    target.origin_ = {transform.dx(), transform.dy()};
    target.clip_ = clip.isEmpty() ? image->rect() : clip.boundingRect().intersected(image->rect());
    return target;
}

PixelTarget DirectTarget::at(QPoint pixel) const {
    return {bits_ + pixel.y() * bytesPerRow_ + std::ptrdiff_t{pixel.x()} * 4, bytesPerRow_,
            PixelTarget::Format::Rgb32};
}

}  // namespace cinedisc
