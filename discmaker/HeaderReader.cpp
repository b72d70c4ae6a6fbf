#include "discmaker/HeaderReader.h"

#include "control/words/ViewWords.h"

#include <dcmtk/config/osconfig.h>
#include <dcmtk/dcmdata/dcdeftag.h>
#include <dcmtk/dcmdata/dctagkey.h>

#include <algorithm>
#include <string_view>
#include <utility>

namespace cinedisc::discmaker {

namespace {

dicom::Tag tagOf(const DcmTagKey& key) { return {key.getGroup(), key.getElement()}; }

/// In the words of the viewer, which will be asked about the same file.
std::string wordsFor(const dicom::DecodeError& fault) { return viewWords::reason(fault).toStdString(); }

bool isDirectory(const dicom::DataSet& header) {
    return header.string(tagOf(DCM_MediaStorageSOPClassUID)) == "1.2.840.10008.1.3.10" ||
           header.find(tagOf(DCM_DirectoryRecordSequence)) != nullptr;
}

bool holdsData(const dicom::DataSet& header) {
    return std::any_of(header.elements.begin(), header.elements.end(),
                       [](const auto& element) { return element.tag.group > 0x0002; });
}

/// Digits of a date and a time that sort as what they tell; old files part them with dots and colons.
std::string sortable(std::string_view date, std::string_view time) {
    std::string result;
    for (const char letter : date)
        if (letter != '.') result += letter;
    result.resize(8, '0');
    for (const char letter : time)
        if (letter != ':') result += letter;
    return result;
}

std::string acquisitionTime(const dicom::DataSet& header) {
    const auto whole = header.string(tagOf(DCM_AcquisitionDateTime));
    if (whole.size() > 8) return sortable(whole.substr(0, 8), std::string_view(whole).substr(8));
    for (const auto& [date, time] :
         {std::pair(DCM_AcquisitionDate, DCM_AcquisitionTime), {DCM_ContentDate, DCM_ContentTime}}) {
        const auto clock = header.string(tagOf(time));
        auto day = header.string(tagOf(date));
        if (day.empty()) day = header.string(tagOf(DCM_StudyDate));
        if (!clock.empty()) return sortable(day, clock);
    }
    return {};
}

}  // namespace

std::variant<std::shared_ptr<const dicom::DicomFile>, Skipped> openSource(const std::filesystem::path& path) {
    const auto opened = dicom::DicomFile::open(path.string());
    if (!opened.ok()) {
        const bool isNone = opened.error().kind == dicom::DecodeError::Kind::NotDicom;
        return isNone ? Skipped{Skipped::Reason::NotDicom, "is no DICOM file"}
                      : Skipped{Skipped::Reason::Unreadable, "cannot be read"};
    }
    const auto& header = opened.value()->header();
    if (isDirectory(header)) return Skipped{Skipped::Reason::Directory, "lists the files of a medium"};
    if (!holdsData(header))
        return Skipped{Skipped::Reason::Unreadable, "the file ends before its data begin"};
    return opened.value();
}

ImageRecord recordOf(const dicom::DicomFile& file) {
    const auto& header = file.header();
    ImageRecord record;
    record.patientName = file.text(tagOf(DCM_PatientName));
    record.patientId = file.text(tagOf(DCM_PatientID));
    record.birthDate = header.string(tagOf(DCM_PatientBirthDate));
    record.studyUid = header.string(tagOf(DCM_StudyInstanceUID));
    record.studyDate = header.string(tagOf(DCM_StudyDate));
    record.studyTime = header.string(tagOf(DCM_StudyTime));
    record.studyId = file.text(tagOf(DCM_StudyID));
    record.studyDescription = file.text(tagOf(DCM_StudyDescription));
    record.seriesUid = header.string(tagOf(DCM_SeriesInstanceUID));
    record.seriesDescription = file.text(tagOf(DCM_SeriesDescription));
    record.modality = header.string(tagOf(DCM_Modality));
    record.instanceUid = header.string(tagOf(DCM_SOPInstanceUID));
    record.acquired = acquisitionTime(header);
    record.seriesNumber = header.integer(tagOf(DCM_SeriesNumber));
    record.instanceNumber = header.integer(tagOf(DCM_InstanceNumber));
    record.frames = file.frameCount();
    if (record.modality == "XA") {
        record.primaryAngle = header.decimal(tagOf(DCM_PositionerPrimaryAngle));
        record.secondaryAngle = header.decimal(tagOf(DCM_PositionerSecondaryAngle));
    }
    return record;
}

PictureCheck checkPictures(const dicom::DicomFile& file) {
    PictureCheck check;
    const auto& noPicture = file.pictureError();
    if (file.frameCount() == 0) {
        check.isPlain = noPicture && noPicture->kind == dicom::DecodeError::Kind::NoPicture;
        check.fault = noPicture ? wordsFor(*noPicture) : "it has no picture";
        return check;
    }
    const int frames = std::max(file.frameCount(), file.announcedFrameCount());
    for (int i = 0; i < frames; ++i) {
        const auto frame = file.decode(i);
        if (frame) {
            ++check.shown;
        } else if (check.fault.empty()) {
            check.fault = frames == 1 ? wordsFor(frame.error())
                                      : "frame " + std::to_string(i + 1) + " of " + std::to_string(frames) +
                                            ": " + wordsFor(frame.error());
        }
        // The rest of a run that ends early need not be tried one by one.
        if (!frame && i >= file.frameCount()) break;
    }
    return check;
}

}  // namespace cinedisc::discmaker
