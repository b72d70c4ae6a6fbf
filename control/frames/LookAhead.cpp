#include "control/frames/LookAhead.h"

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
/// A disc gives so many frames sooner than it jumps.
constexpr int worthReadingThrough = 16;
constexpr std::size_t recentRuns = 8;

std::size_t decodedBytes(const dicom::PixelFormat& format) {
    const auto cell = static_cast<std::size_t>(format.bitsAllocated <= 8    ? 1
                                               : format.bitsAllocated <= 16 ? 2
                                               : format.bitsAllocated <= 32 ? 4
                                                                            : 8);
    return cell * static_cast<std::size_t>(format.rows) * static_cast<std::size_t>(format.columns) *
           static_cast<std::size_t>(format.samplesPerPixel);
}

}  // namespace

LookAhead::LookAhead(FrameStore& store, Surroundings surroundings)
    : store_(store), surroundings_(std::move(surroundings)) {}

LookAhead::~LookAhead() { stop(); }

void LookAhead::stop() {
    {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
    }
    wakeReader_.notify_all();
    wakeDecoders_.notify_all();
    for (auto& thread : threads_) thread.join();
    threads_.clear();
}

void LookAhead::startThreads() {
    if (!threads_.empty() || stopping_) return;
    threads_.emplace_back([this] { readLoop(); });
    // One processor is left to the window: two decoders on two made the first pass faster and later ones
    // slower.
    const unsigned decoders = std::clamp(std::thread::hardware_concurrency(), 2U, 5U) - 1;
    for (unsigned i = 0; i < decoders; ++i) threads_.emplace_back([this] { decodeLoop(); });
}

void LookAhead::readFirst(std::shared_ptr<const ImageFile> file, int frame, Asker asker) {
    const std::lock_guard lock(mutex_);
    startThreads();
    awaited_.insert({file.get(), frame});
    const auto isThisOne = [&](const Job& job) { return job.file == file && job.frame == frame; };
    if (asker == Asker::MainView) {
        // A main view waits for one frame only; should another window wait too, it asks again.
        std::erase_if(asked_, [&](const Job& job) { return job.asker == Asker::MainView || isThisOne(job); });
        asked_.push_front({std::move(file), frame, asker});
    } else if (std::ranges::none_of(asked_, isThisOne)) {
        asked_.push_back({std::move(file), frame, asker});
    }
    if (readerIdles_) wakeReader_.notify_one();
}

void LookAhead::follow(const std::shared_ptr<const ImageFile>& file, int frame, PlayDirection direction,
                       const QString& next) {
    const std::lock_guard lock(mutex_);
    startThreads();
    const bool isRun = run_.lock() == file;
    const bool isSame = isRun && order_.direction == direction;
    if (isSame && order_.frame == frame && nextPath_ == next) return;
    if (!isRun) beginRun(file);
    if (nextPath_ != next) {
        nextPath_ = next;
        next_.reset();
        order_.next = nullptr;
        isNextTried_ = false;
        nextCovered_ = 0;
    }
    const bool isStep = isSame && frame == order_.ahead(1);
    if (isStep) {
        covered_ = std::max(0, covered_ - 1);
    } else {
        covered_ = 0;
        burstEnd_ = -1;
    }
    order_.direction = direction;
    order_.frame = frame;
    store_.follow(order_);
    // A frame may have been read before its turn to be decoded.
    if (!order_.fits && (!isStep || store_.isRead({order_.run, order_.ahead(order_.window)}))) {
        ++read_;
        wakeDecoders_.notify_one();
    }
    if (readerIdles_ && hasWork()) wakeReader_.notify_one();
}

void LookAhead::beginRun(const std::shared_ptr<const ImageFile>& file) {
    const auto frameBytes = std::max<std::size_t>(1, decodedBytes(file->dicom().pixelFormat()));
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
    isNextTried_ = false;
    std::erase(recent_, file);
}

void LookAhead::leave(const ImageFile* file) {
    const std::lock_guard lock(mutex_);
    const auto run = run_.lock();
    if (!run || run.get() != file) return;
    recent_.push_front(run);
    if (recent_.size() > recentRuns) recent_.pop_back();
    run_.reset();
    order_ = {};
    covered_ = 0;
    store_.follow(order_);
}

