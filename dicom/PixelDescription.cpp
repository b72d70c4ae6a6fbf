#include "dicom/PixelDescription.h"

#include "dicom/Faults.h"
#include "dicom/Tags.h"

#include <algorithm>
#include <array>
#include <climits>
#include <string_view>

namespace cinedisc::dicom {

namespace {

constexpr std::uint64_t mostFrameBytes = 256ull << 20;
constexpr int largestSide = 65535;

Photometric photometricOf(std::string_view name, int samplesPerPixel) {
    struct Row {
        std::string_view name;
        Photometric meaning;
        int samples;
    };
    static constexpr auto table = std::to_array<Row>({{"MONOCHROME1", Photometric::Monochrome1, 1},
                                                      {"MONOCHROME2", Photometric::Monochrome2, 1},
                                                      {"PALETTE COLOR", Photometric::PaletteColor, 1},
                                                      {"RGB", Photometric::Rgb, 3},
                                                      {"YBR_FULL", Photometric::YbrFull, 3},
                                                      {"YBR_FULL_422", Photometric::YbrFull422, 3},
                                                      {"YBR_PARTIAL_422", Photometric::YbrPartial422, 3},
                                                      {"YBR_PARTIAL_420", Photometric::YbrPartial420, 3},
                                                      {"YBR_ICT", Photometric::YbrIct, 3},
                                                      {"YBR_RCT", Photometric::YbrRct, 3}});
    for (const Row& row : table)
        if (row.name == name && row.samples == samplesPerPixel) return row.meaning;
    return samplesPerPixel == 3 ? Photometric::Rgb : Photometric::Monochrome2;
}

int clampedTo(std::optional<std::int64_t> value, int lowest, int highest, int otherwise) {
    return value && *value >= lowest && *value <= highest ? static_cast<int>(*value) : otherwise;
}

bool hasPalette(const DataSet& header) {
    const Element* plain = header.find(tags::RedPaletteData);
    const Element* segmented = header.find(tags::SegmentedRedPaletteData);
    return header.find(tags::RedPaletteDescriptor) && (plain || segmented);
}

void readBits(const DataSet& header, PixelFormat& format) {
    const auto stated = header.integer(tags::BitsStored);
    const int likely = stated && *stated > 8 ? 16 : 8;
    format.bitsAllocated = clampedTo(header.integer(tags::BitsAllocated), 1, 64, likely);
    format.bitsStored = clampedTo(stated, 1, format.bitsAllocated, format.bitsAllocated);
    format.highBit = clampedTo(header.integer(tags::HighBit), format.bitsStored - 1, format.bitsAllocated - 1,
                               format.bitsStored - 1);
    format.isSigned = header.integer(tags::PixelRepresentation).value_or(0) == 1;
}

void readRealBits(PixelFormat& format, SampleKind kind) {
    format.sampleKind = kind;
    format.samplesPerPixel = 1;
    format.bitsAllocated = format.bitsStored = kind == SampleKind::Double ? 64 : 32;
    format.highBit = format.bitsStored - 1;
    format.isSigned = true;
}

}  // namespace

bool statesFrameCount(const DataSet& header) { return !header.string(tags::NumberOfFrames).empty(); }

std::optional<int> statedFrameCount(const DataSet& header) {
    if (!statesFrameCount(header)) return 1;
    const auto count = header.integer(tags::NumberOfFrames);
    if (!count || *count < 1) return std::nullopt;
    return static_cast<int>(std::min<std::int64_t>(*count, INT_MAX));
}

std::uint64_t nativeFrameBits(const PixelFormat& format) {
    return static_cast<std::uint64_t>(format.rows) * static_cast<std::uint64_t>(format.columns) *
           static_cast<std::uint64_t>(format.samplesPerPixel) *
           static_cast<std::uint64_t>(format.bitsAllocated);
}

std::uint64_t subsampledFrameBits(const PixelFormat& format) {
    const auto pairs = (static_cast<std::uint64_t>(format.columns) + 1) / 2;
    return static_cast<std::uint64_t>(format.rows) * pairs * 4 *
           static_cast<std::uint64_t>(format.bitsAllocated);
}

Result<PixelFormat> readPixelFormat(const DataSet& header, Tag pixelTag) {
    PixelFormat format;
    for (const Tag tag : {tags::Rows, tags::Columns})
        if (clampedTo(header.integer(tag), 1, largestSide, 0) == 0) return faults::undescribedPicture(tag);
    format.rows = static_cast<int>(*header.integer(tags::Rows));
    format.columns = static_cast<int>(*header.integer(tags::Columns));
    const auto samples = header.integer(tags::SamplesPerPixel).value_or(1);
    if (samples != 1 && samples != 3) return faults::unsupportedSamples(samples);
    format.samplesPerPixel = static_cast<int>(samples);
    format.planar = samples == 3 && header.integer(tags::PlanarConfiguration).value_or(0) == 1;
    readBits(header, format);
    if (pixelTag == tags::FloatPixelData) readRealBits(format, SampleKind::Float);
    if (pixelTag == tags::DoubleFloatPixelData) readRealBits(format, SampleKind::Double);
    format.photometric =
        photometricOf(header.string(tags::PhotometricInterpretation), format.samplesPerPixel);
    if (format.photometric == Photometric::PaletteColor && !hasPalette(header))
        format.photometric = Photometric::Monochrome2;
    if (nativeFrameBits(format) / 8 > mostFrameBytes) return faults::tooLarge();
    return format;
}

}  // namespace cinedisc::dicom
