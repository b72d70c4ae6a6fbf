#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace cinedisc {

/// A slightly reducing axis, at most four source positions a result, laid out for processors that fetch and
/// multiply eight groups of four bytes at once. The first and third weight of a group stand in one number,
/// the lower half first, and the second and fourth in another.
class QuadBlocks {
  public:
    struct Block {
        std::array<std::int32_t, 16> from;
        std::array<std::uint32_t, 16> even;
        std::array<std::uint32_t, 16> odd;
    };

    QuadBlocks() = default;
    /// `weights` are `taps` a result. Stays empty where they cannot be laid out so.
    QuadBlocks(std::span<const std::int32_t> first, std::span<const std::uint16_t> weights, int taps);

    bool empty() const { return blocks_.empty(); }
    std::span<const Block> blocks() const { return blocks_; }

  private:
    std::vector<Block> blocks_;
};

}  // namespace cinedisc
