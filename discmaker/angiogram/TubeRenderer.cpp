#include "discmaker/angiogram/TubeRenderer.h"

#include <algorithm>
#include <cmath>

namespace cinedisc::discmaker {

namespace {

/// A tube narrower than the pixels is drawn wider and paler, so that it neither breaks up nor flickers.
TubePoint widened(TubePoint point) {
    constexpr float least = 1.0f;
    if (point.radius < least) {
        const float part = point.radius / least;
        point.density *= part * part;
        point.radius = least;
    }
    return point;
}

constexpr float wallOfHollow = 0.62f;  // inner radius of a hollow tube as a part of the outer
constexpr float fillOfHollow = 0.55f;  // how much less dense its inside is

}  // namespace

TubeRenderer::Box TubeRenderer::reach(const TubePoint& a, const TubePoint& b) const {
    const float radius = std::max(a.radius, b.radius) + 1;
    const auto within = [](float value, int limit) {
        return static_cast<int>(std::clamp(value, 0.0f, static_cast<float>(limit)));
    };
    return {within(std::min(a.column, b.column) - radius, scratch_.width),
            within(std::max(a.column, b.column) + radius + 1, scratch_.width),
            within(std::min(a.row, b.row) - radius, scratch_.height),
            within(std::max(a.row, b.row) + radius + 1, scratch_.height)};
}

void TubeRenderer::drawSegment(const TubePoint& a, const TubePoint& b, Filling filling) {
    const Box box = reach(a, b);
    const float dx = b.column - a.column, dy = b.row - a.row;
    const float inverse = 1 / std::max(dx * dx + dy * dy, 1e-6f);
    const float growth = b.radius - a.radius, change = b.density - a.density;
    const float inner = filling == Filling::Hollow ? wallOfHollow * wallOfHollow : 0.0f;
    for (int y = box.top; y < box.bottom; ++y) {
        float* row = scratch_.row(y);
        const float py = static_cast<float>(y) - a.row;
        for (int x = box.left; x < box.right; ++x) {
            const float px = static_cast<float>(x) - a.column;
            const float t = std::clamp((px * dx + py * dy) * inverse, 0.0f, 1.0f);
            const float ex = px - t * dx, ey = py - t * dy;
            const float apart = ex * ex + ey * ey;
            const float radius = a.radius + t * growth;
            const float squared = radius * radius;
            const float way = std::sqrt(std::max(squared - apart, 0.0f)) -
                              fillOfHollow * std::sqrt(std::max(squared * inner - apart, 0.0f));
            row[x] = std::max(row[x], 2 * way * (a.density + t * change));
        }
    }
}

void TubeRenderer::add(Plane& plane, std::span<const TubePoint> tube, Filling filling) {
    Box all{scratch_.width, 0, scratch_.height, 0};
    for (std::size_t i = 0; i + 1 < tube.size(); ++i) {
        const auto a = widened(tube[i]), b = widened(tube[i + 1]);
        if (a.density <= 0 && b.density <= 0) continue;
        drawSegment(a, b, filling);
        const Box box = reach(a, b);
        all = {std::min(all.left, box.left), std::max(all.right, box.right), std::min(all.top, box.top),
               std::max(all.bottom, box.bottom)};
    }
    for (int y = all.top; y < all.bottom; ++y) {
        float* from = scratch_.row(y);
        float* to = plane.row(y);
        for (int x = all.left; x < all.right; ++x) {
            to[x] += from[x];
            from[x] = 0;
        }
    }
}

}  // namespace cinedisc::discmaker
