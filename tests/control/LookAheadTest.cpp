#include "control/frames/LookAhead.h"
#include "tests/control/ViewFixture.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QPlainTextEdit>
#include <QTemporaryDir>

#include <condition_variable>
#include <mutex>
#include <set>
#include <sstream>
#include <thread>

namespace cinedisc {
namespace {

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
    void letGo(const std::optional<std::string>& kind = std::nullopt) {
        const std::lock_guard lock(mutex_);
        std::erase_if(held_, [&](const auto& held) { return !kind || held == *kind; });
        changed_.notify_all();
    }
    void pass(const std::string& step) {
        std::unique_lock lock(mutex_);
        byWindow_ |= std::this_thread::get_id() == window_ && step != "work";
        steps_.push_back(step);
        changed_.notify_all();
        changed_.wait(lock, [&] {
            return std::ranges::none_of(held_, [&](const auto& kind) { return step.starts_with(kind); });
        });
    }
    /// Waits until a step has begun.
    bool reached(const std::string& step) {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, std::chrono::seconds(20),
                                 [&] { return std::ranges::count(steps_, step) > 0; });
    }
    std::vector<std::string> steps(const std::string& kind = "read") {
        const std::lock_guard lock(mutex_);
        std::vector<std::string> found;
        std::ranges::copy_if(steps_, std::back_inserter(found),
                             [&](const auto& step) { return step.starts_with(kind); });
        return found;
    }
    /// Whether the thread that made the disc, the window's, had to wait for it.
    bool heldTheWindow() {
        const std::lock_guard lock(mutex_);
        return byWindow_;
    }

    /// A run on it; all pixels of a frame, counted from 0, are `first` and its number.
    std::shared_ptr<test::FakeDicomFile> run(const std::string& name, int frames, int first = 1,
                                             int size = 16) {
        auto file = test::greyRun(size, size, frames, [first](int, int, int f) { return first + f; });
        const auto step = [this, name](const char* kind, int frame) {
            pass(kind + (" " + name) + " " + std::to_string(frame));
        };
        file->reading = [step](int frame) { step("read", frame); };
        file->picture = [step, picture = file->picture](int frame) {
            step("decode", frame);
            return picture(frame);
        };
        return file;
    }

  private:
    const std::thread::id window_ = std::this_thread::get_id();
    std::mutex mutex_;
    std::condition_variable changed_;
    std::set<std::string> held_;
    std::vector<std::string> steps_;
    bool byWindow_ = false;
};

/// Outlives the threads that may still be reading when a test is over.
struct WithDisc {
    HeldDisc disc;
};

class LookAheadTest : protected WithDisc, public test::ViewFixture {
  protected:
    LookAheadTest() {
        fake.opening = [this](const std::string& path) { disc.pass("open " + path); };
    }
    ~LookAheadTest() override {
        disc.letGo();
        EXPECT_FALSE(disc.heldTheWindow());
    }
    /// From now on a view waits so long for a picture, and a command so long for an answer.
    void lookAhead(std::chrono::milliseconds glance, std::chrono::milliseconds answer = veryPatient) {
        fake.library.lookAhead(glance, answer);
    }
    bool waitForPicture(int grey) {
        return QTest::qWaitFor([&] { return !view.isReading() && greyAt(70, 60) == grey; });
    }
};

