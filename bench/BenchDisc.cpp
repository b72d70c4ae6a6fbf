#include "bench/BenchDisc.h"

#include "bench/Angiogram.h"
#include "discmaker/DiscFolder.h"
#include "discmaker/DiscPlanner.h"
#include "discmaker/DiscWriter.h"
#include "discmaker/LosslessFile.h"
#include "discmaker/angiogram/Angiogram.h"
#include "tests/codecs/Encoders.h"

#include <algorithm>
#include <string>
#include <vector>

namespace cinedisc::bench {

namespace {

using namespace discmaker;
using Frames = std::vector<LosslessFile::Bytes>;

/// As noisy as it gets: what takes the libraries longest. Each frame is the picture moved down a little
/// further.
LosslessFile::Bytes noisyFrame(const RunDesign& design, int number) {
    std::vector<std::uint16_t> samples = angiogram(design.size, design.bits, design.bits > 8 ? 20 : 2);
    std::ranges::rotate(samples, samples.end() - std::ptrdiff_t{7} * number * design.size);
    const test::Raster picture{design.size, design.size, 1, design.bits, {samples.begin(), samples.end()}};
    if (design.codec == RunDesign::Codec::Jpeg2000) return test::jpeg2000Encoded(picture, {.levels = 5});
    using test::LossyProcess;
    return test::dcmtkLossy(picture, design.bits > 8 ? LossyProcess::Sequential : LossyProcess::Baseline, 90);
}

Frames simulatedRun(const RunDesign& design) {
    Angiogram::Setup setup;
    setup.size = design.size;
    setup.bits = design.bits;
    setup.view = {-30, -22};
    setup.injection = {0.35, 2.1, 130};
    setup.margins = {0.07, 0.11};
    Angiogram angiogram(setup);
    const LosslessFile::Format format{design.size, design.size, design.bits};
    const bool isNoisy = design.codec != RunDesign::Codec::JpegLossless;
    Frames different, run;
    for (int i = 0; i < design.differentFrames; ++i)
        different.push_back(isNoisy ? noisyFrame(design, i)
                                    : LosslessFile::encoded(format, angiogram.frame(6 + 2 * i)));
    for (int i = 0; i < design.frames; ++i)
        run.push_back(different[static_cast<std::size_t>(i) % different.size()]);
    return run;
}

E_TransferSyntax syntaxOf(const RunDesign& design) {
    if (design.codec == RunDesign::Codec::Jpeg2000) return EXS_JPEG2000LosslessOnly;
    if (design.codec == RunDesign::Codec::JpegLossless) return EXS_JPEGProcess14SV1;
    return design.bits > 8 ? EXS_JPEGProcess2_4 : EXS_JPEGProcess1;
}

void writeRun(const RunDesign& design, int number, const Frames& frames, const std::filesystem::path& path) {
    LosslessFile file({design.size, design.size, design.bits});
    const auto name = path.stem().string() + std::to_string(number);
    file.put(DCM_SOPInstanceUID, EVR_UI, uidFor(name));
    file.put(DCM_StudyInstanceUID, EVR_UI, uidFor("study"));
    file.put(DCM_SeriesInstanceUID, EVR_UI, uidFor("series"));
    file.put(DCM_PatientName, EVR_PN, "BENCH^MARK");
    file.put(DCM_PatientID, EVR_LO, "CD-000001");
    file.put(DCM_PatientBirthDate, EVR_DA, "19600101");
    file.put(DCM_StudyDate, EVR_DA, "20240131");
    file.put(DCM_Modality, EVR_CS, "XA");
    file.put(DCM_SeriesNumber, EVR_IS, "1");
    file.put(DCM_InstanceNumber, EVR_IS, std::to_string(number));
    file.put(DCM_PositionerPrimaryAngle, EVR_DS, {-30});
    file.put(DCM_PositionerSecondaryAngle, EVR_DS, {-22});
    file.put(DCM_NumberOfFrames, EVR_IS, std::to_string(frames.size()));
    const double step = (1 << design.bits) / 256;
    file.put(DCM_WindowCenter, EVR_DS, {136 * step});
    file.put(DCM_WindowWidth, EVR_DS, {196 * step});
    for (const auto& frame : frames) file.addFrame(frame);
    file.write(path, syntaxOf(design));
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
        folder.staging(), planDisc(records, "Benchmark"), {},
        [&](std::size_t number, const std::filesystem::path& target) {
            writeRun(design, static_cast<int>(number) + 1, frames, target);
        },
        Workers::One);
    folder.publish();
}

}  // namespace cinedisc::bench
