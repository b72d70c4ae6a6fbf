#include "control/pipeline/ViewZoom.h"

#include <gtest/gtest.h>

#include <random>

namespace cinedisc {
namespace {

TEST(SquareSize, StretchesTheSideThatLosesNothing) {
    struct Case {
        double aspect;
        QSize size;
    };
    const Case cases[] = {{1, {100, 50}},  {2, {200, 50}},    {0.5, {100, 100}},
                          {0, {100, 50}},  {0.95, {100, 53}}, {16, {1600, 50}},
                          {17, {100, 50}}, {-1, {100, 50}},   {std::nan(""), {100, 50}}};
    for (const auto& c : cases) EXPECT_EQ(squareSize(100, 50, c.aspect), c.size) << c.aspect;
}

TEST(ViewZoom, FitsThePictureIntoTheMiddleOfTheView) {
    ViewZoom zoom;
    zoom.putBestFit(true);
    EXPECT_EQ(zoom.place({512, 512}, {1024, 768}).picture, QRect(128, 0, 768, 768));
    EXPECT_EQ(zoom.place({100, 50}, {50, 50}).picture, QRect(0, 12, 50, 25));
    EXPECT_EQ(zoom.place({65535, 1}, {200, 100}).picture.size(), QSize(200, 1));
    EXPECT_EQ(zoom.place({65535, 1}, {200, 100}).scale({65535, 1}), 200.0 / 65535);
    EXPECT_EQ(zoom.place({1, 600}, {200, 300}).scale({1, 600}), 0.5);
    EXPECT_EQ(zoom.place({}, {10, 10}).scale({}), 1);
    EXPECT_TRUE(zoom.place({512, 512}, {0, 10}).visible().isEmpty());
    EXPECT_TRUE(zoom.place({}, {10, 10}).visible().isEmpty());
}

TEST(ViewZoom, ShowsOneDevicePixelPerImagePixelAtAHundredPercent) {
    ViewZoom zoom;
    EXPECT_EQ(zoom.place({512, 400}, {600, 300}).picture, QRect(44, -50, 512, 400));
    zoom.putPercent(150);
    EXPECT_EQ(zoom.place({512, 400}, {600, 300}).picture.size(), QSize(768, 600));
    zoom.putBestFit(true);
    EXPECT_EQ(zoom.percent(), 150);
    zoom.putBestFit(false);
    EXPECT_EQ(zoom.place({512, 400}, {600, 300}).picture.size(), QSize(768, 600));
}

TEST(ViewZoom, StaysAddressableWhateverIsPut) {
    for (const qint32 percent :
         {std::numeric_limits<qint32>::min(), -1, 0, 1, std::numeric_limits<qint32>::max()}) {
        ViewZoom zoom;
        zoom.putPercent(percent);
        EXPECT_EQ(zoom.percent(), percent);
        for (const QSize picture : {QSize(1, 1), QSize(65535, 65535), QSize(65535, 1)}) {
            const auto visible = zoom.place(picture, {300, 200}).visible();
            EXPECT_FALSE(visible.isEmpty()) << percent;
            EXPECT_TRUE(QRect(0, 0, 300, 200).contains(visible));
        }
        EXPECT_TRUE(percent > 1 || zoom.place({500, 400}, {300, 200}).picture.size() == QSize(5, 4));
    }
}

TEST(ViewZoom, CannotLoseThePictureByPanning) {
    std::mt19937 random(2);
    for (int round = 0; round < 300; ++round) {
        const QSize picture(1 + static_cast<int>(random() % 2000), 1 + static_cast<int>(random() % 2000));
        const QSize view(1 + static_cast<int>(random() % 1000), 1 + static_cast<int>(random() % 1000));
        ViewZoom zoom;
        zoom.putPercent(1 + static_cast<int>(random() % 800));
        if (random() % 3 == 0) zoom.putBestFit(true);
        for (int move = 0; move < 5; ++move) {
            zoom.pan(
                {static_cast<double>(random() % 9000) - 4500, static_cast<double>(random() % 9000) - 4500},
                picture, view);
        }
        const auto placed = zoom.place(picture, view);
        EXPECT_GE(2 * (placed.visible().width() + 1), std::min(placed.picture.width(), view.width()));
        EXPECT_GE(2 * (placed.visible().height() + 1), std::min(placed.picture.height(), view.height()));
    }
}

TEST(ViewZoom, KeepsTheMiddleWhenTheZoomChangesAndForgetsItWhenFitting) {
    ViewZoom zoom;
    zoom.putPercent(400);
    const auto start = zoom.place({500, 500}, {500, 500});
    zoom.pan({300, -100}, {500, 500}, {500, 500});
    const auto moved = zoom.place({500, 500}, {500, 500});
    EXPECT_EQ(moved.picture.topLeft(), start.picture.topLeft() + QPoint(300, -100));
    const QPointF middle = moved.toPicture({250, 250});
    zoom.putPercent(200);
    const QPointF after = zoom.place({500, 500}, {500, 500}).toPicture({250, 250});
    EXPECT_NEAR(after.x(), middle.x(), 0.002);
    EXPECT_NEAR(after.y(), middle.y(), 0.002);
    zoom.putBestFit(true);
    EXPECT_EQ(zoom.place({500, 500}, {500, 500}).picture, QRect(0, 0, 500, 500));
}

}  // namespace
}  // namespace cinedisc
