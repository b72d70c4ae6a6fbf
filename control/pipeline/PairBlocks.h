#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace cinedisc {

/// An enlarging axis laid out for processors that shuffle and multiply sixteen bytes at once: each half of a
/// block makes eight results from at most sixteen neighbouring source positions.
class PairBlocks {
  public:
    struct Block {
        std::array<std::int32_t, 2> from;      ///< first source position of each half
        std::array<std::uint8_t, 32> order;    ///< two positions a result, counted from its half's first
        std::array<std::uint8_t, 32> weights;  ///< of those two; they add up to 256
    };

    PairBlocks() = default;
    /// `first` is the first of the two source positions of each result, ascending by at most one from result
    /// to result; `weights` are two a result, in 128ths of their unit of 1/256.
    PairBlocks(std::span<const std::int32_t> first, std::span<const std::uint16_t> weights);

    bool empty() const { return blocks_.empty(); }
    std::span<const Block> blocks() const { return blocks_; }

  private:
    std::vector<Block> blocks_;
};

}  // namespace cinedisc
