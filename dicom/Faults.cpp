#include "dicom/Faults.h"

#include "dicom/Tags.h"

#include <string>

namespace cinedisc::dicom::faults {

using Kind = DecodeError::Kind;
using Reason = DecodeError::Reason;

DecodeError noPicture(const DataSet& header) {
    constexpr std::string_view mediaDirectory = "1.2.840.10008.1.3.10";
    Reason reason = Reason::None;
    if (header.string(tags::MediaStorageSOPClassUID) == mediaDirectory)
        reason = Reason::MediaDirectory;
    else if (!header.items(tags::IconImageSequence).empty())
        reason = Reason::IconOnly;
    return {Kind::NoPicture, reason, {}, tags::PixelData};
}

DecodeError cutOff(int complete, int announced, Tag tag, std::uint64_t offset) {
    return {Kind::CutOff, Reason::Frames, {}, tag, offset, -1, complete, announced};
}

DecodeError unreadableCompression(std::string_view name) {
    return {Kind::Unsupported, Reason::Compression, std::string(name), tags::TransferSyntaxUID};
}

DecodeError pictureElsewhere() { return {Kind::Unsupported, Reason::Elsewhere, {}, tags::TransferSyntaxUID}; }

DecodeError damaged(Tag tag, std::uint64_t offset, int frame) {
    return {Kind::Broken, Reason::None, {}, tag, offset, frame};
}

DecodeError cannotRead(Tag tag, std::uint64_t offset) {
    return {Kind::CannotRead, Reason::StoppedReading, {}, tag, offset};
}

DecodeError tooLarge() { return {Kind::TooLarge, Reason::None, {}, tags::Rows}; }

DecodeError undescribedPicture(Tag tag) { return {Kind::Broken, Reason::Undescribed, {}, tag}; }

DecodeError unsupportedSamples(std::int64_t samplesPerPixel) {
    return {Kind::Unsupported, Reason::SamplesPerPixel, std::to_string(samplesPerPixel),
            tags::SamplesPerPixel};
}

}  // namespace cinedisc::dicom::faults
