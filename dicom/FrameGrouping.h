#pragma once

#include "dicom/FragmentWalker.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace cinedisc::dicom {

/// Finds out which fragments make which frame where no offset table tells, walking no further than it must.
///
/// A single frame takes all fragments, up to one that begins another code stream. Several frames are one
/// fragment each if the second fragment begins a code stream as the first does; otherwise a frame begins
/// wherever a code stream begins. When that yields too few frames in the end, the fragments are dealt out
/// evenly.
class FrameGrouping {
  public:
    FrameGrouping(const ByteSource& source, std::uint64_t firstItem, std::uint64_t end, int frames,
                  Compression declared)
        : source_(source),
          walker_(source, firstItem, end),
          frames_(static_cast<std::size_t>(frames)),
          declared_(declared) {}

    /// Walks until the first fragment of a frame is known; false when the file has no such frame.
    bool findStart(std::size_t frame);
    /// Goes one fragment further unless a frame's first fragment is known or there are no more. Returns
    /// whether that was so.
    bool approach(std::size_t frame);
    /// Index of a frame's first fragment, which must have been found.
    std::size_t start(std::size_t frame) const { return starts_[frame]; }
    /// Index behind the last fragment of a frame as known so far.
    std::size_t knownEnd(std::size_t frame) const;
    /// Whether fragments not yet seen may belong to the frame.
    bool mayGrow(std::size_t frame) const;
    /// Goes one fragment further.
    void step();
    /// Decides again from the signatures of all fragments, after a frame turned out not to begin a code
    /// stream.
    void regroupBySignature();

    const Fragment& fragment(std::size_t index) const { return fragments_[index]; }
    /// Frames found of which no fragment is cut off.
    std::size_t completeFrames() const {
        return starts_.size() - (!fragments_.empty() && !fragments_.back().isComplete ? 1 : 0);
    }
    bool allInOne() const { return frames_ == 1; }
    bool isOneEach() const { return rule_ == Rule::OneEach; }
    bool firstBeginsCodeStream() const { return firstBegins_; }
    FragmentWalker& walker() { return walker_; }
    const FragmentWalker& walker() const { return walker_; }

  private:
    enum class Rule { Undecided, AllInOne, OneEach, BySignature };
    void place(bool begins);
    void dealOutEvenly();

    const ByteSource& source_;
    FragmentWalker walker_;
    std::size_t frames_;
    Compression declared_;
    Rule rule_ = Rule::Undecided;
    bool firstBegins_ = false;
    std::vector<Fragment> fragments_;
    std::vector<std::size_t> starts_;
};

}  // namespace cinedisc::dicom
