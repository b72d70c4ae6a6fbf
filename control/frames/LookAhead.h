#pragma once

#include "control/frames/Errand.h"
#include "control/frames/ReadingPlan.h"

#include <QString>

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

namespace cinedisc {

/// The threads that read and decode. One reads, because a disc hates jumps: what a command or the main view
/// waits for, then what the previews wait for, then what will be looked at next. Others decode: some of them
/// only what a view waits for, so that no frame that nobody waits for any more is in its way. One more reads
/// what can wait until the first has nothing left to do, which thus need not wait for it when something is
/// wanted after all.
///
/// The threads are started by the first request.
class LookAhead {
  public:
    /// Opens the file that follows; called in the reader's thread. Null when it cannot be shown.
    using OpenNext = std::function<std::shared_ptr<const ImageFile>(const QString&)>;
    LookAhead(FrameStore& store, OpenNext openNext);
    ~LookAhead();

    /// Runs an errand as soon as the disc is free, in the reader's thread; never when everybody has let it go
    /// by then.
    void send(const std::shared_ptr<Errand>& errand, Asker asker);
    /// The store has a new wish. When all decoders are at frames that nobody waits for any more, there may be
    /// need of another.
    enum class Decoders { AsThereAre, AsManyAsNeeded };
    void wake(Decoders decoders = Decoders::AsManyAsNeeded);

    /// The store has a new wish that can wait until there is nothing else to do.
    void wakeWhenIdle();

    /// A view shows this frame of a file and moves in a direction, at the end into the file `next` ("" into
    /// none). Cheap: to be told with every frame.
    void follow(const std::shared_ptr<const ImageFile>& file, int frame, PlayDirection direction,
                const QString& next);
    /// The view is about to show something else.
    void leave(const ImageFile* file);
    /// Grows whenever the disc has given something.
    unsigned served() const { return served_; }
    /// Ends the threads. What is being read is waited for.
    void stop();

  private:
    struct Job {
        std::shared_ptr<Errand> errand;
        std::shared_ptr<const FrameRun> run;  ///< null without an errand: open the file that follows
        int frame = 0;
    };
    enum class Decodes { WhatIsWanted, AlsoAhead };
    using Lock = std::unique_lock<std::mutex>;

    void startThreads();
    void startDecoder(Decodes what);
    void readLoop();
    void decodeLoop(Decodes what);
    void idleLoop();
    bool hasWork();
    bool isIdle();
    void noteIdleness();
    std::optional<Job> nextJob();
    std::shared_ptr<Errand> nextErrand(bool ofPreviews);
    Job jobFor(const FrameWish& wish);
    void run(const Job& job, Lock& lock);
    void readSomething();

    FrameStore& store_;
    const OpenNext openNext_;

    std::mutex mutex_;
    std::condition_variable wakeReader_, wakeDecoders_, wakeForWanted_, wakeWhenIdle_;
    bool stopping_ = false;
    bool readerIdles_ = false;
    bool hasIdleThread_ = false, mayHaveIdleWish_ = false;
    unsigned read_ = 0;  ///< grows whenever there may be something to decode
    int decodersOfWanted_ = 0, busyWithWanted_ = 0;
    std::deque<std::pair<Asker, std::weak_ptr<Errand>>> errands_;
    std::weak_ptr<const FrameRun> opened_;  ///< its first frame stands behind what was read last
    const FrameRun* servedRun_ = nullptr;   ///< of the main view's last frame
    ReadingPlan plan_;
    std::atomic<unsigned> served_ = 0;
    std::vector<std::thread> threads_;
};

}  // namespace cinedisc
