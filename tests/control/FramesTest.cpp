#include "control/frames/ReadingPlan.h"
#include "tests/control/FakeDicomFile.h"
#include "tests/support/DiscBuilder.h"

#include <gtest/gtest.h>

#include <array>
#include <random>

namespace cinedisc {
namespace {

constexpr std::size_t announcedBytes = 256;  // of a frame

/// A file whose frames are made on the spot.
struct StoredRun : ImageFile {
    StoredRun(int count, const std::shared_ptr<FrameStore>& store)
        : ImageFile(test::greyRun(16, 16, count), {}, store), frames(count) {}

    const int frames;
    std::size_t bytes = announcedBytes, readBytes = 10, room = 0;
    bool failsReading = false, failsDecoding = false;
    DecodingWork work = DecodingWork::Little;
    std::function<void()> whileDecoding;

    dicom::Result<dicom::FrameBytes> readFrame(int) const override {
        if (failsReading) throw std::runtime_error("the disc has gone");
        dicom::FrameBytes read;
        read.storage.resize(readBytes);
        read.length = readBytes;
        return read;
    }
    DecodedFrame decodeRead(int index, const dicom::FrameBytes& from) const override {
        EXPECT_EQ(from.length, readBytes);
        if (whileDecoding) whileDecoding();
        if (failsDecoding && index % 2) throw std::bad_alloc();
        if (failsDecoding) throw std::length_error("too long");
        return dicom::Frame{1, index, 1, std::vector<std::uint8_t>(bytes)};
    }
    std::size_t decodingRoom() const override { return room; }
    DecodingWork decodingWork() const override { return work; }
};

/// What is held of the frames, and what is to be read next, looked for from the beginning every time.
struct Obvious {
    struct Held {
        std::size_t read = 0, decoded = 0;  ///< bytes
        bool isFault = false;
        int used = 0;
    };
    struct Wish {
        FrameWish wish;
        bool come = false;
    };
    const std::size_t ceiling;
    std::map<FrameKey, Held> held = {};
    std::vector<Wish> wishes = {};
    FrameKey atWork = {};
    std::size_t played = 0;
    int clock = 0, arrivals = 0;

    const StoredRun *run = nullptr, *next = nullptr;  ///< the view's; `next` is a path until it is open
    int frame = 0, lastRead = -1, burstEnd = -1;
    PlayDirection direction{};
    bool isNextTried = false, isNextOpen = false;

    static const StoredRun& runOf(const FrameKey& key) { return *static_cast<const StoredRun*>(key.run); }
    std::size_t sum(std::size_t Held::*kind) const {
        std::size_t total = 0;
        for (const auto& [key, entry] : held) total += entry.*kind;
        return total;
    }
    /// A rank in which what is due last is highest; 1000 for what nobody plays.
    int due(const FrameKey& key) const {
        if (run && isNextOpen && key.run == next) return window() * 2 + 1;
        int steps = 0;
        while (key.run == run && ahead(steps) != key.index) ++steps;
        return key.run == run ? steps * 2 : 1000;
    }
    bool hasRoom() const {
        return sum(&Held::read) + 2 * static_cast<std::size_t>(window() + 1) * played <= ceiling;
    }
    bool isRead(const FrameKey& key) const { return held.contains(key) && !held.at(key).decoded; }
    bool isWished(const FrameKey& key) const {
        return std::ranges::any_of(wishes, [&](const Wish& w) { return w.wish.key() == key && !w.come; });
    }
    void come(const FrameKey& key, Held entry) {
        entry.used = ++clock;
        held[key] = entry;
        arrivals += isWished(key);
        for (Wish& wish : wishes) wish.come |= wish.wish.key() == key;
    }
    void read(const FrameKey& key) {
        if (runOf(key).failsReading) return come(key, {0, sizeof(DecodedFrame), true, 0});
        held[key].read = runOf(key).readBytes;
        arrivals += runOf(key).work != DecodingWork::Little && isWished(key);
    }
    void decode(const FrameKey& key) {
        atWork = key;
        if (runOf(key).room > 0) makeRoom(runOf(key).room);
        atWork = {};
        Held entry = held[key];
        const bool isPlayed = key.run == run;
        if (!isPlayed || fits() || entry.read * 4 >= played * 3 || !hasRoom()) entry.read = 0;
        entry.isFault = runOf(key).failsDecoding;
        entry.decoded = sizeof(DecodedFrame) + (entry.isFault ? 0 : runOf(key).bytes);
        if (isPlayed && !entry.isFault) played = entry.decoded;
        come(key, entry);
        makeRoom(0);
    }
    void makeRoom(std::size_t room) {
        while (sum(&Held::read) + sum(&Held::decoded) + room > ceiling && letGoOfOne()) continue;
    }
    bool letGoOfOne() {
        std::optional<FrameKey> worst;
        const auto rank = [this](const FrameKey& key) {
            return std::tuple{!held.at(key).decoded, due(key), -held.at(key).used};
        };
        for (const auto& [key, entry] : held) {
            if (key == atWork || (!entry.decoded && (due(key) < 1000 || isWished(key)))) continue;
            if (!worst || rank(key) > rank(*worst)) worst = key;
        }
        if (!worst) return false;
        Held& entry = held[*worst];
        const bool isReadStill = entry.decoded && entry.read;
        entry = {entry.read, 0, false, 0};
        if (!isReadStill) held.erase(*worst);
        return true;
    }
    std::optional<FrameKey> nextDue(const FrameRun* one, const FrameRun* other) const {
        std::optional<FrameKey> soonest;
        for (const auto& [key, entry] : held) {
            const bool isCandidate = isRead(key) && (key.run == one || key.run == other);
            const int latest = soonest ? due(*soonest) - 1 : 2 * window() + 1;
            if (isCandidate && due(key) <= latest) soonest = key;
        }
        return soonest;
    }

