#pragma once

#include <string>
#include <string_view>

namespace cinedisc::dicom {

bool isAscii(std::string_view text);
bool isValidUtf8(std::string_view text);
/// The text with a replacement character for each byte that belongs to no character.
std::string toValidUtf8(std::string_view text);
void appendUtf8(std::string& to, char32_t character);
/// Latin 1, with the letters that Windows puts among its control characters.
std::string fromLatin1(std::string_view bytes);

}  // namespace cinedisc::dicom
