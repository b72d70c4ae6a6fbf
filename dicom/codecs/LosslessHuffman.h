#pragma once

#include "dicom/codecs/DifferenceGroup.h"

#include <array>
#include <cstdint>
#include <memory>
#include <span>

namespace cinedisc::dicom::codecs {

/// A Huffman table of the lossless process (ITU-T T.81 annex C, H.1.2.2): its symbols are the number of bits,
/// 0 to 16, of the difference that follows. Looked up by the next bits of the stream.
class LosslessHuffman {
  public:
    static constexpr int indexBits = 12;
    static constexpr int longestCode = 16;
    static constexpr int mostExtraBits = 15;  ///< 16 means 32768 and has none
    static constexpr int mostGroupBits = 22;  ///< groups that take more are left to code() and longCode()

    struct Code {
        std::uint8_t length = 0;  ///< 0 when longer than the index
        std::uint8_t extraBits = 0;
    };

    /// Reads BITS and HUFFVAL; null when they describe no prefix code or a symbol above 16.
    static std::unique_ptr<const LosslessHuffman> fromTable(std::span<const std::uint8_t, longestCode> counts,
                                                            std::span<const std::uint8_t> symbols);

    /// As many differences as the next bits are sure to hold.
    DifferenceGroup group(std::uint64_t window) const { return groups_[window >> (64 - indexBits)]; }
    Code code(std::uint64_t window) const { return codes_[window >> (64 - indexBits)]; }
    /// For codes longer than the index; length 0 when no code begins the window.
    Code longCode(std::uint64_t window) const;

  private:
    template <typename Function>
    void forEachCode(int longest, Function&& function) const;
    void makeCodes();
    void makeGroups();

    struct Length {
        std::uint32_t firstCode = 0, count = 0, firstSymbol = 0;
    };
    std::array<Length, longestCode + 1> lengths_{};
    std::array<std::uint8_t, 256> symbols_{};
    std::array<Code, 1 << indexBits> codes_{};
    std::array<DifferenceGroup, 1 << indexBits> groups_{};
};

}  // namespace cinedisc::dicom::codecs
