#include "platform/RunTimeError.h"
#include "platform/widgets/TimerAdapter.h"

#include <QEventLoop>
#include <gtest/gtest.h>

namespace cinedisc {
namespace {

TEST(TimerAdapterTest, EnablingARunningTimerOrPuttingItsIntervalAgainLeavesItsPeriodAlone) {
    QTimer timer;
    timer.setInterval(40);
    TimerAdapter Timer4(timer);
    QStringList order;
    QObject::connect(&timer, &QTimer::timeout, [&] { order += "tick"; });
    QEventLoop loop;
    Timer4.putEnabled(true);
    // Due before and after the first tick; a period begun anew would end after both.
    QTimer::singleShot(20, Qt::PreciseTimer, &loop, [&] {
        order += "again";
        Timer4.putEnabled(true);
        Timer4.putInterval(40);
    });
    QTimer::singleShot(55, Qt::PreciseTimer, &loop, [&] { loop.quit(); });
    loop.exec();
    EXPECT_EQ(order, (QStringList{"again", "tick"}));
}

TEST(TimerAdapterTest, IntervalAndEnabledAreIndependent) {
    QTimer timer;
    TimerAdapter Timer4(timer);
    EXPECT_EQ(timer.timerType(), Qt::PreciseTimer);
    Timer4.putInterval(20);
    EXPECT_FALSE(timer.isActive());
    Timer4.putEnabled(true);
    Timer4.putInterval(10);
    EXPECT_TRUE(Timer4.Enabled());
    EXPECT_EQ(timer.interval(), 10);
    Timer4.putEnabled(false);
    EXPECT_FALSE(timer.isActive());
    EXPECT_EQ(Timer4.Interval(), 10);
}

TEST(TimerAdapterTest, AnIntervalBelowOneIsRefused) {
    QTimer timer;
    timer.setInterval(50);
    TimerAdapter Timer4(timer);
    for (const int interval : {0, -5}) EXPECT_THROW(Timer4.putInterval(interval), RunTimeError) << interval;
    EXPECT_EQ(Timer4.Interval(), 50);
}

}  // namespace
}  // namespace cinedisc
