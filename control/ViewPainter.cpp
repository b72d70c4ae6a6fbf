#include "control/ViewPainter.h"

#include "control/words/ViewWords.h"

#include <utility>

namespace cinedisc {

namespace {

const QColor ownGrey(38, 39, 42);

/// The fill belongs around a picture: a view that is empty, or has words in a picture's place, would glare in
/// a dark room.
enum class Ground { Own, Black, White };

QColor colourOf(Ground ground) {
    return ground == Ground::Own ? ownGrey : ground == Ground::White ? QColor(Qt::white) : QColor(Qt::black);
}

/// Fills a view but for a part of it, which is in device pixels.
void fillAround(QPainter& painter, const QRect& view, const QRectF& covered, double pixelRatio,
                const QColor& color) {
    if (covered.isEmpty()) return painter.fillRect(view, color);
    const QRectF all(QPointF(view.topLeft()) * pixelRatio, QSizeF(view.size()) * pixelRatio);
    painter.save();
    painter.scale(1 / pixelRatio, 1 / pixelRatio);
    const auto fill = [&](double left, double top, double right, double bottom) {
        if (left < right && top < bottom)
            painter.fillRect(QRectF(left, top, right - left, bottom - top), color);
    };
    fill(all.left(), all.top(), all.right(), covered.top());
    fill(all.left(), covered.bottom(), all.right(), all.bottom());
    fill(all.left(), covered.top(), covered.left(), covered.bottom());
    fill(covered.right(), covered.top(), all.right(), covered.bottom());
    painter.restore();
}

}  // namespace

std::optional<Notice> noticeFor(const LoadedPicture& picture) {
    if (picture.isAwaited()) return Notice::ofReading();
    const auto fault = picture.fault();
    if (!fault) return std::nullopt;
    return Notice::of(*fault, picture.currentFrame(), picture.frameCount() == 0);
}

void ViewPainter::paint(QPainter& painter, const QRect& view, const QRect& content, ViewState& state,
                        const std::optional<Notice>& notice, MouseTools& tools, const Look& look) {
    const bool isFilled =
        look.fill && !notice && (look.role != ViewRole::Main || !state.picture.path().isEmpty());
    const Ground ground = !isFilled ? Ground::Own : look.whiteFill ? Ground::White : Ground::Black;
    const bool hasPicture = !notice && state.picture.frameCount() > 0;
    const QRect covered = hasPicture ? paintPicture(painter, content.topLeft(), state, look.role) : QRect();
    fillAround(painter, view, QRectF(covered).translated(QPointF(content.topLeft()) * state.pixelRatio),
               state.pixelRatio, colourOf(ground));
    painter.save();
    painter.setClipRect(content);
    painter.translate(content.topLeft());
    const QRectF area(QPointF(0, 0), QSizeF(content.size()));
    if (notice) {
        notice->paint(painter, area, QColor(205, 205, 205));
    } else if (hasPicture) {
        state.labels.paint(painter, state.picture.currentFrame(), state.pictureRect());
        tools.paint(painter);
    }
    if (look.role == ViewRole::Main && state.picture.file()) {
        const QRectF picture = notice ? QRectF() : state.pictureRect();
        corners_.paint(painter, area.adjusted(0, look.coveredAtTop, 0, 0), picture, cornerLines(state),
                       ground == Ground::White ? CornerText::Ground::White : CornerText::Ground::Dark);
    }
    painter.restore();
    paintBorder(painter, view, look);
}

QRect ViewPainter::paintPicture(QPainter& painter, QPoint corner, ViewState& state, ViewRole role) const {
    const auto paint = role == ViewRole::Preview ? &PictureRenderer::paintPreview : &PictureRenderer::paint;
    const auto placement = state.placement();
    painter.save();
    painter.translate(corner);
    QRect covered = state.representative.paint(painter, state.pixelRatio, placement, state.smoothing);
    if (covered.isEmpty())
        covered = (state.renderer.*paint)(painter, state.pixelRatio, placement, state.smoothing);
    painter.restore();
    return covered;
}

CornerText::Lines ViewPainter::cornerLines(const ViewState& state) {
    const auto& picture = state.picture;
    if (std::exchange(factsOf_, picture.fileRevision()) != picture.fileRevision()) {
        facts_ = HeaderFacts::of(picture.file()->dicom());
    }
    CornerText::Lines lines{facts_.patient, facts_.study, {}, {}};
    if (!facts_.warning.isEmpty()) lines.bottomLeft.append(facts_.warning);
    if (picture.frameCount() == 0) return lines;

    const QString cutOff =
        viewWords::cutOff(picture.frameCount(), picture.file()->dicom().announcedFrameCount());
    if (!cutOff.isEmpty()) lines.bottomLeft.append(cutOff);
    if (!facts_.lossy.isEmpty()) lines.bottomLeft.append(facts_.lossy);
    lines.bottomLeft.append(viewWords::framePosition(picture.currentFrame(), picture.frameCount()));

    if (picture.polarity < 0) lines.bottomRight.append(viewWords::inverted());
    if (!picture.isColor()) {
        const auto window = picture.drawnWindow().window;
        lines.bottomRight.append(viewWords::window(window.center, window.width));
    }
    if (picture.coarse()) lines.bottomRight.append(viewWords::coarse());
    const double scale = state.placement().scale(state.renderer.squareSize());
    lines.bottomRight.append(viewWords::zoom(scale));
    return lines;
}

void ViewPainter::paintBorder(QPainter& painter, const QRect& view, const Look& look) const {
    if (look.marked) {
        constexpr int thickness = 2;
        const QRegion rim = QRegion(view) - view.adjusted(thickness, thickness, -thickness, -thickness);
        for (const QRect& side : rim) painter.fillRect(side, look.mark);
        if (!look.highlighted) return;
    }
    if (!look.sunkenBorder && !look.highlighted) return;
    // Sunken: dark above and left, light below and right; with the keyboard light, and dark inside, to be
    // seen on any picture.
    const QColor light = look.highlighted ? look.focusColour : QColor(72, 75, 81);
    const QColor dark = look.highlighted ? look.focusColour : QColor(8, 8, 9);
    painter.setPen(dark);
    painter.drawLine(view.topLeft(), view.topRight());
    painter.drawLine(view.topLeft(), view.bottomLeft());
    painter.setPen(light);
    painter.drawLine(view.bottomLeft(), view.bottomRight());
    painter.drawLine(view.topRight(), view.bottomRight());
    painter.setPen(look.highlighted ? QColor(8, 8, 9) : QColor(66, 69, 75));
    painter.drawRect(view.adjusted(1, 1, -2, -2));
}

}  // namespace cinedisc
