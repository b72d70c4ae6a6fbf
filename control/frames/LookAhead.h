#pragma once

#include "control/frames/ImageFile.h"
#include "control/frames/PlayOrder.h"

#include <QString>

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <set>
#include <thread>
#include <vector>

namespace cinedisc {

class ImageLibrary;

/// Reads and decodes what will be looked at next: the run that is played, in its direction, then the
/// beginning of the one that may follow. One thread reads, in file order where that is possible, because a
/// disc hates jumps; others decode. What is looked at now comes before all else.
///
/// Threads start with the first frame that is asked for.
class LookAhead {
  public:
    /// What the reader does with files that follow, and whom it tells. All are called in its thread.
    struct Surroundings {
        std::function<std::shared_ptr<const ImageFile>(const QString&)> open;  ///< null: cannot be shown
        std::function<void()> arrived;  ///< a frame that was asked for has been read
    };
    LookAhead(FrameStore& store, Surroundings surroundings);
    ~LookAhead();

    /// Reads a frame, counted from 0, as soon as the disc is free: the one that the main view asked for last,
    /// then those of the previews in their order.
    void readFirst(std::shared_ptr<const ImageFile> file, int frame, Asker asker);

    /// A view shows this frame of a file and moves in a direction, at the end into the file `next` ("" into
    /// none). Cheap: to be told with every frame.
    void follow(const std::shared_ptr<const ImageFile>& file, int frame, PlayDirection direction,
                const QString& next);
    /// The view is about to show something else.
    void leave(const ImageFile* file);
    /// Ends the threads. What is being read is waited for.
    void stop();

  private:
    struct Job {
        std::shared_ptr<const ImageFile> file;  ///< null: open the file that follows
        int frame = 0;
        Asker asker = Asker::Preview;
    };
    using Lock = std::unique_lock<std::mutex>;

    void startThreads();
    void readLoop();
    void decodeLoop();
    std::optional<Job> nextJob();
    Job jobForAsked();
    struct Stretch {
        int from = 0, to = 0;  ///< frames, both of them read
    };
    std::optional<Stretch> nextOfRun();
    std::optional<int> nextOfFollowing();
    void openNext(Lock& lock);
    void beginRun(const std::shared_ptr<const ImageFile>& file);
    bool hasWork();

    FrameStore& store_;
    const Surroundings surroundings_;

    std::mutex mutex_;
    std::condition_variable wakeReader_, wakeDecoders_;
    bool stopping_ = false;
    bool readerIdles_ = false;
    unsigned read_ = 0;      ///< grows whenever there may be something to decode
    std::deque<Job> asked_;  ///< the main view's, if there is one, is the first
    bool previewsFirst_ = false;
    std::set<FrameKey> awaited_;          ///< what has been asked for and not been read
    std::weak_ptr<const ImageFile> run_;  ///< what order_ is about
    PlayOrder order_;
    int covered_ = 0;    ///< steps ahead up to which nothing is missing
    int lastRead_ = -1;  ///< frame of the run
    int burstEnd_ = -1;  ///< frames are read upwards from lastRead_ to this one
    QString nextPath_;
    std::shared_ptr<const ImageFile> next_;
    bool isNextTried_ = false;
    int nextCovered_ = 0;                                  ///< its frames that are not missing
    std::deque<std::shared_ptr<const ImageFile>> recent_;  ///< runs played before, kept open
    std::vector<std::thread> threads_;
};

}  // namespace cinedisc