    int ahead(int steps) const {
        const bool forward = direction == PlayDirection::Forward;
        return (frame + (forward ? steps : run->frames - steps)) % run->frames;
    }
    bool isMissing(const StoredRun* of, int f) const { return !held.contains({of, f}); }
    bool fits() const {
        return !run || announcedBytes * static_cast<std::size_t>(run->frames) <= ceiling / 4 * 3;
    }
    int window() const {
        const auto room = static_cast<int>(std::min<std::size_t>(ceiling / 4 / announcedBytes, 64));
        return !run ? 0 : fits() ? run->frames - 1 : std::min(run->frames - 1, room);
    }
    void leave() {
        run = next = nullptr;
        isNextOpen = false;
        played = 0;
    }
    bool follow(const StoredRun* newRun, int newFrame, PlayDirection newDirection, const StoredRun* newNext) {
        const bool isSame = run == newRun && direction == newDirection;
        if (isSame && frame == newFrame && next == newNext) return false;
        const bool isStep = isSame && newFrame == ahead(1);
        if (!isStep) burstEnd = -1;
        if (run != newRun) lastRead = -1, played = 0;
        if (run != newRun || next != newNext) isNextTried = isNextOpen = false;
        run = newRun, frame = newFrame, direction = newDirection, next = newNext;
        return !isStep || (!fits() && isRead({run, ahead(window())}));
    }
    /// StoredRun and frame; frame -1: the next file is to be opened.
    std::optional<std::pair<const StoredRun*, int>> step() {
        if (!run) return std::nullopt;
        for (int f = lastRead + 1; f <= burstEnd; ++f) {
            if (isMissing(run, f)) return std::pair(run, lastRead = f);
        }
        const int reach = fits() || hasRoom() ? run->frames - 1 : window();
        for (int steps = 1; steps <= reach; ++steps) {
            const int f = ahead(steps);
            if (!isMissing(run, f)) continue;
            lastRead = burstEnd = f;
            while (direction == PlayDirection::Reverse && lastRead > 0 && f - lastRead < 15 &&
                   isMissing(run, lastRead - 1))
                --lastRead;
            return std::pair(run, lastRead);
        }
        if (next && !isNextTried) return std::pair(next, -1);
        if (!isNextOpen) return std::nullopt;
        const int wanted = std::min(next->frames, fits() ? 64 : 1);
        const int from = direction == PlayDirection::Forward ? 0 : next->frames - wanted;
        for (int f = from; f < from + wanted; ++f) {
            if (isMissing(next, f)) return std::pair(next, f);
        }
        return std::nullopt;
    }
    int onTheWayTo(const StoredRun* of, int wanted) {
        if (of != run) return wanted;
        if (lastRead < 0 || wanted <= lastRead || wanted > lastRead + 16) return lastRead = wanted;
        while (++lastRead < wanted && !isMissing(run, lastRead)) continue;
        return lastRead;
    }
};

// However views move about and whatever they ask for, with room for all frames, for some and for few.
TEST(Frames, AreReadDecodedAndKeptAsByAnObviousVersion) {
    for (unsigned seed = 0; seed < 96; ++seed) {
        std::mt19937 random(seed);
        const auto any = [&](int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); };
        const std::size_t ceiling = std::array{1000000, 36000, 9000, 4200}[seed % 4];
        const auto store = std::make_shared<FrameStore>(ceiling);
        int arrivals = 0;
        store->onArrival([&] { ++arrivals; });
        std::array<std::shared_ptr<StoredRun>, 4> runs;
        for (auto& run : runs)
            run = std::make_shared<StoredRun>(std::array{1, 3, 40, 100}[&run - &runs[0]], store);
        const auto& odd = runs[seed / 4 % 2 + 2];
        odd->readBytes = std::array{100, 250, 700}[seed / 8 % 3];
        if (seed / 24 == 1) odd->bytes = ceiling + 1;
        if (seed / 24 == 2) odd->room = 1500;
        if (seed / 24 == 3) odd->work = DecodingWork::Much;
        ReadingPlan plan(*store);
        Obvious model{ceiling};
        constexpr int views[4]{};
        for (int step = 0; step < 700; ++step) {
            SCOPED_TRACE(testing::Message() << "seed " << seed << " step " << step);
            auto* run = runs[static_cast<std::size_t>(any(4))].get();
            const auto* const other = runs[static_cast<std::size_t>(any(4))].get();
            if (any(2) && model.run) run = const_cast<StoredRun*>(model.run);
            const FrameKey key{run, any(run->frames)};
            const bool isHeld = !model.isMissing(run, key.index), isThere = isHeld && !model.isRead(key);
            const int number = any(4);
            const void* const view = &views[number];
            const auto wished =
                std::ranges::find_if(model.wishes, [&](const auto& w) { return w.wish.view == view; });
            const bool hasWish = wished != model.wishes.end(), hasCome = hasWish && wished->come;
            run->failsReading = any(8) == 0;
            run->failsDecoding = any(8) == 0;
            const int what = any(100);
            if (what < 45) {
                ASSERT_EQ(plan.hasStep(), Obvious(model).step().has_value());
                const auto expected = model.step();
                const auto read = plan.step();
                ASSERT_EQ(read.has_value(), expected.has_value());
                if (!read) continue;
                if (expected->second >= 0) {
                    const FrameKey next{expected->first, expected->second};
                    ASSERT_EQ(read->file.get(), next.run);
                    ASSERT_EQ(read->frame, next.index);
                    store->read(next);
                    model.read(next);
                    continue;
                }
                ASSERT_EQ(read->file, nullptr);
                const QString path = plan.beginOpeningNext();
                ASSERT_EQ(path, QString::number(model.next->frames));
                const auto* const opened = number == 0 ? model.run : number == 1 ? nullptr : model.next;
                const bool isLate = any(4) == 0;
                plan.openedNext(isLate ? "elsewhere" : path, opened ? opened->shared_from_this() : nullptr);
                model.isNextTried = true;
                model.isNextOpen = opened == model.next && !isLate;
            } else if (what < 60) {
                const auto* const newRun = model.run && any(6) ? model.run : run;
                auto direction = model.direction;
                if (any(9) == 0) direction = any(2) ? PlayDirection::Forward : PlayDirection::Reverse;
                const auto* next = newRun == model.run && any(9) ? model.next : any(3) ? other : nullptr;
                if (next == newRun) next = nullptr;
                const bool goesOn = newRun == model.run && any(5);
                const int frame = goesOn ? model.ahead(1) : any(newRun->frames);
                ASSERT_EQ(plan.follow(newRun->shared_from_this(), frame, direction,
                                      next ? QString::number(next->frames) : QString()),
                          model.follow(newRun, frame, direction, next));
            } else if (what < 61) {
                plan.leave(run);
                if (model.run == run) model.leave();
            } else if (what < 64) {
                const FrameKey onTheWay{run, model.onTheWayTo(run, key.index)};
                ASSERT_EQ(plan.onTheWayTo(key), onTheWay.index);
                ASSERT_EQ(store->read(onTheWay), model.isMissing(run, onTheWay.index));
                if (model.isMissing(run, onTheWay.index)) model.read(onTheWay);
            } else if (what < 68) {
                const bool failsNow = run->failsDecoding || (!isHeld && run->failsReading);
                const bool isFault = isThere ? model.held[key].isFault : failsNow;
                const auto got = store->frame(key);
                if (!isHeld) model.read(key);
                if (isThere) model.held[key].used = ++model.clock;
                if (model.isRead(key)) model.decode(key);
                if (failsNow && !isThere) {
                    const bool isTooLarge = got->error().kind == dicom::DecodeError::Kind::TooLarge;
                    EXPECT_EQ(isTooLarge, isHeld || !run->failsReading);
                }
                EXPECT_TRUE(isFault ? !got->ok() : got->value().columns == key.index);
            } else if (what < 84) {
                const auto due = model.nextDue(run, other);
                EXPECT_EQ(store->decodeNextDue(run, other), due.has_value());
                if (due) model.decode(*due);
            } else if (what < 90) {
                const FrameWish wish{view, static_cast<Asker>(any(3)), run->shared_from_this(), key.index};
                const bool isSame = hasWish && wished->wish.key() == key && wished->wish.asker == wish.asker;
                const auto got = store->want(wish);
                EXPECT_EQ(got != nullptr, isThere || (isSame && hasCome));
                if (isThere) model.held[key].used = ++model.clock;
                if (!isSame || got) {
                    if (hasWish) model.wishes.erase(wished);
                    const bool isLast = wish.asker == Asker::Preview;
                    if (!got) model.wishes.insert(isLast ? model.wishes.end() : model.wishes.begin(), {wish});
                }
            } else if (what < 94) {
                const auto due = std::ranges::find_if(model.wishes, [&](const auto& wish) {
                    return !wish.come && model.isRead(wish.wish.key());
                });
                EXPECT_EQ(store->decodeWanted(), due != model.wishes.end());
                if (due != model.wishes.end()) model.decode(due->wish.key());
            } else if (what < 98) {
                const int how = any(3);
                if (how == 0) store->forget(view);
                if (how == 1) {
                    EXPECT_EQ(store->waitFor(view, {}) != nullptr, hasCome);
                }
                if (how == 2) {
                    const auto atHand = store->waitForBytes(view, key, {});
                    EXPECT_EQ(atHand.frame != nullptr, hasCome);
                    EXPECT_EQ(atHand.bytes != nullptr, isHeld && model.held[key].read > 0);
                }
                if (hasCome || (hasWish && how == 0)) model.wishes.erase(wished);
            } else {
                const bool onlyFaults = any(5);
                onlyFaults ? store->dropFaults(run) : store->drop(run);
                std::erase_if(model.held, [&](const auto& entry) {
                    return entry.first.run == run && (!onlyFaults || entry.second.isFault);
                });
                if (!onlyFaults && model.run && (model.run == run || model.next == run)) {
                    const std::size_t played = model.run == run ? model.played : 0;
                    plan.leave(model.run);
                    model.leave();
                    model.played = played;
                }
            }
            std::vector<FrameKey> toRead, wishesToRead;
            for (int f = 0; f < other->frames; ++f) {
                ASSERT_EQ(store->isMissing({other, f}), model.isMissing(other, f)) << f;
                ASSERT_EQ(store->isRead({other, f}), model.isRead({other, f})) << f;
            }
            for (const auto& [wish, come] : model.wishes)
                if (!come && !model.held.contains(wish.key())) toRead.push_back(wish.key());
            for (const auto& wish : store->wishesToRead()) wishesToRead.push_back(wish.key());
            ASSERT_EQ(wishesToRead, toRead);
            ASSERT_EQ(store->bytesHeld(),
                      model.sum(&Obvious::Held::read) + model.sum(&Obvious::Held::decoded));
            ASSERT_EQ(store->hasRoomForBytes(), model.hasRoom());
            ASSERT_EQ(arrivals, model.arrivals);
        }
        // A wish keeps its run, which keeps the store.
        for (const int& view : views) store->forget(&view);
    }
}

TEST(Frames, ThatTakeAllProcessorsAreDecodedOneAtATime) {
    for (const bool isAlone : {true, false}) {
        const auto store = std::make_shared<FrameStore>();
        const auto run = std::make_shared<StoredRun>(5, store);
        int atWork = 0, most = 0;
        run->work = isAlone ? DecodingWork::AllProcessors : DecodingWork::Much;
        run->whileDecoding = [&] {
            most = std::max(most, ++atWork);
            store->decodeWanted();
            store->decodeNextDue(run.get(), nullptr);
            --atWork;
        };
        ReadingPlan(*store).follow(run, 0, PlayDirection::Forward, "");
        for (const int frame : {0, 1, 2, 3}) store->read({run.get(), frame});
        EXPECT_EQ(store->want({&atWork, Asker::Preview, run, 2}), nullptr);
        while (store->decodeNextDue(run.get(), nullptr) || store->decodeWanted()) continue;
        EXPECT_NE(store->waitFor(&atWork, {}), nullptr);
        EXPECT_EQ(most, isAlone ? 1 : 4);
    }
}

TEST(ImageFile, RefusesFramesThatAreNotWhatTheHeaderSays) {
    for (const auto& [rows, columns, samples, size, isWhole] : {std::tuple{9, 8, 1, 192U, false},
                                                                {8, 0, 1, 192U, false},
                                                                {8, 8, 4, 999U, false},
                                                                {8, 8, 1, 63U, false},
                                                                {8, 8, 3, 191U, false},
                                                                {8, 8, 3, 192U, true},
                                                                {8, 8, 1, 64U, true}}) {
        for (const bool isWide : {false, true}) {
            dicom::Frame frame{rows, columns, samples, std::vector<std::uint8_t>(size)};
            if (isWide) frame.samples = std::vector<std::uint16_t>(size);
            const auto file = test::greyRun(8, 8, 1);
            file->picture = [frame](int) { return frame; };
            const auto got = ImageFile(file, {}, std::make_shared<FrameStore>()).frame(0);
            EXPECT_EQ(got->ok(), isWhole && (!isWide || samples == 1));
            EXPECT_TRUE(got->ok() || got->error().reason == dicom::DecodeError::Reason::WrongSize);
        }
    }
}

TEST(ImageLibrary, OpensAFileOnceUntilAnotherHasTakenItsPlace) {
    for (const bool looksAhead : {false, true}) {
        QTemporaryDir folder;
        const QString path = folder.filePath("a.dcm");
        test::FakeLibrary fake;
        std::vector<std::shared_ptr<Opening>> held;
        const auto open = [&] {
            const auto opening = held.emplace_back(fake.library.request(path, Asker::Probe));
            EXPECT_TRUE(fake.library.waitFor(*opening, Patience::Answer));
            return opening->outcome();
        };
        if (looksAhead) fake.library.lookAhead(std::chrono::minutes(1));
        test::DiscBuilder::write(path, "first");
        fake.opening = [](const auto&) { throw std::runtime_error("the disc has gone"); };
        EXPECT_FALSE(open().ok());
        fake.opening = {};
        const auto file = test::greyRun(8, 8, 1);
        fake.files[path.toStdString()] = file;
        file->broken = {0};
        auto shown = open().value();
        EXPECT_FALSE(shown->frame(0)->ok());
        file->broken.clear();
        EXPECT_EQ(open().value(), shown);
        EXPECT_EQ(fake.opened, 2);
        EXPECT_TRUE(shown->frame(0)->ok()) << "tried again";
        test::DiscBuilder::write(path, "another");
        fake.files[path.toStdString()] = test::greyRun(8, 8, 5);
        EXPECT_EQ(open().value()->dicom().frameCount(), 5);
        EXPECT_EQ(shown->dicom().frameCount(), 1) << "a view that shows the old one keeps it";
        EXPECT_GT(fake.library.frames().bytesHeld(), 0U);
        held.clear();
        shown.reset();
        EXPECT_EQ(fake.library.frames().bytesHeld(), 0U) << "the last view frees the frames";
        ASSERT_TRUE(QFile::remove(path));
        fake.files.clear();
        EXPECT_FALSE(open().ok());
    }
}

}  // namespace
}  // namespace cinedisc
