#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace cinedisc::dicom::codecs {

/// The value of a difference from its extra bits (ITU-T T.81 F.1.2.1.1): the lower half of the range is
/// negative. `mask` has as many ones as there are extra bits.
constexpr int extended(std::uint32_t extra, std::uint32_t mask) {
    return static_cast<int>(extra - (extra <= mask >> 1 ? mask : 0));
}

/// One to three differences that follow each other in a stream of the lossless process. All but the last are
/// known; of the last one the number of extra bits is, which may not have been looked at yet. Packed into 32
/// bits and read without branches, because one load and little arithmetic a group decide the speed.
class DifferenceGroup {
  public:
    constexpr DifferenceGroup() = default;
    /// Begins a group with a known difference that took `bits` bits.
    static constexpr DifferenceGroup withFirst(int bits, int value) {
        return DifferenceGroup(static_cast<std::uint32_t>(value) << 22 | static_cast<std::uint32_t>(bits));
    }
    /// A second, known difference, to be added to a group that has a first.
    static constexpr DifferenceGroup second(int bits, int value) {
        return DifferenceGroup((static_cast<std::uint32_t>(value) & 63) << 16 | oneMore |
                               static_cast<std::uint32_t>(bits));
    }
    /// A last difference, to be added to a group. `bits` counts the extra bits too.
    static constexpr DifferenceGroup last(int bits, int extraBits) {
        return DifferenceGroup(oneMore | static_cast<std::uint32_t>(extraBits << 8 | bits));
    }
    /// A group of one difference that reaches beyond what was looked at; it has at least one extra bit.
    static constexpr DifferenceGroup onlyLast(int bits, int extraBits) {
        return DifferenceGroup(static_cast<std::uint32_t>(extraBits << 8 | bits));
    }
    static constexpr bool fitsFirst(int extraBits) { return extraBits <= 9; }
    static constexpr bool fitsSecond(int extraBits) { return extraBits <= 5; }

    constexpr DifferenceGroup operator+(DifferenceGroup more) const {
        return DifferenceGroup(packed_ + more.packed_);
    }

    /// False when not even one difference is known.
    constexpr bool isKnown() const { return (packed_ & 0xFF) != 0; }
    /// Bits of all differences together, in the lowest 6 bits; what is above them is of no meaning.
    unsigned bitsModulo64() const { return packed_; }
    /// Number of differences less one.
    std::size_t lastIndex() const { return shapes.lastIndex[shape()]; }
    /// Where the last difference is written, after first() and second() have been at 0 and 1: beyond the
    /// group's end when the group consists of first() alone.
    std::size_t lastAt() const { return shapes.lastAt[shape()]; }

    /// The first difference, 0 when it is the last as well and not known yet.
    int first() const { return static_cast<std::int32_t>(packed_) >> 22; }
    /// The second of three differences, otherwise 0.
    int second() const { return static_cast<std::int32_t>(packed_ << 10) >> 26; }
    /// The last difference out of the `window` that the group was found in, 0 when it is known.
    unsigned last(std::uint64_t window) const {
        const unsigned mask = shapes.extraMask[shape()];
        const unsigned extra =
            static_cast<unsigned>(std::rotl(window, static_cast<int>(packed_ & 63))) & mask;
        // No branch: the sign of noise cannot be predicted.
        return extra - (mask & -static_cast<unsigned>(extra < shapes.leastPositive[shape()]));
    }

  private:
    static constexpr std::uint32_t oneMore = 1u << 12;

    explicit constexpr DifferenceGroup(std::uint32_t packed) : packed_(packed) {}

    /// Extra bits of the last difference, and 16 times the number of differences less one.
    std::size_t shape() const { return packed_ >> 8 & 0xFF; }

    struct Shapes {
        std::array<std::uint32_t, 48> extraMask{}, leastPositive{}, lastIndex{}, lastAt{};
    };
    static constexpr Shapes makeShapes() {
        Shapes result;
        for (std::size_t shape = 0; shape < 48; ++shape) {
            const std::uint32_t count = static_cast<std::uint32_t>(shape / 16), extraBits = shape % 16;
            result.extraMask[shape] = (1u << extraBits) - 1;
            result.leastPositive[shape] = (result.extraMask[shape] >> 1) + 1;
            result.lastIndex[shape] = count;
            result.lastAt[shape] = shape == 0 ? 1 : count;
        }
        return result;
    }
    static const Shapes shapes;

    /// From the lowest bit: 8 for the bits taken, 8 for the shape, 6 for the second difference, 10 for the
    /// first.
    std::uint32_t packed_ = 0;
};

inline constexpr DifferenceGroup::Shapes DifferenceGroup::shapes = DifferenceGroup::makeShapes();

}  // namespace cinedisc::dicom::codecs
