#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace cinedisc {

/// Text in GB18030 by way of the system's GBK, which has its letters of two bytes: for systems without a code
/// page of the whole. Nothing when some of the bytes do not belong to it.
std::optional<std::wstring> decodeGb18030(std::string_view bytes);

}  // namespace cinedisc
