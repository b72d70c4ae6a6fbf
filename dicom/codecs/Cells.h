#pragma once

#include "dicom/Frame.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <type_traits>
#include <variant>

namespace cinedisc::dicom::codecs {

/// Room for `count` whole numbers of 8, 16 or 32 bits, all zero.
inline Frame::Samples makeCells(int bits, bool isSigned, std::size_t count) {
    if (bits <= 8) {
        if (isSigned) return std::vector<std::int8_t>(count);
        return std::vector<std::uint8_t>(count);
    }
    if (bits <= 16) {
        if (isSigned) return std::vector<std::int16_t>(count);
        return std::vector<std::uint16_t>(count);
    }
    if (isSigned) return std::vector<std::int32_t>(count);
    return std::vector<std::uint32_t>(count);
}

/// Width of one cell in bits.
inline int cellBits(const Frame::Samples& cells) {
    return std::visit([](const auto& v) { return static_cast<int>(sizeof(v[0]) * 8); }, cells);
}

/// The cells as bit patterns of their width; empty when they are of another width or no whole numbers.
template <typename Unsigned>
std::span<Unsigned> patterns(Frame::Samples& cells) {
    static_assert(std::is_unsigned_v<Unsigned>);
    using Signed = std::make_signed_t<Unsigned>;
    if (auto* v = std::get_if<std::vector<Unsigned>>(&cells)) return *v;
    if (auto* v = std::get_if<std::vector<Signed>>(&cells))
        return {reinterpret_cast<Unsigned*>(v->data()), v->size()};
    return {};
}

/// Calls `function` with the span of patterns of whatever width the cells have.
template <typename Function>
decltype(auto) visitPatterns(Frame::Samples& cells, Function&& function) {
    switch (cellBits(cells)) {
        case 8:
            return function(patterns<std::uint8_t>(cells));
        case 16:
            return function(patterns<std::uint16_t>(cells));
        default:
            return function(patterns<std::uint32_t>(cells));
    }
}

/// All cells or'ed together.
template <typename Unsigned>
std::uint32_t orOf(std::span<const Unsigned> cells) {
    Unsigned all = 0;
    for (const Unsigned cell : cells) all |= cell;
    return all;
}

}  // namespace cinedisc::dicom::codecs
