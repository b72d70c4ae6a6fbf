#include "control/frames/LookAhead.h"
#include "control/frames/ReadingPlan.h"
#include "dicom/Tags.h"
#include "tests/control/ViewFixture.h"
#include "tests/support/DiscBuilder.h"

#include <QPlainTextEdit>
#include <QSignalSpy>

#include <array>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <random>
#include <sstream>
#include <thread>

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
        odd->readBytes = std::array{100, 250, 315, 700}[seed / 8 % 4];  // of 360 when decoded
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
    const std::tuple<int, int, int, std::size_t, bool> cases[] = {
        {9, 8, 1, 192, false}, {8, 0, 1, 192, false}, {8, 8, 4, 999, false}, {8, 8, 1, 63, false},
        {8, 8, 3, 191, false}, {8, 8, 3, 192, true},  {8, 8, 1, 64, true}};
    for (const auto& [rows, columns, samples, size, isWhole] : cases) {
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

using Steps = std::vector<std::string>;
constexpr std::chrono::minutes veryPatient{1};
constexpr std::chrono::milliseconds atOnce{0};

/// A disc, and decoders, whose every step is written down and waits while a test holds its kind: "open /a",
/// "read /a 3", "decode /a 3".
class HeldDisc {
  public:
    /// Steps that begin so wait, "" all, until they are let go.
    void hold(const std::string& kind) {
        const std::lock_guard lock(mutex_);
        held_.insert(kind);
    }
    void letGo(const std::string& kind = "") {
        const std::lock_guard lock(mutex_);
        std::erase_if(held_, [&](const auto& held) { return held.starts_with(kind); });
        changed_.notify_all();
    }
    void pass(const std::string& step) {
        std::unique_lock lock(mutex_);
        EXPECT_TRUE(std::this_thread::get_id() != window_ || step == "work") << "the window waits: " << step;
        steps_.push_back(step);
        changed_.notify_all();
        changed_.wait(lock, [&] {
            return std::ranges::none_of(held_, [&](const auto& kind) { return step.starts_with(kind); });
        });
    }
    /// Waits until so many steps of a kind have begun.
    bool reached(const std::string& kind, std::size_t count = 1) {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, std::chrono::seconds(20), [&] { return of(kind).size() >= count; });
    }
    Steps steps(const std::string& kind = "read") {
        const std::lock_guard lock(mutex_);
        return of(kind);
    }
    /// A run on it; all pixels of a frame, counted from 0, are `first` and its number.
    std::shared_ptr<test::FakeDicomFile> run(const std::string& name, int frames, int first = 1) {
        auto file = test::greyRun(16, 16, frames, [first](int, int, int f) { return first + f; });
        file->reading = [=, this](int frame) { pass("read " + name + " " + std::to_string(frame)); };
        file->picture = [=, this, picture = file->picture](int frame) {
            pass("decode " + name + " " + std::to_string(frame));
            return picture(frame);
        };
        return file;
    }

  private:
    Steps of(const std::string& kind) const {
        Steps found;
        std::ranges::copy_if(steps_, std::back_inserter(found),
                             [&](const auto& step) { return step.starts_with(kind); });
        return found;
    }
    const std::thread::id window_ = std::this_thread::get_id();
    std::mutex mutex_;
    std::condition_variable changed_;
    std::set<std::string> held_;
    Steps steps_;
};

/// Outlives the threads that may still be reading when a test is over.
struct WithDisc {
    HeldDisc disc;
};

