#include "control/frames/LookAhead.h"
#include "tests/control/HeldDisc.h"
#include "tests/control/ViewFixture.h"

#include <QPlainTextEdit>

#include <random>

namespace cinedisc {
namespace {

using Steps = std::vector<std::string>;
constexpr std::chrono::minutes veryPatient{1};
constexpr std::chrono::milliseconds atOnce{0};

/// Outlives the threads that may still be reading when a test is over.
struct WithDisc {
    test::HeldDisc disc;
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
    bool waitForReads(std::size_t count) {
        return QTest::qWaitFor([&] { return disc.steps().size() >= count; });
    }
    bool waitForPicture(int grey) {
        return QTest::qWaitFor([&] { return !view.isReading() && greyAt(70, 60) == grey; });
    }
    static Steps reads(const std::string& run, int frames) {
        Steps steps;
        for (int f = 0; f < frames; ++f) steps.push_back("read " + run + " " + std::to_string(f));
        return steps;
    }
};

TEST_F(LookAheadTest, ReadsTheShownRunAndThenTheNeighbourEachFrameOnce) {
    lookAhead(veryPatient);
    fake.files["/next"] = disc.run("b", 100);
    view.setNeighbour([](const QString& path, PlayDirection) { return path == "/run" ? "/next" : "/run"; });
    const auto run = disc.run("a", 20);
    load(run);
    seen();
    auto expected = reads("a", 20);
    for (const auto& read : reads("b", 64)) expected.push_back(read);  // it may never be played
    ASSERT_TRUE(waitForReads(expected.size()));
    EXPECT_EQ(disc.steps(), expected);
    ASSERT_TRUE(QTest::qWaitFor([&] { return run->decodeCount == 20; }));
    view.putFileName("/next");
    seen();
    ASSERT_TRUE(waitForReads(120));
    view.putFileName("/run");
    seen();
    EXPECT_EQ(fake.opened, 2) << "a run played before is still open";
    EXPECT_EQ(disc.steps().size(), 120U);
    EXPECT_EQ(run->decodeCount, 20);
}

// Also when look-ahead is just reading or decoding the very frame that is wanted.
TEST_F(LookAheadTest, SaysThatItReadsUntilTheDiscHasGivenThePicture) {
    lookAhead(atOnce);
    int number = 0;
    for (const std::string& step : Steps{"open", "read x 0", "read x 4", "decode x 4"}) {
        const std::string name = "x" + std::to_string(number++), path = "/" + name;
        std::string held = step;
        if (held == "open") held += " " + path;
        if (const auto at = held.find(" x "); at != std::string::npos) held.replace(at + 1, 1, name);
        SCOPED_TRACE(held);
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
    struct Paints : QObject {
        bool eventFilter(QObject* watched, QEvent* event) override {
            if (event->type() != QEvent::Paint) return false;
            // What has been painted is known afterwards.
            watched->event(event);
            const auto& view = *static_cast<ezDICOMX*>(watched);
            ofFirstPicture |= view.CurrentFrame() == 1 && !view.isReading();
            return true;
        }
        bool ofFirstPicture = false;
    } paints;
    lookAhead(atOnce);
    disc.hold("read");
    load(disc.run("a", 30));
    seen();
    view.installEventFilter(&paints);
    QObject::connect(&fake.library.arrivals(), &FrameArrivals::arrived, &view, [this] {
        if (!view.isReading()) {
            view.putCurrentFrame(2);
        }
    });
    disc.letGo();
    ASSERT_TRUE(QTest::qWaitFor([&] { return view.CurrentFrame() == 2; }));
    EXPECT_TRUE(paints.ofFirstPicture);
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
        const auto marked = [&](const std::string& step) {
            auto words = QString::fromStdString(step).split(' ');
            words[1] = (words[0] == "open" ? "/" : "") + words[1] + QString::fromStdString(mark);
            return words.join(' ').toStdString();
        };
        std::map<std::string, std::shared_ptr<const ImageFile>> files;
        for (const std::string name : {"a", "b", "c", "d", "z"}) {
            fake.files["/" + name + mark] = disc.run(name + mark, 4);
            files[name] = std::make_shared<const ImageFile>(disc.run(name + mark, 4), FileStamp(), store);
        }
        std::map<std::string, std::shared_ptr<Opening>> views;
        const auto before = disc.steps("").size();
        disc.hold("");
        for (const std::string& asked : script) {
            const auto words = QString::fromStdString(asked).split(' ');
            const std::string who = words[0].toStdString();
            const auto asker = who == "main"    ? Asker::MainView
                               : who == "probe" ? Asker::Probe
                                                : Asker::Preview;
            auto& view_ = views[who];
            if (words[1] == "open") {
                view_ = fake.library.request("/" + words[2] + QString::fromStdString(mark), asker);
            } else if (words[1] == "follow") {
                fake.library.ahead()->follow(files[words[2].toStdString()], 0, PlayDirection::Forward, "");
            } else if (words[1] == "read") {
                fake.library.frame(&view_, asker, files[words[2].toStdString()], words[3].toInt(),
                                   Patience::Glance);
            } else {
                view_.reset();
                fake.library.forget(&view_);
            }
            ASSERT_TRUE(QTest::qWaitFor([&] { return disc.steps("").size() > before; }));
        }
        Steps served, wanted;
        for (const auto& step : expected) wanted.push_back(marked(step));
        disc.letGo("");
        EXPECT_TRUE(QTest::qWaitFor([&] {
            const auto steps = disc.steps("");
            served.clear();
            std::copy_if(steps.begin() + static_cast<std::ptrdiff_t>(before), steps.end(),
                         std::back_inserter(served), [](const auto& step) { return step[0] != 'd'; });
            return served.size() >= wanted.size();
        }));
        EXPECT_EQ(served, wanted);
        for (const auto& [who, view_] : views) fake.library.forget(&view_);
    }
}

// A file that the disc is slow to open: commands wait for what they need to know, the window for nothing
// else, and what was put meanwhile holds.
TEST_F(LookAheadTest, ShowsAFileThatIsOpenedLater) {
    lookAhead(atOnce);
    fake.files["/probe"] = disc.run("probe", 12);
    disc.hold("open");
    ezDICOMX probe(ViewRole::Probe, nullptr, fake.library);
    probe.putFileName("/probe");
    std::jthread later([&] {
        disc.reached("open /probe");
        disc.letGo();
    });
    EXPECT_EQ(probe.FrameCount(), 12) << "waits for the answer";
    EXPECT_FALSE(probe.isReading());

    later.join();
    view.putFileName("/nowhere");
    EXPECT_EQ(view.FrameCount(), 0);
    EXPECT_TRUE(view.accessibleDescription().contains("There is no such file")) << "before it is drawn";
    lookAhead(atOnce, atOnce);
    disc.hold("open");
    auto run = disc.run("a", 30);
    run->readingBehind = [this] { disc.pass("behind"); };
    load(run);
    view.putShowHeader(true);
    view.putPolarity(-1);
    view.putWindowCenter(20);
    EXPECT_EQ(view.FrameCount(), 0);
    EXPECT_EQ(view.CurrentFrame(), 1);
    EXPECT_EQ(view.FileName(), "/run");
    EXPECT_TRUE(view.isReading());
    EXPECT_FALSE(view.CopyToClipboard());
    EXPECT_FALSE(view.CopyHeaderToClipboard());
    seen();
    EXPECT_EQ(view.accessibleDescription(), "reading …");
    QCoreApplication::processEvents();  // nothing will be painted without need
    disc.letGo();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !view.isReading(); }));
    EXPECT_EQ(view.FrameCount(), 30);
    EXPECT_EQ(view.Polarity(), -1);
    EXPECT_EQ(view.WindowCenter(), 20);
    const auto* page = view.findChild<QPlainTextEdit*>();
    ASSERT_TRUE(page);
    ASSERT_TRUE(QTest::qWaitFor([&] { return page->toPlainText() != "reading …"; }));
    EXPECT_TRUE(disc.reached("behind"));
    view.putFileName("/nowhere");
    ASSERT_TRUE(QTest::qWaitFor([&] { return !view.isReading(); }));
    EXPECT_EQ(view.FrameCount(), 0);
    EXPECT_TRUE(view.accessibleDescription().contains("There is no such file"));
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
    for (const std::string name : {"loaded", "destroyed"}) {
        auto gone = std::make_unique<ezDICOMX>(ViewRole::Main, nullptr, fake.library);
        fake.files["/" + name] = disc.run(name, 3);
        disc.hold("read " + name + " 1");
        gone->putFileName(QString::fromStdString("/" + name));
        gone->show();
        ASSERT_TRUE(QTest::qWaitFor([&] { return disc.steps("read " + name).size() == 2; }));
        gone->putCurrentFrame(3);
        EXPECT_EQ(store.wishesToRead().size(), 1U);
        if (name == "loaded") gone->putFileName("");
        if (name == "destroyed") gone.reset();
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

// Whatever is loaded and stepped to while threads are at work: the picture is that of the file and frame
// shown.
TEST_F(LookAheadTest, NeverShowsAnotherFrame) {
    lookAhead(veryPatient);
    const int frames[] = {1, 7, 40};
    for (int i = 0; i < 3; ++i) {
        fake.files["/" + std::to_string(i)] =
            test::greyRun(16, 16, frames[i], [i](int, int, int f) { return 80 * i + f; });
    }
    view.setNeighbour([](const QString& path, PlayDirection towards) {
        return "/" +
               QString::number((path.back().digitValue() + (towards == PlayDirection::Forward ? 1 : 2)) % 3);
    });
    std::mt19937 random(7);
    int file = 0;
    view.putFileName("/0");
    for (int step = 0; step < 600; ++step) {
        const int kind = static_cast<int>(random() % 10);
        if (kind == 0) {
            file = static_cast<int>(random() % 3);
            view.putFileName("/" + QString::number(file));
        } else if (kind == 1) {
            view.putCurrentFrame(static_cast<int>(random() % 40) + 1);
        } else {
            view.putCurrentFrame(view.CurrentFrame() % view.FrameCount() + 1);
        }
        ASSERT_EQ(greyAt(70, 60), 80 * file + view.CurrentFrame() - 1) << step;
    }
}

}  // namespace
}  // namespace cinedisc
