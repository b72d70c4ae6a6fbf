#include "control/frames/ImageLibrary.h"
#include "fuzzing/Targets.h"
#include "fuzzing/window/DiscVisit.h"
#include "fuzzing/window/Sizes.h"
#include "fuzzing/window/ViewVisit.h"
#include "tests/support/DicomBuilder.h"
#include "tests/support/DiscBuilder.h"

#include <gtest/gtest.h>

namespace cinedisc::test {
namespace {

using namespace fuzzing::window;

QByteArray text(const Mutation::Content& content) {
    return {reinterpret_cast<const char*>(content.data()), qsizetype(content.size())};
}

/// A short share of what ./fuzz --window does.
class DamagedDiscs : public testing::Test {
  protected:
    static constexpr std::size_t largest = 2 << 20;

    DamagedDiscs() { ImageLibrary::shared().lookAhead(std::chrono::minutes(1)); }
    Shown shown(const Mutation::Content& content) {
        DiscBuilder::write(folder.filePath("file.dcm"), text(content));
        return visitFile(folder.filePath("file.dcm"), watch);
    }

    QTemporaryDir folder;
    Watch watch{Watch::Times::Ignored};
};

TEST_F(DamagedDiscs, HaveFilesOfAbsurdSizes) {
    for (const auto& file : sizedFiles()) {
        const auto content = file.make();
        if (content.size() > largest) continue;
        EXPECT_EQ(shown(content).isPicture(), file.isShown) << file.what;
    }
    EXPECT_EQ(watch.fault(), std::nullopt);
}

TEST_F(DamagedDiscs, LeaveTheWindowUsable) {
    std::vector<Mutation::Content> seeds;
    for (const int bits : {8, 16})
        for (int frames : {1, 4, 9})
            seeds.push_back(DicomBuilder::image(24, 32, frames, bits, bits).gradientPixels().build());
    for (const auto& file : sizedFiles())
        if (auto content = file.make(); content.size() < 20'000 && file.isShown)
            seeds.push_back(std::move(content));
    const Mutation files(std::move(seeds));
    const Mutation catalogues({bytesOf("<d><p><t>A</t><s><t>B</t></s></p><p><t>C</t></p></d>")});
    for (unsigned number = 0; number < 2000; ++number)
        for (const auto run : {fuzzing::header, fuzzing::frames, fuzzing::presentation}) run(files(number));
    for (unsigned number = 0; number < 300; ++number) {
        shown(files(number));
        ASSERT_EQ(watch.fault(), std::nullopt) << number;
    }
    for (unsigned number = 0; number < 30; ++number) {
        const QTemporaryDir disc;
        makeDamagedDisc(disc.path(), files, catalogues, number);
        visitDisc(disc.path(), files, number, watch);
        ASSERT_EQ(watch.fault(), std::nullopt) << number;
    }
}

}  // namespace
}  // namespace cinedisc::test