class LookAheadTest : protected WithDisc, public test::ViewFixture {
  protected:
    LookAheadTest() {
        fake.opening = [this](const std::string& path) { disc.pass("open " + path); };
        ownWords = {
            {"hold", [this](const QString& kind) { disc.hold(kind.toStdString()); }},
            {"letGo", [this](const QString&) { disc.letGo(); }},
            {"reached",
             [this](const QString& step) {
                 // A view that waits may ask once more for what it waits for.
                 EXPECT_TRUE(QTest::qWaitFor([&] { return !disc.steps(step.toStdString()).empty(); }, 20000));
             }},
            {"draw", [this](const QString&) { seen(); }},
            {"reading",
             [this](const QString&) {
                 EXPECT_TRUE(view.isReading());
                 EXPECT_EQ(view.accessibleDescription(), "reading …");
             }},
            {"grey",
             [this](const QString& grey) {
                 EXPECT_TRUE(
                     QTest::qWaitFor([&] { return !view.isReading() && greyAt(70, 60) == grey.toInt(); }));
                 EXPECT_EQ(view.accessibleDescription(), "");
             }},
        };
    }
    ~LookAheadTest() override { disc.letGo(); }
    /// From now on a view waits so long for a picture, and a command so long for an answer.
    void lookAhead(std::chrono::milliseconds glance, std::chrono::milliseconds answer = veryPatient) {
        fake.library.lookAhead(glance, answer);
    }
    void makeRun(const std::string& name, int frames, int first = 1) {
        fake.files["/" + name] = disc.run(name, frames, first);
    }
    /// Does it while the disc begins a step, which ends only then.
    template <typename Act>
    void during(const std::string& step, const Act& act) {
        disc.hold(step);
        std::jthread later([&] {
            disc.reached(step);
            disc.letGo(step);
        });
        act();
    }
};

TEST_F(LookAheadTest, ReadsTheShownRunAndThenTheNeighbourEachFrameOnce) {
    lookAhead(veryPatient);
    makeRun("b", 100);
    makeRun("a", 20);
    view.setNeighbour([](const QString& path, PlayDirection) { return path == "/a" ? "/b" : "/a"; });
    Steps expected;
    // Of the neighbour 64 frames: it may never be played.
    for (const auto& [path, from, to] :
         {std::tuple{"/a", 0, 20}, {"/b", 0, 64}, {"/b", 64, 100}, {"/a", 0, 0}}) {
        for (int f = from; f < to; ++f)
            expected.push_back(std::string("read ") + path[1] + " " + std::to_string(f));
        if (from != 0 || to != 64) view.putFileName(path);
        seen();
        ASSERT_TRUE(disc.reached("read", expected.size()));
        Steps begun = disc.steps();
        begun.resize(expected.size());
        ASSERT_EQ(begun, expected);
    }
    EXPECT_EQ(disc.steps().size(), expected.size());
    EXPECT_EQ(fake.opened, 2) << "a run played before is still open";
    ASSERT_TRUE(disc.reached("decode a", 20));
    EXPECT_EQ(disc.steps("decode a").size(), 20U);

    // One that was left before all that had been read of it was decoded.
    makeRun("left", 20);
    makeRun("c", 1);
    view.setNeighbour([](const QString&, PlayDirection) { return QString(); });
    run("hold decode left 5; FileName /left; draw; reached read left 19; reached decode left 5; "
        "FileName /c; draw; letGo; FileName /left; draw; reached decode left 19");

    // Single steps, also past an end, say which way a run is played; jumps do not, nor do two frames.
    QString played;
    view.setNeighbour([&](const QString&, PlayDirection towards) {
        played = towards == PlayDirection::Forward ? "on" : "back";
        return QString();
    });
    ownWords["plays"] = [&](const QString& way) { EXPECT_EQ(played, way); };
    for (const int frames : {2, 3, 5}) makeRun(std::to_string(frames), frames);
    run("FileName /5; CurrentFrame 5; draw; plays back; CurrentFrame 1; draw; plays on; CurrentFrame 2; "
        "draw; plays on; CurrentFrame 1; draw; plays back; CurrentFrame 3; draw; plays back; CurrentFrame 4; "
        "draw; plays on; CurrentFrame 2; draw; plays on; CurrentFrame 1; draw; plays back; FileName /2; "
        "CurrentFrame 2; draw; plays back; FileName /3; CurrentFrame 2; draw; plays on");
}

