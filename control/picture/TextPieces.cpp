#include "control/picture/TextPieces.h"

#include <QFontMetricsF>

#include <algorithm>
#include <cmath>

namespace cinedisc {

namespace {

constexpr double overhang = 6;   // of a glyph and its rim, beside its place; whole at every scaling below
constexpr int mostPieces = 400;  // kept
constexpr QChar lastAscii = u'~';

bool isPlain(const QString& line) {
    return std::all_of(line.begin(), line.end(), [](QChar c) { return c >= u' ' && c <= lastAscii; });
}

bool isDigit(QChar c) { return c >= u'0' && c <= u'9'; }

}  // namespace

void TextPieces::use(const QFont& font, double pixelRatio) {
    if (font == font_ && pixelRatio == pixelRatio_) return;
    font_ = font;
    pixelRatio_ = pixelRatio;
    pieces_.clear();
    height_ = std::ceil(QFontMetricsF(font_).height() * 2);
    usable_ = isWhole(overhang) && digitsStandAlone();
}

bool TextPieces::isWhole(double logical) const {
    const double device = logical * pixelRatio_;
    return std::abs(device - std::round(device)) < 1e-6;
}

bool TextPieces::digitsStandAlone() const {
    const QString alone = QStringLiteral(" 0123456789");
    const QFontMetricsF metrics(font_);
    QString pairs;
    double sum = 0;
    for (const QChar a : alone) {
        for (const QChar b : alone) {
            pairs += QString(a) + b;
            sum += metrics.horizontalAdvance(a) + metrics.horizontalAdvance(b);
        }
    }
    return std::abs(metrics.horizontalAdvance(pairs) - sum) < 1e-6;
}

TextPieces::Line TextPieces::split(const QString& line) {
    Line split;
    if (!usable_ || !isPlain(line)) return split;
    if (pieces_.size() > mostPieces) pieces_.clear();
    qsizetype from = 0;
    while (from < line.size()) {
        qsizetype to = from + 1;
        // A word next to a digit might have its own distance to it: only a space has none.
        if (!isDigit(line[from])) {
            while (to < line.size() && !isDigit(line[to])) ++to;
            if (from > 0 && line[from] != u' ') return {};
            if (to < line.size() && line[to - 1] != u' ') return {};
        }
        split.pieces.append(line.mid(from, to - from));
        const double advance = piece(split.pieces.back()).advance;
        if (!isWhole(advance)) return {};
        split.advance += advance;
        from = to;
    }
    return split;
}

TextPieces::Piece& TextPieces::piece(const QString& text) {
    auto found = pieces_.find(text);
    if (found == pieces_.end()) {
        found = pieces_.insert(text, {});
        found->advance = QFontMetricsF(font_).horizontalAdvance(text);
    }
    return *found;
}

const QImage& TextPieces::layer(const QString& text, QPointF baseline, TextLayer layer) {
    Piece& kept = piece(text);
    QImage& image = kept.layers[layer];
    if (!image.isNull()) return image;
    const QSizeF size(kept.advance + 2 * overhang, height_);
    image = QImage((size * pixelRatio_).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(pixelRatio_);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setFont(font_);
    drawLayer(painter, {overhang, baseline.y()}, text, layer);
    return image;
}

void TextPieces::drawPieces(QPainter& painter, QPointF baseline, const Line& line, TextLayer which) {
    double x = baseline.x();
    for (const QString& text : line.pieces) {
        painter.drawImage(QPointF(x - overhang, 0), layer(text, baseline, which));
        x += piece(text).advance;
    }
}

void TextPieces::draw(QPainter& painter, QPointF baseline, const Line& line, TextInk ink) {
    if (ink == TextInk::PlainDark) return drawPieces(painter, baseline, line, TextLayer::Dark);
    drawPieces(painter, baseline, line, TextLayer::Rim);
    drawPieces(painter, baseline, line, TextLayer::Light);
}

}  // namespace cinedisc
