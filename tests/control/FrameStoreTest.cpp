#include "tests/control/FakeDicomFile.h"

#include <QFile>
#include <gtest/gtest.h>

#include <array>
#include <random>

namespace cinedisc {
namespace {

enum class Fault { None, Unreadable, ThrowsReading, Broken, ThrowsDecoding };
constexpr int frames = 6;
constexpr std::size_t ceiling = 4200;

/// A run whose frames are made on the spot.
struct FakeRun : FrameRun {
    std::size_t bytes = 1000;  ///< of a decoded frame
    std::size_t readBytes = 10, room = 0;
    Fault fault = Fault::None;

    bool failsReading() const { return fault == Fault::Unreadable || fault == Fault::ThrowsReading; }
    bool failsDecoding() const { return fault == Fault::Broken || fault == Fault::ThrowsDecoding; }
    dicom::Result<dicom::FrameBytes> readFrame(int) const override {
        if (fault == Fault::ThrowsReading) throw std::runtime_error("the disc has gone");
        if (fault == Fault::Unreadable) return dicom::DecodeError();
        dicom::FrameBytes held;
        held.storage.resize(readBytes);
        held.length = readBytes;
        return held;
    }
    DecodedFrame decodeRead(int index, const dicom::FrameBytes& from) const override {
        EXPECT_EQ(from.length, readBytes);
        if (fault == Fault::ThrowsDecoding) throw std::bad_alloc();
        if (fault == Fault::Broken) return dicom::DecodeError();
        return dicom::Frame{1, index, 1, std::vector<std::uint8_t>(bytes)};
    }
    std::size_t decodingRoom() const override { return room; }
};

/// What the store is to hold, worked out anew at every step.
struct Model {
    struct Held {
        std::size_t read = 0, decoded = 0;  ///< bytes
        bool isFault = false;
        int used = 0;
    };
    struct Wish {
        FrameWish wish;
        bool come = false;
    };
    std::map<FrameKey, Held> held;
    std::vector<Wish> wishes;
    PlayOrder order;
    FrameKey atWork;
    std::size_t played = 0;
    int clock = 0, arrivals = 0;