// Also when look-ahead is just reading or decoding the very frame that is wanted.
TEST_F(LookAheadTest, SaysThatItReadsUntilTheDiscHasGivenThePicture) {
    lookAhead(atOnce);
    for (const QString held : {"open /w", "read x 0", "read y 4", "decode z 4"}) {
        const QString name = held.section(' ', 1, 1).remove('/');
        const QSignalSpy drawn(&view, &ezDICOMX::frameDrawn);
        makeRun(name.toStdString(), 30);
        run("hold " + held + "; FileName /" + name + "; draw");
        if (held.endsWith('4')) run("grey 1");
        run("reached " + held);
        if (held.startsWith("open")) {
            disc.hold("read");
            disc.letGo("open /w");
        }
        run("FrameCount is 30; CurrentFrame 2; CurrentFrame 3; CurrentFrame 4; CurrentFrame 5; reading; "
            "letGo; grey 5");
        EXPECT_EQ(drawn.size(), held.endsWith('4') ? 2 : 1);
        ASSERT_TRUE(disc.reached("decode " + name.toStdString(), 30));
        EXPECT_EQ(disc.steps("read " + name.toStdString()).size(), 30U) << "each frame once";
    }
}

// A cine puts the next frame as soon as the last has come: that one must have been painted by then.
TEST_F(LookAheadTest, PaintsAPictureWhenItComesThoughTheNextIsPutAtOnce) {
    lookAhead(atOnce);
    disc.hold("read");
    load(disc.run("a", 30));
    seen();
    QImage painted;
    QObject::connect(&fake.library.arrivals(), &FrameArrivals::arrived, &view, [&] {
        if (view.isReading() || view.CurrentFrame() > 1) return;
        painted = onScreen();
        view.putCurrentFrame(2);
    });
    disc.letGo();
    ASSERT_TRUE(QTest::qWaitFor([&] { return view.CurrentFrame() == 2; }));
    EXPECT_EQ(qRed(painted.pixel(70, 60)), 1);
}

// What the window waits for comes first, then the previews in their turn; what nobody wants any more is left
// out. Of each script the first step is held until all others have been asked for.
TEST_F(LookAheadTest, ServesTheDiscInTheOrderInWhichItIsWanted) {
    const struct {
        Steps asked, expected;
    } scripts[] = {
        {{"1 read z", "1 read b", "2 read c", "main read a"},
         {"read z 0", "read a 0", "read b 0", "read c 0"}},
        {{"main read a", "1 read b", "2 read c", "main read a 1"},
         {"read a 0", "read b 0", "read c 0", "read a 1"}},
        {{"main read a", "1 read b", "main read c"}, {"read a 0", "read c 0", "read b 0"}},
        {{"main follow a", "1 read b", "main read a 3"}, {"read a 1", "read a 2", "read a 3", "read b 0"}},
        {{"1 read z", "2 read b", "2 forget", "3 read c"}, {"read z 0", "read c 0"}},
        {{"1 read z", "2 read b", "3 read c", "2 read b"}, {"read z 0", "read b 0", "read c 0"}},
        {{"1 read z", "2 read b", "3 read c", "2 read d"}, {"read z 0", "read c 0", "read d 0"}},
        {{"1 open z", "2 open b", "3 read c", "main open a"},
         {"open z", "open a", "read a 0", "read c 0", "open b", "read b 0"}},
        {{"1 open z", "2 open b", "probe open a"}, {"open z", "open a", "read z 0", "open b", "read b 0"}},
        {{"1 open z", "2 open b", "2 forget", "1 forget", "3 open c"}, {"open z", "open c", "read c 0"}},
        {{"1 open z", "2 open b", "main open b"}, {"open z", "open b", "read b 0"}},
        {{"main read a", "1 open b", "main read a 1"}, {"read a 0", "open b", "read b 0", "read a 1"}},
    };
    for (const auto& [script, expected] : scripts) {
        HeldDisc held;
        test::FakeLibrary own;
        own.opening = [&](const std::string& path) { held.pass("open " + path.substr(1)); };
        own.library.lookAhead(atOnce, veryPatient);
        const std::shared_ptr<FrameStore> store(std::shared_ptr<void>(), &own.library.frames());
        std::map<std::string, std::shared_ptr<const ImageFile>> files;
        for (const std::string name : {"a", "b", "c", "d", "z"}) {
            own.files["/" + name] = held.run(name, 4);
            files[name] = std::make_shared<const ImageFile>(own.files["/" + name], FileStamp(), store);
        }
        std::map<std::string, std::shared_ptr<Opening>> views;
        held.hold("");
        for (const std::string& asked : script) {
            std::string who, what, name;
            int frame = 0;
            std::istringstream(asked) >> who >> what >> name >> frame;
            const auto asker = who == "main"    ? Asker::MainView
                               : who == "probe" ? Asker::Probe
                                                : Asker::Preview;
            auto& opening = views[who];
            if (what == "open") {
                opening = own.library.request(QString::fromStdString("/" + name), asker);
            } else if (what == "follow") {
                own.library.ahead()->follow(files[name], 0, PlayDirection::Forward, "");
            } else if (what == "read") {
                own.library.frame(&opening, asker, files[name], frame, Patience::Glance);
            } else {
                opening.reset();
                own.library.forget(&opening);
            }
            EXPECT_TRUE(held.reached(""));
        }
        held.letGo();
        Steps served;
        EXPECT_TRUE(QTest::qWaitFor([&] {
            served = held.steps("");
            std::erase_if(served, [](const auto& step) { return step.starts_with("decode"); });
            return served.size() >= expected.size();
        }));
        EXPECT_EQ(served, expected);
        for (const auto& [who, opening] : views) own.library.forget(&opening);
    }
}

