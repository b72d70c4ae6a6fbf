#pragma once

#include <string>
#include <string_view>

namespace cinedisc::dicom {

/// Names of encodings for the upper half of the code table that no library needs to know.
constexpr const char* latin1 = "latin1";
constexpr const char* halfWidthKana = "JIS_X0201 kana";

/// Decodes text with code extensions (PS3.3 C.12.1.1.2, ISO 2022): escape sequences choose what the lower and
/// the upper half of the code table mean. `upper` is what the upper half means at first, and again after a
/// line end or one of the `delimiters`; then the lower half is ASCII. Always valid UTF-8.
std::string decodeIso2022(std::string_view bytes, const char* upper, std::string_view delimiters);

}  // namespace cinedisc::dicom
