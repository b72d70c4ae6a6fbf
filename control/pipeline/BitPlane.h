#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace cinedisc {

/// One bit for each pixel of a picture, all 0 at first. Rows begin with a new word, so that whole words of a
/// row can be looked at.
class BitPlane {
  public:
    BitPlane() = default;
    BitPlane(int rows, int columns)
        : wordsInRow_(wordsFor(columns)), words_(wordsInRow_ * static_cast<std::size_t>(rows)) {}

    bool empty() const { return words_.empty(); }
    /// What a plane of this size takes.
    static std::size_t byteSize(int rows, int columns) {
        return wordsFor(columns) * static_cast<std::size_t>(rows) * sizeof(std::uint64_t);
    }
    std::size_t byteSize() const { return words_.size() * sizeof(words_[0]); }
    bool at(int y, int x) const {
        return row(y)[static_cast<std::size_t>(x) / wordBits] >> (x % wordBits) & 1;
    }
    void set(int y, int x) {
        words_[static_cast<std::size_t>(y) * wordsInRow_ + static_cast<std::size_t>(x) / wordBits] |=
            std::uint64_t{1} << (x % wordBits);
    }
    /// Writes `value` into pixels[x - from] wherever the bit of a column x of [from, to) is set.
    void paint(int y, int from, int to, std::uint8_t value, std::uint8_t* pixels) const;

  private:
    static constexpr int wordBits = 64;

    static std::size_t wordsFor(int columns) {
        return (static_cast<std::size_t>(columns) + wordBits - 1) / wordBits;
    }
    const std::uint64_t* row(int y) const {
        return words_.data() + static_cast<std::size_t>(y) * wordsInRow_;
    }

    std::size_t wordsInRow_ = 0;
    std::vector<std::uint64_t> words_;
};

}  // namespace cinedisc