// A file that the disc is slow to open: commands wait for what they need to know, the window for nothing
// else, and what was put meanwhile holds.
TEST_F(LookAheadTest, ShowsAFileThatIsOpenedLater) {
    lookAhead(atOnce);
    makeRun("probe", 12);
    ezDICOMX probe(ViewRole::Probe, nullptr, fake.library);
    during("open /probe", [&] {
        probe.putFileName("/probe");
        EXPECT_EQ(probe.FrameCount(), 12) << "waits for the answer";
    });
    EXPECT_FALSE(probe.isReading());
    probe.putCurrentFrame(3);
    run("hold open; FileName /nowhere");
    during("open", [&] { run("FrameCount is 0; ShowHeader 1"); });
    EXPECT_TRUE(view.accessibleDescription().contains("The file is missing")) << "before it is drawn";
    EXPECT_EQ(disc.steps("decode").size(), 0U);
    const QTemporaryDir folder;
    for (const QString each :
         {"open /a1; WindowWidth 90", "open /e1; WindowCenter 90", "open /b1; ExportFile %",
          "open /h1; Smooth 1", "open /i1; Smooth 1", "read c1 0; WindowWidth 90; CurrentFrame 1",
          "read d3 2; WindowWidth 90; CurrentFrame 3"}) {
        const QString step = each.section(';', 0, 0), name = step.section(' ', 1, 1).remove('/');
        makeRun(name.toStdString(), 3);
        run("FileName ");
        during(step.toStdString(), [&] {
            run("FileName /" + name + ";" + each.section(';', 1).replace("%", folder.filePath("b")));
            EXPECT_TRUE(name == "i1" ? view.CopyToClipboard() : view.CopyHeaderToClipboard());
            EXPECT_TRUE(view.findChild<QPlainTextEdit*>()->isVisible()) << qPrintable(step);
            EXPECT_TRUE(view.CopyToClipboard());
        });
    }
    lookAhead(atOnce, atOnce);
    auto slow = disc.run("a", 30);
    slow->readingBehind = [this] { disc.pass("behind"); };
    fake.files["/run"] = slow;
    run("hold open; FileName /run; ShowHeader 1; Polarity -1; WindowCenter 20; FrameCount is 0; FileName is "
        "/run");
    EXPECT_FALSE(view.CopyToClipboard() || view.CopyHeaderToClipboard());
    run("draw; reading");
    QCoreApplication::processEvents();  // nothing will be painted without need
    disc.letGo();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !view.isReading(); }));
    run("FrameCount is 30; Polarity is -1; WindowCenter is 20; reached behind");
    const auto* page = view.findChild<QPlainTextEdit*>();
    ASSERT_TRUE(QTest::qWaitFor([&] { return page && page->toPlainText() != "reading …"; }));
}

