#pragma once

#include "dicom/DataSet.h"
#include "dicom/DecodeError.h"

#include <cstdint>
#include <string_view>

/// What is reported in place of a picture.
namespace cinedisc::dicom::faults {

/// The object has no pixels of its own: it may still hold an icon, or be the directory of a disc.
DecodeError noPicture(const DataSet& header);
/// The file ends before `announced` frames: `complete` of them are there.
DecodeError cutOff(int complete, int announced, Tag tag = {}, std::uint64_t offset = 0);
DecodeError unreadableCompression(std::string_view name);
/// The pixels lie on a server (JPIP).
DecodeError pictureElsewhere();
/// The bytes of one frame are not as they must be.
DecodeError damaged(Tag tag, std::uint64_t offset, int frame);
/// The disc does not give the bytes.
DecodeError cannotRead(Tag tag, std::uint64_t offset);
DecodeError tooLarge();
/// Rows, columns or the like are missing or make no sense.
DecodeError undescribedPicture(Tag tag);
DecodeError unsupportedSamples(std::int64_t samplesPerPixel);

}  // namespace cinedisc::dicom::faults
