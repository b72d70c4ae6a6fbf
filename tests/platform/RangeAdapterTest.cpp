#include "platform/RunTimeError.h"
#include "platform/widgets/RangeAdapter.h"

#include <QScrollBar>
#include <QSlider>
#include <gtest/gtest.h>

namespace cinedisc {
namespace {

class RangeAdapterTest : public testing::Test {
  protected:
    static void watch(QAbstractSlider& slider, QList<int>& changes) {
        slider.setRange(1, 20);
        QObject::connect(&slider, &QAbstractSlider::valueChanged, &slider,
                         [&](int value) { changes += value; });
    }

    QScrollBar bar;
    QSlider slider;
    RangeAdapter sb1{bar, MaxPull::RaisesChange};
    RangeAdapter slider2{slider, MaxPull::Silent};
    QList<int> barChanges, sliderChanges;

    void SetUp() override {
        watch(bar, barChanges);
        watch(slider, sliderChanges);
    }
};

TEST_F(RangeAdapterTest, PuttingAnotherValueRaisesOneChangeAndTheSameValueNone) {
    for (const int value : {20, 20, 1, 7, 7}) sb1.putValue(value);
    EXPECT_EQ(barChanges, (QList<int>{20, 1, 7}));
}

TEST_F(RangeAdapterTest, AValueOutsideTheRangeIsAnErrorAndChangesNothing) {
    sb1.putValue(5);
    for (const int outside : {0, -1, 21, 32768}) {
        try {
            sb1.putValue(outside);
            ADD_FAILURE() << outside << " was taken";
        } catch (const RunTimeError& error) {
            EXPECT_EQ(error.number(), 380) << outside;
        }
    }
    EXPECT_EQ(sb1.Value(), 5);
    EXPECT_EQ(barChanges, QList<int>{5});
}

TEST_F(RangeAdapterTest, LoweringMaxPullsTheScrollBarAudiblyAndTheSliderSilently) {
    sb1.putValue(20);
    slider2.putValue(20);
    sb1.putMax(6);
    slider2.putMax(6);
    EXPECT_EQ(sb1.Value(), 6);
    EXPECT_EQ(slider2.Value(), 6);
    EXPECT_EQ(barChanges, (QList<int>{20, 6}));
    EXPECT_EQ(sliderChanges, QList<int>{20});

    slider2.putMax(30);
    slider2.putValue(30);
    EXPECT_EQ(sliderChanges, (QList<int>{20, 30})) << "silent for the pull only";
}

TEST_F(RangeAdapterTest, AMaxBelowTheMinimumIsRefused) {
    EXPECT_THROW(sb1.putMax(0), RunTimeError);
    EXPECT_EQ(bar.minimum(), 1);
    EXPECT_EQ(sb1.Max(), 20);
}

}  // namespace
}  // namespace cinedisc
