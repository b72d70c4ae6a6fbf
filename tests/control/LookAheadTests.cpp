#include "control/frames/LookAhead.h"
#include "tests/control/ViewFixture.h"

#include <condition_variable>
#include <mutex>
#include <numeric>
#include <random>
#include <vector>

namespace cinedisc {
namespace {

constexpr std::chrono::minutes veryPatient{1};

/// A disc on which every frame read is written down, and that can be stopped.
class Disc : public std::enable_shared_from_this<Disc> {
  public:
    std::shared_ptr<test::FakeDicomFile> run(int frames, int size = 16) {
        auto file = test::greyRun(size, size, frames, [](int, int, int f) { return f + 1; });
        file->reading = [disc = shared_from_this()](int frame) {
            std::unique_lock lock(disc->mutex_);
            disc->moved_.wait(lock, [&] { return disc->moves_; });
            disc->frames_.push_back(frame);
        };
        return file;
    }
    void stop() {
        const std::lock_guard lock(mutex_);
        moves_ = false;
    }
    void move() {
        const std::lock_guard lock(mutex_);
        moves_ = true;
        moved_.notify_all();
    }
    std::vector<int> framesRead() {
        const std::lock_guard lock(mutex_);
        return frames_;
    }

  private:
    std::mutex mutex_;
    std::condition_variable moved_;
    bool moves_ = true;
    std::vector<int> frames_;
};

class LookAheadTest : public test::ViewFixture {
  protected:
    ~LookAheadTest() override { disc->move(); }

    bool waitForReads(std::size_t count) {
        return QTest::qWaitFor([&] { return disc->framesRead().size() >= count; });
    }
    static std::vector<int> upTo(int frames) {
        std::vector<int> numbers(static_cast<std::size_t>(frames));
        std::iota(numbers.begin(), numbers.end(), 0);
        return numbers;
    }

    /// Threads may still be reading when a test is over.
    const std::shared_ptr<Disc> disc = std::make_shared<Disc>();
};

TEST_F(LookAheadTest, ReadsTheShownRunAndThenTheNeighbourEachFrameOnce) {
    fake.library.lookAhead(veryPatient);
    fake.files["/next"] = disc->run(100);
    view.setNeighbour([](const QString& path, PlayDirection) { return path == "/run" ? "/next" : "/run"; });
    const auto run = disc->run(20);
    load(run);
    seen();
    auto expected = upTo(20);
    for (const int frame : upTo(64)) expected.push_back(frame);  // not more of a run that may never be played
    ASSERT_TRUE(waitForReads(expected.size()));
    EXPECT_EQ(disc->framesRead(), expected);
    ASSERT_TRUE(QTest::qWaitFor([&] { return run->decodeCount == 20; }));
    view.putFileName("/next");
    seen();
    ASSERT_TRUE(waitForReads(120));
    view.putFileName("/run");
    seen();
    EXPECT_EQ(fake.opened, 2) << "a run played before is still open";
    EXPECT_EQ(disc->framesRead().size(), 120U);
    EXPECT_EQ(run->decodeCount, 20);
}

// A disc hates jumps: in reverse, frames are read forwards a stretch at a time.
TEST_F(LookAheadTest, ReadsInStretchesWhenPlayedBackwards) {
    fake.library.lookAhead(veryPatient);
    load(disc->run(60));
    view.putCurrentFrame(60);
    view.putCurrentFrame(59);
    seen();
    ASSERT_TRUE(waitForReads(60));
    const auto read = disc->framesRead();
    int jumps = 0;
    for (std::size_t i = 1; i < read.size(); ++i) jumps += read[i] != read[i - 1] + 1;
    EXPECT_LE(jumps, 8);
    EXPECT_TRUE(std::ranges::is_permutation(read, upTo(60)));
}

TEST_F(LookAheadTest, SaysThatItReadsWhileTheDiscIsSlow) {
    fake.library.lookAhead(std::chrono::milliseconds(0));
    disc->stop();
    load(disc->run(30));
    seen();
    EXPECT_EQ(view.accessibleDescription(), "reading …");
    EXPECT_TRUE(view.isReading());
    EXPECT_EQ(view.FrameCount(), 30);
    for (const int frame : {2, 3, 4, 5}) view.putCurrentFrame(frame);
    EXPECT_EQ(view.accessibleDescription(), "reading …");
    disc->move();
    ASSERT_TRUE(QTest::qWaitFor([&] { return view.accessibleDescription().isEmpty(); }));
    EXPECT_FALSE(view.isReading());
    EXPECT_EQ(greyAt(70, 60), 5);
    ASSERT_TRUE(waitForReads(30));
    EXPECT_TRUE(std::ranges::is_permutation(disc->framesRead(), upTo(30))) << "each frame once";
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
    fake.library.lookAhead(std::chrono::milliseconds(0));
    disc->stop();
    load(disc->run(30));
    seen();
    view.installEventFilter(&paints);
    QObject::connect(&fake.library.arrivals(), &FrameArrivals::arrived, &view,
                     [this] { view.putCurrentFrame(2); });
    disc->move();
    ASSERT_TRUE(QTest::qWaitFor([&] { return view.CurrentFrame() == 2; }));
    EXPECT_TRUE(paints.ofFirstPicture);
}

// What the user looks at is read before the previews, whoever asked first, and each frame once.
TEST_F(LookAheadTest, ServesTheMainViewBeforeThePreviews) {
    const auto store = std::make_shared<FrameStore>();
    std::vector<std::shared_ptr<const ImageFile>> files;
    for (const int pixels : {8, 9, 10, 11})
        files.push_back(std::make_shared<const ImageFile>(disc->run(2, pixels), FileStamp(), store));
    LookAhead ahead(*store, nullptr);
    disc->stop();
    const auto want = [&](std::size_t who, Asker asker, std::size_t file, int frame) {
        EXPECT_EQ(store->want({&files[who], asker, files[file], frame}), nullptr);
        ahead.wake();
    };
    want(0, Asker::Preview, 0, 0);  // the reader may be waiting for this one already
    for (const std::size_t preview : {1, 2, 1}) want(preview, Asker::Preview, preview, 0);
    want(3, Asker::MainView, 3, 0);
    want(3, Asker::MainView, 3, 1);
    disc->move();
    ASSERT_TRUE(waitForReads(4));
    const auto read = disc->framesRead();
    const auto ofMainView = std::ranges::find(read, 1) - read.begin();
    EXPECT_LE(ofMainView, 1);
    EXPECT_EQ(read.size(), 4U);
}

// Whatever is loaded and stepped to while threads are at work: the picture is that of the file and frame
// shown.
TEST_F(LookAheadTest, NeverShowsAnotherFrame) {
    fake.library.lookAhead(veryPatient);
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
