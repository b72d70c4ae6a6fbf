#include "tests/control/FakeDicomFile.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

#include <atomic>
#include <barrier>
#include <thread>

namespace cinedisc {
namespace {

dicom::Result<dicom::Frame> frameOf(std::size_t bytes) {
    dicom::Frame frame;
    frame.samples = std::vector<std::uint8_t>(bytes);
    return frame;
}

TEST(FrameStore, LetsGoOfTheFramesUsedLongestAgo) {
    FrameStore store(3500);
    int decoded = 0;
    const auto ask = [&](int index) {
        return store.frame(&store, index, [&] {
            ++decoded;
            return frameOf(1000);
        });
    };
    for (const int index : {0, 1, 2, 0, 1, 2}) ask(index);
    EXPECT_EQ(decoded, 3);
    ask(0);
    ask(3);  // 1 goes
    EXPECT_EQ(decoded, 4);
    EXPECT_LE(store.bytesHeld(), 3500U);
    ask(0);
    EXPECT_EQ(decoded, 4);
    ask(1);
    EXPECT_EQ(decoded, 5);
}

TEST(FrameStore, GivesAFrameBeyondItsCeilingWithoutKeepingIt) {
    FrameStore store(500);
    EXPECT_EQ(store.frame(&store, 0, [] { return frameOf(5000); })->value().byteSize(), 5000U);
    EXPECT_EQ(store.bytesHeld(), 0U);
}

TEST(FrameStore, TurnsMissingMemoryIntoAFault) {
    FrameStore store;
    const auto frame =
        store.frame(&store, 0, []() -> dicom::Result<dicom::Frame> { throw std::bad_alloc(); });
    ASSERT_FALSE(frame->ok());
    EXPECT_EQ(frame->error().kind, dicom::DecodeError::Kind::TooLarge);
}

TEST(FrameStore, DecodesAFrameOnceForAllThreadsThatAskForIt) {
    FrameStore store;
    std::atomic<int> decoded = 0;
    std::barrier together(4);
    std::vector<std::jthread> threads;
    std::array<FrameStore::Decoded, 4> got;
    for (std::size_t t = 0; t < 4; ++t) {
        threads.emplace_back([&, t] {
            together.arrive_and_wait();
            for (int index = 0; index < 50; ++index) {
                got[t] = store.frame(&store, index, [&] {
                    ++decoded;
                    return frameOf(100);
                });
            }
        });
    }
    threads.clear();
    EXPECT_EQ(decoded, 50);
    for (const auto& frame : got) EXPECT_EQ(frame, got[0]);
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
