#include "dicom/ElementText.h"

#include "dicom/Tags.h"
#include "dicom/TextSplitting.h"
#include "dicom/Utf8.h"
#include "dicom/ValueNumbers.h"
#include "dicom/ValueRepresentation.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace cinedisc::dicom {

namespace {

constexpr std::size_t all = SIZE_MAX;
constexpr std::size_t mostLetters = 1024;
constexpr std::size_t mostNumbers = 16;
constexpr std::size_t mostBytes = 16;
constexpr const char* ellipsis = "\xE2\x80\xA6";

std::string hex(unsigned value, int digits) {
    std::string text;
    for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4)
        text += "0123456789ABCDEF"[value >> shift & 0xF];
    return text;
}

std::string decodedText(const Element& element, Vr kind, const CharacterSet& characterSet) {
    const auto resets = kind == vr("PN") ? CharacterSet::Resets::AtNameParts : CharacterSet::Resets::AtValues;
    const auto bytes = textOf(element.value);
    // Padding is cut off behind decoding: the second byte of a character may look like it.
    const std::string text = usesCharacterSet(kind) ? characterSet.decode(bytes, resets)
                             : isValidUtf8(bytes)   ? std::string(bytes)
                                                    : fromLatin1(bytes);
    return std::string(trimmed(text));
}

template <typename Number>
std::string joined(const std::vector<Number>& numbers, std::size_t most) {
    std::string text;
    for (std::size_t i = 0; i < std::min(numbers.size(), most); ++i) {
        std::array<char, 32> digits{};
        const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), numbers[i]).ptr;
        if (i > 0) text += '\\';
        text.append(digits.data(), end);
    }
    if (numbers.size() > most)
        text += std::string("\\") + ellipsis + " (" + std::to_string(numbers.size()) + " values)";
    return text;
}

std::string attributeTags(const Element& element, std::size_t most) {
    std::string text;
    for (const std::int64_t tag : integersIn(element.value, vr("AT"))) {
        if (text.size() >= most) return text + ellipsis;
        const auto bits = static_cast<unsigned>(tag);
        text += (text.empty() ? "(" : "\\(") + hex(bits >> 16, 4) + "," + hex(bits & 0xFFFF, 4) + ")";
    }
    return text;
}

std::string numbersText(const Element& element, Vr kind, std::size_t most) {
    if (kind == vr("AT")) return attributeTags(element, most == all ? all : mostLetters);
    if (isRealVr(kind)) {
        std::vector<double> numbers = decimalsIn(element.value, kind);
        if (unitSize(kind) == 8) return joined(numbers, most);
        return joined(std::vector<float>(numbers.begin(), numbers.end()), most);
    }
    return joined(integersIn(element.value, kind), most);
}

/// On one line, at most so many bytes of it.
std::string singleLine(std::string text, std::size_t most) {
    std::replace_if(
        text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; },
        ' ');
    if (text.size() <= most) return text;
    std::size_t end = most;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
    return text.substr(0, end) + ellipsis;
}

std::string bytesText(const Element& element, std::size_t most) {
    std::string text;
    for (std::size_t i = 0; i < std::min(element.value.size(), most); ++i)
        text += (i > 0 ? " " : "") + hex(std::to_integer<unsigned>(element.value[i]), 2);
    if (element.value.size() > most)
        text += std::string(" ") + ellipsis + " (" + std::to_string(element.value.size()) + " bytes)";
    return text;
}

bool isPrintable(std::string_view text) {
    return !text.empty() &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c < 0x7F; });
}

}  // namespace

std::string elementText(const Element& element, const CharacterSet& characterSet) {
    const Vr kind = effectiveVr(element);
    if (isText(kind)) return decodedText(element, kind, characterSet);
    const bool isNumeric = kind == vr("AT") || isRealVr(kind) || (isWholeNumberVr(kind) && kind != vr("OB"));
    if (isNumeric) return numbersText(element, kind, all);
    return isPrintable(trimmed(textOf(element.value))) ? std::string(trimmed(textOf(element.value)))
                                                       : std::string();
}

std::string describeValue(const Element& element, Vr kind, const CharacterSet& characterSet,
                          LongValues longValues) {
    const auto most = [longValues](std::size_t cut) { return longValues == LongValues::Cut ? cut : all; };
    if (kind == vr("SQ") || !element.items.empty())
        return std::to_string(element.items.size()) + (element.items.size() == 1 ? " item" : " items");
    if (!element.held || tags::isPixelData(element.tag)) return std::to_string(element.length) + " bytes";
    if (isText(kind)) return singleLine(decodedText(element, kind, characterSet), most(mostLetters));
    const bool isBytes = kind == vr("OB") || kind == vr("UN") || !isKnownVr(kind);
    if (!isBytes) return numbersText(element, kind, most(mostNumbers));
    const auto text = trimmed(textOf(element.value));
    return kind != vr("OB") && isPrintable(text) ? singleLine(std::string(text), most(mostLetters))
                                                 : bytesText(element, most(mostBytes));
}

}  // namespace cinedisc::dicom