TEST_F(LookAheadTest, ReadsTheShownRunAndThenTheNeighbourEachFrameOnce) {
    lookAhead(veryPatient);
    fake.files["/next"] = disc.run("b", 100);
    view.setNeighbour([](const QString& path, PlayDirection) { return path == "/run" ? "/next" : "/run"; });
    const auto run = disc.run("a", 20);
    load(run);
    Steps expected;
    const auto reads = [&](const std::string& name, int from, int to) {
        for (int f = from; f < to; ++f) expected.push_back("read " + name + " " + std::to_string(f));
        seen();
        EXPECT_TRUE(QTest::qWaitFor([&] { return disc.steps().size() >= expected.size(); }));
        Steps begun = disc.steps();
        begun.resize(expected.size());
        EXPECT_EQ(begun, expected);
    };
    reads("a", 0, 20);
    reads("b", 0, 64);  // it may never be played
    ASSERT_TRUE(QTest::qWaitFor([&] { return run->decodeCount == 20; }));
    view.putFileName("/next");
    reads("b", 64, 100);
    view.putFileName("/run");
    reads("a", 0, 0);
    EXPECT_EQ(disc.steps().size(), expected.size());
    EXPECT_EQ(fake.opened, 2) << "a run played before is still open";
    EXPECT_EQ(run->decodeCount, 20);
}

// Also when look-ahead is just reading or decoding the very frame that is wanted.
TEST_F(LookAheadTest, SaysThatItReadsUntilTheDiscHasGivenThePicture) {
    lookAhead(atOnce);
    for (const std::string held : {"open /w", "read x 0", "read y 4", "decode z 4"}) {
        SCOPED_TRACE(held);
        const std::string name(1, held[held.find_first_of("wxyz")]), path = "/" + name;
        disc.hold(held);
        load(disc.run(name, 30), QString::fromStdString(path));
        seen();
        if (held.ends_with("4")) {
            ASSERT_TRUE(waitForPicture(1));
        }
        ASSERT_TRUE(disc.reached(held));
        if (held.starts_with("open")) {
            disc.hold("read");
            disc.letGo(held);
        }
        EXPECT_EQ(view.FrameCount(), 30);
        for (const int frame : {2, 3, 4, 5}) view.putCurrentFrame(frame);
        EXPECT_TRUE(view.isReading());
        EXPECT_EQ(view.accessibleDescription(), "reading …");
        disc.letGo();
        ASSERT_TRUE(waitForPicture(5));
        EXPECT_EQ(view.accessibleDescription(), "");
        ASSERT_TRUE(QTest::qWaitFor([&] { return disc.steps("decode " + name).size() == 30; }));
        EXPECT_EQ(disc.steps("read " + name).size(), 30U) << "each frame once";
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
        {{"1 read z 0", "1 read b 0", "2 read c 0", "main read a 0"},
         {"read z 0", "read a 0", "read b 0", "read c 0"}},
        {{"main read a 0", "1 read b 0", "2 read c 0", "main read a 1"},
         {"read a 0", "read b 0", "read c 0", "read a 1"}},
        {{"main read a 0", "1 read b 0", "main read c 0"}, {"read a 0", "read c 0", "read b 0"}},
        {{"main follow a 0", "1 read b 0", "main read a 3"},
         {"read a 1", "read a 2", "read a 3", "read b 0"}},
        {{"1 read z 0", "2 read b 0", "2 forget", "3 read c 0"}, {"read z 0", "read c 0"}},
        {{"1 read z 0", "2 read b 0", "3 read c 0", "2 read b 0"}, {"read z 0", "read b 0", "read c 0"}},
        {{"1 read z 0", "2 read b 0", "3 read c 0", "2 read d 0"}, {"read z 0", "read c 0", "read d 0"}},
        {{"1 open z", "2 open b", "3 read c 0", "main open a"},
         {"open z", "open a", "read a 0", "read c 0", "open b", "read b 0"}},
        {{"1 open z", "2 open b", "probe open a"}, {"open z", "open a", "read z 0", "open b", "read b 0"}},
        {{"1 open z", "2 open b", "2 forget", "1 forget", "3 open c"}, {"open z", "open c", "read c 0"}},
        {{"1 open z", "2 open b", "main open b"}, {"open z", "open b", "read b 0"}},
        {{"main read a 0", "1 open b", "main read a 1"}, {"read a 0", "open b", "read b 0", "read a 1"}},
    };
    lookAhead(atOnce);
    const std::shared_ptr<FrameStore> store(std::shared_ptr<void>(), &fake.library.frames());
    std::string mark = "_";
    for (const auto& [script, expected] : scripts) {
        mark += "_";
        std::map<std::string, std::shared_ptr<const ImageFile>> files;
        for (const std::string name : {"a", "b", "c", "d", "z"}) {
            const auto run = disc.run(name + mark, 4);
            fake.files["/" + name + mark] = run;
            files[name] = std::make_shared<const ImageFile>(run, FileStamp(), store);
        }
        std::map<std::string, std::shared_ptr<Opening>> views;
        const auto before = disc.steps("").size();
        disc.hold("");
        for (const std::string& asked : script) {
            std::string who, what, name;
            int frame = 0;
            std::istringstream(asked) >> who >> what >> name >> frame;
            const auto asker = who == "main"    ? Asker::MainView
                               : who == "probe" ? Asker::Probe
                                                : Asker::Preview;
            auto& opening = views[who];
            if (what == "open") {
                opening = fake.library.request(QString::fromStdString("/" + name + mark), asker);
            } else if (what == "follow") {
                fake.library.ahead()->follow(files[name], 0, PlayDirection::Forward, "");
            } else if (what == "read") {
                fake.library.frame(&opening, asker, files[name], frame, Patience::Glance);
            } else {
                opening.reset();
                fake.library.forget(&opening);
            }
            ASSERT_TRUE(QTest::qWaitFor([&] { return disc.steps("").size() > before; }));
        }
        disc.letGo("");
        Steps served;
        EXPECT_TRUE(QTest::qWaitFor([&] {
            served = disc.steps("");
            served.erase(served.begin(), served.begin() + static_cast<std::ptrdiff_t>(before));
            std::erase_if(served, [](const auto& step) { return step.starts_with("decode"); });
            return served.size() >= expected.size();
        }));
        for (auto& step : served) {
            step.erase(step.find(mark), mark.size());
            std::erase(step, '/');
        }
        EXPECT_EQ(served, expected);
        for (const auto& [who, opening] : views) fake.library.forget(&opening);
    }
}

