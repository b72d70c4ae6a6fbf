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
    try {
        return step();
    } catch (const std::bad_alloc&) {
    } catch (const std::length_error&) {
    }
    dicom::DecodeError error;
    error.kind = dicom::DecodeError::Kind::TooLarge;
    error.message = "the picture needs more memory than there is";
    return error;
}

std::size_t sizeOf(const dicom::Result<dicom::Frame>& frame) {
    return sizeof(dicom::Frame) + (frame ? frame.value().byteSize() : 0);
}

}  // namespace

FrameStore::Decoded FrameStore::frame(const FrameKey& key) { return frameBy({}, key, {}); }

FrameStore::Decoded FrameStore::frameBy(Clock::time_point deadline, const FrameKey& key,
                                        const std::function<void()>& ask) {
    Lock lock(mutex_);
    bool asked = false;
    for (;;) {
        const auto entry = entries_.try_emplace(key).first;
        switch (entry->second.stage) {
            case Stage::Decoded:
                return use(entry->second);
            case Stage::Read:
                return decodeNow(lock, entry);
            case Stage::Decoding:
                wait(lock);
                continue;
            case Stage::Missing:
                if (!ask) {
                    readNow(lock, entry);
                    continue;
                }
                if (!std::exchange(asked, true)) {
                    lock.unlock();
                    ask();
                    lock.lock();
                    continue;
                }
                break;
            case Stage::Reading:
                break;
        }
        if (!ask) {
            wait(lock);
        } else if (!waitUntil(lock, deadline)) {
            return nullptr;
        }
    }
}

void FrameStore::wait(Lock& lock) {
    ++waiting_;
    changed_.wait(lock);
    --waiting_;
}

bool FrameStore::waitUntil(Lock& lock, Clock::time_point deadline) {
    ++waiting_;
    const auto how = changed_.wait_until(lock, deadline);
    --waiting_;
    return how == std::cv_status::no_timeout;
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
        fault = std::make_shared<const dicom::Result<dicom::Frame>>(bytes.error());
    }
    lock.lock();
    if (fault) {
        keepDecoded(entry, std::move(fault));
    } else {
        compressedBytes_ += read->storage.capacity();
        entry->second.bytes = std::move(read);
        entry->second.stage = Stage::Read;
        read_.insert(key);
    }
    if (waiting_ > 0) changed_.notify_all();
}

FrameStore::Decoded FrameStore::decodeNow(Lock& lock, Entries::iterator entry) {
    entry->second.stage = Stage::Decoding;
    const FrameKey key = entry->first;
    read_.erase(key);
    const Bytes bytes = entry->second.bytes;
    lock.unlock();
    auto frame = std::make_shared<const dicom::Result<dicom::Frame>>(
        safely([&] { return key.run->decodeRead(key.index, *bytes); }));
    lock.lock();
    keepDecoded(entry, frame);
    if (waiting_ > 0) changed_.notify_all();
    makeRoom();
    return frame;
}

void FrameStore::keepDecoded(Entries::iterator entry, Decoded frame) {
    Entry& kept = entry->second;
    if (kept.bytes && !wantsBytes(entry->first, *kept.bytes)) letGoOfBytes(kept);
    frameBytes_ += sizeOf(*frame);
    if (entry->first.run == order_.run && frame->ok()) playedFrameBytes_ = sizeOf(*frame);
    kept.frame = std::move(frame);
    kept.stage = Stage::Decoded;
    kept.use = uses_.insert(uses_.end(), entry->first);
    ++decodedOf_[entry->first.run];
}

void FrameStore::letGoOfBytes(Entry& entry) {
    compressedBytes_ -= entry.bytes->storage.capacity();
    entry.bytes.reset();
}

/// Back to what was read, if that is still there.
void FrameStore::letGoOfFrame(Entries::iterator entry) {
    Entry& held = entry->second;
    frameBytes_ -= sizeOf(*held.frame);
    uses_.erase(held.use);
    if (--decodedOf_[entry->first.run] == 0) decodedOf_.erase(entry->first.run);
    if (!held.bytes) {
        entries_.erase(entry);
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

bool FrameStore::decodeNextDue(const FrameSteps* run, const FrameSteps* next) {
    Lock lock(mutex_);
    const FrameKey* due = nullptr;
    int soonest = order_.window + 2;
    for (const FrameKey& key : read_) {
        if (key.run != run && key.run != next) continue;
        const int steps = order_.stepsTo(key);
        if (steps >= soonest) continue;
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

/// Beside the frames ahead, which are decoded, and once more as many for what is at work.
bool FrameStore::hasRoomFor(std::size_t bytes) const {
    const std::size_t window = 2 * static_cast<std::size_t>(order_.window + 1) * playedFrameBytes_;
    return compressedBytes_ + bytes + window <= ceiling_;
}

/// Bytes that are hardly smaller than what they decode to are better kept decoded.
bool FrameStore::wantsBytes(const FrameKey& key, const dicom::FrameBytes& bytes) const {
    return key.run == order_.run && !order_.fits && bytes.length * 4 < playedFrameBytes_ * 3 && hasRoomFor(0);
}

void FrameStore::makeRoom() {
    while (frameBytes_ + compressedBytes_ > ceiling_) {
        const auto least = leastWanted();
        if (least == entries_.end()) return;
        if (least->second.stage == Stage::Decoded) {
            letGoOfFrame(least);
        } else {
            read_.erase(least->first);
            letGoOfBytes(least->second);
            entries_.erase(least);
        }
    }
}

FrameStore::Entries::iterator FrameStore::leastWanted() {
    // Bytes that nobody plays any more.
    for (const FrameKey& key : read_) {
        if (order_.stepsTo(key) == PlayOrder::never) return entries_.find(key);
    }
    const auto decoded = [this](const FrameSteps* run) {
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

void FrameStore::drop(const FrameSteps* run) {
    const std::lock_guard lock(mutex_);
    const auto from = entries_.lower_bound({run, INT_MIN});
    auto to = from;
    for (; to != entries_.end() && to->first.run == run; ++to) {
        Entry& entry = to->second;
        if (entry.bytes) letGoOfBytes(entry);
        if (entry.frame) {
            frameBytes_ -= sizeOf(*entry.frame);
            uses_.erase(entry.use);
        }
    }
    entries_.erase(from, to);
    read_.erase(read_.lower_bound({run, INT_MIN}), read_.upper_bound({run, INT_MAX}));
    decodedOf_.erase(run);
    if (order_.run == run) order_ = {};
    if (order_.next == run) order_.next = nullptr;
}

void FrameStore::dropFaults(const FrameSteps* run) {
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
