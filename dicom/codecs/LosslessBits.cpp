#include "dicom/codecs/LosslessBits.h"

namespace cinedisc::dicom::codecs {
namespace {

/// Writes the differences themselves. Up to two places after the last difference are written to as well.
struct Differences {
    std::uint16_t* to;

    void put(DifferenceGroup group, std::uint64_t window) {
        to[0] = static_cast<std::uint16_t>(group.first());
        to[1] = static_cast<std::uint16_t>(group.second());
        to[group.lastAt()] = static_cast<std::uint16_t>(group.last(window));
        to += group.lastIndex() + 1;
    }
    void put(std::uint16_t difference) { *to++ = difference; }
};

/// Writes samples, each the sum of the differences so far, and like Differences two more.
template <typename Sample>
struct RunningSum {
    Sample* to;
    unsigned sum;

    void put(DifferenceGroup group, std::uint64_t window) {
        const auto first = sum + static_cast<unsigned>(group.first());
        const auto second = first + static_cast<unsigned>(group.second());
        const std::size_t last = group.lastIndex();
        sum = second + group.last(window);
        to[0] = static_cast<Sample>(first);
        to[1] = static_cast<Sample>(second);
        to[last] = static_cast<Sample>(sum);
        to += last + 1;
    }
    void put(std::uint16_t difference) {
        sum += difference;
        *to++ = static_cast<Sample>(sum);
    }
};

/// Writes sums, each of a difference and half of the sum before.
template <typename Sample>
struct HalvingSum {
    Sample* to;
    int sum;

    void put(DifferenceGroup group, std::uint64_t window) {
        const std::size_t last = group.lastIndex();
        const int value = static_cast<int>(group.last(window));
        const int first = (sum >> 1) + (group.first() + (last == 0 ? value : 0));
        const int second = (first >> 1) + (group.second() + (last == 1 ? value : 0));
        const int third = (second >> 1) + value;
        sum = last == 0 ? first : last == 1 ? second : third;
        to[0] = static_cast<Sample>(first);
        to[1] = static_cast<Sample>(second);
        to[last] = static_cast<Sample>(sum);
        to += last + 1;
    }
    void put(std::uint16_t difference) {
        sum = (sum >> 1) + static_cast<std::int16_t>(difference);
        *to++ = static_cast<Sample>(sum);
    }
};

}  // namespace

#if defined(__GNUC__)
__attribute__((noinline))
#endif
LosslessBits::Single
LosslessBits::readOne(const LosslessHuffman& table, BitWindow window) {
    window.refill();
    LosslessHuffman::Code code = table.code(window.bits);
    if (code.length == 0) code = table.longCode(window.bits);
    window.take(code.length);
    Single single{window, 32768, code.length > 0};
    if (code.extraBits <= LosslessHuffman::mostExtraBits) {
        const auto extra = static_cast<std::uint32_t>(window.bits >> 1 >> (63 - code.extraBits));
        single.difference = static_cast<std::uint16_t>(extended(extra, (1u << code.extraBits) - 1));
        single.after.take(code.extraBits);
    }
    return single;
}

/// Two groups are read with one refill, which is done while the look-up of the second is under way: what it
/// adds is not looked at before the group after. Near the end, where groups could hold more than is wanted,
/// one difference is read at a time.
template <typename Output>
bool LosslessBits::read(const LosslessHuffman& table, Output& output, std::size_t count) {
    static_assert(2 * LosslessHuffman::mostGroupBits + LosslessHuffman::indexBits <= 56);
    BitWindow window = window_;
    Output out = output;
    const auto* const end = out.to + count;
    const auto* const lastStart = count >= 6 ? end - 6 : out.to - 1;
    bool good = true;
    window.refill();
    while (out.to <= lastStart) {
        DifferenceGroup group = table.group(window.bits);
        if (group.isKnown()) [[likely]] {
            out.put(group, window.bits);
            window.take(group.bitsModulo64());
            group = table.group(window.bits);
            window.refill();
            if (group.isKnown()) [[likely]] {
                out.put(group, window.bits);
                window.take(group.bitsModulo64());
                continue;
            }
        }
        const Single single = readOne(table, window);
        if (!single.good) return false;
        window = single.after;
        window.refill();
        out.put(single.difference);
    }
    while (out.to < end && good) {
        const Single single = readOne(table, window);
        good = single.good;
        window = single.after;
        out.put(single.difference);
    }
    window_ = window;
    output = out;
    return good;
}

bool LosslessBits::many(const LosslessHuffman& table, std::uint16_t* differences, std::size_t count) {
    Differences output{differences};
    return read(table, output, count);
}

template <typename Sample>
bool LosslessBits::running(const LosslessHuffman& table, Sample* samples, std::size_t count,
                           unsigned before) {
    RunningSum<Sample> output{samples, before};
    return read(table, output, count);
}

template <typename Sample>
bool LosslessBits::halving(const LosslessHuffman& table, Sample* samples, std::size_t count) {
    HalvingSum<Sample> output{samples, 0};
    return read(table, output, count);
}

template bool LosslessBits::halving(const LosslessHuffman&, std::uint8_t*, std::size_t);
template bool LosslessBits::halving(const LosslessHuffman&, std::uint16_t*, std::size_t);

template bool LosslessBits::running(const LosslessHuffman&, std::uint8_t*, std::size_t, unsigned);
template bool LosslessBits::running(const LosslessHuffman&, std::uint16_t*, std::size_t, unsigned);

}  // namespace cinedisc::dicom::codecs
