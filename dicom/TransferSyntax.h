#pragma once

#include "dicom/Bytes.h"
#include "dicom/PixelFormat.h"

#include <string_view>

namespace cinedisc::dicom {

/// How the elements of a data set are written.
struct Encoding {
    ByteOrder order = ByteOrder::Little;
    bool explicitVr = true;

    friend constexpr bool operator==(const Encoding&, const Encoding&) = default;
};

constexpr Encoding implicitLittle{ByteOrder::Little, false};
constexpr Encoding explicitLittle{ByteOrder::Little, true};

/// A transfer syntax (PS3.5 chapter 10, PS3.6 annex A): how the data set and its pixels are encoded.
struct TransferSyntax {
    /// What the pixels are, beyond their compression.
    enum class Pixels { Native, Encapsulated, DeflatedFrames, Video, Referenced };

    std::string_view uid;
    std::string_view name;  ///< in words for notices
    Compression compression = Compression::None;
    Pixels pixels = Pixels::Native;
    Encoding encoding = explicitLittle;
    bool deflated = false;
    bool bigEndianPixels = false;
    bool isLossless = false;  ///< of compressed pixels: the syntax admits no loss
};

/// The syntax of native pixels that stands for an encoding; implicit little endian for one that none has.
const TransferSyntax& nativeSyntax(const Encoding& encoding);
/// The syntax of a UID, null when it is not known.
const TransferSyntax* findTransferSyntax(std::string_view uid);

}  // namespace cinedisc::dicom
