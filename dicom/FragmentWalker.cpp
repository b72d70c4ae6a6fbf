#include "dicom/FragmentWalker.h"

#include "dicom/ElementHeader.h"
#include "dicom/Tags.h"

#include <algorithm>

namespace cinedisc::dicom {

std::size_t FragmentWalker::readAt(std::uint64_t offset, std::span<std::byte> into) const {
    if (offset >= shownOffset_ && offset + into.size() <= shownOffset_ + shown_.size()) {
        std::copy_n(shown_.begin() + static_cast<std::ptrdiff_t>(offset - shownOffset_), into.size(),
                    into.begin());
        return into.size();
    }
    return source_.readAt(offset, into);
}

/// Goes to the next item and returns the length of its value. Where a value of odd length is padded without
/// its length saying so, the item stands one byte further on.
std::optional<std::uint64_t> FragmentWalker::enterItem() {
    std::array<std::byte, itemHeader> bytes{};
    for (const std::uint64_t at : {next_, next_ + 1}) {
        const bool isWithin = at + itemHeader <= end_;
        if (!isWithin || readAt(at, bytes) < itemHeader) {
            ended_ = isWithin ? Ended::Unreadable : Ended::AtEndOfFile;
            return std::nullopt;
        }
        const auto header = readElementHeader(bytes, implicitLittle, itemHeader);
        if (header->tag == tags::SequenceDelimitation) {
            ended_ = Ended::AtDelimiter;
            return std::nullopt;
        }
        if (header->tag == tags::Item && !header->isOpen()) {
            next_ = at + itemHeader;
            return header->length;
        }
        if (!lastLengthWasOdd_) break;
    }
    ended_ = Ended::InGarbage;
    return std::nullopt;
}

std::optional<Fragment> FragmentWalker::next(Signature signature) {
    while (ended_ == Ended::NotYet) {
        const auto length = enterItem();
        if (!length) break;
        Fragment fragment{next_, std::min(*length, end_ - next_), *length <= end_ - next_};
        next_ = fragment.end();
        lastLengthWasOdd_ = fragment.length % 2 == 1;
        if (*length == 0) continue;
        signatureLength_ = 0;
        if (signature == Signature::Read) {
            const auto wanted =
                static_cast<std::size_t>(std::min<std::uint64_t>(signature_.size(), fragment.length));
            signatureLength_ = readAt(fragment.offset, std::span(signature_).first(wanted));
        }
        return fragment;
    }
    return std::nullopt;
}

void FragmentWalker::show(std::uint64_t offset, std::span<const std::byte> bytes) {
    shownOffset_ = offset;
    shown_ = bytes;
}

void FragmentWalker::forgetShown() {
    const std::uint64_t shownEnd = shownOffset_ + shown_.size();
    std::vector<std::byte> kept;
    if (next_ >= shownOffset_ && next_ < shownEnd) {
        const auto from = shown_.begin() + static_cast<std::ptrdiff_t>(next_ - shownOffset_);
        const auto most = static_cast<std::ptrdiff_t>(usefulBytesBehind);
        kept.assign(from, from + std::min(most, shown_.end() - from));
    }
    kept_ = std::move(kept);
    show(next_, kept_);
}

bool FragmentWalker::knowsNext() const {
    return ended_ != Ended::NotYet ||
           (next_ >= shownOffset_ && next_ + usefulBytesBehind <= shownOffset_ + shown_.size());
}

}  // namespace cinedisc::dicom
