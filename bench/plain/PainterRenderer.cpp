// Takes the place of control/picture/PictureRenderer.cpp in the plain twin of the window: a windowed 8-bit
// picture is scaled by QPainter.
#include "control/picture/PictureRenderer.h"

#include <QPainter>

#include <algorithm>
#include <array>

namespace cinedisc {

namespace {

/// The greys of the stored values under a linear window (PS3.3 C.11.2.1.2).
std::vector<uchar> windowTable(const dicom::Window& window, std::size_t values, bool inverted) {
    std::vector<uchar> table(values);
    for (std::size_t value = 0; value < values; ++value) {
        const double share =
            (static_cast<double>(value) - (window.center - 0.5)) / std::max(window.width - 1, 1.0) + 0.5;
        const auto grey = static_cast<uchar>(std::clamp(share * 255 + 0.5, 0.0, 255.0));
        table[value] = inverted ? static_cast<uchar>(255 - grey) : grey;
    }
    return table;
}

QImage windowed(const dicom::Frame& frame, const std::vector<uchar>& table) {
    QImage grey(frame.columns, frame.rows, QImage::Format_Grayscale8);
    std::visit(
        [&](const auto& samples) {
            const auto* sample = samples.data();
            for (int row = 0; row < frame.rows; ++row) {
                uchar* into = grey.scanLine(row);
                for (int column = 0; column < frame.columns; ++column)
                    into[column] = table[static_cast<std::size_t>(*sample++)];
            }
        },
        frame.samples);
    return grey;
}

}  // namespace

QSize PictureRenderer::squareSize() const {
    if (picture_.frameCount() == 0) return {};
    const auto& format = picture_.file()->dicom().pixelFormat();
    return {format.columns, format.rows};
}

QRect PictureRenderer::paint(QPainter& painter, double pixelRatio, const Placement& placement,
                             Smoothing smoothing) {
    const dicom::Frame* frame = picture_.frame();
    if (!frame || placement.visible().isEmpty()) return {};
    const auto values = std::size_t{1} << picture_.file()->dicom().pixelFormat().bitsStored;
    const auto table = windowTable(picture_.window().window, values, picture_.polarity < 0);
    painter.save();
    painter.scale(1 / pixelRatio, 1 / pixelRatio);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, smoothing == Smoothing::Smooth);
    painter.drawImage(placement.picture, windowed(*frame, table));
    painter.restore();
    return placement.visible();
}

QRect PictureRenderer::paintPreview(QPainter& painter, double pixelRatio, const Placement& placement,
                                    Smoothing smoothing) {
    return paint(painter, pixelRatio, placement, smoothing);
}

QImage PictureRenderer::part(const Placement&, const QRect&, Smoothing) { return {}; }

QImage PictureRenderer::wholePicture() { return {}; }

}  // namespace cinedisc
