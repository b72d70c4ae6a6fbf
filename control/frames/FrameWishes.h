#pragma once

#include "control/frames/FrameRun.h"

#include <memory>
#include <optional>
#include <vector>

namespace cinedisc {

/// A frame that a view waits for.
struct FrameWish {
    const void* view = nullptr;
    Asker asker = Asker::Preview;
    std::shared_ptr<const FrameRun> run;
    int index = 0;  ///< counted from 0

    FrameKey key() const { return {run.get(), index}; }
};

/// What the views wait for, each for one frame at most: a main view's first, the last asked before the
/// others, then the previews' as they were asked. What has come stays here until its view takes it, whatever
/// the store lets go of.
class FrameWishes {
  public:
    using Decoded = std::shared_ptr<const DecodedFrame>;

    /// Takes the place of what the view wanted before, which is handed back; the same frame keeps its turn.
    std::optional<FrameWish> put(FrameWish wish);
    std::optional<FrameWish> remove(const void* view);
    /// Whether anybody waits for it.
    bool wants(const FrameKey& key) const;
    /// Hands a frame that has come to the views that wait for it. Returns whether there was one.
    bool fulfil(const FrameKey& key, const Decoded& frame);
    /// What has come for a view, null when nothing has.
    Decoded arrivedFor(const void* view) const;
    /// Those that somebody waits for and nothing has come for, in their order.
    std::vector<FrameWish> open() const { return openOf(false); }
    /// The same of those that can wait until there is no other.
    std::vector<FrameWish> idle() const { return openOf(true); }

  private:
    struct Entry {
        FrameWish wish;
        Decoded frame;
    };
    std::vector<FrameWish> openOf(bool whenIdle) const;
    std::vector<Entry>::iterator of(const void* view);

    std::vector<Entry> entries_;
};

}  // namespace cinedisc
