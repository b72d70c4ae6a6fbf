#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>

namespace cinedisc::dicom::codecs {

/// A Huffman table of the lossless process (ITU-T T.81 annex C, H.1.2.2): its symbols are the number of bits,
/// 0 to 16, of the difference that follows. Looked up by the next bits of the stream.
class LosslessHuffman {
  public:
    static constexpr int indexBits = 12;
    static constexpr int longestCode = 16;
    static constexpr int mostExtraBits = 15;  ///< 16 means 32768 and has none

    /// What the next bits hold: up to two differences. The first lies wholly within the index; the second's
    /// code does, its extra bits may lie beyond.
    struct Pair {
        std::uint8_t bits = 0;       ///< of all differences together, 0 when the first code is not resolved
        std::uint8_t extraBits = 0;  ///< the last that many of `bits` are the second difference
        std::uint8_t secondAt = 0;   ///< where the second difference goes: 0 when there is no first
        std::uint8_t count = 0;      ///< how many differences
        std::int16_t first = 0;
    };

    struct Code {
        std::uint8_t length = 0;  ///< 0 when longer than the index
        std::uint8_t extraBits = 0;
    };

    /// Reads BITS and HUFFVAL; empty when they describe no prefix code or a symbol above 16.
    static std::optional<LosslessHuffman> fromTable(std::span<const std::uint8_t, longestCode> counts,
                                                    std::span<const std::uint8_t> symbols);

    const Pair& pair(std::uint64_t window) const { return pairs_[window >> (64 - indexBits)]; }
    Code code(std::uint64_t window) const { return codes_[window >> (64 - indexBits)]; }
    /// For codes longer than the index; length 0 when no code begins the window.
    Code longCode(std::uint64_t window) const;

  private:
    void makePairs();

    struct Length {
        std::uint32_t firstCode = 0, count = 0, firstSymbol = 0;
    };
    std::array<Length, longestCode + 1> lengths_{};
    std::array<std::uint8_t, 256> symbols_{};
    std::array<Code, 1 << indexBits> codes_{};
    std::array<Pair, 1 << indexBits> pairs_{};
};

/// The value of a difference from its extra bits (ITU-T T.81 F.1.2.1.1): the lower half of the range is
/// negative.
inline int extended(std::uint32_t extra, int bits) {
    const int mask = (1 << bits) - 1;
    const int value = static_cast<int>(extra);
    return value - (value <= mask >> 1 ? mask : 0);
}

}  // namespace cinedisc::dicom::codecs
