#pragma once

#include <array>
#include <cstdint>
#include <vector>

namespace cinedisc::discmaker {

/// A Huffman code for the difference categories 0 .. 16 of JPEG Lossless, made to measure for the categories'
/// counts. No code is longer than 16 bits and none is all ones (ITU-T T.81 annex C).
class HuffmanCode {
  public:
    static constexpr int categories = 17;
    using Counts = std::array<std::uint32_t, categories>;

    explicit HuffmanCode(const Counts& counts);

    std::uint32_t code(int category) const { return codes_[static_cast<std::size_t>(category)]; }
    /// Bits of the code, 0 for a category that does not occur.
    int length(int category) const { return lengths_[static_cast<std::size_t>(category)]; }

    /// Number of codes of 1 .. 16 bits (BITS of a DHT segment).
    std::array<std::uint8_t, 16> codesPerLength() const;
    /// Categories in the order of their codes (HUFFVAL of a DHT segment).
    const std::vector<std::uint8_t>& orderedCategories() const { return ordered_; }

  private:
    std::array<std::uint32_t, categories> codes_{};
    std::array<int, categories> lengths_{};
    std::vector<std::uint8_t> ordered_;
};

}  // namespace cinedisc::discmaker
