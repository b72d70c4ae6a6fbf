#include "control/frames/LookAhead.h"
#include "tests/control/HeldDisc.h"

#include <QFile>
#include <QTest>
#include <gtest/gtest.h>

#include <array>
#include <random>
#include <thread>

namespace cinedisc {
namespace {

enum class Fault { None, Unreadable, Broken, ThrowsReading, ThrowsDecoding };

/// A run whose frames are made on the spot, and counted.
struct FakeRun : FrameRun {
    std::size_t bytes = 1000;  ///< of a decoded frame
    std::size_t readBytes = 10;
    test::HeldDisc* disc = nullptr;
    std::atomic<Fault> fault = Fault::None;
    mutable std::atomic<int> read = 0, decoded = 0;

    dicom::Result<dicom::FrameBytes> readFrame(int) const override {
        ++read;
        if (disc) disc->pass("read");
        if (fault == Fault::ThrowsReading) throw std::runtime_error("the disc has gone");
        if (fault == Fault::Unreadable) return dicom::DecodeError();
        dicom::FrameBytes held;
        held.storage.resize(readBytes);
        held.length = readBytes;
        return held;
    }
    DecodedFrame decodeRead(int index, const dicom::FrameBytes& from) const override {
        EXPECT_EQ(from.length, readBytes);
        ++decoded;
        if (disc) disc->pass("decode");
        if (fault == Fault::ThrowsDecoding) throw std::bad_alloc();
        if (fault == Fault::Broken) return dicom::DecodeError();
        dicom::Frame frame;
        frame.columns = index;
        frame.samples = std::vector<std::uint8_t>(bytes);
        return frame;
    }
};

constexpr int runs = 3, frames = 6;
constexpr std::size_t ceiling = 4200;
struct Place {
    int run = 0, frame = 0;
    auto operator<=>(const Place&) const = default;
};

/// What the store is to hold, worked out anew at every step.
struct Model {
    struct Held {
        std::size_t read = 0, decoded = 0;  ///< bytes
        bool isFault = false;
        int used = 0;
    };
    struct Wish {
        int view = 0;
        Place place;
        bool isMain = false, come = false;
    };
    std::map<Place, Held> held;
    std::vector<Wish> wishes;
    PlayOrder order;
    int run = -1, next = -1;  ///< of the order
    std::size_t played = 0;
    int clock = 0, arrivals = 0;

