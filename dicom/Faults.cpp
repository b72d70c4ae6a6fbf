#include "dicom/Faults.h"

#include "dicom/Tags.h"

#include <string>

namespace cinedisc::dicom::faults {

using Kind = DecodeError::Kind;

DecodeError noPicture(const DataSet& header) {
    constexpr std::string_view mediaDirectory = "1.2.840.10008.1.3.10";
    constexpr Tag mediaStorageSOPClassUID{0x0002, 0x0002};
    std::string message = "This file holds no picture";
    if (header.string(mediaStorageSOPClassUID) == mediaDirectory)
        message = "This file is the directory of a disc, it holds no picture";
    else if (!header.items(tags::IconImageSequence).empty())
        message = "This file holds no picture, only an icon";
    return {Kind::NoPicture, message, tags::PixelData, 0, -1};
}

DecodeError cutOff(int complete, int announced, Tag tag, std::uint64_t offset) {
    std::string message = "The file is cut off: ";
    if (announced <= 1)
        message += "its picture is not complete";
    else
        message += std::to_string(complete) + " of " + std::to_string(announced) + " frames can be shown";
    return {Kind::CutOff, message, tag, offset, -1};
}

DecodeError unreadableCompression(std::string_view name) {
    return {Kind::Unsupported,
            "The picture is compressed in a way this viewer cannot read (" + std::string(name) + ")",
            tags::TransferSyntaxUID, 0, -1};
}

DecodeError pictureElsewhere() {
    return {Kind::Unsupported, "The picture is not in this file but on a server that it refers to (JPIP)",
            tags::TransferSyntaxUID, 0, -1};
}

DecodeError damaged(Tag tag, std::uint64_t offset, int frame) {
    return {Kind::Broken, frame < 0 ? "The file is damaged" : "This frame is damaged", tag, offset, frame};
}

DecodeError cannotRead(Tag tag, std::uint64_t offset) {
    return {Kind::CannotRead, "The file cannot be read any further, the disc may be damaged", tag, offset,
            -1};
}

DecodeError tooLarge() { return {Kind::TooLarge, "The picture is too large to be shown", tags::Rows, 0, -1}; }

DecodeError undescribedPicture(Tag tag) {
    return {Kind::Broken, "The file does not say how its picture is to be read", tag, 0, -1};
}

DecodeError unsupportedPixels(std::string_view what) {
    return {Kind::Unsupported, "This viewer cannot show pictures with " + std::string(what), {}, 0, -1};
}

}  // namespace cinedisc::dicom::faults
