#include "control/pipeline/DisplayTables.h"

#include <algorithm>
#include <utility>

namespace cinedisc {

namespace {

bool same(const dicom::LookupTable& a, const dicom::LookupTable& b) {
    return a.firstMapped == b.firstMapped && a.bits == b.bits && a.entries == b.entries;
}

bool same(const dicom::GreyTransform& a, const dicom::GreyTransform& b) {
    const auto slope = [](const auto& grey) { return grey.rescale.value_or(dicom::Rescale{}); };
    if (a.inverse != b.inverse || a.padding != b.padding) return false;
    if (slope(a).slope != slope(b).slope || slope(a).intercept != slope(b).intercept) return false;
    if (a.modalityLut.has_value() != b.modalityLut.has_value()) return false;
    if (a.modalityLut && !same(*a.modalityLut, *b.modalityLut)) return false;
    return std::equal(a.voiLuts.begin(), a.voiLuts.end(), b.voiLuts.begin(), b.voiLuts.end(),
                      [](const auto& x, const auto& y) { return same(x, y); });
}

bool isWide(const dicom::Frame& frame) {
    return std::holds_alternative<std::vector<std::uint16_t>>(frame.samples) ||
           std::holds_alternative<std::vector<std::int16_t>>(frame.samples);
}

bool isNarrow(const dicom::Frame& frame) {
    return std::holds_alternative<std::vector<std::uint8_t>>(frame.samples) ||
           std::holds_alternative<std::vector<std::int8_t>>(frame.samples);
}

}  // namespace

void DisplayTables::clear() {
    file_ = nullptr;
    greyRule_.reset();
    rule_ = {};
    ++revision_;
}

const DisplayRule& DisplayTables::ruleFor(const dicom::DicomFile& file, int frameIndex,
                                          const dicom::Frame& frame, const WindowInForce& window,
                                          Polarity polarity) {
    const bool isSameButForGrey = file_ == &file && sampleKind_ == frame.samples.index() &&
                                  samplesPerPixel_ == frame.samplesPerPixel && polarity_ == polarity &&
                                  window_ == window;
    if (isSameButForGrey && (frameIndex == frameIndex_ || !file.hasGreyRulesByFrame())) return rule_;
    frameIndex_ = frameIndex;
    auto grey = frame.samplesPerPixel == 1 ? file.greyTransform(frameIndex) : dicom::GreyTransform{};
    if (isSameButForGrey && same(grey_, grey)) return rule_;
    grey_ = std::move(grey);
    window_ = window;
    polarity_ = polarity;
    sampleKind_ = frame.samples.index();
    samplesPerPixel_ = frame.samplesPerPixel;
    makeRule(file, frame);
    file_ = &file;
    ++revision_;
    return rule_;
}

void DisplayTables::makeRule(const dicom::DicomFile& file, const dicom::Frame& frame) {
    rule_ = {};
    rule_.polarity = polarity_;
    greyRule_.reset();
    if (frame.samplesPerPixel != 1) return;
    const auto& format = file.pixelFormat();
    if (format.photometric == dicom::Photometric::PaletteColor && file.palette()) {
        rule_.palette = std::make_shared<PaletteTable>(*file.palette(), format, isWide(frame));
        return;
    }
    greyRule_.emplace(grey_, window_, polarity_);
    rule_.rule = &*greyRule_;
    if (isWide(frame) || isNarrow(frame)) {
        rule_.table = std::make_shared<GreyTable>(*greyRule_, format, isWide(frame));
    }
}

}  // namespace cinedisc
