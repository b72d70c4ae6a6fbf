#include "control/pipeline/Placement.h"

#include <algorithm>
#include <cmath>

namespace cinedisc {

double Placement::scale(QSize squareSize) const {
    if (squareSize.isEmpty()) return 1;
    return squareSize.width() >= squareSize.height()
               ? static_cast<double>(picture.width()) / squareSize.width()
               : static_cast<double>(picture.height()) / squareSize.height();
}

QPointF Placement::toPicture(QPointF point) const {
    if (picture.isEmpty()) return {0.5, 0.5};
    return {(point.x() - picture.x()) / picture.width(), (point.y() - picture.y()) / picture.height()};
}

QPointF Placement::toView(QPointF share) const {
    return {picture.x() + share.x() * picture.width(), picture.y() + share.y() * picture.height()};
}

QSize squareSize(int columns, int rows, double aspect) {
    constexpr double extreme = 16;  // beyond, the header is wrong
    if (!std::isfinite(aspect) || aspect < 1 / extreme || aspect > extreme) aspect = 1;
    const auto stretched = [](int pixels, double by) {
        return std::max(1, static_cast<int>(std::lround(pixels * by)));
    };
    if (aspect >= 1) return {stretched(columns, aspect), rows};
    return {columns, stretched(rows, 1 / aspect)};
}

}  // namespace cinedisc
