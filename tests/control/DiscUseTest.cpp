#include "dicom/Tags.h"
#include "tests/control/ViewFixture.h"

#include <semaphore>

namespace cinedisc {
namespace {

/// What the threads that may still be reading when a test is over use.
struct WithReads {
    std::binary_semaphore held{0};
    std::mutex mutex;
    std::vector<std::string> reads;
    std::vector<std::string> readSoFar() {
        const std::lock_guard lock(mutex);
        return reads;
    }
};

struct DiscUseTest : WithReads, test::ViewFixture {
    /// All pixels of a frame, counted from 0, are `first` and its number.
    std::shared_ptr<test::FakeDicomFile> run(const std::string& name, int frames, int first,
                                             const std::string& holding = "") {
        auto file = test::greyRun(16, 16, frames, [=](int, int, int f) { return first + f; });
        file->reading = [=, this](int frame) {
            const std::string read = name + " " + std::to_string(frame);
            {
                const std::lock_guard lock(mutex);
                reads.push_back(read);
            }
            if (read == holding) held.acquire();
        };
        fake.files["/" + name] = file;
        return file;
    }
    static int greyOf(ezDICOMX& shown) { return qRed(shown.grab().toImage().pixel(shown.rect().center())); }
};

// Its first frame comes in its turn; the other one when the main view's run has been read to its end, and one
// whose reading hangs is in nobody's way.
TEST_F(DiscUseTest, PreviewsShowTheRepresentativeFrameOnceTheDiscHasNothingElseToDo) {
    fake.library.lookAhead(std::chrono::milliseconds(0));
    const struct {
        const char* name;
        int frames;
        const char* stated;
        int shown;  ///< counted from 1
    } previewed[] = {{"a", 9, "", 4}, {"b", 9, "7", 7}, {"c", 9, "10", 4}, {"still", 1, "", 1}};
    std::vector<std::unique_ptr<ezDICOMX>> previews;
    for (const auto& [name, frames, stated, shown] : previewed) {
        test::put(*run(name, frames, 100), dicom::tags::RepresentativeFrameNumber, stated);
        previews.push_back(std::make_unique<ezDICOMX>(ViewRole::Preview, nullptr, fake.library));
        previews.back()->resize(120, 120);
        previews.back()->putBestFit(true);
        previews.back()->show();
        previews.back()->putFileName("/" + QString(name));
        ASSERT_TRUE(QTest::qWaitFor([&] { return greyOf(*previews.back()) == 100; }));
    }
    EXPECT_EQ(readSoFar(), (std::vector<std::string>{"a 0", "b 0", "c 0", "still 0"}))
        << "nothing more before the main view has its picture";

    run("main", 20, 10);
    run("hangs", 9, 200, "hangs 3");
    view.putFileName("/main");
    for (std::size_t i = 0; i < previews.size(); ++i) {
        const int grey = 99 + previewed[i].shown;
        EXPECT_TRUE(QTest::qWaitFor([&] { return greyOf(*previews[i]) == grey; })) << previewed[i].name;
        EXPECT_EQ(previews[i]->CurrentFrame(), 1);
    }
    const auto reads = readSoFar();
    ASSERT_EQ(reads.size(), 4U + 20 + 3);
    EXPECT_EQ(reads[23], "main 19") << "the main view's run first";

    previews[0]->putFileName("/hangs");
    EXPECT_TRUE(QTest::qWaitFor([&] { return !readSoFar().empty() && readSoFar().back() == "hangs 3"; }));
    run("next", 3, 50);
    view.putFileName("/next");
    EXPECT_TRUE(QTest::qWaitFor([&] { return !view.isReading() && greyOf(view) == 50; }));
    EXPECT_EQ(greyOf(*previews[0]), 200);
    held.release();
    EXPECT_TRUE(QTest::qWaitFor([&] { return greyOf(*previews[0]) == 203; }));
}

// The window says that it waits, as soon as a person would wonder.
TEST_F(DiscUseTest, ALongWaitForAnAnswerIsTold) {
    std::string told;
    fake.library.lookAhead(std::chrono::milliseconds(0), std::chrono::minutes(1));
    fake.library.onLongWait([&](bool waits) {
        told += waits ? "waits " : "over";
        if (waits) held.release();
    });
    run("slow", 5, 1);
    fake.opening = [this](const std::string&) { held.acquire(); };
    view.putFileName("/slow");
    EXPECT_EQ(view.FrameCount(), 5);
    EXPECT_EQ(told, "waits over");
}

}  // namespace
}  // namespace cinedisc