    static const FakeRun& runOf(const FrameKey& key) { return *static_cast<const FakeRun*>(key.run); }
    std::size_t sum(std::size_t Held::*kind) const {
        std::size_t total = 0;
        for (const auto& [key, entry] : held) total += entry.*kind;
        return total;
    }
    /// A rank in which what is due last is highest; 1000 for what nobody plays.
    int due(const FrameKey& key) const {
        if (key.run == order.next) return order.window * 2 + 1;
        if (key.run != order.run) return 1000;
        int steps = 0;
        for (int at = order.frame; at != key.index; ++steps)
            at = (at + (order.direction == PlayDirection::Forward ? 1 : frames - 1)) % frames;
        return steps * 2;
    }
    bool hasRoom() const {
        const auto ahead = 2 * static_cast<std::size_t>(order.window + 1) * played;
        return sum(&Held::read) + ahead <= ceiling;
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
        if (runOf(key).failsReading()) return come(key, {0, sizeof(DecodedFrame), true, 0});
        held[key].read = runOf(key).readBytes;
    }
    void decode(const FrameKey& key) {
        atWork = key;
        if (runOf(key).room > 0) makeRoom(runOf(key).room);
        atWork = {};
        Held entry = held[key];
        const bool isPlayed = key.run == order.run;
        if (!isPlayed || order.fits || entry.read * 4 >= played * 3 || !hasRoom()) entry.read = 0;
        entry.isFault = runOf(key).failsDecoding();
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
    std::optional<FrameKey> nextDue(const FrameRun* run, const FrameRun* next) const {
        std::optional<FrameKey> soonest;
        for (const auto& [key, entry] : held) {
            const bool isCandidate = isRead(key) && (key.run == run || key.run == next);
            const bool isInWindow = due(key) <= 2 * order.window + 1;
            if (isCandidate && isInWindow && (!soonest || due(key) < due(*soonest))) soonest = key;
        }
        return soonest;
    }
    std::vector<Wish>::iterator wishOf(const void* view) {
        return std::ranges::find_if(wishes, [&](const Wish& wish) { return wish.wish.view == view; });
    }
};

// Whatever is asked for in whatever order: the store holds what an obvious version of it holds.
TEST(FrameStore, HoldsWhatAnObviousVersionHolds) {
    for (unsigned seed = 1; seed <= 60; ++seed) {
        std::mt19937 random(seed);
        const auto any = [&](std::size_t count) { return random() % static_cast<unsigned>(count); };
        FrameStore store(ceiling);
        int arrivals = 0;
        store.onArrival([&] { ++arrivals; });
        std::vector<std::shared_ptr<FakeRun>> runs;
        for (int i = 0; i < 3; ++i) runs.push_back(std::make_shared<FakeRun>());
        std::ranges::sort(runs);
        runs[1]->readBytes = 700;
        runs[2]->bytes = 300;
        runs[2]->readBytes = 200;
        if (seed % 3 == 1) runs[0]->bytes = ceiling + 1;
        if (seed % 3 == 2) runs[0]->room = 1500;
        Model model;
        constexpr int views[4]{};
        for (int step = 0; step < 400; ++step) {
            SCOPED_TRACE(testing::Message() << "seed " << seed << " step " << step);
            const auto& run = runs[any(3)];
            const FrameRun* const other = runs[any(3)].get();
            const FrameKey key{run.get(), static_cast<int>(any(frames))};
            const bool isHeld = model.held.contains(key), isThere = isHeld && !model.isRead(key);
            const std::size_t number = any(4);
            const void* const view = &views[number];
            const auto wished = model.wishOf(view);
            const bool hasWish = wished != model.wishes.end(), hasCome = hasWish && wished->come;
            run->fault = any(2) ? Fault::None : static_cast<Fault>(any(5));
            switch (any(9)) {
                case 0: {
                    const bool failsNow = run->failsDecoding() || (!isHeld && run->failsReading());
                    const bool isFault = isThere ? model.held[key].isFault : failsNow;
                    const auto got = store.frame(key);
                    if (!isHeld) model.read(key);
                    if (isThere) model.held[key].used = ++model.clock;
                    if (model.isRead(key)) model.decode(key);
                    EXPECT_TRUE(isFault ? !got->ok() : got->value().columns == key.index);
                    break;
                }
                case 1:
                case 2:
                    EXPECT_EQ(store.read(key), !isHeld);
                    if (!isHeld) model.read(key);
                    break;
                case 3: {
                    const auto due = model.nextDue(run.get(), other);
                    EXPECT_EQ(store.decodeNextDue(run.get(), other), due.has_value());
                    if (due) model.decode(*due);
                    break;
                }
                case 4: {
                    PlayOrder& order = model.order;
                    if (any(3) == 0) {
                        const auto* const before = std::exchange(order, {}).run;
                        if (any(4)) order.run = run.get();
                        if (order.run && other != order.run && any(2)) order.next = other;
                        order.fits = any(2);
                        if (order.run) order.window = static_cast<int>(any(frames));
                        if (before != order.run) model.played = 0;
                    }
                    order.frames = order.run ? frames : 0;
                    order.frame = order.run ? key.index : 0;
                    order.direction = any(2) ? PlayDirection::Forward : PlayDirection::Reverse;
                    store.follow(order);
                    break;
                }
                case 5: {
                    const auto asker = number == 0 ? Asker::MainView : Asker::Preview;
                    const FrameWish wish{view, asker, run, key.index};
                    const bool isSame = hasWish && wished->wish.key() == key;
                    const auto got = store.want(wish);
                    EXPECT_EQ(got != nullptr, isThere || (isSame && hasCome));
                    if (isThere) model.held[key].used = ++model.clock;
                    if (isSame && !got) break;
                    if (hasWish) model.wishes.erase(wished);
                    const auto place = number == 0 ? model.wishes.begin() : model.wishes.end();
                    if (!got) model.wishes.insert(place, Model::Wish{wish});
                    break;
                }
                case 6: {
                    const auto due = std::ranges::find_if(model.wishes, [&](const Model::Wish& wish) {
                        return !wish.come && model.isRead(wish.wish.key());
                    });
                    EXPECT_EQ(store.decodeWanted(), due != model.wishes.end());
                    if (due != model.wishes.end()) model.decode(due->wish.key());
                    break;
                }
                case 7: {
                    const bool waits = any(2);
                    if (!waits) store.forget(view);
                    EXPECT_EQ(waits && store.waitFor(view, {}), waits && hasCome);
                    if (hasCome || (hasWish && !waits)) model.wishes.erase(wished);
                    break;
                }
                default:
                    const bool onlyFaults = any(5);
                    onlyFaults ? store.dropFaults(run.get()) : store.drop(run.get());
                    std::erase_if(model.held, [&](const auto& entry) {
                        return entry.first.run == run.get() && (!onlyFaults || entry.second.isFault);
                    });
                    if (onlyFaults) break;
                    if (model.order.run == run.get()) model.order = {};
                    if (model.order.next == run.get()) model.order.next = nullptr;
            }
            std::vector<FrameKey> toRead, wishesToRead;
            for (const auto& each : runs) {
                for (int f = 0; f < frames; ++f) {
                    const FrameKey at{each.get(), f};
                    ASSERT_EQ(store.isMissing(at), !model.held.contains(at)) << f;
                    ASSERT_EQ(store.isRead(at), model.isRead(at)) << f;
                }
            }
            for (const auto& [wish, come] : model.wishes)
                if (!come && !model.held.contains(wish.key())) toRead.push_back(wish.key());
            for (const auto& wish : store.wishesToRead()) wishesToRead.push_back(wish.key());
            ASSERT_EQ(wishesToRead, toRead);
            ASSERT_EQ(store.bytesHeld(), model.sum(&Model::Held::read) + model.sum(&Model::Held::decoded));
            ASSERT_EQ(store.hasRoomForBytes(), model.hasRoom());
            ASSERT_EQ(arrivals, model.arrivals);
        }
    }
}

TEST(ImageFile, RefusesFramesThatAreNotWhatTheHeaderSays) {
    const std::vector<std::uint8_t> narrow(192);
    const std::vector<std::uint16_t> wide(192);
    const dicom::Frame frames[] = {{9, 8, 1, narrow},
                                   {8, 0, 1, narrow},
                                   {8, 8, 4, std::vector<std::uint8_t>(999)},
                                   {8, 8, 1, std::vector<std::uint8_t>(63)},
                                   {8, 8, 3, std::vector<std::uint8_t>(191)},
                                   {8, 8, 3, wide},
                                   {8, 8, 3, narrow},
                                   {8, 8, 1, wide}};
    for (const auto& frame : frames) {
        auto file = test::greyRun(8, 8, 1);
        file->picture = [&](int) { return frame; };
        ImageFile image(file, {}, std::make_shared<FrameStore>());
        EXPECT_EQ(image.frame(0)->ok(), &frame - frames >= 6) << &frame - frames;
    }
}

TEST(ImageLibrary, OpensAFileOnceUntilAnotherHasTakenItsPlace) {
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
        write("another");
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
