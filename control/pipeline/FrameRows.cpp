#include "control/pipeline/FrameRows.h"

#include <algorithm>
#include <type_traits>

namespace cinedisc {

namespace {

/// Samples that a table is indexed with, as unsigned numbers of their own size.
template <typename Sample>
constexpr bool isTabled = std::is_integral_v<Sample> && sizeof(Sample) <= 2;

template <typename Sample>
const auto* asIndices(const Sample* samples) {
    return reinterpret_cast<const std::make_unsigned_t<Sample>*>(samples);
}

}  // namespace

FrameRows::FrameRows(const dicom::Frame& frame, const DisplayRule& rule, const CoverPlane* cover,
                     const RowKernels& kernels)
    : kernels_(kernels),
      frame_(frame),
      rule_(rule),
      cover_(cover && !cover->empty() ? cover : nullptr),
      channels_(frame.samplesPerPixel == 3 || rule.palette ? 3 : 1) {}

void FrameRows::read(int y, int from, int to, const Channels& into) const {
    const auto offset = static_cast<std::size_t>(y) * static_cast<std::size_t>(frame_.columns) +
                        static_cast<std::size_t>(from);
    const int count = to - from;
    if (frame_.samplesPerPixel == 3) {
        readColor(offset, count, into);
    } else if (rule_.palette) {
        readPalette(offset, count, into);
    } else {
        readGrey(offset, count, into[0]);
    }
    if (!cover_) return;
    for (std::size_t channel = 0; channel < static_cast<std::size_t>(channels_); ++channel)
        cover_->apply(y, from, to, into[channel]);
}

template <typename Sample>
void FrameRows::readTabled(const Sample* samples, std::uint8_t* into, int count) const {
    if (const auto& line = rule_.table->linear()) {
        kernels_.linear(samples, *line, into, count);
    } else {
        kernels_.lookUp(asIndices(samples), rule_.table->entries(), into, count);
    }
}

void FrameRows::readGrey(std::size_t offset, int count, std::uint8_t* into) const {
    std::visit(
        [&](const auto& samples) {
            using Sample = std::decay_t<decltype(samples[0])>;
            const Sample* source = samples.data() + offset;
            if constexpr (isTabled<Sample>) {
                readTabled(source, into, count);
            } else {
                for (int x = 0; x < count; ++x) into[x] = (*rule_.rule)(static_cast<double>(source[x]));
            }
        },
        frame_.samples);
}

void FrameRows::readPalette(std::size_t offset, int count, const Channels& into) const {
    std::visit(
        [&](const auto& samples) {
            using Sample = std::decay_t<decltype(samples[0])>;
            for (int channel = 0; channel < 3; ++channel) {
                std::uint8_t* out = into[static_cast<std::size_t>(channel)];
                if constexpr (isTabled<Sample>) {
                    kernels_.lookUp(asIndices(samples.data() + offset), rule_.palette->entries(channel), out,
                                    count);
                } else {
                    std::fill_n(out, count, std::uint8_t{0});
                }
            }
        },
        frame_.samples);
    if (rule_.polarity == Polarity::Inverted) {
        for (auto* channel : into) kernels_.invert(channel, count);
    }
}

void FrameRows::readColor(std::size_t offset, int count, const Channels& into) const {
    const auto& samples = std::get<std::vector<std::uint8_t>>(frame_.samples);
    kernels_.splitColors(samples.data() + offset * 3, into, count);
    if (rule_.polarity == Polarity::Inverted) {
        for (auto* channel : into) kernels_.invert(channel, count);
    }
}

}  // namespace cinedisc
