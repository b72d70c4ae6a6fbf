#include "control/pipeline/RowKernels.h"

#include <algorithm>
#include <array>

namespace cinedisc {

namespace {

template <typename Index>
void lookUp(const Index* indices, const std::uint8_t* table, std::uint8_t* into, int count) {
    for (int x = 0; x < count; ++x) into[x] = table[indices[x]];
}

/// Linear interpolation: two neighbours with 8-bit weights.
void scaleByTwo(const std::uint8_t* row, const AxisTable& columns, std::uint16_t* into) {
    const std::int32_t* first = columns.first();
    const std::uint16_t* weights = columns.weights();
    const int count = columns.size();
    for (int x = 0; x < count; ++x) {
        const std::uint8_t* pair = row + first[x];
        const std::uint32_t sum =
            pair[0] * std::uint32_t{weights[2 * x]} + pair[1] * std::uint32_t{weights[2 * x + 1]};
        into[x] = static_cast<std::uint16_t>(sum >> 7);
    }
}

void mixTwo(const std::uint16_t* a, const std::uint16_t* b, std::uint32_t weightA, std::uint32_t weightB,
            std::uint8_t* into, int count) {
    for (int x = 0; x < count; ++x) {
        into[x] = static_cast<std::uint8_t>((a[x] * weightA + b[x] * weightB + (1U << 22)) >> 23);
    }
}

void mixMany(const std::uint16_t* const* rows, const std::uint16_t* weights, int taps, std::uint8_t* into,
             int count) {
    constexpr int block = 256;
    std::array<std::uint32_t, block> sums;
    for (int from = 0; from < count; from += block) {
        const int size = std::min(block, count - from);
        sums.fill(1U << 22);
        for (int k = 0; k < taps; ++k) {
            const std::uint16_t* row = rows[k] + from;
            const std::uint32_t weight = weights[k];
            for (int x = 0; x < size; ++x) sums[static_cast<std::size_t>(x)] += row[x] * weight;
        }
        for (int x = 0; x < size; ++x)
            into[from + x] = static_cast<std::uint8_t>(sums[static_cast<std::size_t>(x)] >> 23);
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
    const std::int32_t* first = columns.first();
    const int count = columns.size();
    const int taps = columns.taps();
    if (taps == 1) {
        for (int x = 0; x < count; ++x) into[x] = static_cast<std::uint16_t>(row[first[x]] << 8);
        return;
    }
    if (taps == 2) return scaleByTwo(row, columns, into);
    const std::uint16_t* weights = columns.weights();
    for (int x = 0; x < count; ++x) {
        std::uint32_t sum = 0;
        for (int k = 0; k < taps; ++k) sum += row[first[x] + k] * std::uint32_t{weights[k]};
        into[x] = static_cast<std::uint16_t>(sum >> 7);
        weights += taps;
    }
}

void mixRows(const std::uint16_t* const* rows, const std::uint16_t* weights, int taps, std::uint8_t* into,
             int count) {
    if (taps == 2) return mixTwo(rows[0], rows[1], weights[0], weights[1], into, count);
    mixMany(rows, weights, taps, into, count);
}

void packGrey(const std::uint8_t* grey, std::uint32_t* into, int count) {
    for (int x = 0; x < count; ++x) into[x] = 0xFF000000U | grey[x] * 0x010101U;
}

void packColor(const RowSource::Channels& colors, std::uint32_t* into, int count) {
    for (int x = 0; x < count; ++x) {
        into[x] =
            0xFF000000U | std::uint32_t{colors[0][x]} << 16 | std::uint32_t{colors[1][x]} << 8 | colors[2][x];
    }
}

}  // namespace cinedisc
