#include "control/pipeline/PictureScaler.h"

#include <array>
#include <cstring>

namespace cinedisc {

void PictureScaler::draw(const RowSource& source, const AxisTable& columns, const AxisTable& rows,
                         const PixelTarget& target) {
    if (columns.size() == 0 || rows.size() == 0) return;
    prepare(source, columns, rows);
    if (columns.taps() == 1 && rows.taps() == 1) {
        drawPicked(source, columns, rows, target);
    } else {
        drawMixed(source, columns, rows, target);
    }
}

void PictureScaler::prepare(const RowSource& source, const AxisTable& columns, const AxisTable& rows) {
    channels_ = source.channels();
    const auto width = static_cast<std::size_t>(columns.size());
    for (int c = 0; c < channels_; ++c) {
        source_[c].resize(
            static_cast<std::size_t>(columns.sourceTo() - columns.sourceFrom() + RowKernels::slack));
        result_[c].resize(width);
    }
    const auto taps = static_cast<std::size_t>(rows.taps());
    // Rows of whole blocks, so that one is never written over by the end of another.
    ringStride_ = (width + RowKernels::slack - 1) / RowKernels::slack * RowKernels::slack;
    if (columns.taps() > 1 || taps > 1)
        ring_.resize(taps * ringStride_ * static_cast<std::size_t>(channels_));
    ringRow_.assign(taps, -1);
}

void PictureScaler::pack(std::uint8_t* into, PixelTarget::Format format, int count) const {
    if (format == PixelTarget::Format::Grey8) {
        std::memcpy(into, result_[0].data(), static_cast<std::size_t>(count));
        return;
    }
    auto* pixels = reinterpret_cast<std::uint32_t*>(into);
    if (channels_ == 1) return kernels_.packGrey(result_[0].data(), pixels, count);
    kernels_.packColor(
        {const_cast<std::uint8_t*>(result_[0].data()), const_cast<std::uint8_t*>(result_[1].data()),
         const_cast<std::uint8_t*>(result_[2].data())},
        pixels, count);
}

void PictureScaler::drawPicked(const RowSource& source, const AxisTable& columns, const AxisTable& rows,
                               const PixelTarget& target) {
    const auto rowBytes =
        static_cast<std::size_t>(columns.size()) * (target.format == PixelTarget::Format::Grey8 ? 1 : 4);
    auto& read = columns.isCopy() ? result_ : source_;
    int drawn = -1;
    for (int y = 0; y < rows.size(); ++y) {
        std::uint8_t* into = target.bits + y * target.bytesPerRow;
        const int wanted = rows.sourceFrom() + rows.first()[y];
        if (wanted == drawn) {
            std::memcpy(into, into - target.bytesPerRow, rowBytes);
            continue;
        }
        drawn = wanted;
        source.read(wanted, columns.sourceFrom(), columns.sourceTo(),
                    {read[0].data(), read[1].data(), read[2].data()});
        if (!columns.isCopy()) {
            for (int c = 0; c < channels_; ++c) kernels_.pick(source_[c].data(), columns, result_[c].data());
        }
        pack(into, target.format, columns.size());
    }
}

const std::uint16_t* PictureScaler::scaledRow(const RowSource& source, const AxisTable& columns,
                                              const AxisTable& rows, int y) {
    const auto slot = static_cast<std::size_t>(y % rows.taps());
    std::uint16_t* scaled = ring_.data() + slot * ringStride_ * static_cast<std::size_t>(channels_);
    if (ringRow_[slot] == y) return scaled;
    ringRow_[slot] = y;
    source.read(y, columns.sourceFrom(), columns.sourceTo(),
                {source_[0].data(), source_[1].data(), source_[2].data()});
    for (int c = 0; c < channels_; ++c) {
        kernels_.scale(source_[c].data(), columns, scaled + static_cast<std::size_t>(c) * ringStride_);
    }
    return scaled;
}

void PictureScaler::drawMixed(const RowSource& source, const AxisTable& columns, const AxisTable& rows,
                              const PixelTarget& target) {
    const int taps = rows.taps();
    scaled_.resize(static_cast<std::size_t>(taps));
    ofChannel_.resize(scaled_.size());
    for (int y = 0; y < rows.size(); ++y) {
        for (int k = 0; k < taps; ++k) {
            scaled_[static_cast<std::size_t>(k)] =
                scaledRow(source, columns, rows, rows.sourceFrom() + rows.first()[y] + k);
        }
        for (int c = 0; c < channels_; ++c) {
            for (std::size_t k = 0; k < scaled_.size(); ++k)
                ofChannel_[k] = scaled_[k] + static_cast<std::size_t>(c) * ringStride_;
            kernels_.mix(ofChannel_.data(), rows.weights() + static_cast<std::ptrdiff_t>(y) * taps, taps,
                         result_[c].data(), columns.size());
        }
        pack(target.bits + y * target.bytesPerRow, target.format, columns.size());
    }
}

}  // namespace cinedisc