// Its first frame comes in its turn; the other one when the main view's run has been read to its end, and one
// whose reading hangs is in nobody's way.
TEST_F(LookAheadTest, ShowsTheRepresentativeFrameOfPreviewsOnceTheDiscHasNothingElseToDo) {
    lookAhead(atOnce);
    const auto shows = [](ezDICOMX& preview, int grey) {
        return QTest::qWaitFor([&] {
            const QImage shown = preview.screen()->grabWindow(preview.winId()).toImage();
            const QPoint center = preview.rect().center();
            return shown.rect().contains(center) && qRed(shown.pixel(center)) == 255 - grey;
        });
    };
    std::deque<ezDICOMX> previews;
    for (const auto& [name, stated] :
         {std::pair<std::string, const char*>{"alone", "5"}, {"a", ""}, {"b", "7"}, {"c", "10"}}) {
        const auto file = disc.run(name, 9, 100);
        test::put(*file, dicom::tags::RepresentativeFrameNumber, stated);
        file->onAllProcessors = name == "alone";  // and in the main view's way
        if (file->onAllProcessors)
            file->coarse = test::pictureOf<std::uint8_t>(4, 4, 1, [](int, int, int, int) { return 100; });
        fake.files["/" + name] = file;
        auto& preview = previews.emplace_back(ViewRole::Preview, nullptr, fake.library);
        preview.show();
        preview.putFileName(QString::fromStdString("/" + name));
        preview.putPolarity(-1);
        EXPECT_TRUE(shows(preview, 100));
    }
    makeRun("main", 20, 10);
    view.putFileName("/main");
    for (const auto& [i, grey] : {std::pair{1U, 103}, {2U, 106}, {3U, 103}, {0U, 100}}) {
        EXPECT_TRUE(shows(previews[i], grey)) << i;
        previews[i].putCurrentFrame(9);
        EXPECT_TRUE(shows(previews[i], 108)) << "as put";
    }
    ASSERT_EQ(disc.steps().size(), 4U + 20 + 7);
    EXPECT_EQ(disc.steps()[23], "read main 19") << "the main view's run first";
    makeRun("hangs", 9, 200);
    makeRun("next", 3, 50);
    disc.hold("read hangs 3");
    previews[0].putFileName("/hangs");
    run("reached read hangs 3; FileName /next; grey 50");
    EXPECT_TRUE(shows(previews[0], 55));
    disc.letGo();
    EXPECT_TRUE(shows(previews[0], 52));
    // What the window shows is opened before what its previews do.
    for (const char* name : {"x", "y", "z"}) makeRun(name, 1);
    disc.hold("open");
    for (const std::size_t i : {1U, 2U}) previews[i].putFileName(i == 1 ? "/x" : "/y");
    run("reached open /x; FileName /z; letGo; grey 1; reached open /y");
    const Steps opened = disc.steps("open");
    EXPECT_EQ(Steps(opened.end() - 3, opened.end()), (Steps{"open /x", "open /z", "open /y"}));
}

// The window says that it waits, as soon as a person would wonder.
TEST_F(LookAheadTest, TellsOfALongWaitForAnAnswer) {
    lookAhead(atOnce);
    std::string told;
    fake.library.onLongWait([&](ImageLibrary::LongWait wait) {
        using enum ImageLibrary::LongWait;
        told += wait == Begins ? "waits " : wait == Ends ? "over" : "";
        if (wait != GoesOn) return;
        // What is drawn meanwhile, and what comes, changes nothing for the command that waits.
        run("letGo; reached read slow 0; draw; FrameCount is 0");
        EXPECT_EQ(view.accessibleDescription(), "reading …");
    });
    makeRun("slow", 5);
    run("hold open; FileName /slow; FrameCount is 5");
    EXPECT_EQ(told, "waits over");
    // What is seen is waited for in vain only once, until something has come.
    lookAhead(std::chrono::milliseconds(200), veryPatient);
    int waits = 0;
    fake.library.onLongWait([&](ImageLibrary::LongWait wait) {
        waits += wait == ImageLibrary::LongWait::Begins;
        disc.letGo("open");
    });
    ezDICOMX other(ViewRole::Preview, nullptr, fake.library);
    other.putFileName("/slow");
    EXPECT_EQ(other.FrameCount(), 5);
    waits = 0;
    makeRun("b", 5);
    const auto coarse = disc.run("coarse", 5);
    coarse->coarse = test::pictureOf<std::uint8_t>(4, 4, 1, [](int, int, int, int) { return 1; });
    fake.files["/coarse"] = coarse;
    run("hold open; FileName /coarse; FrameCount is 5; hold read coarse 3; CurrentFrame 4");
    other.putCurrentFrame(4);
    EXPECT_TRUE(other.isReading() && waits == 1);
    run("letGo; grey 4; hold open; FileName /b; FrameCount is 5; hold read b 3; CurrentFrame 4; draw");
    EXPECT_EQ(waits, 3);
}