bool LookAhead::hasWork() {
    return !asked_.empty() || nextOfRun() || (!nextPath_.isEmpty() && !isNextTried_) || nextOfFollowing();
}

std::optional<LookAhead::Job> LookAhead::nextJob() {
    if (!asked_.empty()) return jobForAsked();
    auto run = run_.lock();
    if (!run) return std::nullopt;
    if (const auto stretch = nextOfRun()) {
        lastRead_ = stretch->from;
        burstEnd_ = stretch->to;
        return Job{std::move(run), lastRead_};
    }
    if (!nextPath_.isEmpty() && !isNextTried_) return Job{};
    if (const auto frame = nextOfFollowing()) return Job{next_, *frame};
    return std::nullopt;
}

/// A main view that plays would take turns with the previews, a jump each time: those that wait when it has
/// been served come all before its next frame.
LookAhead::Job LookAhead::jobForAsked() {
    const auto isPreview = [](const Job& job) { return job.asker == Asker::Preview; };
    auto chosen = asked_.begin();
    if (previewsFirst_) chosen = std::ranges::find_if(asked_, isPreview);
    if (chosen == asked_.end()) chosen = asked_.begin();
    if (chosen->file.get() == order_.run) {
        const bool isSoonReached = lastRead_ >= 0 && chosen->frame > lastRead_ + 1 &&
                                   chosen->frame <= lastRead_ + worthReadingThrough;
        while (isSoonReached && ++lastRead_ < chosen->frame) {
            if (store_.isMissing({order_.run, lastRead_})) return {chosen->file, lastRead_};
        }
        lastRead_ = chosen->frame;
    }
    Job job = std::move(*chosen);
    asked_.erase(chosen);
    previewsFirst_ = (previewsFirst_ || !isPreview(job)) && std::ranges::any_of(asked_, isPreview);
    return job;
}

/// What is to be read next of the run. Played backwards, a stretch of frames is read forwards.
std::optional<LookAhead::Stretch> LookAhead::nextOfRun() {
    const auto isMissing = [this](int frame) { return store_.isMissing({order_.run, frame}); };
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

std::optional<int> LookAhead::nextOfFollowing() {
    if (!next_) return std::nullopt;
    const int frames = next_->dicom().frameCount();
    const int wanted = std::min(frames, order_.fits ? framesOfNext : 1);
    const int from = order_.direction == PlayDirection::Forward ? 0 : frames - wanted;
    for (; nextCovered_ < wanted; ++nextCovered_) {
        if (store_.isMissing({next_.get(), from + nextCovered_})) return from + nextCovered_;
    }
    return std::nullopt;
}

void LookAhead::openNext(Lock& lock) {
    isNextTried_ = true;
    const QString path = nextPath_;
    lock.unlock();
    auto file = surroundings_.open(path);
    lock.lock();
    if (!file || nextPath_ != path || file.get() == order_.run) return;
    next_ = std::move(file);
    nextCovered_ = 0;
    order_.next = next_.get();
    store_.follow(order_);
}

void LookAhead::readLoop() {
    Lock lock(mutex_);
    while (!stopping_) {
        auto job = nextJob();
        if (!job) {
            readerIdles_ = true;
            wakeReader_.wait(lock);
            readerIdles_ = false;
        } else if (!job->file) {
            openNext(lock);
        } else {
            const FrameKey key{job->file.get(), job->frame};
            lock.unlock();
            store_.read(key);
            job.reset();
            lock.lock();
            if (awaited_.erase(key) > 0) surroundings_.arrived();
            ++read_;
            wakeDecoders_.notify_one();
        }
    }
}

void LookAhead::decodeLoop() {
    Lock lock(mutex_);
    while (!stopping_) {
        const unsigned seen = read_;
        auto run = run_.lock();
        auto next = next_;
        lock.unlock();
        const bool decoded = store_.decodeNextDue(run.get(), next.get());
        run.reset();
        next.reset();
        lock.lock();
        if (!decoded && seen == read_ && !stopping_) wakeDecoders_.wait(lock);
    }
}

}  // namespace cinedisc
