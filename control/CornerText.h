#pragma once

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

    /// `picture` is where the whole picture lies; when it leaves room at the sides, the lines keep to it.
    /// Logical pixels.
    void paint(QPainter& painter, const QRectF& view, const QRectF& picture, const Lines& lines);

  private:
    enum class Side { Left, Right };
    enum class End { Top, Bottom };
    void paintBlock(QPainter& painter, const QRectF& area, const QStringList& lines, Side side, End end);
    QPixmap stamp(const QString& line, double width, Side side, double pixelRatio);

    QFont font_;
    QCache<QString, QPixmap> stamps_{4000};  ///< cost: thousands of pixels
};

}  // namespace cinedisc
