#include "control/pipeline/ViewZoom.h"

#include <algorithm>
#include <cmath>

namespace cinedisc {

namespace {

// Half of what an int can address, so that adding a view to it stays in range.
constexpr double longestSide = 1 << 30;

int side(int square, double scale) {
    return static_cast<int>(std::clamp(std::round(square * scale), 1.0, longestSide));
}

double boundMiddle(double middle, int picture, int view) {
    // The middle of the view lies over the picture, or away from it by no more than leaves half of it
    // visible.
    const double half = std::max(1.0, 0.5 * std::min(picture, view));
    const double most = (0.5 * (picture + view) - half) / picture;
    return std::clamp(middle, 0.5 - most, 0.5 + most);
}

int start(double middle, int picture, int view) {
    return static_cast<int>(std::floor(view * 0.5 - boundMiddle(middle, picture, view) * picture));
}

}  // namespace

void ViewZoom::putBestFit(bool on) {
    bestFit_ = on;
    if (on) middle_ = {0.5, 0.5};
}

QSize ViewZoom::scaledSize(QSize squareSize, QSize view) const {
    double scale = std::max(percent_, 1) / 100.0;
    if (bestFit_) {
        scale = std::min(static_cast<double>(view.width()) / squareSize.width(),
                         static_cast<double>(view.height()) / squareSize.height());
    }
    scale = std::min(scale, longestSide / std::max(squareSize.width(), squareSize.height()));
    return {side(squareSize.width(), scale), side(squareSize.height(), scale)};
}

Placement ViewZoom::place(QSize squareSize, QSize view) const {
    if (squareSize.isEmpty() || view.isEmpty()) return {{}, view};
    const QSize size = scaledSize(squareSize, view);
    const QPoint corner(start(middle_.x(), size.width(), view.width()),
                        start(middle_.y(), size.height(), view.height()));
    return {QRect(corner, size), view};
}

void ViewZoom::pan(QPointF by, QSize squareSize, QSize view) {
    if (squareSize.isEmpty() || view.isEmpty()) return;
    const QSize size = scaledSize(squareSize, view);
    middle_.setX(boundMiddle(middle_.x() - by.x() / size.width(), size.width(), view.width()));
    middle_.setY(boundMiddle(middle_.y() - by.y() / size.height(), size.height(), view.height()));
}

}  // namespace cinedisc
