#pragma once

#include <string>
#include <string_view>

namespace cinedisc::discmaker {

// Text from DICOM headers on its way into the catalogue.

/// The text as UTF-8 that XML can hold: broken sequences and characters that XML forbids become U+FFFD, runs
/// of white space and control characters one blank; none is left at the ends. At most 256 characters: no
/// header value is longer by right.
std::string oneLine(std::string_view text);
/// Latin, Greek and Cyrillic capitals made small, and every letter in its composed form.
std::string lowered(std::string_view text);

}  // namespace cinedisc::discmaker
