#include "control/frames/LookAhead.h"

#include <algorithm>
#include <utility>

namespace cinedisc {

namespace {

/// Threads that decode only what a view waits for: one is enough unless views turn away from slow frames.
constexpr int mostDecodersOfWanted = 4;

bool isPreview(const FrameWish& wish) { return wish.asker == Asker::Preview; }

}  // namespace

LookAhead::LookAhead(FrameStore& store, OpenNext openNext)
    : store_(store), openNext_(std::move(openNext)), plan_(store) {}

LookAhead::~LookAhead() { stop(); }

void LookAhead::stop() {
    {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
    }
    for (auto* sleepers : {&wakeReader_, &wakeDecoders_, &wakeForWanted_, &wakeWhenIdle_})
        sleepers->notify_all();
    for (auto& thread : threads_) thread.join();
    threads_.clear();
}

void LookAhead::startThreads() {
    if (!threads_.empty() || stopping_) return;
    threads_.emplace_back([this] { readLoop(); });
    // One processor is left to the window: two decoders on two made the first pass faster and later ones
    // slower. Where decoding is most of the work, the other decoder helps.
    const unsigned decoders = std::clamp(std::thread::hardware_concurrency(), 2U, 5U) - 1;
    for (unsigned i = 0; i < decoders; ++i) startDecoder(Decodes::AlsoAhead);
    startDecoder(Decodes::WhatIsWanted);
}

void LookAhead::startDecoder(Decodes what) {
    if (what == Decodes::WhatIsWanted) ++decodersOfWanted_;
    threads_.emplace_back([this, what] { decodeLoop(what); });
}

void LookAhead::send(const std::shared_ptr<Errand>& errand, Asker asker) {
    const std::lock_guard lock(mutex_);
    startThreads();
    errands_.emplace_back(asker, errand);
    if (readerIdles_) wakeReader_.notify_one();
}

void LookAhead::wake(Decoders decoders) {
    const std::lock_guard lock(mutex_);
    startThreads();
    const bool allBusy = busyWithWanted_ == decodersOfWanted_;
    if (decoders == Decoders::AsManyAsNeeded && allBusy && decodersOfWanted_ < mostDecodersOfWanted &&
        !stopping_)
        startDecoder(Decodes::WhatIsWanted);
    readSomething();
    if (readerIdles_) wakeReader_.notify_one();
}

void LookAhead::follow(const std::shared_ptr<const ImageFile>& file, int frame, PlayDirection direction,
                       const QString& next) {
    const std::lock_guard lock(mutex_);
    startThreads();
    if (plan_.follow(file, frame, direction, next)) {
        ++read_;
        wakeDecoders_.notify_one();
    }
    if (readerIdles_ && hasWork())
        wakeReader_.notify_one();
    else
        noteIdleness();
}

void LookAhead::wakeWhenIdle() {
    const std::lock_guard lock(mutex_);
    startThreads();
    if (!std::exchange(hasIdleThread_, true) && !stopping_) threads_.emplace_back([this] { idleLoop(); });
    mayHaveIdleWish_ = true;
    noteIdleness();
    // What was read for another purpose need only be decoded.
    readSomething();
}

void LookAhead::noteIdleness() {
    if (mayHaveIdleWish_) wakeWhenIdle_.notify_one();
}

void LookAhead::leave(const ImageFile* file) {
    const std::lock_guard lock(mutex_);
    plan_.leave(file);
    servedRun_ = nullptr;
}

bool LookAhead::hasWork() { return !errands_.empty() || !store_.wishesToRead().empty() || plan_.hasStep(); }

/// A main view that has not drawn its picture yet is about to want it, even while it waits for nothing.
bool LookAhead::isIdle() { return readerIdles_ && plan_.run() && !hasWork() && !store_.isAwaited(); }

std::shared_ptr<Errand> LookAhead::nextErrand(bool ofPreviews) {
    std::erase_if(errands_, [](const auto& sent) { return sent.second.expired(); });
    const auto found = std::ranges::find_if(
        errands_, [&](const auto& sent) { return (sent.first == Asker::Preview) == ofPreviews; });
    if (found == errands_.end()) return nullptr;
    auto errand = found->second.lock();
    errands_.erase(found);
    return errand ? errand : nextErrand(ofPreviews);
}

/// A main view that plays would take turns with the previews, a jump each time: those that wait when it has
/// been served come all before its next frame.
std::optional<LookAhead::Job> LookAhead::nextJob() {
    if (auto errand = nextErrand(false)) return Job{std::move(errand), nullptr, 0};
    const auto wishes = store_.wishesToRead();
    const auto preview = std::ranges::find_if(wishes, isPreview);
    const bool isMainFirst = !wishes.empty() && !isPreview(wishes.front());
    if (isMainFirst && wishes.front().run.get() != servedRun_) return jobFor(wishes.front());
    if (auto run = std::exchange(opened_, {}).lock(); run && store_.isMissing({run.get(), 0}))
        return Job{nullptr, std::move(run), 0};
    if (preview != wishes.end()) return jobFor(*preview);
    if (auto errand = nextErrand(true)) return Job{std::move(errand), nullptr, 0};
    if (isMainFirst) return jobFor(wishes.front());
    if (auto step = plan_.step()) return Job{nullptr, std::move(step->file), step->frame};
    return std::nullopt;
}

LookAhead::Job LookAhead::jobFor(const FrameWish& wish) {
    const int frame = plan_.onTheWayTo(wish.key());
    if (!isPreview(wish) && frame == wish.index) servedRun_ = wish.run.get();
    return {nullptr, wish.run, frame};
}

void LookAhead::run(const Job& job, Lock& lock) {
    if (job.errand) {
        lock.unlock();
        job.errand->run();
        lock.lock();
        if (auto run = job.errand->toBeLookedAt()) opened_ = run;
    } else if (!job.run) {
        const QString path = plan_.beginOpeningNext();
        lock.unlock();
        auto file = openNext_(path);
        lock.lock();
        plan_.openedNext(path, std::move(file));
        // Frames of it may have been read already.
        readSomething();
    } else {
        lock.unlock();
        store_.read({job.run.get(), job.frame});
        lock.lock();
        readSomething();
    }
    ++served_;
}

void LookAhead::readSomething() {
    ++read_;
    wakeDecoders_.notify_one();
    wakeForWanted_.notify_one();
}

void LookAhead::readLoop() {
    Lock lock(mutex_);
    while (!stopping_) {
        auto job = nextJob();
        if (job) {
            run(*job, lock);
            continue;
        }
        readerIdles_ = true;
        noteIdleness();
        wakeReader_.wait(lock);
        readerIdles_ = false;
    }
}

void LookAhead::idleLoop() {
    Lock lock(mutex_);
    while (!stopping_) {
        const bool idle = isIdle();
        auto wish = idle ? store_.idleWishToRead() : std::nullopt;
        if (!wish) {
            if (idle) mayHaveIdleWish_ = false;
            wakeWhenIdle_.wait(lock);
            continue;
        }
        lock.unlock();
        // A frame may be far to seek: what is wanted meanwhile comes between the steps.
        const bool isRead = wish->run->approachFrame(wish->index) && store_.read(wish->key());
        wish.reset();
        lock.lock();
        if (isRead) readSomething();
        ++served_;
    }
}

void LookAhead::decodeLoop(Decodes what) {
    const bool alsoAhead = what == Decodes::AlsoAhead;
    Lock lock(mutex_);
    while (!stopping_) {
        const unsigned seen = read_;
        auto run = plan_.run();
        auto next = plan_.next();
        if (!alsoAhead) ++busyWithWanted_;
        lock.unlock();
        const auto ahead = [&](const auto& file) {
            const bool helps = file && (alsoAhead || file->decodingWork() == DecodingWork::Much);
            return helps ? file.get() : nullptr;
        };
        const bool wanted = store_.decodeWanted();
        const bool decoded =
            wanted || store_.decodeNextDue(ahead(run), ahead(next)) || (alsoAhead && store_.decodeIdle());
        run.reset();
        next.reset();
        lock.lock();
        if (!alsoAhead) --busyWithWanted_;
        if (wanted) noteIdleness();
        if (wanted && !alsoAhead) {
            // A frame that takes all processors may have waited for this one to end.
            ++read_;
            wakeDecoders_.notify_one();
        }
        if (!decoded && seen == read_ && !stopping_) (alsoAhead ? wakeDecoders_ : wakeForWanted_).wait(lock);
    }
}

}  // namespace cinedisc
