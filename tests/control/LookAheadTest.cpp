#include "control/frames/LookAhead.h"
#include "dicom/Tags.h"
#include "tests/control/ViewFixture.h"

#include <QPlainTextEdit>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <condition_variable>
#include <deque>
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
            disc.letGo();
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
            "letGo; "
            "grey 5");
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
    run("FileName /nowhere; FrameCount is 0");
    EXPECT_TRUE(view.accessibleDescription().contains("The file is missing")) << "before it is drawn";
    EXPECT_EQ(disc.steps("decode").size(), 0U);
    for (const QString step : {"open /a1", "read b1 0", "read c3 2"}) {
        const QString name = step.section(' ', 1, 1).remove('/');
        makeRun(name.toStdString(), 3);
        during(step.toStdString(), [&] {
            run("FileName /" + name + "; CurrentFrame " + name.last(1));
            EXPECT_TRUE(view.CopyToClipboard()) << qPrintable(step);
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
        return QTest::qWaitFor(
            [&] { return qRed(preview.grab().toImage().pixel(preview.rect().center())) == grey; });
    };
    std::deque<ezDICOMX> previews;
    for (const auto& [name, stated] :
         {std::pair<std::string, const char*>{"a", ""}, {"b", "7"}, {"c", "10"}}) {
        const auto file = disc.run(name, 9, 100);
        test::put(*file, dicom::tags::RepresentativeFrameNumber, stated);
        fake.files["/" + name] = file;
        auto& preview = previews.emplace_back(ViewRole::Preview, nullptr, fake.library);
        preview.show();
        preview.putFileName(QString::fromStdString("/" + name));
        EXPECT_TRUE(shows(preview, 100));
    }
    makeRun("main", 20, 10);
    view.putFileName("/main");
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_TRUE(shows(previews[i], i == 1 ? 106 : 103)) << i;
        EXPECT_EQ(previews[i].CurrentFrame(), 1);
    }
    ASSERT_EQ(disc.steps().size(), 3U + 20 + 3);
    EXPECT_EQ(disc.steps()[22], "read main 19") << "the main view's run first";
    makeRun("hangs", 9, 200);
    makeRun("next", 3, 50);
    disc.hold("read hangs 3");
    previews[0].putFileName("/hangs");
    run("reached read hangs 3; FileName /next; grey 50");
    EXPECT_TRUE(shows(previews[0], 200));
    disc.letGo();
    EXPECT_TRUE(shows(previews[0], 203));
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
    run("hold read left 1; FileName /left; draw; reached read left 1; CurrentFrame 3; draw");
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
        EXPECT_FALSE(view.isReading());
        EXPECT_NE(coarse, exact);
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
    const auto file =
        slowRun(64, 64, 8, 9, [](int x, int y, int f) { return 20 * f + (x % 4 || y % 4 ? 9 : 3); });
    file->broken = {8};
    fake.files["/run"] = file;
    run("hold work; FileName /run; draw");
    for (int frame = 1; frame <= 9; ++frame) {
        view.putCurrentFrame(frame);
        EXPECT_FALSE(view.isReading());
        EXPECT_EQ(greyAt(200, 150), 20 * (frame - 1) + 3);
        EXPECT_TRUE(view.isCoarse());
    }
    run("CurrentFrame 5; letGo");
    ASSERT_TRUE(becomesExact());
    EXPECT_TRUE(QTest::qWaitFor([&] { return onScreen() == seen(); }));
    EXPECT_EQ(greyAt(201, 151), 20 * 4 + 9);
    run("CurrentFrame 9; draw");
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
    // Without the words in the corners.
    for (int y = 60; y < 200; ++y)
        for (int x = 5; x < 395; ++x)
            ASSERT_NEAR(qRed(coarse.pixel(x, y)), qRed(exact.pixel(x, y)), 2) << x << "," << y;
}

}  // namespace
}  // namespace cinedisc