// A file that the disc is slow to open: commands wait for what they need to know, the window for nothing
// else, and what was put meanwhile holds.
TEST_F(LookAheadTest, ShowsAFileThatIsOpenedLater) {
    lookAhead(atOnce);
    const auto probed = disc.run("probe", 12);
    fake.files["/probe"] = probed;
    disc.hold("open");
    ezDICOMX probe(ViewRole::Probe, nullptr, fake.library);
    probe.putFileName("/probe");
    std::jthread later([&] {
        disc.reached("open /probe");
        disc.letGo();
    });
    EXPECT_EQ(probe.FrameCount(), 12) << "waits for the answer";
    EXPECT_FALSE(probe.isReading());
    probe.putCurrentFrame(3);

    later.join();
    view.putFileName("/nowhere");
    EXPECT_EQ(view.FrameCount(), 0);
    EXPECT_TRUE(view.accessibleDescription().contains("The file is missing")) << "before it is drawn";
    EXPECT_EQ(probed->decodeCount, 0);
    lookAhead(atOnce, atOnce);
    disc.hold("open");
    auto slow = disc.run("a", 30);
    slow->readingBehind = [this] { disc.pass("behind"); };
    load(slow);
    run("ShowHeader 1; Polarity -1; WindowCenter 20; FrameCount is 0; FileName is /run");
    EXPECT_TRUE(view.isReading());
    EXPECT_FALSE(view.CopyToClipboard());
    EXPECT_FALSE(view.CopyHeaderToClipboard());
    seen();
    EXPECT_EQ(view.accessibleDescription(), "reading …");
    QCoreApplication::processEvents();  // nothing will be painted without need
    disc.letGo();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !view.isReading(); }));
    run("FrameCount is 30; Polarity is -1; WindowCenter is 20");
    const auto* page = view.findChild<QPlainTextEdit*>();
    ASSERT_TRUE(page);
    ASSERT_TRUE(QTest::qWaitFor([&] { return page->toPlainText() != "reading …"; }));
    EXPECT_TRUE(disc.reached("behind"));
}

