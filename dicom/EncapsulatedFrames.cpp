#include "dicom/EncapsulatedFrames.h"

#include "dicom/FragmentJoining.h"
#include "dicom/Notices.h"

#include <algorithm>

namespace cinedisc::dicom {

namespace {

constexpr std::uint64_t itemHeader = 8;
/// A compressed frame of noise is hardly larger than its pixels; the rest is room for what some encoders put
/// in.
constexpr std::uint64_t compressedSlack = 64 << 10;

std::uint64_t endOf(const ByteSource& source, const PixelElement& pixels) {
    return pixels.isOpen ? source.size() : std::min(source.size(), pixels.offset + pixels.length);
}

}  // namespace

EncapsulatedFrames::EncapsulatedFrames(std::shared_ptr<const ByteSource> source, const PixelElement& pixels,
                                       const DataSet& header, const Expectation& expected)
    : source_(std::move(source)),
      pixels_(pixels),
      end_(endOf(*source_, pixels)),
      nativeFrameBytes_(expected.nativeFrameBytes),
      declared_(expected.declared),
      table_(readOffsetTable(*source_, pixels.offset, header)),
      announced_(expected.announced.value_or(std::max(1, static_cast<int>(table_.offsets.size())))),
      grouping_(*source_, table_.firstItem, end_, announced_, declared_) {
    tableIsUsable_ = table_.offsets.size() == static_cast<std::size_t>(announced_);
    const std::uint64_t room = end_ - std::min(end_, table_.firstItem);
    constexpr std::uint64_t smallestFrame = itemHeader + 2;
    count_ = static_cast<int>(
        std::min<std::uint64_t>(static_cast<std::uint64_t>(announced_), room / smallestFrame));
    if (tableIsUsable_) count_ = std::min(count_, framesByTable());
}

/// Frames that lie within the file by the offset table. A table that points beyond the file proves it cut off
/// only if the frame in which the file ends bears that out.
int EncapsulatedFrames::framesByTable() const {
    const std::uint64_t room = end_ - std::min(end_, table_.firstItem);
    const auto beyond =
        std::upper_bound(table_.offsets.begin(), table_.offsets.end(), room - std::min(room, itemHeader));
    if (beyond == table_.offsets.end()) return announced_;
    const auto inside = static_cast<std::size_t>(beyond - table_.offsets.begin());
    if (inside == 0) return 0;
    if (const auto complete = framesUpToCut(inside - 1)) return static_cast<int>(*complete);
    tableIsUsable_ = false;
    return announced_;
}

/// Frames that are complete when `frame` is the one in which the file ends, or after which it does; nothing
/// when the file does not end there.
std::optional<std::size_t> EncapsulatedFrames::framesUpToCut(std::size_t frame) const {
    constexpr int mostFragments = 64;
    FragmentWalker walker(*source_, table_.firstItem + table_.offsets[frame], end_);
    for (int i = 0; i < mostFragments; ++i) {
        const auto fragment = walker.next(FragmentWalker::Signature::Leave);
        if (fragment && !fragment->isComplete) return frame;
        if (!fragment) break;
    }
    return walker.ended() == FragmentWalker::Ended::AtEndOfFile ? std::optional(frame + 1) : std::nullopt;
}

std::uint64_t EncapsulatedFrames::mostFrameBytes() const { return 4 * nativeFrameBytes_ + (1 << 20); }

Result<FrameBytes> EncapsulatedFrames::read(int frame) const {
    if (tableIsUsable_) {
        if (auto found = readByTable(frame)) return std::move(*found);
        tableIsUsable_ = false;
    }
    const std::lock_guard lock(mutex_);
    return readByWalking(frame);
}

/// Nothing when the table is wrong, or does not tell where the frame ends.
std::optional<Result<FrameBytes>> EncapsulatedFrames::readByTable(int frame) const {
    const auto index = static_cast<std::size_t>(frame);
    const bool isLast = index + 1 == table_.offsets.size();
    const std::uint64_t from = table_.firstItem + table_.offsets[index];
    std::uint64_t to = isLast ? end_ : table_.firstItem + table_.offsets[index + 1];
    const std::uint64_t likely = nativeFrameBytes_ + compressedSlack;
    if (isLast && to - from > likely) {
        // Behind the last frame more can follow than its pixels: its own items say where it ends.
        FragmentWalker walker(*source_, from, end_);
        to = from;
        while (to - from <= mostFrameBytes()) {
            const auto fragment = walker.next(FragmentWalker::Signature::Leave);
            if (!fragment) break;
            to = fragment->end();
        }
        if (walker.ended() == FragmentWalker::Ended::InGarbage) return std::nullopt;
    }
    if (to <= from || to > end_ || to - from > mostFrameBytes()) return std::nullopt;
    std::vector<std::byte> stretch(static_cast<std::size_t>(to - from));
    stretch.resize(source_->readAt(from, stretch));
    const bool isWhole = stretch.size() == to - from;
    FrameBytes bytes;
    switch (joinItems(std::move(stretch), bytes)) {
        case Joining::Complete:
            return Result<FrameBytes>(std::move(bytes));
        case Joining::CutOff:
            if (isLast || !isWhole)
                return Result<FrameBytes>(notices::cutOff(frame, announced_, pixels_.tag, from));
            return std::nullopt;
        default:
            return std::nullopt;
    }
}

DecodeError EncapsulatedFrames::missingFrame(int frame) const {
    if (grouping_.walker().ended() == FragmentWalker::Ended::InGarbage)
        return notices::damaged(pixels_.tag, pixels_.offset, frame);
    return notices::cutOff(static_cast<int>(grouping_.completeFrames()), announced_, pixels_.tag, end_);
}

/// Reads the fragments from `index` on that are known to be the frame's, and shows the walker what was read
/// behind them.
void EncapsulatedFrames::appendKnownFragments(std::size_t frame, std::size_t& index, FrameBytes& into) const {
    const std::size_t last = grouping_.knownEnd(frame) - 1;
    const std::uint64_t from = grouping_.fragment(index).offset;
    std::uint64_t to = grouping_.fragment(last).end() + FragmentWalker::usefulBytesBehind;
    // All the rest belongs to a single frame.
    if (grouping_.allInOne() && end_ - from <= nativeFrameBytes_ + compressedSlack) to = end_;
    std::vector<std::byte> stretch(static_cast<std::size_t>(std::min(to, end_) - from));
    stretch.resize(source_->readAt(from, stretch));
    FragmentWalker& walker = grouping_.walker();
    walker.show(from, stretch);
    if (grouping_.mayGrow(frame) || (grouping_.isOneEach() && walker.knowsNext())) grouping_.step();
    while (grouping_.allInOne() && walker.knowsNext() && grouping_.mayGrow(frame)) grouping_.step();
    walker.forgetShown();

    for (; index < grouping_.knownEnd(frame); ++index) {
        const Fragment& fragment = grouping_.fragment(index);
        const std::uint64_t skipped = fragment.offset - from;
        if (skipped + fragment.length > stretch.size()) break;
        const auto begin = stretch.begin() + static_cast<std::ptrdiff_t>(skipped);
        into.storage.insert(into.storage.end(), begin, begin + static_cast<std::ptrdiff_t>(fragment.length));
    }
}

Result<FrameBytes> EncapsulatedFrames::readByWalking(int frame) const {
    const auto wanted = static_cast<std::size_t>(frame);
    if (!grouping_.findStart(wanted)) return missingFrame(frame);
    FrameBytes bytes;
    const std::uint64_t from = grouping_.fragment(grouping_.start(wanted)).offset;
    for (std::size_t index = grouping_.start(wanted); index < grouping_.knownEnd(wanted);) {
        const Fragment& last = grouping_.fragment(grouping_.knownEnd(wanted) - 1);
        if (!last.isComplete) return notices::cutOff(frame, announced_, pixels_.tag, last.offset);
        if (last.end() - from > mostFrameBytes()) return notices::damaged(pixels_.tag, from, frame);
        const std::size_t before = index;
        appendKnownFragments(wanted, index, bytes);
        if (index == before) return notices::damaged(pixels_.tag, from, frame);
    }
    bytes.length = bytes.storage.size();
    const bool begins = beginsCodeStream(bytes.bytes(), declared_);
    if (!begins && grouping_.isOneEach() && grouping_.firstBeginsCodeStream()) {
        grouping_.regroupBySignature();
        return readByWalking(frame);
    }
    return bytes;
}

std::vector<std::byte> EncapsulatedFrames::firstBytes() const {
    std::vector<std::byte> bytes(codeStreamSignatureBytes);
    bytes.resize(source_->readAt(table_.firstItem + itemHeader, bytes));
    return bytes;
}

}  // namespace cinedisc::dicom
