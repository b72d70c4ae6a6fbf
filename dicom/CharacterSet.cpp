#include "dicom/CharacterSet.h"

#include "dicom/Iso2022.h"
#include "dicom/TextSplitting.h"
#include "dicom/Utf8.h"
#include "platform/io/TextEncoding.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace cinedisc::dicom {

namespace {

struct Term {
    std::string_view number;  ///< the registration number, or the name where there is none
    const char* encoding;     ///< of the upper half or, without code extensions, of everything
    bool isWhole = false;
};

// PS3.3 tables C.12-2 to C.12-5. The multi-byte sets of the third table only come in with an escape sequence.
constexpr auto terms = std::to_array<Term>({
    {"6", latin1},         {"100", latin1},        {"101", "ISO-8859-2"},   {"109", "ISO-8859-3"},
    {"110", "ISO-8859-4"}, {"144", "ISO-8859-5"},  {"127", "ISO-8859-6"},   {"126", "ISO-8859-7"},
    {"138", "ISO-8859-8"}, {"148", "ISO-8859-9"},  {"203", "ISO-8859-15"},  {"166", "TIS-620"},
    {"13", halfWidthKana}, {"87", latin1},         {"159", latin1},         {"149", "EUC-KR"},
    {"58", "GB2312"},      {"192", "UTF-8", true}, {"UTF8", "UTF-8", true}, {"GB18030", "GB18030", true},
    {"GBK", "GBK", true},
});

/// "ISO 2022 IR 87", "ISO_IR 87", "ISO-IR87", "ISO IR 87" and the like are all "87".
std::string normalized(std::string_view term) {
    std::string plain;
    for (const char c : trimmed(term))
        if (std::isalnum(static_cast<unsigned char>(c)))
            plain += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    for (const std::string_view prefix : {"ISO2022IR", "ISOIR", "ISO2022", "IR"})
        if (plain.starts_with(prefix)) return plain.substr(prefix.size());
    return plain;
}

const Term* findTerm(std::string_view name) {
    const auto at =
        std::find_if(terms.begin(), terms.end(), [name](const Term& row) { return row.number == name; });
    return at == terms.end() ? nullptr : &*at;
}

}  // namespace

CharacterSet::CharacterSet(const std::vector<std::string>& names) {
    if (names.empty()) return;
    const Term* term = findTerm(normalized(names.front()));
    const bool isDefault = normalized(names.front()).empty();
    if (!term && !(isDefault && names.size() > 1)) return;
    scheme_ = term && term->isWhole ? Scheme::Whole : Scheme::Iso2022;
    encoding_ = term ? term->encoding : latin1;
}

std::string CharacterSet::decode(std::string_view bytes, Resets resets) const {
    const bool hasEscapes = bytes.find('\x1B') != std::string_view::npos;
    if (!hasEscapes && isAscii(bytes)) return std::string(bytes);
    if (scheme_ != Scheme::Iso2022 && !hasEscapes && isValidUtf8(bytes)) {
        const bool isMeant = scheme_ == Scheme::Undeclared || std::string_view(encoding_) == "UTF-8";
        if (isMeant) return std::string(bytes);
    }
    if (scheme_ == Scheme::Whole) {
        // The C library lets UTF-8 beyond Unicode's last character pass.
        if (const auto text = decodeText(bytes, encoding_)) return toValidUtf8(*text);
        return fromLatin1(bytes);
    }
    return decodeIso2022(bytes, encoding_ ? encoding_ : latin1,
                         resets == Resets::AtNameParts ? std::string_view("\\^=") : std::string_view("\\"));
}

}  // namespace cinedisc::dicom
