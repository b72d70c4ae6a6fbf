#include "discmaker/encoding/UidFactory.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace cinedisc::discmaker {

namespace {

std::uint64_t digest(std::string_view text, std::uint64_t hash) {
    for (unsigned char letter : text) hash = (hash ^ letter) * 0x100000001B3u;
    // Every bit of the input reaches every bit of the result.
    for (int round = 0; round < 2; ++round) hash = (hash ^ hash >> 32) * 0xD6E8FEB86659FD93u;
    return hash ^ hash >> 32;
}

}  // namespace

std::string uidFor(std::string_view name) {
    std::uint64_t high = digest(name, 0xCBF29CE484222325u);
    std::uint64_t low = digest(name, 0x6C62272E07BB0142u);
    // Version 8 (made in its own way) and variant bits of a UUID.
    high = (high & ~std::uint64_t{0xF000}) | 0x8000;
    low = (low & ~(std::uint64_t{3} << 62)) | std::uint64_t{2} << 62;

    std::array<std::uint32_t, 4> words{
        static_cast<std::uint32_t>(high >> 32), static_cast<std::uint32_t>(high),
        static_cast<std::uint32_t>(low >> 32), static_cast<std::uint32_t>(low)};
    std::string digits;
    while (std::any_of(words.begin(), words.end(), [](auto word) { return word != 0; })) {
        std::uint64_t remainder = 0;
        for (auto& word : words) {
            const std::uint64_t value = remainder << 32 | word;
            word = static_cast<std::uint32_t>(value / 10);
            remainder = value % 10;
        }
        digits += static_cast<char>('0' + remainder);
    }
    std::reverse(digits.begin(), digits.end());
    return "2.25." + digits;
}

}  // namespace cinedisc::discmaker
