#pragma once

#include "dicom/codecs/LosslessHuffman.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace cinedisc::dicom::codecs {

/// Reads differences from one segment of entropy-coded data. Does not watch the segment's end while decoding:
/// the bytes must go on for 4 bytes a difference plus 8, and the caller asks afterwards whether the end was
/// passed.
class LosslessBits {
  public:
    explicit LosslessBits(const std::uint8_t* from) : start_(from), next_(from) {}

    /// Bits taken since the start.
    std::size_t position() const {
        return static_cast<std::size_t>(next_ - start_) * 8 - static_cast<std::size_t>(count_);
    }

    /// Reads one difference, modulo 65536; false when no code fits.
    bool one(const LosslessHuffman& table, std::uint16_t& difference) {
        refill();
        LosslessHuffman::Code code = table.code(window_);
        if (code.length == 0) {
            code = table.longCode(window_);
            if (code.length == 0) return false;
        }
        take(code.length);
        if (code.extraBits > LosslessHuffman::mostExtraBits) {
            difference = 32768;
            return true;
        }
        const auto extra = static_cast<std::uint32_t>(window_ >> 1 >> (63 - code.extraBits));
        difference = static_cast<std::uint16_t>(extended(extra, code.extraBits));
        take(code.extraBits);
        return true;
    }

    /// Reads `count` differences; false when no code fits.
    bool many(const LosslessHuffman& table, std::uint16_t* differences, std::size_t count) {
        std::uint16_t* const end = differences + count;
        while (end - differences >= 2) {
            refill();
            const LosslessHuffman::Pair pair = table.pair(window_);
            if (pair.count == 0) [[unlikely]] {
                if (!one(table, *differences++)) return false;
                continue;
            }
            const int second = secondOf(pair);
            differences[0] = static_cast<std::uint16_t>(pair.first);
            differences[1] = 0;
            differences[pair.secondAt] = static_cast<std::uint16_t>(second);
            differences += pair.count;
            take(pair.bits);
        }
        return differences == end || one(table, *differences);
    }

    /// Reads `count` differences and adds each to the sample before it, starting from `before`; false when no
    /// code fits.
    template <typename Sample>
    bool running(const LosslessHuffman& table, Sample* samples, std::size_t count, unsigned before) {
        Sample* const end = samples + count;
        unsigned sum = before;
        while (end - samples >= 2) {
            refill();
            const LosslessHuffman::Pair pair = table.pair(window_);
            if (pair.count == 0) [[unlikely]] {
                std::uint16_t difference = 0;
                if (!one(table, difference)) return false;
                sum += difference;
                *samples++ = static_cast<Sample>(sum);
                continue;
            }
            const auto first = sum + static_cast<unsigned>(static_cast<int>(pair.first));
            sum = first + static_cast<unsigned>(secondOf(pair));
            samples[0] = static_cast<Sample>(first);
            samples[pair.count - 1] = static_cast<Sample>(sum);
            samples += pair.count;
            take(pair.bits);
        }
        if (samples == end) return true;
        std::uint16_t difference = 0;
        if (!one(table, difference)) return false;
        *samples = static_cast<Sample>(sum + difference);
        return true;
    }

  private:
    void refill() {
        std::uint64_t bytes;
        std::memcpy(&bytes, next_, sizeof bytes);
        window_ |= bigEndian(bytes) >> count_;
        next_ += (63 - count_) >> 3;
        count_ |= 56;
    }

    void take(int bits) {
        window_ <<= bits;
        count_ -= bits;
    }

    int secondOf(const LosslessHuffman::Pair& pair) const {
        const auto extra =
            static_cast<std::uint32_t>(window_ << (pair.bits - pair.extraBits) >> 1 >> (63 - pair.extraBits));
        return extended(extra, pair.extraBits);
    }

    static std::uint64_t bigEndian(std::uint64_t value) {
#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
        return value;
#else
        return __builtin_bswap64(value);
#endif
    }

    const std::uint8_t* start_;
    const std::uint8_t* next_;
    std::uint64_t window_ = 0;  ///< the next bits, the very next one highest
    int count_ = 0;             ///< how many of them are counted as read
};

}  // namespace cinedisc::dicom::codecs
