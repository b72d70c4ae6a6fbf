#include "platform/RunTimeError.h"
#include "platform/widgets/OptionAdapter.h"
#include "platform/widgets/OptionHandler.h"
#include "platform/widgets/RangeAdapter.h"
#include "platform/widgets/TimerAdapter.h"
#include "platform/widgets/WheelFilter.h"

#include <QApplication>
#include <QScrollBar>
#include <QSlider>
#include <QTest>
#include <QVBoxLayout>
#include <QWheelEvent>
#include <gtest/gtest.h>

#include <vector>

namespace cinedisc {
namespace {

TEST(OptionTest, HandlersRunAtAPersonsClickAndWhenCodeChangesTheSelection) {
    QWidget window;
    QRadioButton forward(&window), reverse(&window);
    auto* column = new QVBoxLayout(&window);
    column->addWidget(&forward);
    column->addWidget(&reverse);
    OptionAdapter Option9(forward), Option10(reverse);
    QString runs;
    connectOption(forward, [&] { runs += "f"; });
    connectOption(reverse, [&] { runs += "r"; });
    window.show();
    QTest::mouseClick(&forward, Qt::LeftButton, {}, QPoint(6, forward.height() / 2));
    EXPECT_EQ(runs, "f");
    forward.click();
    EXPECT_EQ(runs, "ff") << "a click also when it is selected already";
    QTest::keyClick(&reverse, Qt::Key_Space);
    EXPECT_EQ(runs, "ffr");
    runs.clear();
    for (OptionAdapter* option : {&Option9, &Option9, &Option10, &Option9}) option->putValue(true);
    EXPECT_EQ(runs, "frf");
    EXPECT_TRUE(Option9.Value() && !Option10.Value());
    forward.click();
    EXPECT_EQ(runs, "frff");
    Option9.putValue(false);
    EXPECT_FALSE(Option9.Value() || Option10.Value());
    EXPECT_EQ(runs, "frff");
    Option10.putValue(true);
    Option9.putValue(true);
    EXPECT_FALSE(Option10.Value()) << "still one group";
}

TEST(RangeAdapterTest, ChangesAreToldOnceAndValuesOutsideTheRangeRefused) {
    for (const MaxPull pull : {MaxPull::RaisesChange, MaxPull::Silent}) {
        QSlider slider;
        slider.setRange(1, 20);
        RangeAdapter range(slider, pull);
        std::vector<int> changes;
        QObject::connect(&slider, &QSlider::valueChanged, [&](int value) { changes.push_back(value); });
        for (const int value : {20, 20, 1, 20}) range.putValue(value);
        for (const int outside : {0, -1, 21, 32768}) {
            try {
                range.putValue(outside);
                ADD_FAILURE() << outside << " was taken";
            } catch (const RunTimeError& error) {
                EXPECT_EQ(error.number(), 380) << outside;
            }
        }
        EXPECT_THROW(range.putMax(0), RunTimeError);
        EXPECT_EQ(slider.minimum(), 1);
        EXPECT_EQ(range.Max(), 20);
        EXPECT_EQ(changes, std::vector({20, 1, 20}));
        changes.clear();
        range.putMax(6);
        EXPECT_EQ(range.Value(), 6);
        EXPECT_EQ(changes, pull == MaxPull::Silent ? std::vector<int>() : std::vector{6});
        changes.clear();
        range.putMax(30);
        range.putValue(30);
        EXPECT_EQ(changes, std::vector{30}) << "silent for the pull only";
    }
}

TEST(TimerAdapterTest, IntervalAndEnabledAreIndependentAndThePeriodGoesOn) {
    QTimer timer, later;
    TimerAdapter Timer4(timer);
    EXPECT_EQ(timer.timerType(), Qt::PreciseTimer);
    Timer4.putInterval(20);
    EXPECT_FALSE(timer.isActive());
    Timer4.putEnabled(true);
    // A period begun anew would end after that of a timer which was started meanwhile.
    later.setTimerType(Qt::PreciseTimer);
    later.start(20);
    Timer4.putEnabled(true);
    Timer4.putInterval(20);
    QString order;
    QObject::connect(&timer, &QTimer::timeout, [&] { order += "first "; });
    QObject::connect(&later, &QTimer::timeout, [&] { order += "later "; });
    EXPECT_TRUE(QTest::qWaitFor([&] { return order.contains("later"); }));
    EXPECT_TRUE(order.startsWith("first")) << qPrintable(order);
    Timer4.putInterval(10);
    EXPECT_TRUE(Timer4.Enabled());
    Timer4.putEnabled(false);
    EXPECT_FALSE(timer.isActive());
    for (const int interval : {0, -5}) EXPECT_THROW(Timer4.putInterval(interval), RunTimeError) << interval;
    EXPECT_EQ(Timer4.Interval(), 10);
}

void turnWheel(QWidget& widget, QPoint angle) {
    const QPointF at = widget.rect().center();
    QWheelEvent event(at, widget.mapToGlobal(at), QPoint(), angle, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(&widget, &event);
}

TEST(WheelFilterTest, OneCallForEachVerticalRollWhateverItsSizeAndNoStepOfTheBarsOwn) {
    QScrollBar bar(Qt::Vertical);
    bar.setRange(1, 100);
    bar.setValue(50);
    QList<WheelRoll> rolls;
    WheelFilter filter([&](WheelRoll roll) { rolls += roll; });
    filter.watch(bar);
    for (const QPoint angle : {QPoint(0, 3), QPoint(0, 1200), QPoint(500, -1), QPoint(120, 0), QPoint()})
        turnWheel(bar, angle);
    const auto away = WheelRoll::AwayFromUser;
    EXPECT_EQ(rolls, (QList<WheelRoll>{away, away, WheelRoll::TowardsUser}));
    EXPECT_EQ(bar.value(), 50);
    filter.unwatch(bar);
    turnWheel(bar, QPoint(0, 120));
    EXPECT_EQ(rolls.size(), 3);
    EXPECT_NE(bar.value(), 50) << "the bar has its own wheel again";
}

}  // namespace
}  // namespace cinedisc
