#include "control/frames/FrameStore.h"

#include <algorithm>
#include <climits>
#include <new>
#include <stdexcept>
#include <utility>

namespace cinedisc {

namespace {

template <typename Step>
auto safely(const Step& step) -> decltype(step()) {
    dicom::DecodeError error;
    try {
        return step();
    } catch (const std::bad_alloc&) {
        error.kind = dicom::DecodeError::Kind::TooLarge;
        error.reason = dicom::DecodeError::Reason::Memory;
    } catch (const std::length_error&) {
        error.kind = dicom::DecodeError::Kind::TooLarge;
        error.reason = dicom::DecodeError::Reason::Memory;
    } catch (...) {
        // Whoever waits for the frame must hear of it.
        error.reason = dicom::DecodeError::Reason::Unknown;
    }
    return error;
}

}  // namespace

void FrameStore::onArrival(std::function<void()> arrived) {
    const std::lock_guard lock(mutex_);
    arrived_ = std::move(arrived);
}

FrameStore::Decoded FrameStore::frame(const FrameKey& key) {
    Lock lock(mutex_);
    for (;;) {
        const auto entry = entries_.try_emplace(key).first;
        switch (entry->second.stage) {
            case Stage::Decoded:
                return use(entry->second);
            case Stage::Read:
                return decodeNow(lock, entry);
            case Stage::Missing:
                readNow(lock, entry);
                break;
            case Stage::Reading:
            case Stage::Decoding:
                ++waiting_;
                changed_.wait(lock);
                --waiting_;
        }
    }
}

FrameStore::Decoded FrameStore::want(FrameWish wish) {
    // A wish may be the run's last owner. Its destructor calls this store to free its frames, so it must run
    // without the lock.
    std::optional<FrameWish> before;
    const Lock lock(mutex_);
    const auto entry = entries_.find(wish.key());
    if (entry != entries_.end() && entry->second.stage == Stage::Decoded) {
        before = wishes_.remove(wish.view);
        return use(entry->second);
    }
    const void* const view = wish.view;
    before = wishes_.put(std::move(wish));
    auto frame = wishes_.arrivedFor(view);
    if (frame) before = wishes_.remove(view);
    return frame;
}

FrameStore::Decoded FrameStore::waitFor(const void* view, Clock::time_point deadline) {
    std::optional<FrameWish> fulfilled;
    Lock lock(mutex_);
    ++waiting_;
    changed_.wait_until(lock, deadline, [&] { return wishes_.arrivedFor(view) != nullptr; });
    --waiting_;
    auto frame = wishes_.arrivedFor(view);
    if (frame) fulfilled = wishes_.remove(view);
    return frame;
}

FrameStore::AtHand FrameStore::waitForBytes(const void* view, const FrameKey& key,
                                            Clock::time_point deadline) {
    std::optional<FrameWish> fulfilled;
    AtHand atHand;
    Lock lock(mutex_);
    ++waiting_;
    changed_.wait_until(lock, deadline, [&] {
        atHand.frame = wishes_.arrivedFor(view);
        const auto entry = entries_.find(key);
        if (entry != entries_.end()) atHand.bytes = entry->second.bytes;
        return atHand.frame || atHand.bytes;
    });
    --waiting_;
    if (atHand.frame) fulfilled = wishes_.remove(view);
    return atHand;
}

void FrameStore::forget(const void* view) {
    std::optional<FrameWish> forgotten;
    const Lock lock(mutex_);
    forgotten = wishes_.remove(view);
}

std::vector<FrameWish> FrameStore::wishesToRead() const {
    std::vector<FrameWish> wishes;
    const std::lock_guard lock(mutex_);
    wishes = withoutEntry(wishes_.open());
    return wishes;
}

std::optional<FrameWish> FrameStore::idleWishToRead() const {
    std::vector<FrameWish> wishes;
    const std::lock_guard lock(mutex_);
    wishes = withoutEntry(wishes_.idle());
    return wishes.empty() ? std::nullopt : std::optional(wishes.front());
}

std::vector<FrameWish> FrameStore::withoutEntry(std::vector<FrameWish> wishes) const {
    std::erase_if(wishes, [this](const FrameWish& wish) { return entries_.contains(wish.key()); });
    return wishes;
}

bool FrameStore::isAwaited() const {
    std::vector<FrameWish> wishes;
    const std::lock_guard lock(mutex_);
    wishes = wishes_.open();
    return !wishes.empty();
}

bool FrameStore::decodeWanted() {
    std::vector<FrameWish> wishes;
    Lock lock(mutex_);
    wishes = wishes_.open();
    return decodeOneOf(lock, wishes);
}

bool FrameStore::decodeIdle() {
    std::vector<FrameWish> wishes;
    Lock lock(mutex_);
    wishes = wishes_.idle();
    return decodeOneOf(lock, wishes);
}

bool FrameStore::decodeOneOf(Lock& lock, const std::vector<FrameWish>& wishes) {
    for (const FrameWish& wish : wishes) {
        const auto entry = entries_.find(wish.key());
        if (entry == entries_.end() || entry->second.stage != Stage::Read || !mayBegin(*wish.run)) continue;
        decodeNow(lock, entry);
        return true;
    }
    return false;
}

FrameStore::Decoded FrameStore::use(Entry& entry) {
    uses_.splice(uses_.end(), uses_, entry.use);
    return entry.frame;
}

/// The entry stays where it is while a thread works on it without the lock.
void FrameStore::readNow(Lock& lock, Entries::iterator entry) {
    entry->second.stage = Stage::Reading;
    lock.unlock();
    const FrameKey key = entry->first;
    auto bytes = safely([&] { return key.run->readFrame(key.index); });
    Decoded fault;
    Bytes read;
    if (bytes) {
        read = std::make_shared<const dicom::FrameBytes>(std::move(bytes.value()));
    } else {
        fault = std::make_shared<const DecodedFrame>(bytes.error());
    }
    lock.lock();
    if (fault) {
        keepDecoded(entry, std::move(fault));
    } else {
        compressedBytes_ += read->storage.capacity();
        entry->second.bytes = std::move(read);
        entry->second.stage = Stage::Read;
        read_.insert(key);
        // The bytes may hold a coarse picture.
        if (arrived_ && key.run->decodingWork() != DecodingWork::Little && wishes_.wants(key)) arrived_();
    }
    if (waiting_ > 0) changed_.notify_all();
}

bool FrameStore::mayBegin(const FrameRun& run) const { return decodedAlone_ == 0 || !decodesAlone(run); }

bool FrameStore::decodesAlone(const FrameRun& run) {
    return run.decodingWork() == DecodingWork::AllProcessors || run.decodingRoom() > 0;
}

FrameStore::Decoded FrameStore::decodeNow(Lock& lock, Entries::iterator entry) {
    entry->second.stage = Stage::Decoding;
    const FrameKey key = entry->first;
    read_.erase(key);
    const Bytes bytes = entry->second.bytes;
    const int alone = decodesAlone(*key.run) ? 1 : 0;
    const std::size_t room = key.run->decodingRoom();
    decodedAlone_ += alone;
    decodingRoom_ += room;
    if (room > 0) makeRoom();
    lock.unlock();
    auto frame =
        std::make_shared<const DecodedFrame>(safely([&] { return key.run->decodeRead(key.index, *bytes); }));
    lock.lock();
    decodedAlone_ -= alone;
    decodingRoom_ -= room;
    keepDecoded(entry, frame);
    if (waiting_ > 0) changed_.notify_all();
    makeRoom();
    return frame;
}

void FrameStore::keepDecoded(Entries::iterator entry, Decoded frame) {
    Entry& kept = entry->second;
    if (kept.bytes && !wantsBytes(entry->first, *kept.bytes)) letGoOfBytes(kept);
    frameBytes_ += frame->byteSize();
    if (entry->first.run == order_.run && frame->ok()) playedFrameBytes_ = frame->byteSize();
    kept.frame = std::move(frame);
    kept.stage = Stage::Decoded;
    kept.use = uses_.insert(uses_.end(), entry->first);
    ++decodedOf_[entry->first.run];
    if (wishes_.fulfil(entry->first, kept.frame) && arrived_) arrived_();
}

void FrameStore::letGoOfBytes(Entry& entry) {
    compressedBytes_ -= entry.bytes->storage.capacity();
    entry.bytes.reset();
}

/// Drops the decoded frame but keeps its compressed bytes, if they are still there.
void FrameStore::letGoOfFrame(Entries::iterator entry) {
    Entry& held = entry->second;
    frameBytes_ -= held.frame->byteSize();
    uses_.erase(held.use);
    if (--decodedOf_[entry->first.run] == 0) decodedOf_.erase(entry->first.run);
    if (!held.bytes) {
        entries_.erase(entry);
        ++letGoCount_;
        return;
    }
    held.frame.reset();
    held.stage = Stage::Read;
    read_.insert(entry->first);
}

bool FrameStore::isMissing(const FrameKey& key) const {
    const std::lock_guard lock(mutex_);
    const auto entry = entries_.find(key);
    return entry == entries_.end() || entry->second.stage == Stage::Missing;
}

bool FrameStore::isRead(const FrameKey& key) const {
    const std::lock_guard lock(mutex_);
    return read_.contains(key);
}

bool FrameStore::read(const FrameKey& key) {
    Lock lock(mutex_);
    const auto entry = entries_.try_emplace(key).first;
    if (entry->second.stage != Stage::Missing) return false;
    readNow(lock, entry);
    return true;
}

bool FrameStore::decodeNextDue(const FrameRun* run, const FrameRun* next) {
    Lock lock(mutex_);
    const FrameKey* due = nullptr;
    int soonest = order_.window + 2;
    for (const FrameKey& key : read_) {
        if ((key.run != run && key.run != next) || !mayBegin(*key.run)) continue;
        const int steps = order_.stepsTo(key);
        if (steps >= soonest || (key.run == order_.run && steps > order_.window)) continue;
        soonest = steps;
        due = &key;
    }
    if (!due) return false;
    decodeNow(lock, entries_.find(*due));
    return true;
}

void FrameStore::follow(const PlayOrder& order) {
    const std::lock_guard lock(mutex_);
    if (order.run != order_.run) playedFrameBytes_ = 0;
    order_ = order;
}

bool FrameStore::hasRoomForBytes() const {
    const std::lock_guard lock(mutex_);
    return hasRoomFor(0);
}

/// Compressed frames may take what is left beside the decoded frames ahead, counted twice because as much may
/// be needed for those being decoded.
bool FrameStore::hasRoomFor(std::size_t bytes) const {
    const std::size_t window = 2 * static_cast<std::size_t>(order_.window + 1) * playedFrameBytes_;
    return compressedBytes_ + bytes + window <= ceiling_;
}

/// Bytes that are hardly smaller than what they decode to are better kept decoded.
bool FrameStore::wantsBytes(const FrameKey& key, const dicom::FrameBytes& bytes) const {
    return key.run == order_.run && !order_.fits && bytes.length * 4 < playedFrameBytes_ * 3 && hasRoomFor(0);
}

void FrameStore::makeRoom() {
    while (frameBytes_ + compressedBytes_ + decodingRoom_ > ceiling_) {
        const auto least = leastWanted();
        if (least == entries_.end()) return;
        if (least->second.stage == Stage::Decoded) {
            letGoOfFrame(least);
        } else {
            read_.erase(least->first);
            letGoOfBytes(least->second);
            entries_.erase(least);
            ++letGoCount_;
        }
    }
}

FrameStore::Entries::iterator FrameStore::leastWanted() {
    // Compressed frames of runs that nobody plays any more.
    for (const FrameKey& key : read_) {
        if (order_.stepsTo(key) == PlayOrder::never && !wishes_.wants(key)) return entries_.find(key);
    }
    const auto decoded = [this](const FrameRun* run) {
        const auto found = decodedOf_.find(run);
        return found == decodedOf_.end() ? 0 : found->second;
    };
    if (uses_.size() > decoded(order_.run) + decoded(order_.next)) {
        for (const FrameKey& key : uses_) {
            if (order_.stepsTo(key) == PlayOrder::never) return entries_.find(key);
        }
    }
    for (int steps = order_.frames - 1; steps >= 0; --steps) {
        if (steps == order_.window && decoded(order_.next) > 0) {
            return entries_.find(*std::find_if(
                uses_.begin(), uses_.end(), [this](const FrameKey& key) { return key.run == order_.next; }));
        }
        const auto found = entries_.find({order_.run, order_.ahead(steps)});
        if (found != entries_.end() && found->second.stage == Stage::Decoded) return found;
    }
    return uses_.empty() ? entries_.end() : entries_.find(uses_.front());
}

void FrameStore::drop(const FrameRun* run) {
    const std::lock_guard lock(mutex_);
    const auto from = entries_.lower_bound({run, INT_MIN});
    auto to = from;
    for (; to != entries_.end() && to->first.run == run; ++to) {
        Entry& entry = to->second;
        if (entry.bytes) letGoOfBytes(entry);
        if (entry.frame) {
            frameBytes_ -= entry.frame->byteSize();
            uses_.erase(entry.use);
        }
    }
    entries_.erase(from, to);
    read_.erase(read_.lower_bound({run, INT_MIN}), read_.upper_bound({run, INT_MAX}));
    decodedOf_.erase(run);
    if (order_.run == run) order_ = {};
    if (order_.next == run) order_.next = nullptr;
}

void FrameStore::dropFaults(const FrameRun* run) {
    const std::lock_guard lock(mutex_);
    auto entry = entries_.lower_bound({run, INT_MIN});
    while (entry != entries_.end() && entry->first.run == run) {
        const auto here = entry++;
        if (!here->second.frame || here->second.frame->ok()) continue;
        if (here->second.bytes) letGoOfBytes(here->second);
        letGoOfFrame(here);
    }
}

std::size_t FrameStore::bytesHeld() const {
    const std::lock_guard lock(mutex_);
    return frameBytes_ + compressedBytes_;
}

}  // namespace cinedisc
