#include "control/CornerText.h"

#include "control/picture/WrappedText.h"

#include <QFontMetricsF>

#include <algorithm>
#include <cmath>
#include <vector>

namespace cinedisc {

namespace {

constexpr double gap = 6;            // between the lines and the view's edge
constexpr double usefulMargin = 96;  // a margin beside the picture that can hold words
constexpr double leastView = 160;    // smaller views carry no text

constexpr double rim = 2;    // around a line, for its outline
constexpr int mostRows = 4;  // of one line: nothing of a name or a projection is left out to save room

QFont fontFor(double shorterSide) {
    QFont font;
    font.setPixelSize(shorterSide < 400 ? 10 : shorterSide < 800 ? 12 : 13);
    return font;
}

}  // namespace

int CornerText::leastWidth() {
    // Text values of a header end at 64 letters (PS3.5 section 6.2); what names them comes before.
    constexpr double longestLine = 80;
    const double column =
        longestLine * QFontMetricsF(fontFor(0)).averageCharWidth() / (mostRows - 1) + 2 * rim;
    return static_cast<int>(std::ceil(2 * (column + 2 * gap)));
}

void CornerText::paint(QPainter& painter, const QRectF& view, const QRectF& picture, const Lines& lines,
                       Ground ground) {
    if (std::min(view.width(), view.height()) < leastView) return;
    const QFont font = fontFor(std::min(view.width(), view.height()));
    if (font != font_) stamps_.clear();
    font_ = font;
    picture_ = picture;
    ground_ = ground;

    const QRectF area = view.adjusted(gap, gap, -gap, -gap);
    double left = area.width() / 2 - gap, right = left;
    if (!picture.isEmpty()) {
        const double leftMargin = picture.left() - area.left() - gap;
        const double rightMargin = area.right() - picture.right() - gap;
        if (leftMargin >= usefulMargin) left = std::min(left, leftMargin);
        if (rightMargin >= usefulMargin) right = std::min(right, rightMargin);
    }
    const QRectF leftArea(area.left(), area.top(), left, area.height());
    const QRectF rightArea(area.right() - right, area.top(), right, area.height());
    paintBlock(painter, leftArea, lines.topLeft, Side::Left, End::Top);
    paintBlock(painter, rightArea, lines.topRight, Side::Right, End::Top);
    paintBlock(painter, leftArea, lines.bottomLeft, Side::Left, End::Bottom);
    paintBlock(painter, rightArea, lines.bottomRight, Side::Right, End::Bottom);
}

void CornerText::paintBlock(QPainter& painter, const QRectF& area, const QStringList& lines, Side side,
                            End end) {
    const double ratio = painter.device()->devicePixelRatioF();
    const auto heightOf = [](const QPixmap& drawn) { return drawn.height() / drawn.devicePixelRatio(); };
    const auto widthOf = [](const QPixmap& drawn) { return drawn.width() / drawn.devicePixelRatio(); };
    std::vector<QPixmap> stamps;
    const auto draw = [&](TextInk ink) {
        stamps.clear();
        QSizeF size(0, 0);
        for (const QString& line : lines) {
            stamps.push_back(stamp(line, area.width(), side, ink, ratio));
            size = {std::max(size.width(), widthOf(stamps.back())), size.height() + heightOf(stamps.back())};
        }
        return size;
    };
    const QSizeF size = draw(TextInk::OutlinedLight);
    double y = end == End::Top ? area.top() : area.bottom() - size.height();
    const double left = side == Side::Left ? area.left() : area.right() - size.width();
    if (const TextInk ink = inkFor({QPointF(left, y), size}); ink != TextInk::OutlinedLight) draw(ink);
    for (const QPixmap& drawn : stamps) {
        const double x = side == Side::Left ? area.left() : area.right() - widthOf(drawn);
        painter.drawPixmap(QPointF(std::round(x), std::round(y)), drawn);
        y += heightOf(drawn);
    }
}

TextInk CornerText::inkFor(const QRectF& block) const {
    const bool isBesidePicture = !block.intersects(picture_);
    return ground_ == Ground::White && isBesidePicture ? TextInk::PlainDark : TextInk::OutlinedLight;
}

QPixmap CornerText::stamp(const QString& line, double width, Side side, TextInk ink, double pixelRatio) {
    const QString key = QString("%1|%2|%3|%4|%5")
                            .arg(width)
                            .arg(pixelRatio)
                            .arg(side == Side::Left ? 'l' : 'r')
                            .arg(ink == TextInk::PlainDark ? 'd' : 'o')
                            .arg(line);
    if (const auto* kept = stamps_.object(key)) return *kept;
    const QPixmap pixmap = drawn(line, width, side, ink, pixelRatio);
    stamps_.insert(key, new QPixmap(pixmap), 1 + pixmap.width() * pixmap.height() / 1000);
    return pixmap;
}

QPixmap CornerText::drawn(const QString& line, double width, Side side, TextInk ink, double pixelRatio) {
    const QFontMetricsF metrics(font_);
    const double height = std::ceil(metrics.height() * 1.15);
    const double room = width - 2 * rim;
    pieces_.use(font_, pixelRatio);
    const auto whole = pieces_.split(line);
    const bool isPieced = !whole.pieces.isEmpty() && whole.advance <= room;
    const QStringList rows = isPieced ? QStringList{line} : wrapped(line, font_, room, mostRows);
    double widest = whole.advance;
    if (!isPieced) widest = widestOf(rows, metrics);
    const QSizeF size(std::ceil(widest) + 2 * rim, height * static_cast<double>(rows.size()));

    QPixmap pixmap((size * pixelRatio).toSize().expandedTo({1, 1}));
    pixmap.setDevicePixelRatio(pixelRatio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    const auto start = [&](double advance) {
        return side == Side::Left ? rim : size.width() - rim - advance;
    };
    QPointF baseline(0, rim + metrics.ascent());
    if (isPieced) {
        baseline.setX(start(whole.advance));
        pieces_.draw(painter, baseline, whole, ink);
        return pixmap;
    }
    painter.setFont(font_);
    for (const QString& row : rows) {
        baseline.setX(start(metrics.horizontalAdvance(row)));
        drawInked(painter, baseline, row, ink);
        baseline.ry() += height;
    }
    return pixmap;
}

}  // namespace cinedisc
