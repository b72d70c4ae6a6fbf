#include "platform/io/windows/WidePath.h"

#include <windows.h>

namespace cinedisc {

namespace {

/// Leaves the room that some calls want for a file's short name.
constexpr std::size_t longestPlainPath = MAX_PATH - 13;

std::wstring absolute(const std::wstring& path) {
    std::wstring full(GetFullPathNameW(path.c_str(), 0, nullptr, nullptr), L'\0');
    full.resize(GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr));
    return full.empty() ? path : full;
}

}  // namespace

std::wstring widened(std::string_view utf8) {
    const int length = static_cast<int>(utf8.size());
    std::wstring wide(
        static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, utf8.data(), length, nullptr, 0)), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, utf8.data(), length, wide.data(), static_cast<int>(wide.size()));
    return wide;
}

std::string narrowed(std::wstring_view text) {
    const int length = static_cast<int>(text.size());
    const auto convert = [&](char* into, int room) {
        return WideCharToMultiByte(CP_UTF8, 0, text.data(), length, into, room, nullptr, nullptr);
    };
    std::string utf8(static_cast<std::size_t>(convert(nullptr, 0)), '\0');
    convert(utf8.data(), static_cast<int>(utf8.size()));
    return utf8;
}

std::wstring widePath(const std::string& path) {
    const std::wstring plain = widened(path);
    if (plain.size() < longestPlainPath || plain.starts_with(L"\\\\?\\")) return plain;
    const std::wstring full = absolute(plain);
    return full.starts_with(L"\\\\") ? L"\\\\?\\UNC" + full.substr(1) : L"\\\\?\\" + full;
}

}  // namespace cinedisc
