#include "control/frames/LookAhead.h"
#include "tests/control/HeldDisc.h"
#include "tests/control/ViewFixture.h"

#include <QClipboard>
#include <QGuiApplication>
#include <gmock/gmock.h>

#include <thread>

namespace cinedisc {
namespace {

constexpr std::chrono::minutes veryPatient{1};

/// A file whose frames take long to decode, and a coarse picture of them no time: every fourth sample of
/// every fourth row.
struct SlowFile : test::FakeDicomFile {
    explicit SlowFile(const test::FakeDicomFile& quick, test::HeldDisc* disc = nullptr) {
        format = quick.format;
        frames = announced = quick.frames;
        drawn = quick.picture;
        picture = [this, disc](int frame) {
            if (disc) disc->pass("decode " + std::to_string(frame));
            return drawn(frame);
        };
    }
    bool isSlowToDecode() const override { return true; }
    std::optional<dicom::CoarseFrame> decodeCoarse(int frame, const dicom::FrameBytes&, int) const override {
        const dicom::Frame whole = drawn(frame);
        dicom::CoarseFrame coarse{{(whole.rows + 3) / 4, (whole.columns + 3) / 4, 1, {}}, 2};
        std::visit(
            [&](const auto& samples) {
                std::decay_t<decltype(samples)> few;
                for (int y = 0; y < whole.rows; y += 4)
                    for (int x = 0; x < whole.columns; x += 4)
                        few.push_back(samples[static_cast<std::size_t>(y * whole.columns + x)]);
                coarse.frame.samples = std::move(few);
            },
            whole.samples);
        return coarse;
    }
    std::function<dicom::Frame(int)> drawn;
};

class CoarsePictureTest : public test::ViewFixture {
  protected:
    CoarsePictureTest() : ViewFixture(ViewRole::Main, {400, 300}) {
        fake.library.lookAhead(veryPatient, veryPatient);
    }
    ~CoarsePictureTest() override { disc.letGo(); }

    bool becomesExact() {
        return QTest::qWaitFor([&] { return !view.isCoarse(); });
    }

