#include "control/frames/FrameWishes.h"

#include <algorithm>
#include <utility>

namespace cinedisc {

std::vector<FrameWishes::Entry>::iterator FrameWishes::of(const void* view) {
    return std::ranges::find_if(entries_, [&](const Entry& entry) { return entry.wish.view == view; });
}

std::optional<FrameWish> FrameWishes::put(FrameWish wish) {
    const auto found = of(wish.view);
    const bool isSame = found != entries_.end() && found->wish.key() == wish.key();
    if (isSame && found->wish.asker == wish.asker) return wish;
    auto before = remove(wish.view);
    const bool isLast = wish.asker == Asker::Preview || wish.asker == Asker::WhenIdle;
    const auto place = isLast ? entries_.end() : entries_.begin();
    entries_.insert(place, Entry{std::move(wish), nullptr});
    return before;
}

std::optional<FrameWish> FrameWishes::remove(const void* view) {
    const auto found = of(view);
    if (found == entries_.end()) return std::nullopt;
    auto wish = std::move(found->wish);
    entries_.erase(found);
    return wish;
}

bool FrameWishes::wants(const FrameKey& key) const {
    return std::ranges::any_of(entries_,
                               [&](const Entry& entry) { return !entry.frame && entry.wish.key() == key; });
}

bool FrameWishes::fulfil(const FrameKey& key, const Decoded& frame) {
    bool any = false;
    for (Entry& entry : entries_) {
        if (entry.frame || entry.wish.key() != key) continue;
        entry.frame = frame;
        any = true;
    }
    return any;
}

FrameWishes::Decoded FrameWishes::arrivedFor(const void* view) const {
    const auto found =
        std::ranges::find_if(entries_, [&](const Entry& entry) { return entry.wish.view == view; });
    return found == entries_.end() ? nullptr : found->frame;
}

std::vector<FrameWish> FrameWishes::openOf(bool whenIdle) const {
    std::vector<FrameWish> wishes;
    for (const Entry& entry : entries_) {
        const bool isIdle = entry.wish.asker == Asker::WhenIdle;
        if (!entry.frame && isIdle == whenIdle) wishes.push_back(entry.wish);
    }
    return wishes;
}

}  // namespace cinedisc
