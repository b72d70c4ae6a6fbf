#pragma once

#include "dicom/DecodeError.h"

#include <string>

namespace cinedisc::dicom::codecs {

/// The frame's bytes contradict the header or themselves; `detail` says in a few words how.
DecodeError broken(const std::string& detail);
/// The frame's bytes end before its last pixel.
DecodeError cutOff();
/// A legal encoding that is not decoded; `name` is what it is called.
DecodeError unsupported(const std::string& name);
/// Sizes beyond what the program is prepared to hold.
DecodeError tooLarge();

}  // namespace cinedisc::dicom::codecs
