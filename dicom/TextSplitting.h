#pragma once

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

namespace cinedisc::dicom {

/// The bytes as letters.
inline std::string_view textOf(std::span<const std::byte> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// Without the blanks, NULs and line ends around it: fields are padded with all of them.
inline std::string_view trimmed(std::string_view text) {
    constexpr std::string_view padding(" \0\t\r\n", 5);
    const auto from = text.find_first_not_of(padding);
    if (from == std::string_view::npos) return {};
    return text.substr(from, text.find_last_not_of(padding) - from + 1);
}

/// The values between backslashes; one empty value when there is no text.
inline std::vector<std::string_view> splitValues(std::string_view text) {
    std::vector<std::string_view> parts;
    for (;;) {
        const auto end = text.find('\\');
        parts.push_back(text.substr(0, end));
        if (end == std::string_view::npos) return parts;
        text.remove_prefix(end + 1);
    }
}

}  // namespace cinedisc::dicom
