#pragma once

#include "dicom/codecs/LosslessHuffman.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace cinedisc::dicom::codecs {

/// The next bits of a stream, the very next one highest. Small enough to live in registers: functions take a
/// copy and store it back, because what is behind a pointer may change with every sample written.
struct BitWindow {
    const std::uint8_t* next = nullptr;
    std::uint64_t bits = 0;
    unsigned count = 0;  ///< how many of them are taken into account, modulo 64

    /// Makes sure of 56 bits. Reads 8 bytes.
    void refill() {
        std::uint64_t bytes;
        std::memcpy(&bytes, next, sizeof bytes);
#if __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
        bytes = __builtin_bswap64(bytes);
#endif
        bits |= bytes >> (count & 63);
        next += ~count >> 3 & 7;
        count |= 56;
    }

    /// Only the lowest 6 bits of the number matter.
    void take(unsigned taken) {
        bits <<= taken & 63;
        count -= taken;
    }
};

/// Reads differences from one segment of entropy-coded data. Does not watch the segment's end while decoding:
/// the bytes must go on for 4 bytes a difference plus 8, and the caller asks afterwards whether the end was
/// passed.
class LosslessBits {
  public:
    explicit LosslessBits(const std::uint8_t* from) : start_(from), window_{from} {}

    /// Bits taken since the start.
    std::size_t position() const {
        return static_cast<std::size_t>(window_.next - start_) * 8 - (window_.count & 63);
    }

    /// Reads one difference, modulo 65536; false when no code fits.
    bool one(const LosslessHuffman& table, std::uint16_t& difference) {
        const Single single = readOne(table, window_);
        window_ = single.after;
        difference = single.difference;
        return single.good;
    }

    /// Reads `count` differences; false when no code fits.
    bool many(const LosslessHuffman& table, std::uint16_t* differences, std::size_t count);

    /// Reads `count` differences and adds each to the sample before it, starting from `before`; false when no
    /// code fits.
    template <typename Sample>
    bool running(const LosslessHuffman& table, Sample* samples, std::size_t count, unsigned before);

    /// Reads `count` differences and adds to each half of the sum before it, rounded down, starting from 0;
    /// false when no code fits.
    template <typename Sample>
    bool halving(const LosslessHuffman& table, Sample* samples, std::size_t count);

  private:
    struct Single {
        BitWindow after;
        std::uint16_t difference = 0;
        bool good = false;
    };
    static Single readOne(const LosslessHuffman& table, BitWindow window);

    template <typename Output>
    bool read(const LosslessHuffman& table, Output& output, std::size_t count);

    const std::uint8_t* start_;
    BitWindow window_;
};

}  // namespace cinedisc::dicom::codecs
