#include "control/picture/PictureRenderer.h"

#include "control/picture/DirectTarget.h"

#include <utility>

namespace cinedisc {

namespace {

// A whole picture is made for copies and exports only; beyond this the program would take the machine's
// memory for it.
constexpr qint64 mostPixels = qint64{1} << 28;

void drawAt(QPainter& painter, double pixelRatio, QPoint corner, const QImage& image) {
    painter.save();
    painter.scale(1 / pixelRatio, 1 / pixelRatio);
    painter.drawImage(corner, image);
    painter.restore();
}

}  // namespace

QSize PictureRenderer::squareSize() const {
    if (picture_.frameCount() == 0) return {};
    const auto& dicom = picture_.file()->dicom();
    return cinedisc::squareSize(dicom.pixelFormat().columns, dicom.pixelFormat().rows, dicom.pixelAspect());
}

const DisplayRule& PictureRenderer::rule(const dicom::Frame& frame) {
    if (std::exchange(tablesFile_, picture_.fileRevision()) != picture_.fileRevision()) tables_.clear();
    return tables_.ruleFor(picture_.file()->dicom(), picture_.currentFrame() - 1, frame, picture_.window(),
                           polarity());
}

void PictureRenderer::drawInto(const PixelTarget& target, const dicom::Frame& frame, const ScalePlan& plan) {
    scaler_.draw(FrameRows(frame, rule(frame), picture_.cover()), plan.columns, plan.rows, target);
}

void PictureRenderer::drawInto(QImage& into, const dicom::Frame& frame, const ScalePlan& plan) {
    const auto format =
        into.format() == QImage::Format_Grayscale8 ? PixelTarget::Format::Grey8 : PixelTarget::Format::Rgb32;
    drawInto({into.bits(), into.bytesPerLine(), format}, frame, plan);
}

const ScalePlan& PictureRenderer::planFor(const dicom::Frame& frame, const Placement& placement,
                                          const QRect& part, Smoothing smoothing) {
    const QSize source(frame.columns, frame.rows);
    const QRect wanted = part.translated(-placement.picture.topLeft());
    if (!plan_ || !plan_->isFor(source, placement.picture.size(), wanted, smoothing)) {
        plan_.emplace(source, placement.picture.size(), wanted, smoothing);
    }
    return *plan_;
}

bool PictureRenderer::paintDirectly(const QPainter& painter, double pixelRatio, const dicom::Frame& frame,
                                    const Placement& placement, Smoothing smoothing) {
    const auto target = DirectTarget::of(painter, pixelRatio);
    if (!target) return false;
    const QRect visible = placement.visible();
    const QPoint corner = target->pixelAt(visible.topLeft());
    const QRect pixels = QRect(corner, visible.size()).intersected(target->clip());
    if (pixels.isEmpty()) return true;
    const QRect part = pixels.translated(visible.topLeft() - corner);
    drawInto(target->at(pixels.topLeft()), frame, planFor(frame, placement, part, smoothing));
    return true;
}

void PictureRenderer::keep(const dicom::Frame& frame, const Placement& placement, Smoothing smoothing) {
    const QRect visible = placement.visible();
    if (image_.size() != visible.size()) image_ = QImage(visible.size(), QImage::Format_RGB32);
    if (!image_.isNull()) drawInto(image_, frame, planFor(frame, placement, visible, smoothing));
}

QImage PictureRenderer::smallPicture(const dicom::Frame& frame, const Placement& placement,
                                     Smoothing smoothing) {
    const SmallPicture wanted{picture_.currentFrame(), picture_.window(),   polarity(),
                              placement.picture,       placement.visible(), smoothing};
    QImage image = picture_.file()->smallPicture(wanted);
    if (!image.isNull()) return image;
    image = QImage(wanted.visible.size(), QImage::Format_RGB32);
    if (image.isNull()) return image;
    drawInto(image, frame, planFor(frame, placement, wanted.visible, smoothing));
    picture_.file()->keep(wanted, image);
    return image;
}

QRect PictureRenderer::paintPreview(QPainter& painter, double pixelRatio, const Placement& placement,
                                    Smoothing smoothing) {
    const QRect visible = placement.visible();
    const dicom::Frame* frame = picture_.frame();
    if (!frame || visible.isEmpty()) return {};
    const QImage small = smallPicture(*frame, placement, smoothing);
    if (small.isNull()) return {};
    drawAt(painter, pixelRatio, visible.topLeft(), small);
    return visible;
}

QRect PictureRenderer::paint(QPainter& painter, double pixelRatio, const Placement& placement,
                             Smoothing smoothing) {
    const QRect visible = placement.visible();
    const dicom::Frame* frame = picture_.frame();
    if (!frame || visible.isEmpty()) {
        painted_ = kept_ = {};
        image_ = {};
        return {};
    }
    rule(*frame);
    const Shown wanted{picture_.frameRevision(), tables_.revision(), placement.picture, visible, smoothing};
    const bool isNew = std::exchange(painted_, wanted) != wanted;
    if (isNew && paintDirectly(painter, pixelRatio, *frame, placement, smoothing)) return visible;

    if (kept_ != wanted || image_.isNull()) keep(*frame, placement, smoothing);
    kept_ = wanted;
    if (image_.isNull()) return {};
    drawAt(painter, pixelRatio, visible.topLeft(), image_);
    return visible;
}

QImage PictureRenderer::part(const Placement& placement, const QRect& wanted, Smoothing smoothing) {
    const dicom::Frame* frame = picture_.frame();
    const QRect inside = wanted.intersected(placement.picture);
    if (!frame || inside.isEmpty()) return {};
    QImage into(inside.size(), QImage::Format_RGB32);
    const ScalePlan plan({frame->columns, frame->rows}, placement.picture.size(),
                         inside.translated(-placement.picture.topLeft()), smoothing);
    if (!into.isNull()) drawInto(into, *frame, plan);
    return into;
}

QImage PictureRenderer::wholePicture() {
    const dicom::Frame* frame = picture_.frame();
    if (!frame) return {};
    const QSize size = squareSize();
    if (qint64{size.width()} * size.height() > mostPixels) return {};
    const bool grey = frame->samplesPerPixel == 1 && !rule(*frame).palette;
    QImage into(size, grey ? QImage::Format_Grayscale8 : QImage::Format_RGB32);
    const ScalePlan plan({frame->columns, frame->rows}, size, QRect(QPoint(0, 0), size), Smoothing::Smooth);
    if (!into.isNull()) drawInto(into, *frame, plan);
    return into;
}

}  // namespace cinedisc
