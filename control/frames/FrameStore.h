#pragma once

#include "control/frames/FrameWishes.h"
#include "control/frames/PlayOrder.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>

namespace cinedisc {

/// What the program holds of the frames of its runs, within one ceiling in bytes: decoded, and compressed
/// where a run does not fit decoded. Frames of runs that are not played go first, those used longest ago
/// before the others; of the run that is played those that are due last.
///
/// Safe to call from any thread; of several that want the same frame one reads and one decodes it.
class FrameStore {
  public:
    using Decoded = FrameWishes::Decoded;
    using Bytes = std::shared_ptr<const dicom::FrameBytes>;
    using Clock = std::chrono::steady_clock;

    /// Leaves room for all else that the program holds within its 512 MiB.
    static constexpr std::size_t programCeiling = std::size_t{384} << 20;

    /// `arrived` is called whenever a frame has come that a view waits for, or the bytes of one that takes
    /// much work, by the thread that decoded or read it; it must not call the store.
    explicit FrameStore(std::size_t ceilingInBytes = programCeiling) : ceiling_(ceilingInBytes) {}
    void onArrival(std::function<void()> arrived);
    std::size_t ceiling() const { return ceiling_; }

    /// The frame at hand, or what the steps make of it in the calling thread. One that cannot be read or
    /// decoded is kept as such.
    Decoded frame(const FrameKey& key);

    /// The frame at hand. Null when it is not: then the view waits for it, and for no other, until it asks
    /// again or is forgotten. Other threads find it among the wishes.
    Decoded want(FrameWish wish);
    /// Waits for the frame that a view wants; null when it has not come by the deadline.
    Decoded waitFor(const void* view, Clock::time_point deadline);
    /// The same, or the frame's bytes as soon as they have been read; both null when neither has come.
    struct AtHand {
        Decoded frame;
        Bytes bytes;
    };
    AtHand waitForBytes(const void* view, const FrameKey& key, Clock::time_point deadline);
    /// The view waits for nothing any more.
    void forget(const void* view);
    /// What views wait for and nobody has read or reads, in the order in which it is wanted.
    std::vector<FrameWish> wishesToRead() const;
    /// Decodes what was read of the frames that views wait for, the first wanted first. Returns whether there
    /// was one.
    bool decodeWanted();
    /// Whether a view waits for a frame, to be read or to be decoded.
    bool isAwaited() const;
    /// The first of the frames that can wait until nobody waits for any, and that nobody has read or reads.
    std::optional<FrameWish> idleWishToRead() const;
    /// Decodes what was read of these. Returns whether there was one.
    bool decodeIdle();

    /// Neither read nor being read.
    bool isMissing(const FrameKey& key) const;
    /// Read, but not yet decoded.
    bool isRead(const FrameKey& key) const;
    /// Reads a frame unless that is done or being done. Returns whether it was read now.
    bool read(const FrameKey& key);
    /// Decodes that frame of the order's window, or of the run that follows, which is due first among those
    /// read. Only frames of the two runs named are taken, which the caller keeps alive; either may be null.
    /// Returns whether there was one.
    bool decodeNextDue(const FrameRun* run, const FrameRun* next);

    /// What is played, for the choice of what to keep.
    void follow(const PlayOrder& order);
    /// Grows whenever frames are let go of: they are missing again.
    unsigned letGoCount() const { return letGoCount_; }
    /// Whether compressed frames of the run that is played still find room.
    bool hasRoomForBytes() const;
    /// Lets go of all frames of a run. None of them may be in use by a thread.
    void drop(const FrameRun* run);
    /// Lets go of the frames that could not be read or decoded, to be tried again.
    void dropFaults(const FrameRun* run);
    std::size_t bytesHeld() const;

  private:
    enum class Stage { Missing, Reading, Read, Decoding, Decoded };
    struct Entry {
        Stage stage = Stage::Missing;
        Bytes bytes;
        Decoded frame;
        std::list<FrameKey>::iterator use;  ///< while it is decoded
    };
    using Entries = std::map<FrameKey, Entry>;
    using Lock = std::unique_lock<std::mutex>;

    std::vector<FrameWish> withoutEntry(std::vector<FrameWish> wishes) const;
    bool decodeOneOf(Lock& lock, const std::vector<FrameWish>& wishes);
    void readNow(Lock& lock, Entries::iterator entry);
    Decoded decodeNow(Lock& lock, Entries::iterator entry);
    static bool decodesAlone(const FrameRun& run);
    bool mayBegin(const FrameRun& run) const;
    void keepDecoded(Entries::iterator entry, Decoded frame);
    void letGoOfBytes(Entry& entry);
    void letGoOfFrame(Entries::iterator entry);
    bool hasRoomFor(std::size_t bytes) const;
    bool wantsBytes(const FrameKey& key, const dicom::FrameBytes& bytes) const;
    Decoded use(Entry& entry);
    void makeRoom();
    Entries::iterator leastWanted();

    const std::size_t ceiling_;
    mutable std::mutex mutex_;
    std::condition_variable changed_;
    int waiting_ = 0;
    FrameWishes wishes_;
    std::function<void()> arrived_;
    Entries entries_;
    std::set<FrameKey> read_;   ///< entries at that stage
    std::list<FrameKey> uses_;  ///< decoded ones, used longest ago first
    std::atomic<unsigned> letGoCount_ = 0;
    std::size_t frameBytes_ = 0;
    std::size_t compressedBytes_ = 0;
    std::size_t playedFrameBytes_ = 0;                  ///< of one decoded frame of the run that is played
    std::map<const FrameRun*, std::size_t> decodedOf_;  ///< decoded frames by run
    int decodedAlone_ = 0;          ///< frames being decoded, of those that go one at a time
    std::size_t decodingRoom_ = 0;  ///< what they may take
    PlayOrder order_;
};

}  // namespace cinedisc
