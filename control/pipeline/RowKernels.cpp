#include "control/pipeline/RowKernels.h"

#include <algorithm>
#include <array>

namespace cinedisc {

namespace {

template <typename Index>
void lookUp(const Index* indices, const std::uint8_t* table, std::uint8_t* into, int count) {
    for (int x = 0; x < count; ++x) into[x] = table[indices[x]];
}

/// A fixed number of neighbours: the inner loop is unrolled.
template <int taps>
void scaleBy(const std::uint8_t* row, const AxisTable& columns, std::uint16_t* into) {
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

void scaleByMany(const std::uint8_t* row, const AxisTable& columns, std::uint16_t* into) {
    const std::int32_t* first = columns.first();
    const std::uint16_t* weights = columns.weights();
    const int count = columns.size();
    const int taps = columns.taps();
    for (int x = 0; x < count; ++x) {
        std::uint32_t sum = 0;
        for (int k = 0; k < taps; ++k) sum += row[first[x] + k] * std::uint32_t{weights[k]};
        into[x] = static_cast<std::uint16_t>(sum >> 7);
        weights += taps;
    }
}

/// The upper half of a product of 16-bit numbers: one instruction for many pixels on every processor.
std::uint16_t upperHalf(std::uint16_t a, std::uint16_t b) {
    return static_cast<std::uint16_t>(std::uint32_t{a} * b >> 16);
}

// A grey times 256, times a weight of 15 bits, leaves 7 bits behind the point in its upper half.
constexpr int pointBits = 7;
constexpr std::uint16_t half = 1 << (pointBits - 1);

void mixTwo(const std::uint16_t* a, const std::uint16_t* b, std::uint16_t weightA, std::uint16_t weightB,
            std::uint8_t* into, int count) {
    for (int x = 0; x < count; ++x) {
        const auto sum =
            static_cast<std::uint16_t>(upperHalf(a[x], weightA) + upperHalf(b[x], weightB) + half);
        into[x] = static_cast<std::uint8_t>(sum >> pointBits);
    }
}

/// Each tap rounds down by less than 1/128 of a grey: as long as they are few, that does not show.
void mixSome(const std::uint16_t* const* rows, const std::uint16_t* weights, int taps, std::uint8_t* into,
             int count) {
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

void mixMany(const std::uint16_t* const* rows, const std::uint16_t* weights, int taps, std::uint8_t* into,
             int count) {
    for (int x = 0; x < count; ++x) {
        std::uint32_t sum = 1U << 22;
        for (int k = 0; k < taps; ++k) sum += rows[k][x] * std::uint32_t{weights[k]};
        into[x] = static_cast<std::uint8_t>(sum >> 23);
    }
}

}  // namespace

void lookUpRow(const std::uint8_t* indices, const std::uint8_t* table, std::uint8_t* into, int count) {
    lookUp(indices, table, into, count);
}

void lookUpRow(const std::uint16_t* indices, const std::uint8_t* table, std::uint8_t* into, int count) {
    lookUp(indices, table, into, count);
}

void coverRow(const std::uint8_t* keep, const std::uint8_t* paint, std::uint8_t* row, int count) {
    for (int x = 0; x < count; ++x) row[x] = static_cast<std::uint8_t>((row[x] & keep[x]) | paint[x]);
}

void invertRow(std::uint8_t* row, int count) {
    for (int x = 0; x < count; ++x) row[x] = static_cast<std::uint8_t>(~row[x]);
}

void splitColors(const std::uint8_t* pixels, const RowSource::Channels& into, int count) {
    for (int x = 0; x < count; ++x) {
        into[0][x] = pixels[3 * x];
        into[1][x] = pixels[3 * x + 1];
        into[2][x] = pixels[3 * x + 2];
    }
}

void pickRow(const std::uint8_t* row, const AxisTable& columns, std::uint8_t* into) {
    const std::int32_t* first = columns.first();
    const int count = columns.size();
    for (int x = 0; x < count; ++x) into[x] = row[first[x]];
}

void scaleRow(const std::uint8_t* row, const AxisTable& columns, std::uint16_t* into) {
    switch (columns.taps()) {
        case 2:
            return scaleBy<2>(row, columns, into);
        case 3:
            return scaleBy<3>(row, columns, into);
        case 4:
            return scaleBy<4>(row, columns, into);
        case 5:
            return scaleBy<5>(row, columns, into);
        case 6:
            return scaleBy<6>(row, columns, into);
        default:
            return scaleByMany(row, columns, into);
    }
}

void mixRows(const std::uint16_t* const* rows, const std::uint16_t* weights, int taps, std::uint8_t* into,
             int count) {
    constexpr int few = 32;
    if (taps == 2) return mixTwo(rows[0], rows[1], weights[0], weights[1], into, count);
    if (taps <= few) return mixSome(rows, weights, taps, into, count);
    mixMany(rows, weights, taps, into, count);
}

void packGrey(const std::uint8_t* grey, std::uint32_t* into, int count) {
    for (int x = 0; x < count; ++x) {
        const std::uint32_t level = grey[x];
        into[x] = 0xFF000000U | level << 16 | level << 8 | level;
    }
}

void packColor(const RowSource::Channels& colors, std::uint32_t* into, int count) {
    for (int x = 0; x < count; ++x) {
        into[x] =
            0xFF000000U | std::uint32_t{colors[0][x]} << 16 | std::uint32_t{colors[1][x]} << 8 | colors[2][x];
    }
}

}  // namespace cinedisc
