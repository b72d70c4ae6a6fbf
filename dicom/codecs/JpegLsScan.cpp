#include "dicom/codecs/JpegLsScan.h"

#include <algorithm>
#include <bit>

namespace cinedisc::dicom::codecs {
namespace {

/// Bits of a run's length by the run index (ITU-T T.87 A.2.1).
constexpr std::array<int, 32> runBits{0, 0, 0, 0, 1, 1, 1, 1, 2, 2, 2,  2,  3,  3,  3,  3,
                                      4, 4, 5, 5, 6, 6, 7, 7, 8, 9, 10, 11, 12, 13, 14, 15};

/// The shift at which `count` reaches `magnitude`.
int golombShift(std::uint32_t magnitude, int count) {
    int shift = 0;
    while ((static_cast<std::uint64_t>(count) << shift) < magnitude) ++shift;
    return shift;
}

}  // namespace

void JpegLsLines::advance() {
    above.swap(line);
    std::copy_n(above.end() - static_cast<std::ptrdiff_t>(2 * step), step,
                above.end() - static_cast<std::ptrdiff_t>(step));
    std::copy_n(above.begin() + static_cast<std::ptrdiff_t>(step), step, line.begin());
}

JpegLsScan::JpegLsScan(const JpegLsParameters& parameters, std::span<const std::uint8_t> data)
    : parameters_(parameters), bits_(data) {
    const auto start = static_cast<std::uint32_t>(std::max(2, (parameters.range + 32) / 64));
    for (Context& context : contexts_) context.magnitude = start;
    for (RunContext& context : runContexts_) context.magnitude = start;
}

int JpegLsScan::quantised(int gradient) const {
    const int size = gradient < 0 ? -gradient : gradient;
    const auto& t = parameters_.thresholds;
    const int level = (size > parameters_.near) + (size >= t[0]) + (size >= t[1]) + (size >= t[2]);
    return gradient < 0 ? -level : level;
}

int JpegLsScan::reconstructed(int predicted, int error) const {
    const int span = parameters_.range * parameters_.step;
    int sample = predicted + error * parameters_.step;
    if (sample < -parameters_.near)
        sample += span;
    else if (sample > parameters_.largest + parameters_.near)
        sample -= span;
    return std::clamp(sample, 0, parameters_.largest);
}

/// A code of limited length (ITU-T T.87 A.5.3).
int JpegLsScan::decodeMapped(int shift, int limit) {
    const int longest = limit - parameters_.errorBits - 1;
    const int zeros = bits_.zeros(longest);
    if (zeros > longest || shift > 24) {
        good_ = false;
        return 0;
    }
    if (zeros == longest) return static_cast<int>(bits_.take(parameters_.errorBits)) + 1;
    const std::int64_t value = (static_cast<std::int64_t>(zeros) << shift) + bits_.take(shift);
    if (value > 2 * static_cast<std::int64_t>(parameters_.range) + 1) good_ = false;
    return good_ ? static_cast<int>(value) : 0;
}

int JpegLsScan::decodeRegular(int index, int left, int above, int diagonal) {
    const int sign = index < 0 ? -1 : 1;
    Context& context = contexts_[static_cast<std::size_t>(index * sign)];
    const int low = std::min(left, above), high = std::max(left, above);
    const int edge = diagonal >= high ? low : diagonal <= low ? high : left + above - diagonal;
    const int predicted = std::clamp(edge + sign * context.correction, 0, parameters_.largest);

    const int shift = golombShift(context.magnitude, context.count);
    int mapped = decodeMapped(shift, parameters_.limit);
    const bool swapped = parameters_.near == 0 && shift == 0 && 2 * context.bias <= -context.count;
    if (swapped) mapped ^= 1;
    const int error = (mapped & 1) ? -((mapped + 1) >> 1) : mapped >> 1;

    context.bias += error * parameters_.step;
    context.magnitude += static_cast<std::uint32_t>(error < 0 ? -error : error);
    if (context.count == parameters_.reset) {
        context.magnitude >>= 1;
        context.bias = context.bias >= 0 ? context.bias >> 1 : -((1 - context.bias) >> 1);
        context.count >>= 1;
    }
    ++context.count;
    if (context.bias <= -context.count) {
        context.bias = std::max(context.bias + context.count, 1 - context.count);
        context.correction = std::max(context.correction - 1, -128);
    } else if (context.bias > 0) {
        context.bias = std::min(context.bias - context.count, 0);
        context.correction = std::min(context.correction + 1, 127);
    }
    return reconstructed(predicted, sign * error);
}

int JpegLsScan::decodeInterruption(int runIndex, bool likeLeft, int left, int above) {
    const int type = likeLeft ? 1 : 0;
    RunContext& context = runContexts_[static_cast<std::size_t>(type)];
    const std::uint32_t magnitude =
        context.magnitude + (likeLeft ? static_cast<std::uint32_t>(context.count >> 1) : 0);
    const int shift = golombShift(magnitude, context.count);
    const int mapped =
        decodeMapped(shift, parameters_.limit - runBits[static_cast<std::size_t>(runIndex)] - 1);
    const int doubled = mapped + type;
    const bool odd = doubled & 1;
    const bool oddIsNegative = shift != 0 || 2 * context.negative >= context.count;
    const int size = (doubled + 1) >> 1;
    const int error = oddIsNegative == odd ? -size : size;

    if (error < 0) ++context.negative;
    context.magnitude += static_cast<std::uint32_t>((mapped + 1 - type) >> 1);
    if (context.count == parameters_.reset) {
        context.magnitude >>= 1;
        context.count >>= 1;
        context.negative >>= 1;
    }
    ++context.count;
    return likeLeft ? reconstructed(left, error) : reconstructed(above, left > above ? -error : error);
}

/// Decodes a run that begins at pixel `x` and the pixel that ends it; moves `x` behind both (ITU-T T.87 A.7).
template <std::size_t Step>
bool JpegLsScan::decodeRun(JpegLsLines& lines, std::size_t& x, std::size_t width) {
    int* const line = lines.line.data() + Step;
    const int* const above = lines.above.data() + Step;
    const std::size_t start = x;
    bool ended = false;
    while (x < width && !ended) {
        const int lengthBits = runBits[static_cast<std::size_t>(lines.runIndex)];
        std::size_t length = std::size_t{1} << lengthBits;
        if (bits_.bit()) {
            if (length <= width - x && lines.runIndex < 31) ++lines.runIndex;
            length = std::min(length, width - x);
        } else {
            length = bits_.take(lengthBits);
            ended = true;
            if (length >= width - x) return false;
        }
        x += length;
        if (bits_.ranOut()) return false;
    }
    const int* const before = line + start * Step - Step;
    for (std::size_t i = start * Step; i < x * Step; ++i) line[i] = before[i % Step];
    if (!ended) return true;

    for (std::size_t c = 0; c < Step; ++c) {
        const int left = before[c], up = above[x * Step + c];
        const bool likeLeft = Step == 1 && (left > up ? left - up : up - left) <= parameters_.near;
        line[x * Step + c] = decodeInterruption(lines.runIndex, likeLeft, left, up);
    }
    if (lines.runIndex > 0) --lines.runIndex;
    ++x;
    return good_;
}

template <std::size_t Step>
bool JpegLsScan::decodePixels(JpegLsLines& lines) {
    const std::size_t width = lines.line.size() / Step - 2;
    int* const line = lines.line.data() + Step;
    const int* const above = lines.above.data() + Step;
    for (std::size_t x = 0; x < width;) {
        std::array<int, Step> index{};
        bool flat = true;
        for (std::size_t c = 0; c < Step; ++c) {
            const std::size_t i = x * Step + c;
            const int diagonal = above[static_cast<std::ptrdiff_t>(i - Step)];
            index[c] = 81 * quantised(above[i + Step] - above[i]) + 9 * quantised(above[i] - diagonal) +
                       quantised(diagonal - line[static_cast<std::ptrdiff_t>(i - Step)]);
            flat = flat && index[c] == 0;
        }
        if (flat) {
            if (!decodeRun<Step>(lines, x, width)) return false;
            continue;
        }
        for (std::size_t c = 0; c < Step; ++c) {
            const auto i = static_cast<std::ptrdiff_t>(x * Step + c),
                       step = static_cast<std::ptrdiff_t>(Step);
            line[i] = decodeRegular(index[c], line[i - step], above[i], above[i - step]);
        }
        if (!good_) return false;
        ++x;
    }
    return !bits_.ranOut();
}

bool JpegLsScan::decodeLine(JpegLsLines& lines) {
    lines.advance();
    return lines.step == 1 ? decodePixels<1>(lines) : decodePixels<3>(lines);
}

}  // namespace cinedisc::dicom::codecs
