#include "platform/io/windows/Gb18030.h"

#include <cstddef>
#include <vector>
#include <windows.h>

namespace cinedisc {

namespace {

constexpr UINT gbk = 936;
constexpr wchar_t firstLetter = 0x80, firstSurrogate = 0xD800, firstPrivate = 0xE000, lastLetter = 0xFFFF;

/// GBK keeps these as letters of private use, from `first` on; "=" stays one.
struct LaterLetters {
    wchar_t first;
    std::wstring_view letters;
};
constexpr LaterLetters namedSince[] = {
    {0xE76C, L"€"},
    {0xE7C8, L"ǹ"},
    {0xE7E7, L"〾⿰⿱⿲⿳⿴⿵⿶⿷⿸⿹⿺⿻"},
    {0xE815,
     L"⺁===⺄㑳㑇⺈⺋=㖞㘚㘎⺌⺗㥮㤘=㧏㧟㩳㧐==㭎㱮㳠⺧==⺪䁖䅟⺮䌷⺳⺶⺷=䎱䎬⺻䏝䓖䙡䙌="
     L"䜣䜩䝼䞍⻊䥇䥺䥽䦂䦃䦅䦆䦟䦛䦷䦶==䲣䲟"
     L"䲠䲡䱷䲢䴓䴔䴕䴖䴗䴘䴙䶮"},
};

bool isIn(unsigned char byte, unsigned char first, unsigned char last) {
    return byte >= first && byte <= last;
}

/// 0 when the two bytes are none.
wchar_t letterOfTwo(unsigned char first, unsigned char second) {
    const char bytes[] = {static_cast<char>(first), static_cast<char>(second)};
    wchar_t letter = 0;
    if (MultiByteToWideChar(gbk, MB_ERR_INVALID_CHARS, bytes, 2, &letter, 1) != 1) return 0;
    for (const auto& [from, letters] : namedSince)
        if (letter >= from && letter < from + letters.size() && letters[letter - from] != L'=')
            return letters[letter - from];
    return letter;
}

/// What four bytes write below U+10000: what two cannot, in the order of Unicode.
std::vector<wchar_t> lettersOfFour() {
    std::vector<bool> isOfTwo(lastLetter + 1);
    for (int first = 0x81; first <= 0xFE; ++first)
        for (int second = 0x40; second <= 0xFE; ++second)
            isOfTwo[letterOfTwo(static_cast<unsigned char>(first), static_cast<unsigned char>(second))] =
                true;
    std::vector<wchar_t> letters;
    for (unsigned letter = firstLetter; letter <= lastLetter; ++letter)
        if (!isOfTwo[letter] && (letter < firstSurrogate || letter >= firstPrivate))
            letters.push_back(static_cast<wchar_t>(letter));
    return letters;
}

/// "" when the four bytes are none.
std::wstring letterOfFour(std::string_view bytes) {
    constexpr unsigned otherPlanes = 189000, otherLetters = 0x100000, lettersOfHalf = 0x400;
    static const std::vector<wchar_t> letters = lettersOfFour();
    unsigned place = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const auto byte = static_cast<unsigned char>(bytes[i]);
        const bool isDigit = i % 2 == 1;
        if (isDigit ? !isIn(byte, '0', '9') : !isIn(byte, 0x81, 0xFE)) return {};
        place = isDigit ? place * 10 + byte - '0' : place * 126 + byte - 0x81;
    }
    if (place < letters.size()) return {letters[place]};
    if (place < otherPlanes || place >= otherPlanes + otherLetters) return {};
    place -= otherPlanes;
    return {static_cast<wchar_t>(firstSurrogate + place / lettersOfHalf),
            static_cast<wchar_t>(firstSurrogate + lettersOfHalf + place % lettersOfHalf)};
}

}  // namespace

std::optional<std::wstring> decodeGb18030(std::string_view bytes) {
    std::wstring text;
    while (!bytes.empty()) {
        const auto first = static_cast<unsigned char>(bytes[0]);
        const auto second = static_cast<unsigned char>(bytes.size() > 1 ? bytes[1] : 0);
        std::size_t length = 1;
        if (first < firstLetter) {
            text += static_cast<wchar_t>(first);
        } else if (isIn(second, '0', '9') && bytes.size() >= 4) {
            const std::wstring letter = letterOfFour(bytes.substr(0, length = 4));
            if (letter.empty()) return std::nullopt;
            text += letter;
        } else {
            const wchar_t letter = letterOfTwo(first, second);
            if (!letter) return std::nullopt;
            text += letter;
            length = 2;
        }
        bytes.remove_prefix(length);
    }
    return text;
}

}  // namespace cinedisc