// Frames that take long to decode and that nobody waits for any more hold up no other.
TEST_F(LookAheadTest, ShowsWhatIsWantedWhileOtherFramesAreStillDecoded) {
    lookAhead(atOnce);
    makeRun("quick", 1, 77);
    for (const QString name : {"slow0", "slow1", "slow2"}) {
        makeRun(name.toStdString(), 1);
        run("hold decode " + name + "; FileName /" + name + "; draw; reached decode " + name);
    }
    run("FileName /quick; grey 77");
    makeRun("left", 3);
    run("hold read left 1; FileName /left; grey 1; reached read left 1");
    const QImage first = seen();
    ASSERT_TRUE(QTest::qWaitFor([&] { return onScreen() == first; }));
    run("CurrentFrame 3");
    EXPECT_TRUE(QTest::qWaitFor([&] { return onScreen() != first; })) << "says that it reads, by itself";
    EXPECT_EQ(fake.library.frames().wishesToRead().size(), 1U);
    view.putFileName("");
    EXPECT_TRUE(fake.library.frames().wishesToRead().empty()) << "nobody wants it any more";
}

class CoarsePictures : public LookAheadTest {
  protected:
    CoarsePictures() {
        view.resize(400, 300);
        lookAhead(veryPatient);
    }
    bool becomesExact() {
        return QTest::qWaitFor([&] { return !view.isCoarse(); });
    }
    /// Its frames take long to decode; a coarse picture of them is there at once.
    template <typename Value>
    std::shared_ptr<test::FakeDicomFile> slowRun(int columns, int rows, int bits, int frames, Value value) {
        auto file = test::wideRun(columns, rows, bits, value, frames);
        file->coarse =
            test::pictureOf<std::uint16_t>((columns + 3) / 4, (rows + 3) / 4, 1,
                                           [=](int x, int y, int f, int) { return value(x * 4, y * 4, f); });
        file->picture = [this, whole = file->picture](int frame) {
            disc.pass("work");
            return whole(frame);
        };
        return file;
    }
    /// Wide greys without a window in the file: the window follows from the first frame, whose lowest and
    /// highest values no coarse picture holds. A shutter and an overlay lie over it.
    std::shared_ptr<test::FakeDicomFile> windowless() {
        auto file = slowRun(63, 50, 12, 1, [](int x, int y, int) {
            return x == 13 && y == 9 ? 4000 : x == 14 && y == 9 ? 3 : 800 + 20 * x + 10 * y;
        });
        file->greyOfFrame = [](int f) -> dicom::GreyTransform {
            return {{{1, 90. * f}}, {}, {}, {}, false, {}};
        };
        file->shutterShapes.rectangle = dicom::Shutter::Rectangle{6, 60, 4, 48};
        auto& overlay = file->overlayPlanes.emplace_back();
        overlay.rows = overlay.columns = 5;
        overlay.originRow = 20;
        overlay.originColumn = 31;
        overlay.bits.assign(25, 1);
        return file;
    }
};