    /// Threads may still be decoding when a test is over.
    test::HeldDisc disc;
};

/// Wide greys without a window in the file: the window follows from the first frame, whose lowest and highest
/// values no coarse picture holds. A shutter and an overlay lie over it.
std::shared_ptr<SlowFile> windowless(test::HeldDisc* disc = nullptr) {
    const auto value = [](int x, int y) {
        return x == 13 && y == 9 ? 4000 : x == 14 && y == 9 ? 3 : 800 + 20 * x + 10 * y;
    };
    auto file = std::make_shared<SlowFile>(*test::wideRun(63, 50, 12, value), disc);
    file->shutterShapes.rectangle = dicom::Shutter::Rectangle{6, 60, 4, 48};
    dicom::Overlay overlay;
    overlay.rows = overlay.columns = 5;
    overlay.originRow = 20;
    overlay.originColumn = 31;
    overlay.bits.assign(25, 1);
    file->overlayPlanes = {overlay};
    return file;
}

QImage copied(ezDICOMX& view) {
    EXPECT_TRUE(view.CopyToClipboard());
    return QGuiApplication::clipboard()->image().convertToFormat(QImage::Format_RGB32);
}

// Whoever wants the exact picture gets it, from a view that shows a coarse one, and what is over the picture
// does not move.
TEST_F(CoarsePictureTest, StandsForThePictureInTheViewAlone) {
    test::FakeLibrary without;
    without.files["/run"] = windowless();
    ezDICOMX plain(ViewRole::Main, nullptr, without.library);
    plain.resize(view.size());
    plain.putFileName("/run");
    for (ezDICOMX* each : {&plain, &view}) {
        each->putBestFit(false);
        each->putZoomPercent(100);
        each->putSmooth(false);
    }
    const QImage exact = plain.grab().toImage().convertToFormat(QImage::Format_RGB32);
    const QImage exactCopy = copied(plain);
    const QTemporaryDir folder;
    const auto exported = [&](ezDICOMX& from, const char* name) {
        from.putExportFile(folder.filePath(name));
        return QImage(folder.filePath(name));
    };
    const std::pair<const char*, std::function<void()>> wanting[] = {
        {"nobody", [] {}},
        {"a copy", [&] { EXPECT_EQ(copied(view), exactCopy); }},
        {"an export", [&] { EXPECT_EQ(exported(view, "a.bmp"), exported(plain, "b.bmp")); }},
        {"an answer", [&] { EXPECT_EQ(view.WindowWidth(), plain.WindowWidth()); }},
        {"a new window",
         [&] {
             view.putWindowWidth(500);
             EXPECT_EQ(view.WindowCenter(), plain.WindowCenter());
             plain.putWindowWidth(500);
             EXPECT_EQ(copied(view), copied(plain));
             plain.putFileName("/run");
             view.putWindowWidth(plain.WindowWidth());
         }},
    };
    for (const auto& [who, wants] : wanting) {
        SCOPED_TRACE(who);
        disc.hold("decode");
        load(windowless(&disc), "/" + QString(who));
        const QImage coarse = seen();
        ASSERT_TRUE(view.isCoarse());
        EXPECT_FALSE(view.isReading());
        EXPECT_NE(coarse, exact);
        int covered = 0;
        const QPoint corner((400 - 63) / 2, (300 - 50) / 2);
        for (int y = 0; y < 50; ++y)
            for (int x = 0; x < 63; ++x) {
                const QRgb there = exact.pixel(corner + QPoint(x, y)),
                           now = coarse.pixel(corner + QPoint(x, y));
                const bool isCovered = there == qRgb(0, 0, 0) || there == qRgb(255, 255, 255);
                covered += isCovered;
                const bool isExtreme = y == 9 && (x == 13 || x == 14);
                if (isCovered && !isExtreme) {
                    ASSERT_EQ(now, there) << x << "," << y;
                }
            }
        EXPECT_GT(covered, 500);

        std::jthread later([&] { disc.letGo(); });
        wants();
        ASSERT_TRUE(becomesExact());
        EXPECT_EQ(seen(), exact);
        EXPECT_EQ(copied(view), exactCopy);
    }
}

// A cine goes on over coarse pictures, each that of its own frame; where it stands still the frame itself, or
// what is wrong with it, comes.
TEST_F(CoarsePictureTest, LetsACineGoOn) {
    disc.hold("decode");
    const auto file = std::make_shared<SlowFile>(
        *test::greyRun(64, 64, 9, [](int x, int y, int f) { return 20 * f + (x % 4 || y % 4 ? 9 : 3); }),
        &disc);
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
    EXPECT_THAT(view.accessibleDescription().toStdString(), testing::HasSubstr("damaged"));
}

TEST(FrameStore, DecodesFramesThatTakeTheWholeMachineOneAtATime) {
    struct Run : FrameRun {
        FrameStore* store = nullptr;
        DecodingWork work = DecodingWork::Much;
        mutable bool isNested = false;
        std::size_t room = 0;
        mutable std::optional<bool> another;
        mutable std::size_t heldMeanwhile = 0;
        dicom::Result<dicom::FrameBytes> readFrame(int) const override { return dicom::FrameBytes{}; }
        DecodedFrame decodeRead(int, const dicom::FrameBytes&) const override {
            heldMeanwhile = store->bytesHeld();
            if (!std::exchange(isNested, true))
                another = store->decodeWanted() || store->decodeNextDue(this, nullptr);
            return dicom::Frame{1, 1, 1, std::vector<std::uint8_t>(1)};
        }
        DecodingWork decodingWork() const override { return work; }
        std::size_t decodingRoom() const override { return room; }
    };
    struct Case {
        DecodingWork work;
        std::size_t room;
    };
    constexpr std::size_t ceiling = 10000;
    for (const auto& [work, room] :
         {Case{DecodingWork::Much, 0}, {DecodingWork::AllProcessors, 0}, {DecodingWork::Little, ceiling}}) {
        const bool isAlone = work == DecodingWork::AllProcessors || room > 0;
        FrameStore store(ceiling);
        const auto other = std::make_shared<Run>();
        other->store = &store;
        store.frame({other.get(), 0});
        const auto run = std::make_shared<Run>();
        run->store = &store;
        run->work = work;
        run->room = room;
        int views[2];
        for (int i = 0; i < 2; ++i) {
            EXPECT_EQ(store.want({&views[i], Asker::Preview, run, i}), nullptr);
            EXPECT_TRUE(store.read({run.get(), i}));
        }
        EXPECT_TRUE(store.decodeWanted());
        EXPECT_EQ(run->another, !isAlone);
        EXPECT_EQ(run->heldMeanwhile == 0, room > 0) << "what was held makes room";
        EXPECT_EQ(store.decodeWanted(), isAlone) << "the other's turn";
        for (auto& each : views) store.forget(&each);
    }
}

}  // namespace
}  // namespace cinedisc
