#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace cinedisc::dicom {

/// Decodes text in the specific character set of a data set (PS3.3 C.12.1.1.2), with or without code
/// extensions. Names that are misspelt in the usual ways are understood; text that does not keep to its
/// character set is never refused.
class CharacterSet {
  public:
    /// The default repertoire; text beyond it is taken for UTF-8 when it is that, and for Latin 1 otherwise.
    CharacterSet() = default;
    /// The values of (0008,0005).
    explicit CharacterSet(const std::vector<std::string>& terms);

    /// Where code extensions fall back to the first character set, beyond line ends.
    enum class Resets { AtValues, AtNameParts };
    /// Always valid UTF-8.
    std::string decode(std::string_view bytes, Resets resets = Resets::AtValues) const;

  private:
    enum class Scheme { Undeclared, Iso2022, Whole };

    Scheme scheme_ = Scheme::Undeclared;
    const char* encoding_ = nullptr;  ///< of the upper half, or of all bytes
};

}  // namespace cinedisc::dicom
