#include "dicom/codecs/LosslessHuffman.h"

#include <algorithm>

namespace cinedisc::dicom::codecs {
std::unique_ptr<const LosslessHuffman> LosslessHuffman::fromTable(
    std::span<const std::uint8_t, longestCode> counts, std::span<const std::uint8_t> symbols) {
    auto table = std::make_unique<LosslessHuffman>();
    std::uint32_t code = 0, symbol = 0;
    for (std::size_t length = 1; length <= longestCode; ++length, code <<= 1) {
        const std::uint32_t count = counts[length - 1];
        if (code + count > 1u << length || symbol + count > symbols.size() || symbol + count > 256)
            return nullptr;
        table->lengths_[length] = {code, count, symbol};
        code += count;
        symbol += count;
    }
    if (symbol == 0 || *std::max_element(symbols.begin(), symbols.begin() + symbol) > 16) return nullptr;
    std::copy_n(symbols.begin(), symbol, table->symbols_.begin());
    table->makeCodes();
    table->makeGroups();
    return table;
}

/// Calls with code, its length and its symbol for all codes of up to `longest` bits.
template <typename Function>
void LosslessHuffman::forEachCode(int longest, Function&& function) const {
    for (int length = 1; length <= longest; ++length) {
        const Length& codes = lengths_[static_cast<std::size_t>(length)];
        for (std::uint32_t i = 0; i < codes.count; ++i)
            function(codes.firstCode + i, length, symbols_[codes.firstSymbol + i]);
    }
}

void LosslessHuffman::makeCodes() {
    forEachCode(indexBits, [&](std::uint32_t code, int length, std::uint8_t symbol) {
        std::fill_n(codes_.begin() + (code << (indexBits - length)), 1u << (indexBits - length),
                    Code{static_cast<std::uint8_t>(length), symbol});
    });
}

namespace {

/// What may follow when some bits of the index are left, for every number of bits left: `room` bits have
/// their 2 to the power of `room` entries from that position on.
class Continuations {
  public:
    /// The entries for `room` bits, made by `make` at the first call.
    template <typename Make>
    const DifferenceGroup* of(int room, Make&& make) {
        DifferenceGroup* const entries = entries_.data() + (std::size_t{1} << room);
        if (!(made_ >> room & 1)) {
            made_ |= 1u << room;
            make(std::span(entries, std::size_t{1} << room));
        }
        return entries;
    }

  private:
    std::array<DifferenceGroup, 1 << LosslessHuffman::indexBits> entries_;
    unsigned made_ = 0;
};

}  // namespace

void LosslessHuffman::makeGroups() {
    Continuations lasts, pairs;
    const auto lastsIn = [&](int room) {
        return lasts.of(room, [&](std::span<DifferenceGroup> entries) {
            forEachCode(room, [&](std::uint32_t code, int length, int extraBits) {
                if (extraBits <= mostExtraBits && indexBits - room + length + extraBits <= mostGroupBits)
                    std::fill_n(entries.begin() + (code << (room - length)), 1u << (room - length),
                                DifferenceGroup::last(length + extraBits, extraBits));
            });
        });
    };
    const auto pairsIn = [&](int room) {
        return pairs.of(room, [&](std::span<DifferenceGroup> entries) {
            std::copy_n(lastsIn(room), entries.size(), entries.begin());
            forEachCode(room, [&](std::uint32_t code, int length, int extraBits) {
                const int left = room - length - extraBits;
                if (left < 0 || !DifferenceGroup::fitsSecond(extraBits)) return;
                DifferenceGroup* entry = entries.data() + (code << (room - length));
                const DifferenceGroup* const last = lastsIn(left);
                const std::uint32_t mask = (1u << extraBits) - 1, block = 1u << left;
                for (std::uint32_t extra = 0; extra <= mask; ++extra, entry += block) {
                    const auto second = DifferenceGroup::second(length + extraBits, extended(extra, mask));
                    for (std::uint32_t k = 0; k < block; ++k)
                        entry[k] = last[k].isKnown() ? second + last[k] : entry[k];
                }
            });
        });
    };

    forEachCode(indexBits, [&](std::uint32_t code, int length, int extraBits) {
        if (length + extraBits > mostGroupBits || extraBits > mostExtraBits) return;
        DifferenceGroup* entry = groups_.data() + (code << (indexBits - length));
        const int left = indexBits - length - extraBits;
        if (left < 0 || !DifferenceGroup::fitsFirst(extraBits)) {
            std::fill_n(entry, 1u << (indexBits - length),
                        DifferenceGroup::onlyLast(length + extraBits, extraBits));
            return;
        }
        const DifferenceGroup* const pair = pairsIn(left);
        const std::uint32_t mask = (1u << extraBits) - 1, block = 1u << left;
        for (std::uint32_t extra = 0; extra <= mask; ++extra, entry += block) {
            const auto first = DifferenceGroup::withFirst(length + extraBits, extended(extra, mask));
            for (std::uint32_t k = 0; k < block; ++k) entry[k] = first + pair[k];
        }
    });
}

LosslessHuffman::Code LosslessHuffman::longCode(std::uint64_t window) const {
    for (int length = indexBits + 1; length <= longestCode; ++length) {
        const Length& candidates = lengths_[static_cast<std::size_t>(length)];
        const auto code = static_cast<std::uint32_t>(window >> (64 - length));
        if (code - candidates.firstCode < candidates.count)
            return {static_cast<std::uint8_t>(length),
                    symbols_[candidates.firstSymbol + code - candidates.firstCode]};
    }
    return {};
}

}  // namespace cinedisc::dicom::codecs
