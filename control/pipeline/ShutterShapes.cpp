#include "control/pipeline/CoverPlane.h"

#include <algorithm>
#include <cmath>

namespace cinedisc {

namespace {

/// Hides everything outside [left, right] of a row, columns counted from 1.
void keepSpan(std::uint8_t* row, int columns, double left, double right) {
    const int from = static_cast<int>(std::clamp(std::ceil(left) - 1, 0.0, static_cast<double>(columns)));
    const int to = static_cast<int>(
        std::clamp(std::floor(right), static_cast<double>(from), static_cast<double>(columns)));
    std::fill(row, row + from, std::uint8_t{0});
    std::fill(row + to, row + columns, std::uint8_t{0});
}

/// Hides in a row, counted from 1, what lies outside of a shape.
void keepInside(const dicom::Shutter::Rectangle& shape, int y, std::uint8_t* row, int columns) {
    if (y < shape.upper || y > shape.lower) return keepSpan(row, columns, 1, 0);
    keepSpan(row, columns, shape.left, shape.right);
}

void keepInside(const dicom::Shutter::Circle& shape, int y, std::uint8_t* row, int columns) {
    const double radius = shape.radius, dy = static_cast<double>(y) - shape.row;
    if (std::abs(dy) > radius) return keepSpan(row, columns, 1, 0);
    const double half = std::sqrt(radius * radius - dy * dy);
    keepSpan(row, columns, shape.column - half, shape.column + half);
}

/// Even-odd rule on the pixel centres; those on the outline belong to the inside, as they do on the edges of
/// a rectangle. A row just below a vertex is crossed by other edges than one just above it: a pixel is inside
/// when it is by either.
class Polygon {
  public:
    Polygon(const std::vector<std::pair<int, int>>& vertices, int columns)
        : vertices_(vertices), inside_(static_cast<std::size_t>(columns)) {}

    void keepInside(int y, std::uint8_t* row) {
        std::fill(inside_.begin(), inside_.end(), std::uint8_t{0});
        addInside(y, [y](int vertex) { return vertex <= y; });
        addInside(y, [y](int vertex) { return vertex < y; });
        for (std::size_t x = 0; x < inside_.size(); ++x) row[x] &= inside_[x];
    }

  private:
    template <typename IsAbove>
    void addInside(int y, IsAbove&& isAbove) {
        crossings_.clear();
        for (std::size_t i = 0, j = vertices_.size() - 1; i < vertices_.size(); j = i++) {
            const auto [y0, x0] = vertices_[j];
            const auto [y1, x1] = vertices_[i];
            if (isAbove(y0) == isAbove(y1)) continue;
            crossings_.push_back(x0 + (static_cast<double>(y) - y0) * (static_cast<double>(x1) - x0) /
                                          (static_cast<double>(y1) - y0));
        }
        std::sort(crossings_.begin(), crossings_.end());
        const auto last = static_cast<double>(inside_.size());
        for (std::size_t i = 0; i + 1 < crossings_.size(); i += 2) {
            const int from = static_cast<int>(std::clamp(std::ceil(crossings_[i]) - 1, 0.0, last));
            const int to = static_cast<int>(std::clamp(std::floor(crossings_[i + 1]), 0.0, last));
            if (from < to) std::fill(inside_.begin() + from, inside_.begin() + to, std::uint8_t{1});
        }
    }

    const std::vector<std::pair<int, int>>& vertices_;
    std::vector<double> crossings_;
    std::vector<std::uint8_t> inside_;
};

}  // namespace

BitPlane hiddenByShutter(const dicom::Shutter& shutter, int rows, int columns) {
    const bool rectangle = shutter.rectangle && shutter.rectangle->left <= shutter.rectangle->right &&
                           shutter.rectangle->upper <= shutter.rectangle->lower;
    const bool circle = shutter.circle && shutter.circle->radius > 0;
    const bool polygon = shutter.polygon.size() >= 3;
    if (rows <= 0 || columns <= 0 || !(rectangle || circle || polygon)) return {};

    BitPlane hidden(rows, columns);
    Polygon outline(shutter.polygon, columns);
    bool anyVisible = false;
    std::vector<std::uint8_t> visible(static_cast<std::size_t>(columns));
    for (int y = 0; y < rows; ++y) {
        std::fill(visible.begin(), visible.end(), std::uint8_t{1});
        if (rectangle) keepInside(*shutter.rectangle, y + 1, visible.data(), columns);
        if (circle) keepInside(*shutter.circle, y + 1, visible.data(), columns);
        if (polygon) outline.keepInside(y + 1, visible.data());
        for (int x = 0; x < columns; ++x) {
            if (visible[static_cast<std::size_t>(x)])
                anyVisible = true;
            else
                hidden.set(y, x);
        }
    }
    return anyVisible ? hidden : BitPlane();
}

}  // namespace cinedisc