// Whoever wants the exact picture gets it, from a view that shows a coarse one, and what is over the picture
// does not move.
TEST_F(CoarsePictures, StandForThePictureInTheViewAlone) {
    view.putSmooth(false);
    load(windowless(), "/exact");
    const QImage exactCopy = copied(), exact = seen();
    const double center = view.WindowCenter(), width = view.WindowWidth();
    const QTemporaryDir folder;
    const QString file = folder.filePath("a.bmp");
    const std::pair<const char*, std::function<void()>> wanting[] = {
        {"nobody", [] {}},
        {"a copy", [&] { EXPECT_EQ(copied(), exactCopy); }},
        {"an export", [&] { view.putExportFile(file); }},
        {"an answer", [&] { EXPECT_EQ(view.WindowWidth(), width); }},
        {"another", [&] { EXPECT_EQ(view.WindowCenter(), center); }},
        {"a new window",
         [&] {
             view.putWindowWidth(500);
             EXPECT_EQ(view.WindowCenter(), center);
             view.putWindowWidth(width);
         }},
    };
    // Without the row of the two extreme values.
    const QRect parts[] = {{168, 125, 63, 9}, {168, 135, 63, 40}};
    for (const auto& [who, wants] : wanting) {
        SCOPED_TRACE(who);
        disc.hold("work");
        load(windowless(), "/" + QString(who));
        const QImage coarse = seen();
        ASSERT_TRUE(view.isCoarse());
        EXPECT_TRUE(QTest::qWaitFor([&] { return onScreen() == coarse; }));
        EXPECT_FALSE(view.isReading());
        EXPECT_NEAR(qRed(coarse.pixel(200, 150)), 255 * 890 / 1680., 2) << "of the coarse picture's range";
        for (const QRect& part : parts) {
            for (int i = 0; i < part.width() * part.height(); ++i) {
                const QPoint at = part.topLeft() + QPoint(i % part.width(), i / part.width());
                const int grey = qRed(exact.pixel(at));
                ASSERT_TRUE((grey != 0 && grey != 255) || qRed(coarse.pixel(at)) == grey);
            }
        }
        std::jthread later([&] { disc.letGo(); });
        wants();
        ASSERT_TRUE(becomesExact());
        EXPECT_TRUE(QTest::qWaitFor([&] { return onScreen() == exact; }));
        EXPECT_EQ(copied(), exactCopy);
    }
    EXPECT_EQ(QImage(file).convertToFormat(QImage::Format_RGB32), exactCopy);
}

// A cine goes on over coarse pictures, each that of its own frame; where it stands still the frame itself, or
// what is wrong with it, comes.
TEST_F(CoarsePictures, LetACineGoOn) {
    const auto file = slowRun(64, 64, 8, 9, [](int x, int y, int f) { return (x % 4 || y % 4 ? 9 : 3) + f; });
    file->greyOfFrame = [](int f) -> dicom::GreyTransform { return {{{1, 20. * f}}, {}, {}, {}, false, {}}; };
    file->broken = {8};
    fake.files["/run"] = file;
    run("hold work; FileName /run; WindowCenter 128; WindowWidth 256; draw");
    for (int frame = 1; frame <= 9; ++frame) {
        view.putCurrentFrame(frame);
        EXPECT_FALSE(view.isReading());
        EXPECT_EQ(greyAt(200, 150), 21 * (frame - 1) + 3);
        EXPECT_TRUE(view.isCoarse());
    }
    run("CurrentFrame 5; draw; draw; letGo");
    ASSERT_TRUE(becomesExact());
    EXPECT_TRUE(QTest::qWaitFor([&] { return onScreen() == seen(); }));
    EXPECT_EQ(greyAt(201, 151), 21 * 4 + 9);
    fake.files["/other"] = slowRun(64, 64, 8, 1, [](int, int, int) { return 99; });
    run("CurrentFrame 9; hold work; CurrentFrame 4; draw; FileName /other");
    EXPECT_EQ(greyAt(200, 150), 99) << "nothing of another file";
    run("letGo; FileName /run; CurrentFrame 9; draw");
    ASSERT_TRUE(becomesExact());
    EXPECT_TRUE(view.accessibleDescription().contains("damaged"));
}

TEST_F(CoarsePictures, AreAsSmoothAsAGradient) {
    fake.files["/run"] = slowRun(65, 49, 8, 1, [](int x, int y, int) { return x + 3 * y; });
    run("hold work; FileName /run; BestFit 1");
    const QImage coarse = seen();
    ASSERT_TRUE(view.isCoarse());
    disc.letGo();
    ASSERT_TRUE(becomesExact());
    const QImage exact = seen();
    const QRect free(5, 60, 390, 140);  // of the words in the corners
    EXPECT_TRUE(test::changed(coarse.copy(free), exact.copy(free), 3).isEmpty());
}

}  // namespace
}  // namespace cinedisc