    std::size_t sum(std::size_t Held::*kind) const {
        std::size_t total = 0;
        for (const auto& [place, entry] : held) total += entry.*kind;
        return total;
    }
    /// A rank in which what is due last is highest; 1000 for what nobody plays.
    int due(Place place) const {
        if (place.run == next) return order.window * 2 + 1;
        if (place.run != run) return 1000;
        int steps = 0;
        for (int at = order.frame; at != place.frame; ++steps)
            at = (at + (order.direction == PlayDirection::Forward ? 1 : frames - 1)) % frames;
        return steps * 2;
    }
    bool hasRoom() const {
        const auto ahead = 2 * static_cast<std::size_t>(order.window + 1) * played;
        return sum(&Held::read) + ahead <= ceiling;
    }
    bool isWished(Place place) const {
        return std::ranges::any_of(wishes, [&](const Wish& w) { return w.place == place && !w.come; });
    }
    void come(Place place, Held entry) {
        entry.used = ++clock;
        held[place] = entry;
        bool any = false;
        for (Wish& wish : wishes) {
            any |= wish.place == place && !wish.come;
            wish.come |= wish.place == place;
        }
        arrivals += any;
    }
    void read(Place place, const FakeRun& from) {
        if (from.fault == Fault::Unreadable) return come(place, {0, sizeof(DecodedFrame), true, 0});
        held[place].read = from.readBytes;
    }
    void decode(Place place, const FakeRun& from) {
        Held entry = held[place];
        const bool keeps = place.run == run && !order.fits && entry.read * 4 < played * 3 && hasRoom();
        if (!keeps) entry.read = 0;
        entry.isFault = from.fault == Fault::Broken;
        entry.decoded = sizeof(DecodedFrame) + (entry.isFault ? 0 : from.bytes);
        if (place.run == run && !entry.isFault) played = entry.decoded;
        come(place, entry);
        while (sum(&Held::read) + sum(&Held::decoded) > ceiling && letGoOfOne()) continue;
    }
    bool letGoOfOne() {
        const Place* worst = nullptr;
        std::tuple<int, int, int> worstRank;
        for (const auto& [place, entry] : held) {
            if (!entry.decoded && (due(place) < 1000 || isWished(place))) continue;
            const std::tuple rank{!entry.decoded, due(place), -entry.used};
            if (worst && rank <= worstRank) continue;
            worst = &place;
            worstRank = rank;
        }
        if (!worst) return false;
        Held& entry = held[*worst];
        if (entry.decoded && entry.read)
            entry = {entry.read, 0, false, 0};
        else
            held.erase(Place(*worst));
        return true;
    }
    std::optional<Place> nextDue(int ofRun, int ofNext) const {
        std::optional<Place> soonest;
        for (const auto& [place, entry] : held) {
            const bool isCandidate = !entry.decoded && (place.run == ofRun || place.run == ofNext);
            const bool isInWindow = due(place) <= 2 * order.window + 1;
            if (isCandidate && isInWindow && (!soonest || due(place) < due(*soonest))) soonest = place;
        }
        return soonest;
    }
};

// Whatever is asked for in whatever order: the store holds what an obvious version of it holds.
TEST(FrameStore, HoldsWhatAnObviousVersionHolds) {
    for (unsigned seed = 1; seed <= 60; ++seed) {
        std::mt19937 random(seed);
        const auto any = [&](int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); };
        FrameStore store(ceiling);
        int arrivals = 0;
        store.onArrival([&] { ++arrivals; });
        std::array<std::shared_ptr<FakeRun>, runs> run;
        for (auto& one : run) one = std::make_shared<FakeRun>();
        std::ranges::sort(run);
        run[1]->readBytes = 700;
        run[2]->bytes = 300;
        run[2]->readBytes = 200;
        Model model;
        const std::array<int, 4> views{0, 1, 2, 3};
        const auto key = [&](Place place) {
            return FrameKey{run[static_cast<std::size_t>(place.run)].get(), place.frame};
        };
        const auto at = [&](Place place) -> FakeRun& { return *run[static_cast<std::size_t>(place.run)]; };
        for (int step = 0; step < 400; ++step) {
            SCOPED_TRACE(testing::Message() << "seed " << seed << " step " << step);
            const Place place{any(runs), any(frames)};
            const bool isHeld = model.held.contains(place);
            at(place).fault = std::array{Fault::None, Fault::None, Fault::None, Fault::Unreadable,
                                         Fault::Broken}[static_cast<std::size_t>(any(5))];
            switch (any(9)) {
                case 0: {
                    const auto got = store.frame(key(place));
                    if (!isHeld) model.read(place, at(place));
                    if (auto& entry = model.held[place]; entry.decoded) {
                        if (isHeld) entry.used = ++model.clock;
                        EXPECT_EQ(got->ok(), !entry.isFault);
                    } else {
                        EXPECT_EQ(got->ok(), at(place).fault != Fault::Broken);
                        model.decode(place, at(place));
                    }
                    if (got->ok()) {
                        EXPECT_EQ(got->value().columns, place.frame);
                    }
                    break;
                }
                case 1:
                case 2:
                    EXPECT_EQ(store.read(key(place)), !isHeld);
                    if (!isHeld) model.read(place, at(place));
                    break;
                case 3: {
                    const int other = any(runs);
                    const auto due = model.nextDue(place.run, other);
                    EXPECT_EQ(store.decodeNextDue(&at(place), &at({other, 0})), due.has_value());
                    if (due) model.decode(*due, at(*due));
                    break;
                }
                case 4: {
                    PlayOrder& order = model.order;
                    if (any(3) == 0) {
                        const int before = model.run;
                        model.run = any(4) ? place.run : -1;
                        model.next = model.run >= 0 && any(2) ? (model.run + 1) % runs : -1;
                        order = {};
                        if (model.run >= 0) order.run = &at({model.run, 0});
                        if (model.next >= 0) order.next = &at({model.next, 0});
                        order.fits = any(2);
                        order.window = model.run >= 0 ? any(frames) : 0;
                        if (before != model.run) model.played = 0;
                    }
                    order.frames = model.run >= 0 ? frames : 0;
                    order.frame = order.frames ? place.frame : 0;
                    order.direction = any(2) ? PlayDirection::Forward : PlayDirection::Reverse;
                    store.follow(order);
                    break;
                }
                case 5: {
                    const int view = any(4);
                    const bool isMain = view == 0;
                    const auto wished = std::ranges::find(model.wishes, view, &Model::Wish::view);
                    const bool isSame = wished != model.wishes.end() && wished->place == place;
                    const bool hasCome = isSame && wished->come;
                    const bool isThere = isHeld && model.held[place].decoded > 0;
                    const auto got = store.want({&views[static_cast<std::size_t>(view)],
                                                 isMain ? Asker::MainView : Asker::Preview,
                                                 run[static_cast<std::size_t>(place.run)], place.frame});
                    EXPECT_EQ(got != nullptr, isThere || hasCome);
                    if (isThere) model.held[place].used = ++model.clock;
                    if (isSame && !got) break;
                    if (wished != model.wishes.end()) model.wishes.erase(wished);
                    if (!got)
                        model.wishes.insert(isMain ? model.wishes.begin() : model.wishes.end(),
                                            Model::Wish{view, place, isMain});
                    break;
                }
                case 6: {
                    const auto due = std::ranges::find_if(model.wishes, [&](const Model::Wish& wish) {
                        const auto found = model.held.find(wish.place);
                        return !wish.come && found != model.held.end() && !found->second.decoded;
                    });
                    EXPECT_EQ(store.decodeWanted(), due != model.wishes.end());
                    if (due != model.wishes.end()) model.decode(Place(due->place), at(due->place));
                    break;
                }
                case 7: {
                    const int view = any(4);
                    const auto wished = std::ranges::find(model.wishes, view, &Model::Wish::view);
                    const bool hasCome = wished != model.wishes.end() && wished->come;
                    const bool waits = any(2);
                    const void* const who = &views[static_cast<std::size_t>(view)];
                    if (!waits) store.forget(who);
                    EXPECT_EQ(waits && store.waitFor(who, {}), waits && hasCome);
                    if (wished != model.wishes.end() && (hasCome || !waits)) model.wishes.erase(wished);
                    break;
                }
                default:
                    if (any(5)) {
                        store.dropFaults(&at(place));
                        std::erase_if(model.held, [&](const auto& entry) {
                            return entry.first.run == place.run && entry.second.isFault;
                        });
                        break;
                    }
                    store.drop(&at(place));
                    std::erase_if(model.held, [&](const auto& one) { return one.first.run == place.run; });
                    if (model.run == place.run) {
                        model.order = {};
                        model.run = model.next = -1;
                    }
                    if (model.next == place.run) {
                        model.next = -1;
                        model.order.next = nullptr;
                    }
            }
            for (int r = 0; r < runs; ++r) {
                for (int f = 0; f < frames; ++f) {
                    const auto found = model.held.find({r, f});
                    const bool there = found != model.held.end();
                    ASSERT_EQ(store.isMissing(key({r, f})), !there) << r << "/" << f;
                    ASSERT_EQ(store.isRead(key({r, f})), there && !found->second.decoded) << r << "/" << f;
                }
            }
            std::vector<FrameKey> toRead;
            for (const auto& wish : model.wishes) {
                if (!wish.come && !model.held.contains(wish.place)) toRead.push_back(key(wish.place));
            }
            std::vector<FrameKey> wishes;
            for (const auto& wish : store.wishesToRead()) wishes.push_back(wish.key());
            ASSERT_EQ(wishes, toRead);
            ASSERT_EQ(store.bytesHeld(), model.sum(&Model::Held::read) + model.sum(&Model::Held::decoded));
            ASSERT_EQ(store.hasRoomForBytes(), model.hasRoom());
            ASSERT_EQ(arrivals, model.arrivals);
        }
    }
}

// At whatever stage a frame is when a view wants it, and however it ends: the view hears of it.
TEST(FrameStore, TellsTheViewWhateverTheStage) {
    enum class Stage { Missing, Reading, Read, Decoding, Decoded };
    for (const auto stage : {Stage::Missing, Stage::Reading, Stage::Read, Stage::Decoding, Stage::Decoded}) {
        for (const auto fault :
             {Fault::None, Fault::Unreadable, Fault::Broken, Fault::ThrowsReading, Fault::ThrowsDecoding}) {
            const bool failsReading = fault == Fault::Unreadable || fault == Fault::ThrowsReading;
            if (failsReading && (stage == Stage::Read || stage == Stage::Decoding)) continue;
            SCOPED_TRACE(testing::Message() << static_cast<int>(stage) << ", " << static_cast<int>(fault));
            test::HeldDisc disc;
            const auto run = std::make_shared<FakeRun>();
            run->disc = &disc;
            run->fault = fault;
            FrameStore store;
            std::atomic<int> arrived = 0;
            store.onArrival([&] { ++arrived; });
            LookAhead ahead(store, nullptr);
            const FrameWish wish{&arrived, Asker::Preview, run, 3};
            std::jthread other;
            const auto hold = [&](const char* step) {
                disc.hold(step);
                other = std::jthread([&] { store.frame(wish.key()); });
                EXPECT_TRUE(disc.reached(step));
            };
            if (stage == Stage::Reading) hold("read");
            if (stage == Stage::Decoding) hold("decode");
            if (stage == Stage::Read) store.read(wish.key());
            if (stage == Stage::Decoded) store.frame(wish.key());
            disc.hold("");
            auto got = store.want(wish);
            EXPECT_EQ(got != nullptr, stage == Stage::Decoded);
            if (!got) {
                ahead.wake();
                EXPECT_EQ(store.waitFor(wish.view, FrameStore::Clock::now()), nullptr);
                disc.letGo();
                EXPECT_TRUE(QTest::qWaitFor([&] { return arrived > 0; }));
                got = store.want(wish);
            }
            disc.letGo();
            ASSERT_NE(got, nullptr);
            EXPECT_EQ(got->ok(), fault == Fault::None);
            EXPECT_EQ(run->read, 1);
        }
    }
}

TEST(FrameStore, GivesAFrameBeyondItsCeilingWithoutKeepingIt) {
    FrameStore store(500);
    const auto run = std::make_shared<FakeRun>();
    EXPECT_EQ(store.frame({run.get(), 0})->value().byteSize(), 1000U);
    const FrameWish wish{&store, Asker::MainView, run, 1};
    EXPECT_EQ(store.want(wish), nullptr);
    store.read(wish.key());
    EXPECT_TRUE(store.decodeWanted());
    EXPECT_EQ(store.bytesHeld(), 0U);
    EXPECT_NE(store.waitFor(&store, {}), nullptr);
}

TEST(ImageFile, RefusesFramesThatAreNotWhatTheHeaderSays) {
    const auto whole = test::greyRun(8, 8, 1)->picture(0);
    const std::function<void(dicom::Frame&)> faults[] = {
        [](auto& frame) { frame.rows = 9; },
        [](auto& frame) { frame.columns = 0; },
        [](auto& frame) { std::get<0>(frame.samples).resize(63); },
        [](auto& frame) { frame.samplesPerPixel = 3; },
        [](auto& frame) {
            frame.samplesPerPixel = 3;
            frame.samples = std::vector<std::uint16_t>(192);
        },
    };
    for (const auto& spoil : faults) {
        auto file = test::greyRun(8, 8, 1);
        file->picture = [&](int) {
            auto frame = whole;
            spoil(frame);
            return frame;
        };
        ImageFile image(file, {}, std::make_shared<FrameStore>());
        EXPECT_FALSE(image.frame(0)->ok());
    }
}

TEST(ImageLibrary, OpensAFileOnceWhileItIsShown) {
    test::FakeLibrary fake;
    fake.files["/run"] = test::greyRun(8, 8, 1);
    auto first = fake.library.open("/run").value();
    auto second = fake.library.open("/run").value();
    EXPECT_EQ(first, second);
    EXPECT_EQ(fake.opened, 1);
    EXPECT_TRUE(first->frame(0)->ok());
    EXPECT_GT(fake.library.frames().bytesHeld(), 0U);
    first.reset();
    second.reset();
    EXPECT_EQ(fake.library.frames().bytesHeld(), 0U) << "the last view frees the frames";
    // What goes wrong leaves nothing behind.
    fake.opening = [](const auto&) { throw std::runtime_error("the disc has gone"); };
    EXPECT_FALSE(fake.library.open("/run").ok());
    fake.opening = {};
    EXPECT_TRUE(fake.library.open("/run").ok());
    EXPECT_EQ(fake.opened, 3);
}

TEST(ImageLibrary, SeesThatAnotherFileHasTakenThePlace) {
    for (const bool looksAhead : {false, true}) {
        QTemporaryDir folder;
        const QString path = folder.filePath("a.dcm");
        const auto write = [&](const QByteArray& bytes) {
            QFile file(path);
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
            file.write(bytes);
        };
        test::FakeLibrary fake;
        std::vector<std::shared_ptr<Opening>> held;
        const auto open = [&] {
            const auto opening = held.emplace_back(fake.library.request(path, Asker::Probe));
            EXPECT_TRUE(fake.library.waitFor(*opening, Patience::Answer));
            return opening->outcome();
        };
        if (looksAhead) fake.library.lookAhead(std::chrono::minutes(1));
        write("first");
        const auto file = test::greyRun(8, 8, 1);
        fake.files[path.toStdString()] = file;
        file->broken = {0};
        const auto shown = open().value();
        EXPECT_FALSE(shown->frame(0)->ok());
        file->broken.clear();
        EXPECT_EQ(open().value(), shown);
        EXPECT_TRUE(shown->frame(0)->ok()) << "tried again";
        write("another");
        fake.files[path.toStdString()] = test::greyRun(8, 8, 5);
        EXPECT_EQ(open().value()->dicom().frameCount(), 5);
        EXPECT_EQ(shown->dicom().frameCount(), 1) << "a view that shows the old one keeps it";
        ASSERT_TRUE(QFile::remove(path));
        fake.files.clear();
        EXPECT_FALSE(open().ok());
    }
}

}  // namespace
}  // namespace cinedisc
