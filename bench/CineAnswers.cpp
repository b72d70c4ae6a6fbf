#include "bench/CineReport.h"

#include <QAbstractSlider>
#include <QCoreApplication>
#include <QEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QWheelEvent>

#include <algorithm>
#include <cstdio>

namespace cinedisc::bench {

namespace {

/// Tells when a widget is painted.
class PaintWatch : public QObject {
  public:
    explicit PaintWatch(QWidget& widget) { widget.installEventFilter(this); }
    bool painted = false;

  protected:
    bool eventFilter(QObject*, QEvent* event) override {
        painted = painted || event->type() == QEvent::Paint;
        return false;
    }
};

void postClick(QWidget* button) {
    const QPointF place = QPointF(button->rect().center());
    for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        const auto held = type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton;
        QCoreApplication::postEvent(button, new QMouseEvent(type, place, button->mapToGlobal(place),
                                                            Qt::LeftButton, held, Qt::NoModifier));
    }
}

void postWheel(QWidget* widget, int delta) {
    const QPointF place = QPointF(widget->rect().center());
    QCoreApplication::postEvent(
        widget, new QWheelEvent(place, widget->mapToGlobal(place), {}, {0, delta}, Qt::NoButton,
                                Qt::NoModifier, Qt::NoScrollPhase, false));
}

/// Does something between two ticks and returns how many ticks end until its effect is there.
int ticksUntil(CineRecorder& recorder, const std::function<void()>& act,
               const std::function<bool()>& answered) {
    recorder.forget();
    recorder.playUntil([&] { return recorder.ticks().size() >= 3; });
    recorder.forget();
    act();
    recorder.playUntil(answered);
    return static_cast<int>(recorder.ticks().size());
}

}  // namespace

void reportAnswers(const WindowDriver& driver, CineRecorder& recorder, int times) {
    driver.find<QAbstractSlider>("Slider1")->setValue(10);
    driver.click("cmdPlay");
    auto* const label = driver.find<QLabel>("lblImg");
    auto* const strip = driver.find<QAbstractSlider>("sb1");
    auto* const invert = driver.find<QWidget>("cmdInvert");
    int slowestLabel = 0, slowestWheel = 0, slowestClick = 0;
    for (int i = 0; i < times; ++i) {
        PaintWatch watch(*label);
        slowestLabel = std::max(slowestLabel, ticksUntil(
                                                  recorder,
                                                  [&] {
                                                      watch.painted = false;
                                                      label->setText("Image : " + QString::number(i));
                                                  },
                                                  [&] { return watch.painted; }));
        const int place = strip->value();
        slowestWheel =
            std::max(slowestWheel, ticksUntil(
                                       recorder, [&] { postWheel(strip, i % 2 == 0 ? -120 : 120); },
                                       [&] { return strip->value() != place; }));
        const QVariant polarity = driver.view().property("Polarity");
        slowestClick =
            std::max(slowestClick, ticksUntil(
                                       recorder, [&] { postClick(invert); },
                                       [&] { return driver.view().property("Polarity") != polarity; }));
    }
    driver.click("cmdStop");
    std::printf("label_ticks=%d\nwheel_ticks=%d\nclick_ticks=%d\n", slowestLabel, slowestWheel, slowestClick);
}

}  // namespace cinedisc::bench
