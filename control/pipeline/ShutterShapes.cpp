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

class Visible {
  public:
    Visible(int rows, int columns)
        : pixels(static_cast<std::size_t>(rows) * static_cast<std::size_t>(columns), 1),
          rows_(rows),
          columns_(columns) {}

    void apply(const dicom::Shutter::Rectangle& shape) {
        forEachRow([&](int y, std::uint8_t* row) {
            if (y < shape.upper || y > shape.lower) return keepSpan(row, columns_, 1, 0);
            keepSpan(row, columns_, shape.left, shape.right);
        });
    }

    void apply(const dicom::Shutter::Circle& shape) {
        const double radius = shape.radius;
        forEachRow([&](int y, std::uint8_t* row) {
            const double dy = static_cast<double>(y) - shape.row;
            if (std::abs(dy) > radius) return keepSpan(row, columns_, 1, 0);
            const double half = std::sqrt(radius * radius - dy * dy);
            keepSpan(row, columns_, shape.column - half, shape.column + half);
        });
    }

    /// Even-odd rule on the pixel centres; those on the outline belong to the inside, as they do on the edges
    /// of a rectangle. A row just below a vertex is crossed by other edges than one just above it: a pixel is
    /// inside when it is by either.
    void apply(const std::vector<std::pair<int, int>>& polygon) {
        std::vector<double> crossings;
        std::vector<std::uint8_t> inside(static_cast<std::size_t>(columns_));
        const auto addInside = [&](int y, auto&& isAbove) {
            crossings.clear();
            for (std::size_t i = 0, j = polygon.size() - 1; i < polygon.size(); j = i++) {
                const auto [y0, x0] = polygon[j];
                const auto [y1, x1] = polygon[i];
                if (isAbove(y0) == isAbove(y1)) continue;
                crossings.push_back(x0 + (static_cast<double>(y) - y0) * (static_cast<double>(x1) - x0) /
                                             (static_cast<double>(y1) - y0));
            }
            std::sort(crossings.begin(), crossings.end());
            for (std::size_t i = 0; i + 1 < crossings.size(); i += 2) {
                const double last = columns_;
                const int from = static_cast<int>(std::clamp(std::ceil(crossings[i]) - 1, 0.0, last));
                const int to = static_cast<int>(std::clamp(std::floor(crossings[i + 1]), 0.0, last));
                if (from < to) std::fill(inside.begin() + from, inside.begin() + to, std::uint8_t{1});
            }
        };
        forEachRow([&](int y, std::uint8_t* row) {
            std::fill(inside.begin(), inside.end(), std::uint8_t{0});
            addInside(y, [y](int vertex) { return vertex <= y; });
            addInside(y, [y](int vertex) { return vertex < y; });
            for (int x = 0; x < columns_; ++x) row[x] &= inside[static_cast<std::size_t>(x)];
        });
    }

    std::vector<std::uint8_t> pixels;

  private:
    template <typename Action>
    void forEachRow(Action&& action) {
        for (int y = 0; y < rows_; ++y) {
            action(y + 1, pixels.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(columns_));
        }
    }

    int rows_, columns_;
};

}  // namespace

std::vector<std::uint8_t> visibleThroughShutter(const dicom::Shutter& shutter, int rows, int columns) {
    const bool rectangle = shutter.rectangle && shutter.rectangle->left <= shutter.rectangle->right &&
                           shutter.rectangle->upper <= shutter.rectangle->lower;
    const bool circle = shutter.circle && shutter.circle->radius > 0;
    const bool polygon = shutter.polygon.size() >= 3;
    if (rows <= 0 || columns <= 0 || !(rectangle || circle || polygon)) return {};

    Visible visible(rows, columns);
    if (rectangle) visible.apply(*shutter.rectangle);
    if (circle) visible.apply(*shutter.circle);
    if (polygon) visible.apply(shutter.polygon);
    if (std::find(visible.pixels.begin(), visible.pixels.end(), 1) == visible.pixels.end()) return {};
    return std::move(visible.pixels);
}

}  // namespace cinedisc
