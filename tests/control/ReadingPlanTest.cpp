#include "control/frames/ReadingPlan.h"
#include "tests/control/FakeDicomFile.h"

#include <gtest/gtest.h>

#include <array>
#include <random>

namespace cinedisc {
namespace {

/// What is to be read next, looked for from the beginning every time.
struct ObviousPlan {
    const std::array<std::shared_ptr<const ImageFile>, 4>& files;
    FrameStore& store;
    int run = -1, frame = 0;
    PlayDirection direction{};
    int next = -1;  ///< in its path
    bool isNextTried = false, isNextOpen = false;
    int lastRead = -1, burstEnd = -1;

    const ImageFile& file(int number) const { return *files[static_cast<std::size_t>(number)]; }
    int frames(int number) const { return file(number).dicom().frameCount(); }
    bool isMissing(int number, int f) const { return store.isMissing({&file(number), f}); }
    std::size_t runBytes() const {
        return file(run).decodedFrameBytes() * static_cast<std::size_t>(frames(run));
    }
    bool fits() const { return runBytes() <= store.ceiling() / 4 * 3; }
    int window() const {
        const auto room = store.ceiling() / 4 / file(run).decodedFrameBytes();
        return std::min(frames(run) - 1,
                        fits() ? frames(run) : static_cast<int>(std::min<std::size_t>(room, 64)));
    }

    void follow(int newRun, int newFrame, PlayDirection newDirection, int newNext) {
        const int step = newDirection == PlayDirection::Forward ? 1 : frames(newRun) - 1;
        const bool isSame = run == newRun && direction == newDirection;
        if (isSame && frame == newFrame && next == newNext) return;
        if (!isSame || newFrame != (frame + step) % frames(newRun)) burstEnd = -1;
        if (run != newRun) lastRead = -1;
        if (run != newRun || next != newNext) isNextTried = isNextOpen = false;
        run = newRun, frame = newFrame, direction = newDirection, next = newNext;
    }
    /// File and frame; frame -1: the next file is to be opened.
    std::optional<std::pair<int, int>> step() {
        if (run < 0) return std::nullopt;
        for (int f = lastRead + 1; f <= burstEnd; ++f) {
            if (isMissing(run, f)) return std::pair(run, lastRead = f);
        }
        const int count = frames(run), reach = fits() || store.hasRoomForBytes() ? count - 1 : window();
        for (int steps = 1; steps <= reach; ++steps) {
            const bool forward = direction == PlayDirection::Forward;
            const int f = (frame + (forward ? steps : count - steps)) % count;
            if (!isMissing(run, f)) continue;
            lastRead = burstEnd = f;
            while (!forward && lastRead > 0 && f - lastRead < 15 && isMissing(run, lastRead - 1)) --lastRead;
            return std::pair(run, lastRead);
        }
        if (next >= 0 && !isNextTried) return std::pair(next, -1);
        if (!isNextOpen) return std::nullopt;
        const int wanted = std::min(frames(next), fits() ? 64 : 1);
        const int from = direction == PlayDirection::Forward ? 0 : frames(next) - wanted;
        for (int f = from; f < from + wanted; ++f) {
            if (isMissing(next, f)) return std::pair(next, f);
        }
        return std::nullopt;
    }
    int onTheWayTo(int number, int wanted) {
        if (number != run) return wanted;
        if (lastRead < 0 || wanted <= lastRead || wanted > lastRead + 16) return lastRead = wanted;
        while (++lastRead < wanted && !isMissing(run, lastRead)) continue;
        return lastRead;
    }
};

// However views move about, with room for all frames, for some and for few.
TEST(ReadingPlan, ReadsWhatAnObviousVersionReads) {
    for (unsigned seed = 0; seed < 60; ++seed) {
        std::mt19937 random(seed);
        const auto any = [&](int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); };
        const auto store = std::make_shared<FrameStore>(std::array{1000000, 60000, 9000}[seed % 3]);
        std::array<std::shared_ptr<const ImageFile>, 4> files;
        for (std::size_t i = 0; i < files.size(); ++i) {
            auto fake = test::greyRun(16, 16, std::array{1, 3, 40, 100}[i]);
            fake->readBytes = std::array{0, 100, 250}[seed / 3 % 3];
            files[i] = std::make_shared<const ImageFile>(fake, FileStamp(), store);
        }
        ReadingPlan plan(*store);
        ObviousPlan obvious{files, *store};
        const auto file = [&](int number) { return files[static_cast<std::size_t>(number)]; };
        for (int step = 0; step < 600; ++step) {
            SCOPED_TRACE(testing::Message() << "seed " << seed << " step " << step);
            const int what = any(60);
            int run = what < 3 || obvious.run < 0 ? any(4) : obvious.run, next = obvious.next;
            const int count = obvious.frames(run);
            auto direction = obvious.direction;
            if (run != obvious.run) next = (run + any(4)) % 4;
            if (what == 7) direction = any(2) ? PlayDirection::Forward : PlayDirection::Reverse;
            if (what == 8) next = any(4);
            if (next == run) next = -1;
            const int by = direction == PlayDirection::Forward ? 1 : count - 1;
            const int frame =
                what < 7 || what > 24 || run != obvious.run ? any(count) : (obvious.frame + by) % count;
            if (what < 24 || obvious.run < 0) {
                plan.follow(file(run), frame, direction, next < 0 ? QString() : QString::number(next));
                obvious.follow(run, frame, direction, next);
            } else if (what == 24) {
                if (any(2)) run = any(4);
                plan.leave(file(run).get());
                if (obvious.run == run) obvious.run = -1;
            } else if (what < 28) {
                const int read = plan.onTheWayTo({file(run).get(), frame});
                ASSERT_EQ(read, obvious.onTheWayTo(run, frame));
                store->read({file(run).get(), read});
            } else if (what < 35) {
                store->decodeNextDue(plan.run().get(), plan.next().get());
            } else {
                ASSERT_EQ(plan.hasStep(), ObviousPlan(obvious).step().has_value());
                const auto expected = obvious.step();
                const auto read = plan.step();
                ASSERT_EQ(read.has_value(), expected.has_value());
                if (!read) continue;
                const bool opensNext = expected->second < 0;
                ASSERT_EQ(read->file, opensNext ? nullptr : file(expected->first));
                if (!opensNext) {
                    ASSERT_EQ(read->frame, expected->second);
                    store->read({read->file.get(), read->frame});
                    continue;
                }
                const QString path = plan.beginOpeningNext();
                ASSERT_EQ(path, QString::number(obvious.next));
                const bool opens = any(4) > 0, isLate = any(4) == 0;
                plan.openedNext(isLate ? "elsewhere" : path, opens ? file(obvious.next) : nullptr);
                obvious.isNextTried = true;
                obvious.isNextOpen = opens && !isLate;
            }
        }
    }
}

}  // namespace
}  // namespace cinedisc
