#include "discmaker/HeaderReader.h"

#include "dicom/DicomFile.h"

#include <dcmtk/config/osconfig.h>
#include <dcmtk/dcmdata/dcdeftag.h>
#include <dcmtk/dcmdata/dctagkey.h>

#include <algorithm>

namespace cinedisc::discmaker {

namespace {

dicom::Tag tagOf(const DcmTagKey& key) { return {key.getGroup(), key.getElement()}; }

bool isDirectory(const dicom::DataSet& header) {
    return header.string(tagOf(DCM_MediaStorageSOPClassUID)) == "1.2.840.10008.1.3.10" ||
           header.find(tagOf(DCM_DirectoryRecordSequence)) != nullptr;
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
        return Skipped{isNone ? Skipped::Reason::NotDicom : Skipped::Reason::Unreadable, "cannot be read"};
    }
    const auto& file = *opened.value();
    const auto& header = file.header();
    if (isDirectory(header)) return Skipped{Skipped::Reason::Directory, "lists the files of a medium"};

    if (!holdsData(header))
        return Skipped{Skipped::Reason::Unreadable, "the file ends before its data begin"};

    ImageRecord record;
    record.patientName = file.text(tagOf(DCM_PatientName));
    record.patientId = file.text(tagOf(DCM_PatientID));
    record.studyUid = header.string(tagOf(DCM_StudyInstanceUID));
    record.studyDate = header.string(tagOf(DCM_StudyDate));
    record.studyTime = header.string(tagOf(DCM_StudyTime));
    record.studyId = file.text(tagOf(DCM_StudyID));
    record.studyDescription = file.text(tagOf(DCM_StudyDescription));
    record.seriesUid = header.string(tagOf(DCM_SeriesInstanceUID));
    record.seriesDescription = file.text(tagOf(DCM_SeriesDescription));
    record.modality = header.string(tagOf(DCM_Modality));
    record.seriesNumber = header.integer(tagOf(DCM_SeriesNumber));
    record.instanceNumber = header.integer(tagOf(DCM_InstanceNumber));
    record.frames = file.announcedFrameCount();
    if (record.modality == "XA") {
        record.primaryAngle = header.decimal(tagOf(DCM_PositionerPrimaryAngle));
        record.secondaryAngle = header.decimal(tagOf(DCM_PositionerSecondaryAngle));
    }
    return record;
}

}  // namespace cinedisc::discmaker
