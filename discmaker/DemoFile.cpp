#include "discmaker/DemoFile.h"

#include "discmaker/CatalogueText.h"
#include "discmaker/DiscError.h"
#include "discmaker/encoding/DicomWriter.h"
#include "discmaker/encoding/JpegLosslessEncoder.h"
#include "discmaker/encoding/UidFactory.h"

#include <fstream>

namespace cinedisc::discmaker {

namespace {

constexpr const char* xRayAngiographicImage = "1.2.840.10008.5.1.4.1.1.12.1";
constexpr const char* jpegLossless = "1.2.840.10008.1.2.4.70";

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

void putPatientAndStudy(DicomWriter& writer, const DemoImage& image) {
    writer.putText(attribute::specificCharacterSet, "ISO_IR 192");
    writer.putText(attribute::sopClassUid, xRayAngiographicImage);
    writer.putText(attribute::sopInstanceUid, uidFor(instanceName(image)));
    writer.putText(attribute::patientName, image.patient.name);
    writer.putText(attribute::patientId, image.patient.id);
    writer.putText(attribute::patientBirthDate, image.patient.birthDate);
    writer.putText(attribute::patientSex, image.patient.sex);
    writer.putText(attribute::studyInstanceUid, uidFor(studyName(image)));
    writer.putText(attribute::studyDate, image.study.date);
    writer.putText(attribute::studyTime, image.study.time);
    writer.putText(attribute::studyId, std::to_string(image.study.number));
    writer.putText(attribute::studyDescription, image.study.description);
    writer.putText(attribute::accessionNumber, "");
    writer.putText(attribute::referringPhysicianName, "");
    writer.putText(attribute::modality, "XA");
    writer.putText(attribute::manufacturer, "Cine Disc Viewer");
    writer.putText(attribute::institutionName, "Simulated patient");
    writer.putText(attribute::seriesInstanceUid, uidFor(seriesName(image)));
    writer.putText(attribute::seriesNumber, std::to_string(image.series.number));
    writer.putText(attribute::seriesDescription, image.series.description);
    writer.putText(attribute::seriesDate, image.study.date);
    writer.putText(attribute::seriesTime, timeOf(image, 0));
    writer.putText(attribute::contentDate, image.study.date);
    writer.putText(attribute::contentTime, timeOf(image, image.number));
    writer.putText(attribute::instanceNumber, std::to_string(image.number));
}

void putAcquisition(DicomWriter& writer, const DemoImage& image, const Angiogram& angiogram) {
    const auto& setup = image.setup;
    writer.putText(attribute::imageType, "ORIGINAL\\PRIMARY\\SINGLE PLANE");
    writer.putText(attribute::imageComments,
                   viewName(setup.view.primaryAngle, setup.view.secondaryAngle) + ", simulated angiogram");
    writer.putText(attribute::contrastBolusAgent, "Iodinated contrast medium");
    writer.putText(attribute::bodyPartExamined, "HEART");
    writer.putNumbers(attribute::kvp, {76});
    writer.putNumbers(attribute::tubeCurrent, {640});
    writer.putNumbers(attribute::exposureTime, {7.0 * image.frames});
    writer.putText(attribute::radiationSetting, "GR");
    writer.putNumbers(attribute::distanceSourceToDetector, {Projection::sourceToDetector});
    writer.putNumbers(attribute::distanceSourceToPatient, {Projection::sourceToPatient});
    writer.putNumbers(attribute::imagerPixelSpacing, {angiogram.pixelSpacing(), angiogram.pixelSpacing()});
    writer.putText(attribute::positionerMotion, "STATIC");
    writer.putNumbers(attribute::positionerPrimaryAngle, {setup.view.primaryAngle});
    writer.putNumbers(attribute::positionerSecondaryAngle, {setup.view.secondaryAngle});
    if (image.frames == 1) return;
    writer.putNumbers(attribute::frameTime, {1000 / setup.frameRate});
    writer.putNumbers(attribute::cineRate, {std::round(setup.frameRate)});
    writer.putNumbers(attribute::recommendedDisplayFrameRate, {std::round(setup.frameRate)});
    writer.putText(attribute::numberOfFrames, std::to_string(image.frames));
    writer.putPointer(attribute::frameIncrementPointer, attribute::frameTime);
}

void putShutter(DicomWriter& writer, const Collimator& collimator) {
    const auto& opening = collimator.opening();
    if (opening.shape == Collimator::Shape::Circular) {
        writer.putText(attribute::shutterShape, "CIRCULAR");
        writer.putNumbers(attribute::centerOfCircularShutter,
                          {double(collimator.centerRow()), double(collimator.centerColumn())});
        writer.putNumbers(attribute::radiusOfCircularShutter, {double(collimator.radius())});
        return;
    }
    writer.putText(attribute::shutterShape, "RECTANGULAR");
    writer.putNumbers(attribute::shutterLeftVerticalEdge, {double(opening.left)});
    writer.putNumbers(attribute::shutterRightVerticalEdge, {double(opening.right)});
    writer.putNumbers(attribute::shutterUpperHorizontalEdge, {double(opening.upper)});
    writer.putNumbers(attribute::shutterLowerHorizontalEdge, {double(opening.lower)});
}

void putPixelDescription(DicomWriter& writer, const Angiogram::Setup& setup) {
    const auto bits = static_cast<std::uint16_t>(setup.bits);
    writer.putShort(attribute::samplesPerPixel, 1);
    writer.putText(attribute::photometricInterpretation, "MONOCHROME2");
    writer.putShort(attribute::rows, static_cast<std::uint16_t>(setup.size));
    writer.putShort(attribute::columns, static_cast<std::uint16_t>(setup.size));
    writer.putShort(attribute::bitsAllocated, bits > 8 ? 16 : 8);
    writer.putShort(attribute::bitsStored, bits);
    writer.putShort(attribute::highBit, static_cast<std::uint16_t>(bits - 1));
    writer.putShort(attribute::pixelRepresentation, 0);
    writer.putText(attribute::pixelIntensityRelationship, "DISP");
    writer.putText(attribute::burnedInAnnotation, "NO");
    writer.putText(attribute::lossyImageCompression, "00");
    const double step = (1 << setup.bits) / 256;
    writer.putNumbers(attribute::windowCenter, {136 * step});
    writer.putNumbers(attribute::windowWidth, {196 * step});
}

}  // namespace

ImageRecord demoRecord(const DemoImage& image) {
    ImageRecord record;
    record.patientName = image.patient.name;
    record.patientId = image.patient.id;
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
    const auto& setup = image.setup;
    Angiogram angiogram(setup);
    const JpegLosslessEncoder encoder(setup.size, setup.size, setup.bits);
    DicomWriter writer(jpegLossless);
    putPatientAndStudy(writer, image);
    putAcquisition(writer, image, angiogram);
    putShutter(writer, angiogram.collimator());
    putPixelDescription(writer, setup);
    std::vector<DicomWriter::Bytes> frames;
    for (int i = 0; i < image.frames; ++i)
        frames.push_back(encoder.encode(angiogram.frame(image.firstFrame + i)));
    writer.putFrames(std::move(frames));

    std::ofstream stream(path, std::ios::binary);
    writer.write(stream);
    stream.close();
    if (!stream) throw DiscError("cannot write " + path.string());
}

}  // namespace cinedisc::discmaker
