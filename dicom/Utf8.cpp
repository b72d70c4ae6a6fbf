#include "dicom/Utf8.h"

#include <algorithm>
#include <array>

namespace cinedisc::dicom {

namespace {

/// What bytes 80 to 9F mean in windows-1252; the replacement character where nothing.
constexpr std::array<char16_t, 32> windowsLetters{
    0x20AC, 0xFFFD, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0xFFFD, 0x017D, 0xFFFD, 0xFFFD, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0xFFFD, 0x017E, 0x0178};

unsigned byteAt(std::string_view text, std::size_t at) { return static_cast<unsigned char>(text[at]); }

/// Length of the character that starts here, 0 when it is none (Unicode standard, table 3-7).
std::size_t validLength(std::string_view text, std::size_t at) {
    const unsigned first = byteAt(text, at);
    if (first < 0x80) return 1;
    if (first < 0xC2 || first > 0xF4) return 0;
    const std::size_t length = first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
    if (at + length > text.size()) return 0;
    for (std::size_t i = 1; i < length; ++i)
        if ((byteAt(text, at + i) & 0xC0) != 0x80) return 0;
    const unsigned second = byteAt(text, at + 1);
    const bool isOverlong = (first == 0xE0 && second < 0xA0) || (first == 0xF0 && second < 0x90);
    const bool isSurrogate = first == 0xED && second >= 0xA0;
    const bool isBeyond = first == 0xF4 && second >= 0x90;
    return isOverlong || isSurrogate || isBeyond ? 0 : length;
}

}  // namespace

bool isAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

bool isValidUtf8(std::string_view text) {
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = validLength(text, at);
        if (length == 0) return false;
        at += length;
    }
    return true;
}

std::string toValidUtf8(std::string_view text) {
    std::string valid;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = validLength(text, at);
        if (length == 0) appendUtf8(valid, 0xFFFD);
        valid.append(text.substr(at, length));
        at += std::max<std::size_t>(length, 1);
    }
    return valid;
}

void appendUtf8(std::string& to, char32_t character) {
    const auto part = [&to, character](int shift, unsigned mark, unsigned mask) {
        to += static_cast<char>(mark | (static_cast<unsigned>(character) >> shift & mask));
    };
    if (character < 0x80) return part(0, 0, 0x7F);
    if (character < 0x800) {
        part(6, 0xC0, 0x1F);
    } else if (character < 0x10000) {
        part(12, 0xE0, 0x0F);
        part(6, 0x80, 0x3F);
    } else {
        part(18, 0xF0, 0x07);
        part(12, 0x80, 0x3F);
        part(6, 0x80, 0x3F);
    }
    part(0, 0x80, 0x3F);
}

std::string fromLatin1(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size() * 2);
    for (const char letter : bytes) {
        const auto code = static_cast<unsigned char>(letter);
        appendUtf8(text, code >= 0x80 && code < 0xA0 ? windowsLetters[code - 0x80u] : code);
    }
    return text;
}

}  // namespace cinedisc::dicom
