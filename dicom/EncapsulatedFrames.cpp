#include "dicom/EncapsulatedFrames.h"

#include "dicom/CodeStream.h"
#include "dicom/ElementHeader.h"
#include "dicom/Faults.h"
#include "dicom/FragmentJoining.h"

#include <algorithm>
#include <array>

namespace cinedisc::dicom {

namespace {

/// A compressed frame of noise is hardly larger than its pixels; the rest is room for what some encoders put
/// in.
constexpr std::uint64_t compressedSlack = 64 << 10;

std::uint64_t endOf(const ByteSource& source, const PixelElement& pixels) {
    return pixels.isOpen ? source.size() : std::min(source.size(), pixels.offset + pixels.length);
}

/// Single pictures need not state that they are one frame. Runs that forgot to state how many they are have a
/// table with an entry for each, at which a code stream begins; an entry for each fragment of a single
/// picture is none.
int framesToExpect(const ByteSource& source, const OffsetTable& table,
                   const EncapsulatedFrames::Expectation& expected) {
    const int entries = static_cast<int>(table.offsets.size());
    if (!expected.announced) return std::max(1, entries);
    if (expected.isStated || entries < 2) return *expected.announced;
    std::array<std::byte, codeStreamSignatureBytes> second{};
    const std::size_t got = source.readAt(table.firstItem + table.offsets[1] + itemHeader, second);
    return beginsCodeStream(std::span(second).first(got), expected.declared) ? entries : *expected.announced;
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
      announced_(framesToExpect(*source_, table_, expected)),
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

bool EncapsulatedFrames::approach(int frame) const {
    if (tableIsUsable_) return true;
    const std::lock_guard lock(mutex_);
    return grouping_.approach(static_cast<std::size_t>(frame));
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
    if (stretch.size() < to - from)
        return Result<FrameBytes>(faults::cannotRead(pixels_.tag, from + stretch.size()));
    FrameBytes bytes;
    switch (joinItems(std::move(stretch), bytes)) {
        case Joining::Complete:
            return Result<FrameBytes>(std::move(bytes));
        case Joining::CutOff:
            if (isLast) return Result<FrameBytes>(faults::cutOff(frame, announced_, pixels_.tag, from));
            return std::nullopt;
        default:
            return std::nullopt;
    }
}

DecodeError EncapsulatedFrames::missingFrame(int frame) const {
    using Ended = FragmentWalker::Ended;
    const Ended ended = grouping_.walker().ended();
    if (ended == Ended::InGarbage) return faults::damaged(pixels_.tag, pixels_.offset, frame);
    if (ended == Ended::Unreadable) return faults::cannotRead(pixels_.tag, pixels_.offset);
    return faults::cutOff(static_cast<int>(grouping_.completeFrames()), announced_, pixels_.tag, end_);
}

/// How far to read when more fragments may belong to the frame: a part of the mean size of frames, so as not
/// to read into the next one, or all the rest when there is no next one.
std::uint64_t EncapsulatedFrames::likelyFrameEnd(std::size_t frame) const {
    const std::uint64_t from = grouping_.fragment(grouping_.start(frame)).offset;
    const bool isDecided = grouping_.knownEnd(frame) - grouping_.start(frame) > 1;
    if (grouping_.allInOne() && end_ - from <= nativeFrameBytes_ + compressedSlack) return end_;
    const std::uint64_t mean = (end_ - table_.firstItem) / static_cast<std::uint64_t>(announced_);
    return isDecided ? from + mean / 10 * 9 : 0;
}

/// Lengthens the bytes read from the start of a frame to all of its fragments that are known, and shows the
/// walker what else was read. False when the source does not give them.
bool EncapsulatedFrames::extend(std::vector<std::byte>& stretch, std::uint64_t from,
                                std::size_t frame) const {
    const std::uint64_t needed = grouping_.fragment(grouping_.knownEnd(frame) - 1).end();
    std::uint64_t to = needed + FragmentWalker::usefulBytesBehind;
    if (grouping_.mayGrow(frame)) to = std::max(to, std::min(likelyFrameEnd(frame), from + mostFrameBytes()));
    const std::size_t had = stretch.size();
    const auto wanted = static_cast<std::size_t>(std::min(to, end_) - from);
    if (wanted > had) {
        stretch.resize(wanted);
        stretch.resize(had + source_->readAt(from + had, std::span(stretch).subspan(had)));
    }
    if (from + stretch.size() < needed) return false;

    FragmentWalker& walker = grouping_.walker();
    walker.show(from, stretch);
    if (grouping_.mayGrow(frame) || (grouping_.isOneEach() && walker.knowsNext())) grouping_.step();
    while (grouping_.mayGrow(frame) && walker.knowsNext()) grouping_.step();
    walker.forgetShown();
    return true;
}

FrameBytes EncapsulatedFrames::withoutItemHeaders(std::vector<std::byte> stretch, std::uint64_t from,
                                                  std::size_t frame) const {
    FrameBytes bytes;
    for (std::size_t index = grouping_.start(frame); index < grouping_.knownEnd(frame); ++index) {
        const Fragment& fragment = grouping_.fragment(index);
        const auto begin = stretch.begin() + static_cast<std::ptrdiff_t>(fragment.offset - from);
        const auto target = stretch.begin() + static_cast<std::ptrdiff_t>(bytes.length);
        if (begin != target) std::copy(begin, begin + static_cast<std::ptrdiff_t>(fragment.length), target);
        bytes.length += static_cast<std::size_t>(fragment.length);
    }
    bytes.storage = std::move(stretch);
    return bytes;
}

Result<FrameBytes> EncapsulatedFrames::readByWalking(int frame) const {
    const auto wanted = static_cast<std::size_t>(frame);
    if (!grouping_.findStart(wanted)) return missingFrame(frame);
    const std::uint64_t from = grouping_.fragment(grouping_.start(wanted)).offset;
    std::vector<std::byte> stretch;
    for (;;) {
        const Fragment last = grouping_.fragment(grouping_.knownEnd(wanted) - 1);
        if (!last.isComplete) return faults::cutOff(frame, announced_, pixels_.tag, last.offset);
        if (last.end() - from > mostFrameBytes()) return faults::damaged(pixels_.tag, from, frame);
        // At the end of all fragments the frames may turn out to lie elsewhere.
        if (grouping_.fragment(grouping_.start(wanted)).offset != from) return readByWalking(frame);
        if (!grouping_.mayGrow(wanted) && from + stretch.size() >= last.end()) break;
        if (!extend(stretch, from, wanted)) return faults::cannotRead(pixels_.tag, from + stretch.size());
    }
    FrameBytes bytes = withoutItemHeaders(std::move(stretch), from, wanted);
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
