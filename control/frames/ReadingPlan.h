#pragma once

#include "control/frames/ImageFile.h"
#include "control/frames/PlayOrder.h"

#include <QString>

#include <deque>
#include <memory>
#include <optional>

namespace cinedisc {

/// What is read next of the run that is played and of the one that follows: in file order where that is
/// possible, because a disc hates jumps. Knows no threads; not safe to call from several.
class ReadingPlan {
  public:
    explicit ReadingPlan(FrameStore& store) : store_(store) {}

    struct Step {
        std::shared_ptr<const ImageFile> file;  ///< null: the file that follows is to be opened
        int frame = 0;
    };

    /// A view shows this frame of a file and moves in a direction, at the end into the file `next` ("" into
    /// none). Returns whether frames read before may now be due to be decoded.
    bool follow(const std::shared_ptr<const ImageFile>& file, int frame, PlayDirection direction,
                const QString& next);
    /// The view is about to show something else.
    void leave(const ImageFile* file);

    bool hasStep();
    std::optional<Step> step();
    /// What to read for a frame that is wanted now: the frame itself, or, when it is soon reached, one on the
    /// way to it.
    int onTheWayTo(const FrameKey& wanted);

    /// The path of the file that follows, which is about to be opened.
    QString beginOpeningNext();
    /// It has been opened; null when it cannot be shown.
    void openedNext(const QString& path, std::shared_ptr<const ImageFile> file);

    std::shared_ptr<const ImageFile> run() const { return run_.lock(); }
    const std::shared_ptr<const ImageFile>& next() const { return next_; }

  private:
    struct Stretch {
        int from = 0, to = 0;  ///< frames, both of them read
    };
    void beginRun(const std::shared_ptr<const ImageFile>& file);
    bool isMissing(int frame) const { return store_.isMissing({order_.run, frame}); }
    bool mustOpenNext() const { return !nextPath_.isEmpty() && !isNextTried_; }
    void forgetWhatIsCovered();
    std::optional<Stretch> nextOfRun();
    std::optional<int> nextOfFollowing();

    FrameStore& store_;
    std::weak_ptr<const ImageFile> run_;  ///< what order_ is about
    PlayOrder order_;
    unsigned letGoCount_ = 0;  ///< of the store, when covered_ and nextCovered_ were true
    int covered_ = 0;          ///< steps ahead up to which nothing is missing
    int lastRead_ = -1;        ///< frame of the run
    int burstEnd_ = -1;        ///< frames are read upwards from lastRead_ to this one
    QString nextPath_;
    std::shared_ptr<const ImageFile> next_;
    bool isNextTried_ = false;
    int nextCovered_ = 0;                                  ///< its frames that are not missing
    std::deque<std::shared_ptr<const ImageFile>> recent_;  ///< runs played before, kept open
};

}  // namespace cinedisc
