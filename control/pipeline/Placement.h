#pragma once

#include <QPointF>
#include <QRect>
#include <QSize>

namespace cinedisc {

/// Where a picture lies in a view, in device pixels of the view.
struct Placement {
    QRect picture;  ///< the whole picture; mostly outside the view when it is enlarged
    QSize view;

    QRect visible() const { return picture.intersected(QRect(QPoint(0, 0), view)); }
    /// Device pixels per square image pixel, given the size at 100 %.
    double scale(QSize squareSize) const;
    /// From a point of the view to one of the picture, 0 ... 1 on both axes, and back.
    QPointF toPicture(QPointF point) const;
    QPointF toView(QPointF share) const;
};

/// The size of a picture at 100 % with its pixels made square: the shorter side of a pixel keeps its number,
/// the other is stretched. `aspect` is the width of a pixel divided by its height.
QSize squareSize(int columns, int rows, double aspect);

}  // namespace cinedisc
