#pragma once

#include "control/picture/OutlinedText.h"

#include <QFont>
#include <QHash>
#include <QImage>
#include <QPainter>
#include <QString>

#include <map>

namespace cinedisc {

/// Puts lines of text together from pictures of their pieces: single digits, and the words between them. A
/// line that differs from an earlier one in its numbers only then takes no layout and no drawing of glyphs.
/// It looks as if it were drawn whole; where that cannot be, it is not put together.
class TextPieces {
  public:
    /// Forgets the pieces when another font or scaling of the screen is used.
    void use(const QFont& font, double pixelRatio);

    /// The pieces of a line; empty when the line is better drawn whole.
    struct Line {
        QStringList pieces;
        double advance = 0;  ///< logical pixels
    };
    Line split(const QString& line);

    /// Draws such a line on a picture of its own, which is as high as a line. `baseline` is its left end.
    void draw(QPainter& painter, QPointF baseline, const Line& line, TextInk ink);

  private:
    struct Piece {
        double advance = 0;
        std::map<TextLayer, QImage> layers;  ///< as far as they were wanted
    };

    bool isWhole(double logical) const;
    bool digitsStandAlone() const;
    Piece& piece(const QString& text);
    const QImage& layer(const QString& text, QPointF baseline, TextLayer layer);
    void drawPieces(QPainter& painter, QPointF baseline, const Line& line, TextLayer layer);

    QFont font_;
    double pixelRatio_ = 0;
    double height_ = 0;  ///< of the layers' pictures
    bool usable_ = false;
    QHash<QString, Piece> pieces_;
};

}  // namespace cinedisc
