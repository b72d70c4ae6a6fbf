#include "bench/BenchDisc.h"

#include "bench/Angiogram.h"
#include "discmaker/DiscError.h"
#include "discmaker/DiscPlanner.h"
#include "discmaker/DiscWriter.h"
#include "discmaker/angiogram/Angiogram.h"
#include "discmaker/encoding/DicomWriter.h"
#include "discmaker/encoding/JpegLosslessEncoder.h"
#include "discmaker/encoding/UidFactory.h"
#include "tests/codecs/Encoders.h"

#include <algorithm>
#include <fstream>
#include <string>
#include <vector>

namespace cinedisc::bench {

namespace {

using namespace discmaker;
using Frames = std::vector<DicomWriter::Bytes>;

/// As noisy as it gets: what takes JPEG 2000 longest. Each frame is the picture moved down a little further.
DicomWriter::Bytes jpeg2000Frame(const RunDesign& design, int number) {
    std::vector<std::uint16_t> samples = angiogram(design.size, design.bits, design.bits > 8 ? 20 : 2);
    std::ranges::rotate(samples, samples.end() - std::ptrdiff_t{7} * number * design.size);
    return test::jpeg2000Encoded(std::vector<std::int32_t>(samples.begin(), samples.end()), design.size,
                                 design.size, 1, {.precision = design.bits, .levels = 5});
}

Frames simulatedRun(const RunDesign& design) {
    Angiogram::Setup setup;
    setup.size = design.size;
    setup.bits = design.bits;
    setup.view = {-30, -22};
    setup.injection = {0.35, 2.1, 130};
    setup.margins = {0.07, 0.11};
    Angiogram angiogram(setup);
    const JpegLosslessEncoder encoder(design.size, design.size, design.bits);
    const bool isJpeg2000 = design.codec == RunDesign::Codec::Jpeg2000;
    Frames different, run;
    for (int i = 0; i < design.differentFrames; ++i)
        different.push_back(isJpeg2000 ? jpeg2000Frame(design, i)
                                       : encoder.encode(angiogram.frame(6 + 2 * i)));
    for (int i = 0; i < design.frames; ++i)
        run.push_back(different[static_cast<std::size_t>(i) % different.size()]);
    return run;
}

void writeRun(const RunDesign& design, int number, const Frames& frames, const std::filesystem::path& path) {
    const bool isJpeg2000 = design.codec == RunDesign::Codec::Jpeg2000;
    DicomWriter writer(isJpeg2000 ? "1.2.840.10008.1.2.4.90" : "1.2.840.10008.1.2.4.70");
    const auto name = path.stem().string() + std::to_string(number);
    writer.putText(attribute::specificCharacterSet, "ISO_IR 192");
    writer.putText(attribute::sopClassUid, "1.2.840.10008.5.1.4.1.1.12.1");
    writer.putText(attribute::sopInstanceUid, uidFor(name));
    writer.putText(attribute::studyInstanceUid, uidFor("study"));
    writer.putText(attribute::seriesInstanceUid, uidFor("series"));
    writer.putText(attribute::patientName, "BENCH^MARK");
    writer.putText(attribute::patientId, "CD-000001");
    writer.putText(attribute::patientBirthDate, "19600101");
    writer.putText(attribute::studyDate, "20240131");
    writer.putText(attribute::modality, "XA");
    writer.putText(attribute::seriesNumber, "1");
    writer.putText(attribute::instanceNumber, std::to_string(number));
    writer.putNumbers(attribute::positionerPrimaryAngle, {-30});
    writer.putNumbers(attribute::positionerSecondaryAngle, {-22});
    writer.putText(attribute::numberOfFrames, std::to_string(frames.size()));
    const auto bits = static_cast<std::uint16_t>(design.bits);
    writer.putShort(attribute::samplesPerPixel, 1);
    writer.putText(attribute::photometricInterpretation, "MONOCHROME2");
    writer.putShort(attribute::rows, static_cast<std::uint16_t>(design.size));
    writer.putShort(attribute::columns, static_cast<std::uint16_t>(design.size));
    writer.putShort(attribute::bitsAllocated, bits > 8 ? 16 : 8);
    writer.putShort(attribute::bitsStored, bits);
    writer.putShort(attribute::highBit, static_cast<std::uint16_t>(bits - 1));
    writer.putShort(attribute::pixelRepresentation, 0);
    const double step = (1 << bits) / 256;
    writer.putNumbers(attribute::windowCenter, {136 * step});
    writer.putNumbers(attribute::windowWidth, {196 * step});
    writer.putFrames(frames);
    std::ofstream stream(path, std::ios::binary);
    writer.write(stream);
    stream.close();
    if (!stream) throw DiscError("cannot write " + path.string());
}

}  // namespace

void makeBenchDisc(const std::filesystem::path& path, const RunDesign& design) {
    if (std::filesystem::exists(path / "CD.xml")) return;
    const Frames frames = simulatedRun(design);
    std::vector<ImageRecord> records;
    for (int i = 1; i <= design.files; ++i) {
        ImageRecord record;
        record.patientName = "BENCH^MARK";
        record.patientId = "CD-000001";
        record.studyUid = "study";
        record.studyDate = "20240131";
        record.seriesUid = "series";
        record.modality = "XA";
        record.seriesNumber = 1;
        record.instanceNumber = i;
        record.frames = design.frames;
        records.push_back(record);
    }
    DiscFolder folder(path);
    writeDisc(
        folder, planDisc(records, "Benchmark", PatientOrder::AsGiven), {},
        [&](std::size_t number, const std::filesystem::path& target) {
            writeRun(design, static_cast<int>(number) + 1, frames, target);
        },
        Workers::One);
}

}  // namespace cinedisc::bench
