#include "control/frames/ReadingPlan.h"

#include <algorithm>
#include <utility>

namespace cinedisc {

namespace {

/// Frames ahead of a run that does not fit decoded.
constexpr int shortWindow = 64;
/// Frames of the run that follows.
constexpr int framesOfNext = 64;
/// When frames are played backwards, so many are read forwards at a time.
constexpr int burstLength = 16;
/// Reading so many frames on the way takes a disc less time than a jump over them.
constexpr int worthReadingThrough = 16;
constexpr std::size_t recentRuns = 8;

}  // namespace

bool ReadingPlan::follow(const std::shared_ptr<const ImageFile>& file, int frame, PlayDirection direction,
                         const QString& next) {
    const bool isRun = run_.lock() == file;
    const bool isSame = isRun && order_.direction == direction;
    if (isSame && order_.frame == frame && nextPath_ == next) return false;
    if (!isRun) beginRun(file);
    if (nextPath_ != next) {
        nextPath_ = next;
        next_.reset();
        order_.next = nullptr;
        isNextTried_ = false;
    }
    const bool isStep = isSame && frame == order_.ahead(1);
    if (isStep) {
        covered_ = std::max(0, covered_ - 1);
    } else {
        covered_ = nextCovered_ = 0;
        burstEnd_ = -1;
    }
    order_.direction = direction;
    order_.frame = frame;
    store_.follow(order_);
    // Frames read earlier may be due to be decoded now.
    return !isStep || (!order_.fits && store_.isRead({order_.run, order_.ahead(order_.window)}));
}

void ReadingPlan::beginRun(const std::shared_ptr<const ImageFile>& file) {
    const std::size_t frameBytes = file->decodedFrameBytes();
    run_ = file;
    order_ = {};
    order_.run = file.get();
    order_.frames = file->dicom().frameCount();
    order_.fits = frameBytes * static_cast<std::size_t>(order_.frames) <= store_.ceiling() / 4 * 3;
    const auto room = static_cast<int>(std::min<std::size_t>(shortWindow, store_.ceiling() / 4 / frameBytes));
    order_.window = order_.fits ? order_.frames - 1 : std::min(room, order_.frames - 1);
    lastRead_ = burstEnd_ = -1;
    nextPath_.clear();
    next_.reset();
    std::erase(recent_, file);
}

void ReadingPlan::leave(const ImageFile* file) {
    const auto run = run_.lock();
    if (!run || run.get() != file) return;
    recent_.push_front(run);
    if (recent_.size() > recentRuns) recent_.pop_back();
    run_.reset();
    order_ = {};
    store_.follow(order_);
}

bool ReadingPlan::hasStep() { return run_.lock() && (nextOfRun() || mustOpenNext() || nextOfFollowing()); }

std::optional<ReadingPlan::Step> ReadingPlan::step() {
    auto run = run_.lock();
    if (!run) return std::nullopt;
    if (const auto stretch = nextOfRun()) {
        lastRead_ = stretch->from;
        burstEnd_ = stretch->to;
        return Step{std::move(run), lastRead_};
    }
    if (mustOpenNext()) return Step{};
    if (const auto frame = nextOfFollowing()) return Step{next_, *frame};
    return std::nullopt;
}

int ReadingPlan::onTheWayTo(const FrameKey& wanted) {
    if (!wanted.run || wanted.run != order_.run) return wanted.index;
    const bool isSoonReached =
        lastRead_ >= 0 && wanted.index > lastRead_ && wanted.index <= lastRead_ + worthReadingThrough;
    int frame = isSoonReached ? lastRead_ + 1 : wanted.index;
    while (frame < wanted.index && !isMissing(frame)) ++frame;
    lastRead_ = frame;
    return frame;
}

/// Forgets what is known to be there, after the store has let go of frames.
void ReadingPlan::forgetWhatIsCovered() {
    const unsigned count = store_.letGoCount();
    if (std::exchange(letGoCount_, count) != count) covered_ = nextCovered_ = 0;
}

/// What is to be read next of the run. Played backwards, a stretch of frames is read forwards.
std::optional<ReadingPlan::Stretch> ReadingPlan::nextOfRun() {
    forgetWhatIsCovered();
    for (int frame = lastRead_ + 1; frame <= burstEnd_; ++frame) {
        if (isMissing(frame)) return Stretch{frame, burstEnd_};
    }
    const int reach = order_.fits || store_.hasRoomForBytes() ? order_.frames - 1 : order_.window;
    for (; covered_ < reach; ++covered_) {
        const int frame = order_.ahead(covered_ + 1);
        if (!isMissing(frame)) continue;
        int from = frame;
        if (order_.direction == PlayDirection::Reverse) {
            while (from > 0 && frame - from < burstLength - 1 && isMissing(from - 1)) --from;
        }
        return Stretch{from, frame};
    }
    return std::nullopt;
}

std::optional<int> ReadingPlan::nextOfFollowing() {
    if (!next_) return std::nullopt;
    const int frames = next_->dicom().frameCount();
    const int wanted = std::min(frames, order_.fits ? framesOfNext : 1);
    const int from = order_.direction == PlayDirection::Forward ? 0 : frames - wanted;
    for (; nextCovered_ < wanted; ++nextCovered_) {
        if (store_.isMissing({next_.get(), from + nextCovered_})) return from + nextCovered_;
    }
    return std::nullopt;
}

QString ReadingPlan::beginOpeningNext() {
    isNextTried_ = true;
    return nextPath_;
}

void ReadingPlan::openedNext(const QString& path, std::shared_ptr<const ImageFile> file) {
    if (!file || nextPath_ != path || file.get() == order_.run) return;
    next_ = std::move(file);
    nextCovered_ = 0;
    order_.next = next_.get();
    store_.follow(order_);
}

}  // namespace cinedisc
