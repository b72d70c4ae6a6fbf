#include "platform/widgets/WheelFilter.h"

#include <QApplication>
#include <QScrollBar>
#include <QWheelEvent>
#include <gtest/gtest.h>

namespace cinedisc {
namespace {

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
    for (const QPoint angle :
         {QPoint(0, 120), QPoint(0, 3), QPoint(0, 1200), QPoint(500, -1), QPoint(120, 0), QPoint()})
        turnWheel(bar, angle);
    const auto away = WheelRoll::AwayFromUser;
    EXPECT_EQ(rolls, (QList<WheelRoll>{away, away, away, WheelRoll::TowardsUser}));
    EXPECT_EQ(bar.value(), 50);

    filter.unwatch(bar);
    turnWheel(bar, QPoint(0, 120));
    EXPECT_EQ(rolls.size(), 4);
    EXPECT_NE(bar.value(), 50) << "the bar has its own wheel again";
}

}  // namespace
}  // namespace cinedisc
