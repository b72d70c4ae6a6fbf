#pragma once

#include "control/pipeline/AxisTable.h"
#include "control/pipeline/LinearRule.h"
#include "control/pipeline/RowSource.h"

#include <cstdint>

namespace cinedisc {

/// The inner loops of drawing, each over one row and without a branch inside, for one kind of processor. All
/// sets draw the same, bit for bit. Scaled rows hold greys times 256.
struct RowKernels {
    /// Bytes that may be read behind the end of a row that is scaled, and elements that may be written behind
    /// the end of a scaled row.
    static constexpr int slack = 16;

    void (*lookUpNarrow)(const std::uint8_t* indices, const std::uint8_t* table, std::uint8_t* into,
                         int count);
    void (*lookUpWide)(const std::uint16_t* indices, const std::uint8_t* table, std::uint8_t* into,
                       int count);
    /// Greys worked out where a table would be read.
    void (*linearUnsigned8)(const std::uint8_t* samples, const LinearRule& rule, std::uint8_t* into,
                            int count);
    void (*linearSigned8)(const std::int8_t* samples, const LinearRule& rule, std::uint8_t* into, int count);
    void (*linearUnsigned16)(const std::uint16_t* samples, const LinearRule& rule, std::uint8_t* into,
                             int count);
    void (*linearSigned16)(const std::int16_t* samples, const LinearRule& rule, std::uint8_t* into,
                           int count);
    void (*invert)(std::uint8_t* row, int count);
    void (*splitColors)(const std::uint8_t* pixels, const RowSource::Channels& into, int count);

    /// Picks single pixels: a row scaled without smoothing.
    void (*pick)(const std::uint8_t* row, const AxisTable& columns, std::uint8_t* into);
    /// A row of greys scaled to the visible columns.
    void (*scale)(const std::uint8_t* row, const AxisTable& columns, std::uint16_t* into);
    /// The weighted sum of `taps` scaled rows, as greys.
    void (*mix)(const std::uint16_t* const* rows, const std::uint16_t* weights, int taps, std::uint8_t* into,
                int count);

    /// Greys or colours as 32-bit pixels 0xFFRRGGBB.
    void (*packGrey)(const std::uint8_t* grey, std::uint32_t* into, int count);
    void (*packColor)(const RowSource::Channels& colors, std::uint32_t* into, int count);

    void linear(const std::uint8_t* samples, const LinearRule& rule, std::uint8_t* into, int count) const {
        linearUnsigned8(samples, rule, into, count);
    }
    void linear(const std::int8_t* samples, const LinearRule& rule, std::uint8_t* into, int count) const {
        linearSigned8(samples, rule, into, count);
    }
    void linear(const std::uint16_t* samples, const LinearRule& rule, std::uint8_t* into, int count) const {
        linearUnsigned16(samples, rule, into, count);
    }
    void linear(const std::int16_t* samples, const LinearRule& rule, std::uint8_t* into, int count) const {
        linearSigned16(samples, rule, into, count);
    }
    void lookUp(const std::uint8_t* indices, const std::uint8_t* table, std::uint8_t* into, int count) const {
        lookUpNarrow(indices, table, into, count);
    }
    void lookUp(const std::uint16_t* indices, const std::uint8_t* table, std::uint8_t* into,
                int count) const {
        lookUpWide(indices, table, into, count);
    }

    /// The set for any processor.
    static const RowKernels& portable();
    /// The set for x86 with AVX2; null where the processor, or the machine built for, is another.
    static const RowKernels* avx2();
    /// The fastest that this processor has; chosen once.
    static const RowKernels& best();
};

}  // namespace cinedisc
