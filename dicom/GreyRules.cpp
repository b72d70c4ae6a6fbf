#include "dicom/GreyRules.h"

#include "dicom/FunctionalGroups.h"
#include "dicom/LookupTables.h"
#include "dicom/Tags.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>

namespace cinedisc::dicom {

namespace {

/// X-ray angiography and fluoroscopy, whose modality step leads back to beam intensity (PS3.3 C.8.7.1.1.2).
/// Volumes computed from angiography are another kind of object, though their modality is the same.
bool leavesModalityStepOut(const DataSet& header) {
    static constexpr auto projections = std::to_array<std::string_view>({
        "1.2.840.10008.5.1.4.1.1.12.1",    // X-ray angiography
        "1.2.840.10008.5.1.4.1.1.12.1.1",  // the same, enhanced
        "1.2.840.10008.5.1.4.1.1.12.2",    // X-ray radiofluoroscopy
        "1.2.840.10008.5.1.4.1.1.12.2.1",  // the same, enhanced
        "1.2.840.10008.5.1.4.1.1.12.3",    // biplane X-ray angiography, retired
    });
    constexpr std::string_view angiographicVolume = "1.2.840.10008.5.1.4.1.1.13.1.1";
    const std::string object = header.string(tags::SOPClassUID), modality = header.string(tags::Modality);
    if (std::find(projections.begin(), projections.end(), object) != projections.end()) return true;
    return (modality == "XA" || modality == "RF") && object != angiographicVolume;
}

std::optional<Rescale> readRescale(const DataSet& from) {
    const auto slope = from.decimal(tags::RescaleSlope), intercept = from.decimal(tags::RescaleIntercept);
    if (!slope && !intercept) return std::nullopt;
    const Rescale rescale{slope.value_or(1), intercept.value_or(0)};
    const bool isIdentity = rescale.slope == 1 && rescale.intercept == 0;
    return rescale.slope == 0 || isIdentity ? std::nullopt : std::optional(rescale);
}

Window::Function functionOf(std::string_view name) {
    if (name == "SIGMOID") return Window::Function::Sigmoid;
    return name == "LINEAR_EXACT" ? Window::Function::LinearExact : Window::Function::Linear;
}

std::vector<Window> readWindows(const DataSet& from) {
    const auto centers = from.decimals(tags::WindowCenter), widths = from.decimals(tags::WindowWidth);
    const auto function = functionOf(from.string(tags::VOILUTFunction));
    std::vector<Window> windows;
    for (std::size_t i = 0; i < std::min(centers.size(), widths.size()); ++i) {
        const bool isLinear = function == Window::Function::Linear;
        if (isLinear ? widths[i] >= 1 : widths[i] > 0) windows.push_back({centers[i], widths[i], function});
    }
    return windows;
}

std::pair<std::int64_t, std::int64_t> storableRange(const PixelFormat& format) {
    const int bits = std::min(format.bitsStored, 32);
    if (format.isSigned) return {-(std::int64_t{1} << (bits - 1)), (std::int64_t{1} << (bits - 1)) - 1};
    return {0, (std::int64_t{1} << bits) - 1};
}

/// What comes out of the modality step, into a VOI LUT.
LutInput voiInput(const GreyTransform& grey, const PixelFormat& format) {
    if (grey.modalityLut) return {false, 0xFFFF};
    const auto [lowest, highest] = storableRange(format);
    const Rescale rescale = grey.rescale.value_or(Rescale{});
    const double a = static_cast<double>(lowest) * rescale.slope + rescale.intercept;
    const double b = static_cast<double>(highest) * rescale.slope + rescale.intercept;
    constexpr double limit = 1e15;
    return {std::min(a, b) < 0,
            static_cast<std::int64_t>(std::ceil(std::clamp(std::max(a, b), -limit, limit)))};
}

std::optional<std::pair<std::int64_t, std::int64_t>> readPadding(const DataSet& header,
                                                                 const PixelFormat& format) {
    const auto meant = [&](Tag tag) -> std::optional<std::int64_t> {
        const auto value = header.integer(tag);
        // US or SS by the pixel representation, whatever the file states.
        if (value && format.isSigned && format.bitsStored <= 16) return static_cast<std::int16_t>(*value);
        return value && *value < 0 && format.bitsStored <= 16 ? std::optional<std::int64_t>(*value & 0xFFFF)
                                                              : value;
    };
    const auto value = meant(tags::PixelPaddingValue);
    if (!value) return std::nullopt;
    const std::int64_t limit = meant(tags::PixelPaddingRangeLimit).value_or(*value);
    return std::pair(std::min(*value, limit), std::max(*value, limit));
}

void readModalityStep(const DataSet& header, const PixelFormat& format, int frame, GreyTransform& grey) {
    const DataSet& transformation = groupOrHeader(header, tags::PixelValueTransformationSequence, frame);
    grey.rescale = readRescale(transformation);
    const auto& items = header.items(tags::ModalityLUTSequence);
    if (items.empty()) return;
    const auto [lowest, highest] = storableRange(format);
    grey.modalityLut = readLookupTable(items.front(), {lowest < 0, highest});
    if (grey.modalityLut) grey.rescale.reset();
}

void readVoiStep(const DataSet& from, const PixelFormat& format, GreyTransform& grey) {
    grey.windows = readWindows(from);
    for (const DataSet& item : from.items(tags::VOILUTSequence))
        if (auto lut = readLookupTable(item, voiInput(grey, format))) grey.voiLuts.push_back(std::move(*lut));
}

}  // namespace

GreyTransform readGreyTransform(const DataSet& header, const PixelFormat& format, int frame) {
    GreyTransform grey;
    if (!leavesModalityStepOut(header)) readModalityStep(header, format, frame, grey);
    readVoiStep(groupOrHeader(header, tags::FrameVOILUTSequence, frame), format, grey);
    if (grey.windows.empty() && grey.voiLuts.empty()) readVoiStep(header, format, grey);
    grey.inverse = format.photometric == Photometric::Monochrome1 ||
                   header.string(tags::PresentationLUTShape) == "INVERSE";
    grey.padding = readPadding(header, format);
    return grey;
}

bool readsGreyRulesByFrame(const DataSet& header) {
    const auto& frames = header.items(tags::PerFrameFunctionalGroups);
    return std::any_of(frames.begin(), frames.end(), [](const auto& groups) {
        return groups.find(tags::PixelValueTransformationSequence) || groups.find(tags::FrameVOILUTSequence);
    });
}

}  // namespace cinedisc::dicom
