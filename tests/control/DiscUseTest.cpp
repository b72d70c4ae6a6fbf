#include "dicom/Tags.h"
#include "tests/control/ViewFixture.h"

#include <deque>
#include <semaphore>

namespace cinedisc {
namespace {

/// What the threads use that may still be reading when a test is over.
struct WithReads {
    std::counting_semaphore<> held{0};
    std::mutex mutex;
    std::vector<std::string> reads;
};

struct DiscUseTest : WithReads, test::ViewFixture {
    ~DiscUseTest() override { held.release(); }
    /// All pixels of a frame, counted from 0, are `first` and its number.
    std::shared_ptr<test::FakeDicomFile> run(const std::string& name, int frames, int first) {
        auto file = test::greyRun(16, 16, frames, [=](int, int, int f) { return first + f; });
        file->reading = [=, this](int frame) {
            {
                const std::lock_guard lock(mutex);
                reads.push_back(name + " " + std::to_string(frame));
            }
            if (name == "hangs" && frame > 0) held.acquire();
        };
        fake.files["/" + name] = file;
        return file;
    }
    std::vector<std::string> readSoFar() {
        const std::lock_guard lock(mutex);
        return reads;
    }
    static bool shows(ezDICOMX& view, int grey) {
        return QTest::qWaitFor(
            [&] { return qRed(view.grab().toImage().pixel(view.rect().center())) == grey; });
    }
};

// Its first frame comes in its turn; the other one when the main view's run has been read to its end, and one
// whose reading hangs is in nobody's way.
TEST_F(DiscUseTest, PreviewsShowTheRepresentativeFrameOnceTheDiscHasNothingElseToDo) {
    fake.library.lookAhead(std::chrono::milliseconds(0));
    const struct {
        const char* name;
        const char* stated;
        int shown;  ///< counted from 1
    } previewed[] = {{"a", "", 4}, {"b", "7", 7}, {"c", "10", 4}};
    std::deque<ezDICOMX> previews;
    for (std::size_t i = 0; i < 3; ++i) {
        previews.emplace_back(ViewRole::Preview, nullptr, fake.library);
        const std::string name = previewed[i].name;
        test::put(*run(name, 9, 100), dicom::tags::RepresentativeFrameNumber, previewed[i].stated);
        previews[i].putBestFit(true);
        previews[i].show();
        previews[i].putFileName(QString::fromStdString("/" + name));
        EXPECT_TRUE(shows(previews[i], 100));
    }
    run("main", 20, 10);
    view.putFileName("/main");
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_TRUE(shows(previews[i], 99 + previewed[i].shown)) << previewed[i].name;
        EXPECT_EQ(previews[i].CurrentFrame(), 1);
    }
    const auto all = readSoFar();
    ASSERT_EQ(all.size(), 3U + 20 + 3);
    EXPECT_EQ(all[22], "main 19") << "the main view's run first";

    run("hangs", 9, 200);
    previews[0].putFileName("/hangs");
    EXPECT_TRUE(QTest::qWaitFor([&] { return readSoFar().back() == "hangs 3"; }));
    run("next", 3, 50);
    view.putFileName("/next");
    EXPECT_TRUE(shows(view, 50));
    EXPECT_TRUE(shows(previews[0], 200));
    held.release();
    EXPECT_TRUE(shows(previews[0], 203));
}

// The window says that it waits, as soon as a person would wonder.
TEST_F(DiscUseTest, ALongWaitForAnAnswerIsTold) {
    std::string told;
    fake.library.lookAhead(std::chrono::milliseconds(0), std::chrono::minutes(1));
    fake.library.onLongWait([&](ImageLibrary::LongWait wait) {
        using enum ImageLibrary::LongWait;
        told += wait == Begins ? "waits " : wait == Ends ? "over" : "";
        if (wait != GoesOn) return;
        // What is drawn meanwhile, and what comes, changes nothing for the command that waits.
        held.release();
        EXPECT_TRUE(QTest::qWaitFor([&] { return !readSoFar().empty(); }));
        seen();
        EXPECT_EQ(view.FrameCount(), 0);
        EXPECT_EQ(view.accessibleDescription(), "reading …");
    });
    run("slow", 5, 1);
    fake.opening = [this](const std::string&) { held.acquire(); };
    view.putFileName("/slow");
    EXPECT_EQ(view.FrameCount(), 5);
    EXPECT_EQ(told, "waits over");
}

}  // namespace
}  // namespace cinedisc
