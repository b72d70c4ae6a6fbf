#include "control/pipeline/AxisTable.h"

#include <algorithm>
#include <cmath>

namespace cinedisc {

AxisTable::AxisTable(int sourceSize, int scaledSize, int visibleFrom, int visibleTo, Smoothing smoothing)
    : first_(static_cast<std::size_t>(std::max(0, visibleTo - visibleFrom))) {
    if (first_.empty() || sourceSize <= 0 || scaledSize <= 0) return;
    const double step = static_cast<double>(sourceSize) / scaledSize;
    copy_ = sourceSize == scaledSize;
    if (copy_ || smoothing == Smoothing::Nearest || sourceSize == 1) {
        nearest(step, visibleFrom, sourceSize);
    } else {
        triangle(step, visibleFrom, sourceSize);
    }
    sourceFrom_ = first_.front();
    sourceTo_ = first_.back() + taps_;
    for (auto& first : first_) first -= sourceFrom_;
    if (taps_ == 2 && step <= 1) pairs_ = PairBlocks(first_, weights_);
}

void AxisTable::nearest(double step, int visibleFrom, int sourceSize) {
    for (std::size_t i = 0; i < first_.size(); ++i) {
        const double center = (visibleFrom + static_cast<double>(i) + 0.5) * step;
        first_[i] = std::min(static_cast<std::int32_t>(center), sourceSize - 1);
    }
    weights_.assign(first_.size(), fullWeight);
}

void AxisTable::triangle(double step, int visibleFrom, int sourceSize) {
    const double reach = std::max(1.0, step);
    taps_ = std::min(sourceSize, step > 1 ? static_cast<int>(std::ceil(2 * reach)) : 2);
    // When enlarging, weights keep 8 bits, so that the product with a grey fits 16.
    const double unit = step > 1 ? fullWeight : 256;
    weights_.resize(first_.size() * static_cast<std::size_t>(taps_));
    std::vector<double> shares(static_cast<std::size_t>(taps_));
    for (std::size_t i = 0; i < first_.size(); ++i) {
        const double center = (visibleFrom + static_cast<double>(i) + 0.5) * step - 0.5;
        const int lowest = static_cast<int>(std::floor(center - reach)) + 1;
        first_[i] = std::clamp(lowest, 0, sourceSize - taps_);
        std::fill(shares.begin(), shares.end(), 0.0);
        double sum = 0;
        for (int k = lowest; k <= lowest + static_cast<int>(std::ceil(2 * reach)); ++k) {
            const double share = std::max(0.0, 1 - std::abs(k - center) / reach);
            if (step > 1 && (k < 0 || k >= sourceSize)) continue;  // a part outside has no say
            const int inside = std::clamp(k, 0, sourceSize - 1) - first_[i];
            if (inside < 0 || inside >= taps_) continue;
            shares[static_cast<std::size_t>(inside)] += share;
            sum += share;
        }
        std::uint16_t* weights = weights_.data() + i * static_cast<std::size_t>(taps_);
        int left = fullWeight;
        std::size_t largest = 0;
        for (std::size_t k = 0; k < shares.size(); ++k) {
            weights[k] = static_cast<std::uint16_t>(std::lround(shares[k] / sum * unit) *
                                                    std::lround(fullWeight / unit));
            left -= weights[k];
            if (shares[k] > shares[largest]) largest = k;
        }
        weights[largest] = static_cast<std::uint16_t>(weights[largest] + left);
    }
}

}  // namespace cinedisc
