#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

namespace cinedisc::dicom::codecs {

/// Reads the bits of a JPEG-LS scan up to the next marker: after a byte of ones comes a byte of which the
/// highest bit was stuffed (ITU-T T.87 A.1). Past the end it delivers zeros and remembers.
class JpegLsBits {
  public:
    explicit JpegLsBits(std::span<const std::uint8_t> data)
        : start_(data.data()), next_(start_), end_(start_ + data.size()) {}

    /// Whether more bits were taken than there are.
    bool ranOut() const { return padding_ > count_; }
    /// Bytes read, whole or in part, of those before the marker.
    std::size_t position() const { return static_cast<std::size_t>(next_ - start_); }

    bool bit() { return take(1) != 0; }

    /// The next `bits` bits, at most 32, as a number.
    std::uint32_t take(int bits) {
        if (count_ < bits) refill();
        const auto value = static_cast<std::uint32_t>(window_ >> 1 >> (63 - bits));
        skip(bits);
        return value;
    }

    /// Zeros before the next one, which is taken too; any number above `most` when there are more than that.
    int zeros(int most) {
        int found = 0;
        while (true) {
            refill();
            const int here = std::countl_zero(window_ | 1u << 8);
            if (here < 48) {
                skip(here + 1);
                return found + here;
            }
            found += 48;
            if (found > most) return found;
            skip(48);
        }
    }

  private:
    void skip(int bits) {
        window_ <<= bits;
        count_ -= bits;
    }

    /// Makes sure of 49 bits.
    void refill() {
        if (count_ > 48) return;
        if (end_ - next_ >= 8 && !afterOnes_) {
            std::uint64_t bytes;
            std::memcpy(&bytes, next_, sizeof bytes);
            constexpr std::uint64_t low = 0x0101010101010101, high = 0x8080808080808080;
            const bool hasOnes = ((~bytes - low) & bytes & high) != 0;
            if (!hasOnes) {
#if __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
                bytes = __builtin_bswap64(bytes);
#endif
                window_ |= bytes >> count_;
                const int whole = (63 - count_) >> 3;
                next_ += whole;
                count_ += 8 * whole;
                // Bits of a byte that is only partly in: it is read again.
                window_ &= ~std::uint64_t{0} << (64 - count_);
                return;
            }
        }
        while (count_ <= 56) refillByte();
    }

    void refillByte() {
        if (next_ < end_ && *next_ == 0xFF && (end_ - next_ == 1 || next_[1] >= 0x80)) end_ = next_;
        if (next_ >= end_) {
            count_ += 8;
            padding_ += 8;
            return;
        }
        const std::uint8_t byte = *next_++;
        const int bits = afterOnes_ ? 7 : 8;
        afterOnes_ = byte == 0xFF;
        window_ |= static_cast<std::uint64_t>(byte) << (64 - count_ - bits);
        count_ += bits;
    }

    const std::uint8_t* start_;
    const std::uint8_t* next_;
    const std::uint8_t* end_;
    std::uint64_t window_ = 0;  ///< the very next bit highest, zeros behind the last
    int count_ = 0;
    int padding_ = 0;  ///< how many of the bits so far were beyond the end
    bool afterOnes_ = false;
};

}  // namespace cinedisc::dicom::codecs
