#include "discmaker/DemoFile.h"

#include "discmaker/CatalogueText.h"
#include "discmaker/LosslessFile.h"

#include <cmath>

namespace cinedisc::discmaker {

namespace {

std::string studyName(const DemoImage& image) {
    return image.patient.id + "/" + std::to_string(image.study.number);
}
std::string seriesName(const DemoImage& image) {
    return studyName(image) + "/" + std::to_string(image.series.number);
}
std::string instanceName(const DemoImage& image) {
    return seriesName(image) + "/" + std::to_string(image.number);
}

/// Time of an image: the study's, a minute later for each image and ten for each series.
std::string timeOf(const DemoImage& image, int number) {
    const auto digits = [&](std::size_t at) { return std::stoi(image.study.time.substr(at, 2)); };
    const int minutes = digits(0) * 60 + digits(2) + (image.series.number - 1) * 10 + number;
    const auto two = [](int value) { return std::string(value < 10 ? "0" : "") + std::to_string(value); };
    return two(minutes / 60 % 24) + two(minutes % 60) + image.study.time.substr(4, 2);
}

void putPatientAndStudy(LosslessFile& file, const DemoImage& image) {
    file.put(DCM_SOPInstanceUID, EVR_UI, uidFor(instanceName(image)));
    file.put(DCM_PatientName, EVR_PN, image.patient.name);
    file.put(DCM_PatientID, EVR_LO, image.patient.id);
    file.put(DCM_PatientBirthDate, EVR_DA, image.patient.birthDate);
    file.put(DCM_PatientSex, EVR_CS, image.patient.sex);
    file.put(DCM_StudyInstanceUID, EVR_UI, uidFor(studyName(image)));
    file.put(DCM_StudyDate, EVR_DA, image.study.date);
    file.put(DCM_StudyTime, EVR_TM, image.study.time);
    file.put(DCM_StudyID, EVR_SH, std::to_string(image.study.number));
    file.put(DCM_StudyDescription, EVR_LO, image.study.description);
    file.put(DCM_AccessionNumber, EVR_SH, "");
    file.put(DCM_ReferringPhysicianName, EVR_PN, "");
    file.put(DCM_Modality, EVR_CS, "XA");
    file.put(DCM_Manufacturer, EVR_LO, "Cine Disc Viewer");
    file.put(DCM_InstitutionName, EVR_LO, "Simulated patient");
    file.put(DCM_SeriesInstanceUID, EVR_UI, uidFor(seriesName(image)));
    file.put(DCM_SeriesNumber, EVR_IS, std::to_string(image.series.number));
    file.put(DCM_SeriesDescription, EVR_LO, image.series.description);
    file.put(DCM_SeriesDate, EVR_DA, image.study.date);
    file.put(DCM_SeriesTime, EVR_TM, timeOf(image, 0));
    file.put(DCM_ContentDate, EVR_DA, image.study.date);
    file.put(DCM_ContentTime, EVR_TM, timeOf(image, image.number));
    file.put(DCM_InstanceNumber, EVR_IS, std::to_string(image.number));
}

void putAcquisition(LosslessFile& file, const DemoImage& image, const Angiogram& angiogram) {
    const auto& setup = image.setup;
    file.put(DCM_ImageType, EVR_CS, "ORIGINAL\\PRIMARY\\SINGLE PLANE");
    file.put(DCM_ImageComments, EVR_LT,
             viewName(setup.view.primaryAngle, setup.view.secondaryAngle) + ", simulated angiogram");
    file.put(DCM_ContrastBolusAgent, EVR_LO, "Iodinated contrast medium");
    file.put(DCM_BodyPartExamined, EVR_CS, "HEART");
    file.put(DCM_KVP, EVR_DS, {76});
    file.put(DCM_XRayTubeCurrent, EVR_IS, {640});
    file.put(DCM_ExposureTime, EVR_IS, {7.0 * image.frames});
    file.put(DCM_RadiationSetting, EVR_CS, "GR");
    file.put(DCM_DistanceSourceToDetector, EVR_DS, {Projection::sourceToDetector});
    file.put(DCM_DistanceSourceToPatient, EVR_DS, {Projection::sourceToPatient});
    file.put(DCM_ImagerPixelSpacing, EVR_DS, {angiogram.pixelSpacing(), angiogram.pixelSpacing()});
    file.put(DCM_PositionerMotion, EVR_CS, "STATIC");
    file.put(DCM_PositionerPrimaryAngle, EVR_DS, {setup.view.primaryAngle});
    file.put(DCM_PositionerSecondaryAngle, EVR_DS, {setup.view.secondaryAngle});
    file.put(DCM_PixelIntensityRelationship, EVR_CS, "DISP");
    file.put(DCM_BurnedInAnnotation, EVR_CS, "NO");
    file.put(DCM_LossyImageCompression, EVR_CS, "00");
    const double step = (1 << setup.bits) / 256;
    file.put(DCM_WindowCenter, EVR_DS, {136 * step});
    file.put(DCM_WindowWidth, EVR_DS, {196 * step});
    if (image.frames == 1) return;
    file.put(DCM_FrameTime, EVR_DS, {1000 / setup.frameRate});
    file.put(DCM_CineRate, EVR_IS, {std::round(setup.frameRate)});
    file.put(DCM_RecommendedDisplayFrameRate, EVR_IS, {std::round(setup.frameRate)});
    file.put(DCM_NumberOfFrames, EVR_IS, std::to_string(image.frames));
    file.put(DCM_FrameIncrementPointer, EVR_AT, "(0018,1063)");
}

void putShutter(LosslessFile& file, const Collimator& collimator) {
    const auto& opening = collimator.opening();
    if (opening.shape == Collimator::Shape::Circular) {
        file.put(DCM_ShutterShape, EVR_CS, "CIRCULAR");
        file.put(DCM_CenterOfCircularShutter, EVR_IS,
                 {double(collimator.centerRow()), double(collimator.centerColumn())});
        file.put(DCM_RadiusOfCircularShutter, EVR_IS, {double(collimator.radius())});
        return;
    }
    file.put(DCM_ShutterShape, EVR_CS, "RECTANGULAR");
    file.put(DCM_ShutterLeftVerticalEdge, EVR_IS, {double(opening.left)});
    file.put(DCM_ShutterRightVerticalEdge, EVR_IS, {double(opening.right)});
    file.put(DCM_ShutterUpperHorizontalEdge, EVR_IS, {double(opening.upper)});
    file.put(DCM_ShutterLowerHorizontalEdge, EVR_IS, {double(opening.lower)});
}

}  // namespace

ImageRecord demoRecord(const DemoImage& image) {
    ImageRecord record;
    record.patientName = image.patient.name;
    record.patientId = image.patient.id;
    record.birthDate = image.patient.birthDate;
    record.studyUid = uidFor(studyName(image));
    record.studyDate = image.study.date;
    record.studyTime = image.study.time;
    record.studyDescription = image.study.description;
    record.seriesUid = uidFor(seriesName(image));
    record.seriesDescription = image.series.description;
    record.modality = "XA";
    record.seriesNumber = image.series.number;
    record.instanceNumber = image.number;
    record.frames = image.frames;
    record.primaryAngle = image.setup.view.primaryAngle;
    record.secondaryAngle = image.setup.view.secondaryAngle;
    return record;
}

void writeDemoFile(const DemoImage& image, const std::filesystem::path& path) {
    Angiogram angiogram(image.setup);
    const LosslessFile::Format format{image.setup.size, image.setup.size, image.setup.bits};
    LosslessFile file(format);
    putPatientAndStudy(file, image);
    putAcquisition(file, image, angiogram);
    putShutter(file, angiogram.collimator());
    for (int i = 0; i < image.frames; ++i)
        file.addFrame(LosslessFile::encoded(format, angiogram.frame(image.firstFrame + i)));
    file.write(path);
}

}  // namespace cinedisc::discmaker
