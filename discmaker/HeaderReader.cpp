#include "discmaker/HeaderReader.h"

#include "dicom/DicomFile.h"
#include "discmaker/encoding/Attribute.h"

#include <algorithm>

namespace cinedisc::discmaker {

namespace {

constexpr dicom::Tag mediaStorageSopClass{0x0002, 0x0002};
constexpr dicom::Tag directoryRecords{0x0004, 0x1220};

bool isDirectory(const dicom::DataSet& header) {
    return header.string(mediaStorageSopClass) == "1.2.840.10008.1.3.10" ||
           header.find(directoryRecords) != nullptr;
}

bool holdsData(const dicom::DataSet& header) {
    return std::any_of(header.elements.begin(), header.elements.end(),
                       [](const auto& element) { return element.tag.group > 0x0002; });
}

}  // namespace

std::variant<ImageRecord, Skipped> readRecord(const std::filesystem::path& path) {
    const auto opened = dicom::DicomFile::open(path.string());
    if (!opened.ok()) {
        const bool isNone = opened.error().kind == dicom::DecodeError::Kind::NotDicom;
        return Skipped{isNone ? Skipped::Reason::NotDicom : Skipped::Reason::Unreadable,
                       opened.error().message};
    }
    const auto& file = *opened.value();
    const auto& header = file.header();
    if (isDirectory(header)) return Skipped{Skipped::Reason::Directory, "lists the files of a medium"};

    if (!holdsData(header))
        return Skipped{Skipped::Reason::Unreadable, "the file ends before its data begin"};

    ImageRecord record;
    record.patientName = file.text(attribute::patientName.tag);
    record.patientId = file.text(attribute::patientId.tag);
    record.studyUid = header.string(attribute::studyInstanceUid.tag);
    record.studyDate = header.string(attribute::studyDate.tag);
    record.studyTime = header.string(attribute::studyTime.tag);
    record.studyId = file.text(attribute::studyId.tag);
    record.studyDescription = file.text(attribute::studyDescription.tag);
    record.seriesUid = header.string(attribute::seriesInstanceUid.tag);
    record.seriesDescription = file.text(attribute::seriesDescription.tag);
    record.modality = header.string(attribute::modality.tag);
    record.seriesNumber = header.integer(attribute::seriesNumber.tag);
    record.instanceNumber = header.integer(attribute::instanceNumber.tag);
    record.frames = file.announcedFrameCount();
    if (record.modality == "XA") {
        record.primaryAngle = header.decimal(attribute::positionerPrimaryAngle.tag);
        record.secondaryAngle = header.decimal(attribute::positionerSecondaryAngle.tag);
    }
    return record;
}

}  // namespace cinedisc::discmaker