// Previews that show something else by then, or have gone, are neither opened nor read.
TEST_F(LookAheadTest, GivesUpWhatNoViewWantsAnyMore) {
    lookAhead(atOnce);
    std::vector<std::unique_ptr<ezDICOMX>> previews;
    const auto path = [](int number) { return "/p" + QString::number(number); };
    for (int i = 0; i < 6; ++i)
        fake.files[path(i).toStdString()] = disc.run("p" + std::to_string(i), 2, 10 + i);
    disc.hold("open");
    for (int i = 0; i < 4; ++i) {
        previews.push_back(std::make_unique<ezDICOMX>(ViewRole::Preview, nullptr, fake.library));
        previews.back()->putFileName(path(i));
        previews.back()->show();
    }
    ASSERT_TRUE(disc.reached("open /p0"));
    previews[1]->putThumbIndex(-1);
    previews[2]->putFileName(path(4));
    previews[3].reset();
    view.putFileName(path(5));
    disc.letGo();
    ASSERT_TRUE(waitForPicture(15));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !previews[2]->isReading() && !previews[0]->isReading(); }));
    EXPECT_EQ(disc.steps("open"), (Steps{"open /p0", "open /p5", "open /p4"}));

    const auto& store = fake.library.frames();
    for (const bool destroys : {false, true}) {
        const std::string name = destroys ? "destroyed" : "loaded";
        auto gone = std::make_unique<ezDICOMX>(ViewRole::Main, nullptr, fake.library);
        fake.files["/" + name] = disc.run(name, 3);
        disc.hold("read " + name + " 1");
        gone->putFileName(QString::fromStdString("/" + name));
        gone->show();
        ASSERT_TRUE(QTest::qWaitFor([&] { return disc.steps("read " + name).size() == 2; }));
        gone->putCurrentFrame(3);
        EXPECT_EQ(store.wishesToRead().size(), 1U);
        destroys ? gone.reset() : gone->putFileName("");
        EXPECT_TRUE(store.wishesToRead().empty());
        disc.letGo();
    }
}

// Frames that take long to decode and that nobody waits for any more hold up no other.
TEST_F(LookAheadTest, ShowsWhatIsWantedWhileOtherFramesAreStillDecoded) {
    lookAhead(atOnce);
    for (int i = 0; i < 3; ++i) {
        const std::string name = "slow" + std::to_string(i);
        disc.hold("decode " + name);
        load(disc.run(name, 1), QString::fromStdString("/" + name));
        seen();
        ASSERT_TRUE(QTest::qWaitFor([&] { return !disc.steps("decode " + name).empty(); }));
    }
    load(disc.run("quick", 1, 77), "/quick");
    ASSERT_TRUE(waitForPicture(77));
}

// What lies over a frame, and the range of a first frame that gives the window, are no business of the
// window's thread either.
TEST_F(LookAheadTest, WorksOutAllThatIsDrawnInOtherThreads) {
    lookAhead(atOnce);
    auto file = test::wideRun(16, 16, 12, [](int x, int y) { return x + y ? 1000 : 0; });
    file->frames = 3;
    file->reading = [this](int frame) { disc.pass("read a " + std::to_string(frame)); };
    dicom::Overlay overlay;
    overlay.rows = overlay.columns = 1;
    overlay.embeddedBit = 15;
    file->overlayPlanes = {overlay};
    file->bitsOf = [this](const auto&, int) {
        disc.pass("overlay");
        return std::vector<std::uint8_t>{1};
    };
    disc.hold("read");
    load(file);
    view.putCurrentFrame(3);
    seen();
    disc.letGo();
    ASSERT_TRUE(waitForPicture(255));
    EXPECT_EQ(view.WindowWidth(), 1001);
}

