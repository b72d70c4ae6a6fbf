#include "dicom/FrameGrouping.h"

#include <array>

namespace cinedisc::dicom {

bool FrameGrouping::findStart(std::size_t frame) {
    while (!approach(frame)) {
    }
    return frame < starts_.size();
}

bool FrameGrouping::approach(std::size_t frame) {
    if (frame < starts_.size() || walker_.ended() != FragmentWalker::Ended::NotYet) return true;
    step();
    return false;
}

std::size_t FrameGrouping::knownEnd(std::size_t frame) const {
    return frame + 1 < starts_.size() ? starts_[frame + 1] : fragments_.size();
}

bool FrameGrouping::mayGrow(std::size_t frame) const {
    return rule_ != Rule::OneEach && frame + 1 == starts_.size() &&
           walker_.ended() == FragmentWalker::Ended::NotYet;
}

void FrameGrouping::step() {
    using Signature = FragmentWalker::Signature;
    const bool wantsSignature = rule_ != Rule::OneEach;
    const auto fragment = walker_.next(wantsSignature ? Signature::Read : Signature::Leave);
    if (!fragment) return dealOutEvenly();
    fragments_.push_back(*fragment);
    place(wantsSignature && beginsCodeStream(walker_.lastSignature(), declared_));
}

void FrameGrouping::place(bool begins) {
    const std::size_t index = fragments_.size() - 1;
    if (index == 0) {
        firstBegins_ = begins;
        starts_.push_back(0);
        if (frames_ == 1) rule_ = Rule::AllInOne;
        if (frames_ > 1 && !begins) rule_ = Rule::OneEach;
        return;
    }
    if (rule_ == Rule::Undecided) rule_ = begins ? Rule::OneEach : Rule::BySignature;
    const bool beginsNext = begins && (rule_ != Rule::AllInOne || firstBegins_);
    if (rule_ == Rule::OneEach || beginsNext) starts_.push_back(index);
}

void FrameGrouping::regroupBySignature() {
    rule_ = Rule::BySignature;
    starts_.clear();
    for (std::size_t i = 0; i < fragments_.size(); ++i) {
        std::array<std::byte, codeStreamSignatureBytes> bytes{};
        const std::size_t got = source_.readAt(fragments_[i].offset, bytes);
        if (i == 0 || beginsCodeStream(std::span(bytes).first(got), declared_)) starts_.push_back(i);
    }
}

void FrameGrouping::dealOutEvenly() {
    const bool tooFew = rule_ == Rule::BySignature && starts_.size() < frames_;
    // Where the file is cut off, nobody knows how many fragments there were.
    const bool isWhole = walker_.ended() == FragmentWalker::Ended::AtDelimiter;
    if (!tooFew || !isWhole || fragments_.size() % frames_ != 0) return;
    starts_.clear();
    for (std::size_t frame = 0; frame < frames_; ++frame)
        starts_.push_back(frame * (fragments_.size() / frames_));
}

}  // namespace cinedisc::dicom
