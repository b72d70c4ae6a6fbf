#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace cinedisc {

/// Turns bytes in a named encoding (IANA names: "ISO-8859-5", "EUC-JP", "GB18030" …) into UTF-8. What does
/// not belong to the encoding becomes U+FFFD, byte by byte. Nothing when the system does not know the
/// encoding.
std::optional<std::string> decodeText(std::string_view bytes, const char* encoding);

}  // namespace cinedisc