/// A file whose frames take long to decode, and a coarse picture of them no time: every fourth sample of
/// every fourth row.
struct SlowFile : test::FakeDicomFile {
    bool isSlowToDecode() const override { return true; }
    std::optional<dicom::CoarseFrame> decodeCoarse(int frame, const dicom::FrameBytes&, int) const override {
        return dicom::CoarseFrame{coarse(frame), 2};
    }
    std::function<dicom::Frame(int)> coarse;
};

class CoarsePictures : public LookAheadTest {
  protected:
    CoarsePictures() {
        view.resize(400, 300);
        lookAhead(veryPatient);
    }
    bool becomesExact() {
        return QTest::qWaitFor([&] { return !view.isCoarse(); });
    }
    QImage copied(ezDICOMX& of) {
        EXPECT_TRUE(of.CopyToClipboard());
        return QGuiApplication::clipboard()->image().convertToFormat(QImage::Format_RGB32);
    }
    template <typename Value>
    std::shared_ptr<SlowFile> slowRun(int columns, int rows, int bits, int frames, Value value) {
        auto file = std::make_shared<SlowFile>();
        file->format = test::wideRun(columns, rows, bits, {})->format;
        file->frames = file->announced = frames;
        const auto drawn = [=](int step) {
            return test::pictureOf<std::uint16_t>(
                (columns + step - 1) / step, (rows + step - 1) / step, 1,
                [=](int x, int y, int f, int) { return value(x * step, y * step, f); });
        };
        file->coarse = drawn(4);
        file->picture = [this, whole = drawn(1)](int frame) {
            disc.pass("work");
            return whole(frame);
        };
        return file;
    }
    /// Wide greys without a window in the file: the window follows from the first frame, whose lowest and
    /// highest values no coarse picture holds. A shutter and an overlay lie over it.
    std::shared_ptr<SlowFile> windowless() {
        auto file = slowRun(63, 50, 12, 1, [](int x, int y, int) {
            return x == 13 && y == 9 ? 4000 : x == 14 && y == 9 ? 3 : 800 + 20 * x + 10 * y;
        });
        file->shutterShapes.rectangle = dicom::Shutter::Rectangle{6, 60, 4, 48};
        dicom::Overlay overlay;
        overlay.rows = overlay.columns = 5;
        overlay.originRow = 20;
        overlay.originColumn = 31;
        overlay.bits.assign(25, 1);
        file->overlayPlanes = {overlay};
        return file;
    }
};

// Whoever wants the exact picture gets it, from a view that shows a coarse one, and what is over the picture
// does not move.
TEST_F(CoarsePictures, StandForThePictureInTheViewAlone) {
    test::FakeLibrary without;
    without.files["/run"] = windowless();
    ezDICOMX plain(ViewRole::Main, nullptr, without.library);
    plain.resize(view.size());
    plain.putFileName("/run");
    for (ezDICOMX* each : {&plain, &view}) each->putSmooth(false);
    const QImage exact = plain.grab().toImage().convertToFormat(QImage::Format_RGB32);
    const QImage exactCopy = copied(plain);
    const QTemporaryDir folder;
    const QString file = folder.filePath("a.bmp");
    const std::pair<const char*, std::function<void()>> wanting[] = {
        {"nobody", [] {}},
        {"a copy", [&] { EXPECT_EQ(copied(view), exactCopy); }},
        {"an export", [&] { view.putExportFile(file); }},
        {"an answer", [&] { EXPECT_EQ(view.WindowWidth(), plain.WindowWidth()); }},
        {"a new window",
         [&] {
             view.putWindowWidth(500);
             EXPECT_EQ(view.WindowCenter(), plain.WindowCenter());
             view.putWindowWidth(plain.WindowWidth());
         }},
    };
    const QRect place((400 - 63) / 2, (300 - 50) / 2, 63, 50);
    for (const auto& [who, wants] : wanting) {
        SCOPED_TRACE(who);
        disc.hold("work");
        load(windowless(), "/" + QString(who));
        const QImage coarse = seen();
        ASSERT_TRUE(view.isCoarse());
        EXPECT_FALSE(view.isReading());
        EXPECT_NE(coarse, exact);
        int covered = 0;
        for (int y = place.top(); y <= place.bottom(); ++y) {
            for (int x = place.left(); x <= place.right(); ++x) {
                const QRgb there = exact.pixel(x, y);
                // But for the two extreme values.
                if ((there != qRgb(0, 0, 0) && there != qRgb(255, 255, 255)) || y == place.top() + 9)
                    continue;
                ++covered;
                ASSERT_EQ(coarse.pixel(x, y), there) << x << "," << y;
            }
        }
        EXPECT_GT(covered, 500);
        std::jthread later([&] { disc.letGo(); });
        wants();
        ASSERT_TRUE(becomesExact());
        EXPECT_EQ(seen(), exact);
        EXPECT_EQ(copied(view), exactCopy);
    }
    EXPECT_EQ(QImage(file).convertToFormat(QImage::Format_RGB32), exactCopy);
}

