#pragma once

#include "dicom/FileHeader.h"
#include "dicom/FrameSource.h"
#include "dicom/PixelFormat.h"

#include <memory>
#include <optional>

namespace cinedisc::dicom {

/// The picture of a file: what its pixels are and where its frames come from.
struct Picture {
    PixelFormat format;
    Compression compression = Compression::None;
    std::unique_ptr<FrameSource> frames;  ///< null when there is an error
    int frameCount = 0;
    int announcedFrameCount = 0;
    bool isEncapsulated = false;
    bool hasDeflatedFrames = false;
    std::optional<DecodeError> error;
};

/// Finds the picture of a file, or the reason why it shows none. What the pixel data are is taken from
/// themselves where the transfer syntax does not agree with them.
Picture openPicture(const FileHeader& header);

}  // namespace cinedisc::dicom
