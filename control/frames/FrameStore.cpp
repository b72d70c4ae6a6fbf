#include "control/frames/FrameStore.h"

#include <climits>
#include <new>
#include <stdexcept>

namespace cinedisc {

namespace {

FrameStore::Decoded decodeSafely(const FrameStore::Decode& decode) {
    try {
        return std::make_shared<const dicom::Result<dicom::Frame>>(decode());
    } catch (const std::bad_alloc&) {
    } catch (const std::length_error&) {
    }
    dicom::DecodeError error;
    error.kind = dicom::DecodeError::Kind::TooLarge;
    error.message = "the picture needs more memory than there is";
    return std::make_shared<const dicom::Result<dicom::Frame>>(std::move(error));
}

}  // namespace

FrameStore::Decoded FrameStore::frame(const void* owner, int index, const Decode& decode) {
    std::unique_lock lock(mutex_);
    const Key key{owner, index};
    for (auto found = entries_.find(key); found != entries_.end(); found = entries_.find(key)) {
        if (found->second.frame) {
            uses_.splice(uses_.end(), uses_, found->second.use);
            return found->second.frame;
        }
        decoded_.wait(lock);
    }
    const auto entry = entries_.emplace(key, Entry{}).first;
    lock.unlock();
    auto frame = decodeSafely(decode);
    lock.lock();
    keep(entry, frame);
    makeRoom();
    lock.unlock();
    decoded_.notify_all();
    return frame;
}

void FrameStore::keep(std::map<Key, Entry>::iterator entry, Decoded frame) {
    Entry& kept = entry->second;
    kept.bytes = sizeof(dicom::Frame) + (frame->ok() ? frame->value().byteSize() : 0);
    kept.frame = std::move(frame);
    kept.use = uses_.insert(uses_.end(), entry->first);
    bytes_ += kept.bytes;
}

void FrameStore::makeRoom() {
    while (bytes_ > ceiling_ && !uses_.empty()) {
        const auto oldest = entries_.find(uses_.front());
        bytes_ -= oldest->second.bytes;
        uses_.pop_front();
        entries_.erase(oldest);
    }
}

void FrameStore::drop(const void* owner) {
    const std::lock_guard lock(mutex_);
    const auto from = entries_.lower_bound({owner, INT_MIN});
    auto to = from;
    for (; to != entries_.end() && to->first.first == owner; ++to) {
        bytes_ -= to->second.bytes;
        uses_.erase(to->second.use);
    }
    entries_.erase(from, to);
}

std::size_t FrameStore::bytesHeld() const {
    const std::lock_guard lock(mutex_);
    return bytes_;
}

}  // namespace cinedisc
