#pragma once

#include "control/pipeline/RowKernels.h"

#include <algorithm>
#include <array>
#include <cstdint>

/// The loops of RowKernels in plain C++. They are compiled into each set of kernels anew, so that the
/// compiler makes of them what that processor can do.
namespace cinedisc::loops {

#define CINEDISC_LOOP [[gnu::always_inline]] inline

template <typename Index>
CINEDISC_LOOP void lookUp(const Index* __restrict indices, const std::uint8_t* __restrict table,
                          std::uint8_t* __restrict into, int count) {
#pragma GCC unroll 8
    for (int x = 0; x < count; ++x) into[x] = table[indices[x]];
}

template <typename Sample>
CINEDISC_LOOP void linear(const Sample* __restrict samples, const LinearRule& rule,
                          std::uint8_t* __restrict into, int count) {
    const LinearRule line = rule;
    for (int x = 0; x < count; ++x) {
        const int level = static_cast<int>(static_cast<float>(samples[x]) * line.slope + line.offset);
        into[x] = static_cast<std::uint8_t>(std::clamp(level, 0, 255) ^ line.flip);
    }
}

CINEDISC_LOOP void invert(std::uint8_t* row, int count) {
    for (int x = 0; x < count; ++x) row[x] = static_cast<std::uint8_t>(~row[x]);
}

CINEDISC_LOOP void splitColors(const std::uint8_t* __restrict pixels, const RowSource::Channels& into,
                               int count) {
    std::uint8_t* __restrict red = into[0];
    std::uint8_t* __restrict green = into[1];
    std::uint8_t* __restrict blue = into[2];
    for (int x = 0; x < count; ++x) {
        red[x] = pixels[3 * x];
        green[x] = pixels[3 * x + 1];
        blue[x] = pixels[3 * x + 2];
    }
}

CINEDISC_LOOP void pick(const std::uint8_t* __restrict row, const AxisTable& columns,
                        std::uint8_t* __restrict into) {
    const std::int32_t* first = columns.first();
    const int count = columns.size();
#pragma GCC unroll 8
    for (int x = 0; x < count; ++x) into[x] = row[first[x]];
}

/// `taps` is a constant where it is small: the inner loop is unrolled.
CINEDISC_LOOP void scaleBy(int taps, const std::uint8_t* __restrict row, const AxisTable& columns,
                           std::uint16_t* __restrict into) {
    const std::int32_t* first = columns.first();
    const std::uint16_t* weights = columns.weights();
    const int count = columns.size();
    for (int x = 0; x < count; ++x) {
        const std::uint8_t* source = row + first[x];
        std::uint32_t sum = 0;
        for (int k = 0; k < taps; ++k) sum += source[k] * std::uint32_t{weights[k]};
        into[x] = static_cast<std::uint16_t>(sum >> 7);
        weights += taps;
    }
}

CINEDISC_LOOP void scale(const std::uint8_t* row, const AxisTable& columns, std::uint16_t* into) {
    switch (columns.taps()) {
        case 2:
            return scaleBy(2, row, columns, into);
        case 3:
            return scaleBy(3, row, columns, into);
        case 4:
            return scaleBy(4, row, columns, into);
        case 5:
            return scaleBy(5, row, columns, into);
        case 6:
            return scaleBy(6, row, columns, into);
        default:
            return scaleBy(columns.taps(), row, columns, into);
    }
}

/// The upper half of a product of 16-bit numbers: one instruction for many pixels on every processor.
CINEDISC_LOOP std::uint16_t upperHalf(std::uint16_t a, std::uint16_t b) {
    return static_cast<std::uint16_t>(std::uint32_t{a} * b >> 16);
}

// A grey times 256, times a weight of 15 bits, leaves 7 bits behind the point in its upper half.
constexpr int pointBits = 7;
constexpr std::uint16_t half = 1 << (pointBits - 1);

/// A number of rows that is known beforehand: they are summed up in one pass.
template <int taps>
CINEDISC_LOOP void mixFew(const std::uint16_t* const* rows, const std::uint16_t* weights,
                          std::uint8_t* __restrict into, int count) {
    std::array<const std::uint16_t*, taps> row;
    std::array<std::uint16_t, taps> weight;
    std::copy_n(rows, taps, row.begin());
    std::copy_n(weights, taps, weight.begin());
    for (int x = 0; x < count; ++x) {
        std::uint16_t sum = half;
#pragma GCC unroll 8
        for (std::size_t k = 0; k < taps; ++k)
            sum = static_cast<std::uint16_t>(sum + upperHalf(row[k][x], weight[k]));
        into[x] = static_cast<std::uint8_t>(sum >> pointBits);
    }
}

/// Each tap rounds down by less than 1/128 of a grey: as long as they are few, that does not show.
CINEDISC_LOOP void mixSome(const std::uint16_t* const* rows, const std::uint16_t* weights, int taps,
                           std::uint8_t* __restrict into, int count) {
    constexpr int block = 512;
    std::array<std::uint16_t, block> sums;
    for (int from = 0; from < count; from += block) {
        const int size = std::min(block, count - from);
        sums.fill(half);
        for (int k = 0; k < taps; ++k) {
            const std::uint16_t* row = rows[k] + from;
            const std::uint16_t weight = weights[k];
            for (int x = 0; x < size; ++x) {
                auto& sum = sums[static_cast<std::size_t>(x)];
                sum = static_cast<std::uint16_t>(sum + upperHalf(row[x], weight));
            }
        }
        for (int x = 0; x < size; ++x) {
            into[from + x] = static_cast<std::uint8_t>(sums[static_cast<std::size_t>(x)] >> pointBits);
        }
    }
}

CINEDISC_LOOP void mixMany(const std::uint16_t* const* rows, const std::uint16_t* weights, int taps,
                           std::uint8_t* __restrict into, int count) {
    for (int x = 0; x < count; ++x) {
        std::uint32_t sum = 1U << 22;
        for (int k = 0; k < taps; ++k) sum += rows[k][x] * std::uint32_t{weights[k]};
        into[x] = static_cast<std::uint8_t>(sum >> 23);
    }
}

CINEDISC_LOOP void mix(const std::uint16_t* const* rows, const std::uint16_t* weights, int taps,
                       std::uint8_t* into, int count) {
    constexpr int few = 32;
    if (taps == 2) return mixFew<2>(rows, weights, into, count);
    if (taps == 3) return mixFew<3>(rows, weights, into, count);
    if (taps == 4) return mixFew<4>(rows, weights, into, count);
    if (taps <= few) return mixSome(rows, weights, taps, into, count);
    mixMany(rows, weights, taps, into, count);
}

CINEDISC_LOOP void packGrey(const std::uint8_t* __restrict grey, std::uint32_t* __restrict into, int count) {
    for (int x = 0; x < count; ++x) into[x] = 0xFF000000U | grey[x] * 0x010101U;
}

CINEDISC_LOOP void packColor(const RowSource::Channels& colors, std::uint32_t* __restrict into, int count) {
    const std::uint8_t* __restrict red = colors[0];
    const std::uint8_t* __restrict green = colors[1];
    const std::uint8_t* __restrict blue = colors[2];
    for (int x = 0; x < count; ++x) {
        into[x] = 0xFF000000U | std::uint32_t{red[x]} << 16 | std::uint32_t{green[x]} << 8 | blue[x];
    }
}

}  // namespace cinedisc::loops
