#include "tests/fidelity/PlainGrey.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace cinedisc::fidelity {

PlainGrey::PlainGrey(ReferenceFile& file, int frame, const StoredSamples& samples) {
    const HeaderReader header = file.header();
    const std::string modality = header.text(DCM_Modality);
    if (modality != "XA" && modality != "RF") {
        const HeaderReader step = header.macro(DCM_PixelValueTransformationSequence, frame);
        slope_ = step.number(DCM_RescaleSlope, 1);
        intercept_ = step.number(DCM_RescaleIntercept, 0);
        modalityTable_ = tableOf(header, DCM_ModalityLUTSequence, samples.isSigned);
    }
    voiTable_ = tableOf(header, DCM_VOILUTSequence, samples.isSigned);

    const HeaderReader voi = header.macro(DCM_FrameVOILUTSequence, frame);
    const auto centers = voi.numbers(DCM_WindowCenter), widths = voi.numbers(DCM_WindowWidth);
    function_ = voi.text(DCM_VOILUTFunction);
    const std::string photometric = header.text(DCM_PhotometricInterpretation);
    inverse_ = photometric == "MONOCHROME1" || header.text(DCM_PresentationLUTShape) == "INVERSE";
    if (header.has(DCM_PixelPaddingValue)) {
        const double value = header.number(DCM_PixelPaddingValue, 0);
        const double limit = header.number(DCM_PixelPaddingRangeLimit, value);
        padding_ = {std::min(value, limit), std::max(value, limit)};
    }
    if (!centers.empty() && !widths.empty()) {
        center_ = centers.front();
        width_ = widths.front();
    } else {
        windowWithoutHeader(file, samples);
    }
}

void PlainGrey::windowWithoutHeader(ReferenceFile& file, const StoredSamples& samples) {
    double low = std::numeric_limits<double>::max(), high = -low;
    if (samples.bits <= 8 && !samples.isFloat) {
        const double range = std::ldexp(1.0, samples.bits);
        low = samples.isSigned ? -range / 2 : 0;
        high = low + range - 1;
    } else {
        const auto first = file.nativeFrame(0);
        for (const double value : storedSamples(*first).values) {
            if (isPadding(value)) continue;
            low = std::min(low, value);
            high = std::max(high, value);
        }
    }
    const double a = modality(low), b = modality(high);
    function_ = "LINEAR_EXACT";
    center_ = (a + b) / 2;
    width_ = std::max(std::abs(b - a), 1e-9);
}

std::optional<PlainGrey::Table> PlainGrey::tableOf(const HeaderReader& header, const DcmTagKey& sequence,
                                                   bool isSigned) {
    const auto items = header.items(sequence);
    if (items.empty()) return std::nullopt;
    const auto descriptor = items.front().words(DCM_LUTDescriptor);
    Table table;
    table.entries = items.front().words(DCM_LUTData);
    if (descriptor.size() < 3 || table.entries.empty()) return std::nullopt;
    table.first = isSigned ? static_cast<Sint16>(descriptor[1]) : static_cast<double>(descriptor[1]);
    table.highest = std::ldexp(1.0, static_cast<int>(descriptor[2])) - 1;
    return table;
}

double PlainGrey::Table::at(double value) const {
    const double last = static_cast<double>(entries.size()) - 1;
    return entries[static_cast<std::size_t>(std::clamp(std::floor(value + 0.5) - first, 0.0, last))];
}

bool PlainGrey::isPadding(double stored) const {
    return padding_ && stored >= padding_->first && stored <= padding_->second;
}

double PlainGrey::modality(double stored) const {
    return modalityTable_ ? modalityTable_->at(stored) : stored * slope_ + intercept_;
}

double PlainGrey::windowed(double value) const {
    if (voiTable_) return voiTable_->at(value) / voiTable_->highest * 255;
    if (function_ == "SIGMOID") return 255 / (1 + std::exp(-4 * (value - center_) / width_));
    if (function_ == "LINEAR_EXACT") return ((value - center_) / width_ + 0.5) * 255;
    if (value <= center_ - 0.5 - (width_ - 1) / 2) return 0;
    if (value > center_ - 0.5 + (width_ - 1) / 2) return 255;
    return ((value - (center_ - 0.5)) / (width_ - 1) + 0.5) * 255;
}

double PlainGrey::operator()(double stored) const {
    if (isPadding(stored)) return 0;
    const double level = std::clamp(windowed(modality(stored)), 0.0, 255.0);
    return inverse_ ? 255 - level : level;
}

}  // namespace cinedisc::fidelity
