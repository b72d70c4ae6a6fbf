#include "tests/control/FakeDicomFile.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

#include <atomic>
#include <barrier>
#include <thread>

namespace cinedisc {
namespace {

/// A run whose frames are made on the spot, and counted.
struct FakeRun : FrameSteps {
    std::size_t bytes = 1000;  ///< of a decoded frame
    std::size_t readBytes = 10;
    std::function<void()> decoding;
    mutable std::atomic<int> read = 0, decoded = 0;

    dicom::Result<dicom::FrameBytes> readFrame(int) const override {
        ++read;
        dicom::FrameBytes held;
        held.storage.resize(readBytes);
        held.length = readBytes;
        return held;
    }
    DecodedFrame decodeRead(int index, const dicom::FrameBytes& from) const override {
        EXPECT_EQ(from.length, readBytes);
        if (decoding) decoding();
        ++decoded;
        dicom::Frame frame;
        frame.columns = index;
        frame.samples = std::vector<std::uint8_t>(bytes);
        return frame;
    }
};

TEST(FrameStore, LetsGoOfTheFramesUsedLongestAgo) {
    FrameStore store(3500);
    const FakeRun run;
    for (const int index : {0, 1, 2, 0, 1, 2}) store.frame({&run, index});
    EXPECT_EQ(run.decoded, 3);
    store.frame({&run, 0});
    store.frame({&run, 3});  // 1 goes
    EXPECT_EQ(run.decoded, 4);
    EXPECT_LE(store.bytesHeld(), 3500U);
    store.frame({&run, 0});
    EXPECT_EQ(run.decoded, 4);
    store.frame({&run, 1});
    EXPECT_EQ(run.decoded, 5);
}

TEST(FrameStore, GivesAFrameBeyondItsCeilingWithoutKeepingIt) {
    FrameStore store(500);
    FakeRun run;
    run.bytes = 5000;
    EXPECT_EQ(store.frame({&run, 0})->value().byteSize(), 5000U);
    EXPECT_EQ(store.bytesHeld(), 0U);
}

TEST(FrameStore, TurnsMissingMemoryIntoAFault) {
    FrameStore store;
    FakeRun run;
    run.decoding = [] { throw std::bad_alloc(); };
    const auto frame = store.frame({&run, 0});
    ASSERT_FALSE(frame->ok());
    EXPECT_EQ(frame->error().kind, dicom::DecodeError::Kind::TooLarge);
    run.decoding = {};
    store.dropFaults(&run);
    EXPECT_TRUE(store.frame({&run, 0})->ok());
}

TEST(FrameStore, ReadsAndDecodesAFrameOnceForAllThreadsThatAskForIt) {
    FrameStore store;
    const FakeRun run;
    std::barrier together(4);
    std::vector<std::jthread> threads;
    std::array<FrameStore::Decoded, 4> got;
    for (std::size_t t = 0; t < 4; ++t) {
        threads.emplace_back([&, t] {
            together.arrive_and_wait();
            for (int index = 0; index < 50; ++index) {
                if (t == 0) store.read({&run, index});
                got[t] = store.frame({&run, index});
            }
        });
    }
    threads.clear();
    EXPECT_EQ(run.read, 50);
    EXPECT_EQ(run.decoded, 50);
    for (const auto& frame : got) EXPECT_EQ(frame, got[0]);
}

// A run of 20 frames goes round in a store for about 10 of them: what is due last goes first, so that every
// round finds what the last one left, and compressed frames stay where they are small.
TEST(FrameStore, KeepsMostOfARunThatDoesNotFit) {
    struct Case {
        std::size_t readBytes;
        int mostReadInThreeRounds;
    };
    for (const auto& c : {Case{10, 20}, Case{990, 20 + 2 * 11}}) {
        FrameStore store(10 * (1000 + sizeof(DecodedFrame)));
        const auto run = std::make_shared<FakeRun>();
        run->readBytes = c.readBytes;
        PlayOrder order;
        order.run = run.get();
        order.frames = 20;
        order.window = 1;
        order.fits = false;
        for (int step = 0; step < 60; ++step) {
            order.frame = step % 20;
            store.follow(order);
            EXPECT_EQ(store.frame({run.get(), order.frame})->value().columns, order.frame);
            EXPECT_LE(store.bytesHeld(), store.ceiling());
        }
        EXPECT_LE(run->read, c.mostReadInThreeRounds) << c.readBytes;
        store.drop(run.get());
        EXPECT_EQ(store.bytesHeld(), 0U);
    }
}

TEST(ImageFile, FreesItsFramesWhenTheLastViewLetsGo) {
    test::FakeLibrary fake;
    fake.files["/a"] = test::greyRun(64, 64, 3);
    fake.files["/b"] = test::greyRun(64, 64, 3);
    auto a = fake.library.open("/a").value();
    auto b = fake.library.open("/b").value();
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(a->frame(i)->ok());
        EXPECT_TRUE(b->frame(i)->ok());
    }
    const auto both = fake.library.frames().bytesHeld();
    a.reset();
    EXPECT_EQ(fake.library.frames().bytesHeld(), both / 2);
    b.reset();
    EXPECT_EQ(fake.library.frames().bytesHeld(), 0U);
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
    first.reset();
    second.reset();
    EXPECT_TRUE(fake.library.open("/run").ok());
    EXPECT_EQ(fake.opened, 2);
}

TEST(ImageLibrary, SeesThatAnotherFileHasTakenThePlace) {
    QTemporaryDir folder;
    const QString path = folder.filePath("a.dcm");
    const auto write = [&](const QByteArray& bytes) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    };
    write("first");
    test::FakeLibrary fake;
    fake.files[path.toStdString()] = test::greyRun(8, 8, 1);
    const auto shown = fake.library.open(path).value();
    write("another");
    fake.files[path.toStdString()] = test::greyRun(8, 8, 5);
    EXPECT_EQ(fake.library.open(path).value()->dicom().frameCount(), 5);
    EXPECT_EQ(shown->dicom().frameCount(), 1) << "a view that shows the old one keeps it";
    ASSERT_TRUE(QFile::remove(path));
    fake.files.clear();
    EXPECT_FALSE(fake.library.open(path).ok());
}

}  // namespace
}  // namespace cinedisc
