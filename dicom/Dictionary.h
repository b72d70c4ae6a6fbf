#pragma once

#include "dicom/DataSet.h"

#include <string>

namespace cinedisc::dicom {

/// The data dictionary (PS3.6). It is loaded when first looked into, which takes some ten milliseconds:
/// nothing but the header page may do so.
class Dictionary {
  public:
    struct Entry {
        std::string keyword;
        Vr valueRepresentation = vr("UN");
    };

    /// Keyword and representation of an element; `creator` is the owner of a private one. An unknown element
    /// has an empty keyword.
    Entry find(Tag tag, const std::string& creator) const;
};

}  // namespace cinedisc::dicom
