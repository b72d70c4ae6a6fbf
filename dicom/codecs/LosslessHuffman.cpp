#include "dicom/codecs/LosslessHuffman.h"

#include <algorithm>

namespace cinedisc::dicom::codecs {

std::optional<LosslessHuffman> LosslessHuffman::fromTable(std::span<const std::uint8_t, longestCode> counts,
                                                          std::span<const std::uint8_t> symbols) {
    LosslessHuffman table;
    std::uint32_t code = 0, symbol = 0;
    for (int length = 1; length <= longestCode; ++length, code <<= 1) {
        const std::uint32_t count = counts[static_cast<std::size_t>(length - 1)];
        if (code + count > 1u << length || symbol + count > symbols.size() || symbol + count > 256)
            return std::nullopt;
        table.lengths_[static_cast<std::size_t>(length)] = {code, count, symbol};
        for (std::uint32_t i = 0; i < count; ++i, ++code, ++symbol) {
            if (symbols[symbol] > 16) return std::nullopt;
            table.symbols_[symbol] = symbols[symbol];
            if (length > indexBits) continue;
            const auto first = table.codes_.begin() + (code << (indexBits - length));
            std::fill_n(first, 1u << (indexBits - length),
                        Code{static_cast<std::uint8_t>(length), symbols[symbol]});
        }
    }
    if (symbol == 0) return std::nullopt;
    table.makePairs();
    return table;
}

void LosslessHuffman::makePairs() {
    constexpr std::uint32_t indexMask = (1u << indexBits) - 1;
    for (std::uint32_t index = 0; index <= indexMask; ++index) {
        const Code first = codes_[index];
        if (first.length == 0 || first.extraBits > mostExtraBits) continue;
        Pair& pair = pairs_[index];
        pair.count = 1;
        const int used = first.length + first.extraBits;
        pair.bits = static_cast<std::uint8_t>(used);
        if (used > indexBits) {
            pair.extraBits = first.extraBits;
            continue;
        }
        const std::uint32_t extra = index >> (indexBits - used) & ((1u << first.extraBits) - 1);
        pair.first = static_cast<std::int16_t>(extended(extra, first.extraBits));
        pair.secondAt = 1;
        const Code second = codes_[index << used & indexMask];
        if (second.length == 0 || used + second.length > indexBits || second.extraBits > mostExtraBits)
            continue;
        pair.count = 2;
        pair.bits = static_cast<std::uint8_t>(used + second.length + second.extraBits);
        pair.extraBits = second.extraBits;
    }
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
