#pragma once

#include "dicom/Frame.h"
#include "dicom/Result.h"

#include <condition_variable>
#include <cstddef>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <mutex>
#include <utility>

namespace cinedisc {

/// The decoded frames of the program, within one ceiling in bytes: those used longest ago go first. Safe to
/// call from any thread; two threads that ask for the same frame decode it once.
class FrameStore {
  public:
    using Decoded = std::shared_ptr<const dicom::Result<dicom::Frame>>;
    using Decode = std::function<dicom::Result<dicom::Frame>()>;
    static constexpr std::size_t programCeiling = std::size_t{512} << 20;

    explicit FrameStore(std::size_t ceilingInBytes = programCeiling) : ceiling_(ceilingInBytes) {}

    /// The frame at hand, or what `decode` makes of it in the calling thread. A frame that cannot be decoded
    /// is kept as such. `owner` is the file's key.
    Decoded frame(const void* owner, int index, const Decode& decode);
    /// Lets go of all frames of a file.
    void drop(const void* owner);
    std::size_t bytesHeld() const;

  private:
    using Key = std::pair<const void*, int>;
    struct Entry {
        Decoded frame;  ///< null while a thread decodes it
        std::size_t bytes = 0;
        std::list<Key>::iterator use;
    };

    void keep(std::map<Key, Entry>::iterator entry, Decoded frame);
    void makeRoom();

    const std::size_t ceiling_;
    mutable std::mutex mutex_;
    std::condition_variable decoded_;
    std::map<Key, Entry> entries_;
    std::list<Key> uses_;  ///< longest ago first; only entries that are decoded
    std::size_t bytes_ = 0;
};

}  // namespace cinedisc