// A cine goes on over coarse pictures, each that of its own frame; where it stands still the frame itself, or
// what is wrong with it, comes.
TEST_F(CoarsePictures, LetsACineGoOn) {
    disc.hold("work");
    const auto file =
        slowRun(64, 64, 8, 9, [](int x, int y, int f) { return 20 * f + (x % 4 || y % 4 ? 9 : 3); });
    file->broken = {8};
    load(file);
    seen();
    for (int frame = 1; frame <= 9; ++frame) {
        view.putCurrentFrame(frame);
        EXPECT_FALSE(view.isReading());
        EXPECT_EQ(greyAt(200, 150), 20 * (frame - 1) + 3);
        EXPECT_TRUE(view.isCoarse());
    }
    view.putCurrentFrame(5);
    disc.letGo();
    ASSERT_TRUE(becomesExact());
    EXPECT_EQ(greyAt(201, 151), 20 * 4 + 9);
    view.putCurrentFrame(9);
    seen();
    ASSERT_TRUE(becomesExact());
    EXPECT_TRUE(view.accessibleDescription().contains("damaged"));
}

TEST(FrameStore, DecodesFramesThatTakeAllProcessorsOneAtATime) {
    struct Run : FrameRun {
        mutable FrameStore store;
        mutable int atWork = 0, most = 0;
        DecodingWork work = DecodingWork::Much;
        DecodingWork decodingWork() const override { return work; }
        dicom::Result<dicom::FrameBytes> readFrame(int) const override { return dicom::FrameBytes{}; }
        DecodedFrame decodeRead(int, const dicom::FrameBytes&) const override {
            most = std::max(most, ++atWork);
            store.decodeWanted();
            store.decodeNextDue(this, nullptr);
            --atWork;
            return dicom::Frame{1, 1, 1, std::vector<std::uint8_t>(1)};
        }
    };
    for (const bool isAlone : {true, false}) {
        const auto run = std::make_shared<Run>();
        if (isAlone) run->work = DecodingWork::AllProcessors;
        PlayOrder order;
        order.run = run.get();
        order.frames = order.window = 5;
        run->store.follow(order);
        for (const int frame : {0, 1, 2, 3}) run->store.read({run.get(), frame});
        EXPECT_EQ(run->store.want({&order, Asker::Preview, run, 2}), nullptr);
        while (run->store.decodeNextDue(run.get(), nullptr) || run->store.decodeWanted()) continue;
        EXPECT_NE(run->store.waitFor(&order, {}), nullptr);
        EXPECT_EQ(run->most, isAlone ? 1 : 4);
    }
}

}  // namespace
}  // namespace cinedisc
