#include "tests/control/FakeDicomFile.h"

#include <gtest/gtest.h>

#include <random>

namespace cinedisc {
namespace {

using dicom::Overlay;
using dicom::Shutter;

TEST(Shutter, ShowsWhatLiesInsideAllShapes) {
    constexpr int rows = 40, columns = 50;
    std::mt19937 random(5);
    const auto within = [&](int from, int to) {
        return from + static_cast<int>(random() % static_cast<unsigned>(to - from));
    };
    for (int round = 0; round < 100; ++round) {
        Shutter shutter;
        if (random() % 2)
            shutter.rectangle =
                Shutter::Rectangle{within(-5, 20), within(25, 60), within(-5, 15), within(20, 60)};
        if (random() % 2) shutter.circle = Shutter::Circle{within(10, 30), within(10, 40), within(5, 40)};
        const auto hidden = hiddenByShutter(shutter, rows, columns);
        if (!shutter.any()) {
            EXPECT_TRUE(hidden.empty());
            continue;
        }
        if (hidden.empty()) continue;  // together they hide everything
        for (int y = 1; y <= rows; ++y) {
            for (int x = 1; x <= columns; ++x) {
                bool inside = true;
                if (const auto& r = shutter.rectangle) {
                    inside = inside && x >= r->left && x <= r->right && y >= r->upper && y <= r->lower;
                }
                if (const auto& c = shutter.circle) {
                    inside = inside && (x - c->column) * (x - c->column) + (y - c->row) * (y - c->row) <=
                                           c->radius * c->radius;
                }
                ASSERT_EQ(hidden.at(y - 1, x - 1), !inside) << x << "," << y;
            }
        }
    }
}

TEST(Shutter, FollowsAPolygonWithANotch) {
    Shutter shutter;
    shutter.polygon = {{1, 1}, {1, 9}, {9, 9}, {5, 5}, {9, 1}};  // row, column
    const auto hidden = hiddenByShutter(shutter, 10, 10);
    const auto shown = [&](int row, int column) { return !hidden.at(row - 1, column - 1); };
    EXPECT_TRUE(shown(2, 5));
    EXPECT_TRUE(shown(7, 2));
    EXPECT_TRUE(shown(7, 8));
    EXPECT_FALSE(shown(8, 5)) << "in the notch";
    EXPECT_FALSE(shown(2, 10));
    EXPECT_FALSE(shown(10, 5));
}

TEST(Shutter, ThatWouldHideEverythingHidesNothing) {
    Shutter cases[4];
    cases[0].rectangle = Shutter::Rectangle{0, 0, 0, 0};
    cases[1].rectangle = Shutter::Rectangle{9, 3, 1, 8};
    cases[2].circle = Shutter::Circle{500, 500, 10};
    cases[3].circle = Shutter::Circle{5, 5, 0};
    for (const auto& shutter : cases) EXPECT_TRUE(hiddenByShutter(shutter, 10, 10).empty());
    Shutter mixed = cases[1];
    mixed.circle = Shutter::Circle{5, 5, 2};
    EXPECT_FALSE(hiddenByShutter(mixed, 10, 10).empty()) << "the shape that can be used still counts";
}

Overlay overlay(int group, int rows, int columns, int originRow, int originColumn) {
    Overlay plane;
    plane.group = group;
    plane.rows = rows;
    plane.columns = columns;
    plane.originRow = originRow;
    plane.originColumn = originColumn;
    plane.bits.assign(static_cast<std::size_t>(rows * columns), 1);
    return plane;
}

int painted(const CoverPlane& cover, int rows, int columns) {
    int count = 0;
    for (int i = 0; i < rows * columns; ++i) count += cover.white.at(i / columns, i % columns);
    return count;
}

TEST(Cover, PaintsOverlaysAtTheirOriginAsFarAsTheyLieInTheImage) {
    struct Case {
        int row, column, rows, columns, painted;
    };
    const Case cases[] = {{1, 1, 3, 3, 9},   {-1, -1, 3, 3, 1},    {9, 9, 5, 5, 4},
                          {20, 20, 3, 3, 0}, {-32768, 1, 3, 3, 0}, {-4, -4, 100, 100, 100}};
    for (const auto& c : cases) {
        const auto file = test::greyRun(10, 10, 1);
        file->overlayPlanes = {overlay(0x6000, c.rows, c.columns, c.row, c.column)};
        const auto cover = coverOf(*file, 0);
        EXPECT_EQ(painted(cover, 10, 10), c.painted) << c.row << "," << c.column;
    }
}

TEST(Cover, LaysOverlaysOnTheShutterInItsGrey) {
    const auto file = test::greyRun(10, 10, 1);
    file->shutterShapes.rectangle = Shutter::Rectangle{3, 8, 3, 8};
    file->shutterShapes.bitmapGroup = 0x6002;
    file->shutterShapes.presentationValue = 0x40FF;
    file->overlayPlanes = {overlay(0x6000, 1, 1, 1, 1), overlay(0x6002, 1, 10, 5, 1),
                           overlay(0x6004, 1, 1, 5, 5)};
    const auto cover = coverOf(*file, 0);
    const auto value = [&](int y, int x) {
        std::uint8_t shown = 7;
        cover.apply(y, x, x + 1, &shown);
        return shown;
    };
    EXPECT_EQ(value(0, 0), 255) << "overlay outside the rectangle";
    EXPECT_EQ(value(0, 1), 0x40) << "covered by the rectangle";
    EXPECT_EQ(value(4, 3), 0x40) << "covered by the bitmap";
    EXPECT_EQ(value(4, 4), 255) << "overlay on the bitmap";
    EXPECT_EQ(value(3, 3), 7) << "the picture shows";
}

TEST(Cover, IsAskedForFrameByFrameOnlyWhenItChanges) {
    const auto file = test::greyRun(4, 4, 3);
    EXPECT_EQ(coverKind(*file), CoverKind::None);
    file->overlayPlanes = {overlay(0x6000, 2, 2, 1, 1)};
    EXPECT_EQ(coverKind(*file), CoverKind::SameOnAllFrames);
    const auto store = std::make_shared<FrameStore>();
    ImageFile same(file, {}, store);
    ASSERT_TRUE(same.frame(0)->cover);
    EXPECT_EQ(same.frame(0)->cover, same.frame(1)->cover);
    EXPECT_EQ(same.frame(1)->byteSize(), sizeof(DecodedFrame) + 16);
    file->overlayPlanes[0].multiFrame = true;
    EXPECT_EQ(coverKind(*file), CoverKind::FrameByFrame);

    file->bitsOf = [](const Overlay&, int frame) {
        return frame == 1 ? std::vector<std::uint8_t>{1, 0, 0, 0} : std::vector<std::uint8_t>{};
    };
    ImageFile image(file, {}, store);
    // Rows of bits take whole words: of 16 pixels, and of overlays without or with a shutter.
    EXPECT_EQ(image.decodedFrameBytes(), 16U + 2 * 4 * 8);
    EXPECT_EQ(image.frame(1)->byteSize(), sizeof(DecodedFrame) + 16 + 4 * 8);
    EXPECT_TRUE(image.frame(0)->cover->empty());
    EXPECT_EQ(image.frame(1)->cover->white.at(0, 0), true);
    EXPECT_TRUE(image.frame(2)->cover->empty());
}

TEST(Cover, IgnoresOverlaysWithTooFewBits) {
    const auto file = test::greyRun(10, 10, 1);
    file->overlayPlanes = {overlay(0x6000, 5, 5, 1, 1)};
    file->overlayPlanes[0].bits.resize(24);
    const auto cover = coverOf(*file, 0);
    EXPECT_TRUE(cover.empty());
}

}  // namespace
}  // namespace cinedisc
