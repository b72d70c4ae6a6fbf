#pragma once

#include "control/picture/OutlinedText.h"
#include "control/picture/TextPieces.h"

#include <QCache>
#include <QFont>
#include <QPainter>
#include <QPixmap>
#include <QRectF>
#include <QStringList>

namespace cinedisc {

/// Lines in the four corners of a view, small and readable on any grey. Lines drawn before are kept as
/// pictures, so that a playing cine does not lay out text anew.
class CornerText {
  public:
    struct Lines {
        QStringList topLeft, topRight, bottomLeft, bottomRight;
    };

    /// The narrowest view, logical pixels, in which no line of usual length is cut.
    static int leastWidth();

    /// What lies around the picture.
    enum class Ground { Dark, White };

    /// `picture` is where the whole picture lies; when it leaves room at the sides, the lines keep to it.
    /// Logical pixels. On white ground beside the picture they are dark, otherwise light with a dark rim.
    void paint(QPainter& painter, const QRectF& view, const QRectF& picture, const Lines& lines,
               Ground ground);

  private:
    enum class Side { Left, Right };
    enum class End { Top, Bottom };
    void paintBlock(QPainter& painter, const QRectF& area, const QStringList& lines, Side side, End end);
    TextInk inkFor(const QRectF& block) const;
    QPixmap stamp(const QString& line, double width, Side side, TextInk ink, double pixelRatio);
    QPixmap drawn(const QString& line, double width, Side side, TextInk ink, double pixelRatio);

    QFont font_;
    TextPieces pieces_;
    QRectF picture_;  ///< while painting
    Ground ground_ = Ground::Dark;
    QCache<QString, QPixmap> stamps_{4000};  ///< cost: thousands of pixels
};

}  // namespace cinedisc
