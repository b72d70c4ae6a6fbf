#include "platform/io/TextEncoding.h"

#include "platform/io/windows/Gb18030.h"
#include "platform/io/windows/WidePath.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <utility>
#include <windows.h>

namespace cinedisc {

namespace {

constexpr std::string_view replacement = "\xEF\xBF\xBD";
constexpr UINT eucJapanese = 20932;
constexpr UINT gb18030 = 54936;

using Named = std::pair<std::string_view, UINT>;

// Names without their signs, "ISO-8859-5" as "ISO88595". Where the exact code page is not installed
// everywhere, the one that holds it and more.
constexpr auto codePages = std::to_array<Named>({
    {"UTF8", CP_UTF8},      {"USASCII", 20127},   {"ASCII", 20127},     {"GB18030", gb18030},
    {"GBK", 936},           {"GB2312", 936},      {"EUCCN", 936},       {"BIG5", 950},
    {"EUCTW", 20000},       {"SHIFTJIS", 932},    {"SJIS", 932},        {"WINDOWS31J", 932},
    {"EUCJP", eucJapanese}, {"ISO2022JP", 50220}, {"EUCKR", 949},       {"KSC56011987", 949},
    {"UHC", 949},           {"ISO2022KR", 50225}, {"TIS620", 874},      {"ISO885911", 874},
    {"KOI8R", 20866},       {"KOI8U", 21866},     {"MACINTOSH", 10000},
});

std::string withoutSigns(std::string_view name) {
    std::string plain;
    for (const char letter : name)
        if (std::isalnum(static_cast<unsigned char>(letter)))
            plain += static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
    return plain;
}

/// 0 when the system has no such encoding.
UINT codePageOf(std::string_view encoding) {
    const std::string name = withoutSigns(encoding);
    const auto known =
        std::find_if(codePages.begin(), codePages.end(), [&](const Named& row) { return row.first == name; });
    UINT page = known == codePages.end() ? 0 : known->second;
    // Families that are numbered as their code pages are.
    constexpr auto families =
        std::to_array<Named>({{"ISO8859", 28590}, {"WINDOWS", 0}, {"IBM", 0}, {"CP", 0}});
    for (const auto& [prefix, first] : families) {
        const std::string_view digits = std::string_view(name).substr(std::min(prefix.size(), name.size()));
        if (page || !name.starts_with(prefix) || digits.empty() || digits.size() > 5) continue;
        for (const char digit : digits) page = page * 10 + static_cast<UINT>(digit - '0');
        const bool isNumber = digits.find_first_not_of("0123456789") == std::string_view::npos;
        page = isNumber ? page + first : 0;
    }
    return page && (page == gb18030 || IsValidCodePage(page)) ? page : 0;
}

/// What `bytes` mean as a whole, or nothing when they do not belong to the code page.
std::optional<std::string> converted(std::string_view bytes, UINT page) {
    if (page == gb18030 && !IsValidCodePage(page)) {
        const auto text = decodeGb18030(bytes);
        return text ? std::optional(narrowed(*text)) : std::nullopt;
    }
    const bool isStateful = page >= 50220 && page <= 50229;
    const DWORD flags = isStateful ? 0 : MB_ERR_INVALID_CHARS;
    const int length = static_cast<int>(bytes.size());
    const int letters = MultiByteToWideChar(page, flags, bytes.data(), length, nullptr, 0);
    if (letters <= 0) return std::nullopt;
    std::wstring text(static_cast<std::size_t>(letters), L'\0');
    MultiByteToWideChar(page, flags, bytes.data(), length, text.data(), letters);
    return narrowed(text);
}

/// The code page writes the three bytes of a supplementary kanji as two, the second in the lower half.
std::string withShortSupplement(std::string_view bytes) {
    std::string shortened;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const auto lead = static_cast<unsigned char>(bytes[i]);
        if (lead == 0x8F && i + 2 < bytes.size()) {
            shortened += bytes[i + 1];
            shortened += static_cast<char>(bytes[i + 2] & 0x7F);
            i += 2;
        } else {
            shortened += bytes[i];
            if (lead >= 0x80 && i + 1 < bytes.size()) shortened += bytes[++i];
        }
    }
    return shortened;
}

}  // namespace

std::optional<std::string> decodeText(std::string_view bytes, const char* encoding) {
    const UINT page = codePageOf(encoding);
    if (!page) return std::nullopt;
    if (bytes.empty()) return std::string();
    const std::string text = page == eucJapanese ? withShortSupplement(bytes) : std::string(bytes);
    if (auto whole = converted(text, page)) return whole;
    // Something in it does not belong: letter by letter then, of as many bytes as the encodings have.
    constexpr std::size_t longestLetter = 4;
    std::string out;
    for (std::string_view rest = text; !rest.empty();) {
        std::size_t length = 1;
        std::optional<std::string> letter;
        for (; length <= std::min(longestLetter, rest.size()); ++length)
            if ((letter = converted(rest.substr(0, length), page))) break;
        out += letter ? *letter : std::string(replacement);
        rest.remove_prefix(letter ? length : 1);
    }
    return out;
}

}  // namespace cinedisc
