#include "control/pipeline/BitPlane.h"

#include <algorithm>
#include <bit>

namespace cinedisc {

void BitPlane::paint(int y, int from, int to, std::uint8_t value, std::uint8_t* pixels) const {
    const std::uint64_t* const words = row(y);
    for (int start = from - from % wordBits; start < to; start += wordBits) {
        std::uint64_t bits = words[start / wordBits];
        if (start < from) bits &= ~std::uint64_t{0} << (from - start);
        if (to - start < wordBits) bits &= ~(~std::uint64_t{0} << (to - start));
        while (bits != 0) {  // run after run: shutters and text hardly have others
            const int first = std::countr_zero(bits), length = std::countr_one(bits >> first);
            std::fill_n(pixels + (start + first - from), length, value);
            if (first + length == wordBits) break;
            bits &= ~std::uint64_t{0} << (first + length);
        }
    }
}

}  // namespace cinedisc
