#include "bench/CineRecorder.h"

#include <QBackingStore>
#include <QCoreApplication>
#include <QEvent>
#include <QImage>

#include <ctime>

namespace cinedisc::bench {

double ownMilliseconds() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return 1e3 * static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_nsec);
}

CineRecorder::CineRecorder(QWidget& window, const WindowDriver& driver)
    : window_(window), driver_(driver), timer_(*driver.find<QTimer>("Timer4")) {
    clock_.start();
    timer_.installEventFilter(this);
    driver_.view().installEventFilter(this);
    // Connected last, it comes when the program's own handler is done.
    connect(&timer_, &QTimer::timeout, this, [this] {
        Tick tick;
        tick.atMilliseconds = now();
        tick.milliseconds = tick.atMilliseconds - begun_;
        tick.ownMilliseconds = ownMilliseconds() - ownBegun_;
        tick.frame = driver_.currentFrame();
        tick.drawn = drawnFrame_ == tick.frame;
        tick.isPicture = driver_.showsPicture();
        tick.isCoarse = showsCoarse(driver_.view());
        tick.sample = sampleOfWindow();
        tick.file = driver_.view().property("FileName").toString();
        ticks_.push_back(std::move(tick));
        if (tickDone) tickDone();
    });
}

bool CineRecorder::eventFilter(QObject* watched, QEvent* event) {
    if (watched == &timer_ && event->type() == QEvent::Timer) {
        drawnFrame_ = 0;
        begun_ = now();
        ownBegun_ = ownMilliseconds();
    }
    if (watched == &driver_.view() && event->type() == QEvent::Paint) {
        drawnFrame_ = driver_.currentFrame();
        if (firstPicture_ > 0) return false;
        // What has been painted is known afterwards only.
        watched->event(event);
        if (driver_.showsPicture()) {
            firstPicture_ = now();
            firstPictureOwn_ = ownMilliseconds();
        }
        return true;
    }
    return false;
}

std::uint32_t CineRecorder::sampleOfWindow() const {
    auto* store = window_.backingStore();
    if (!store) return 0;
    const auto* image = dynamic_cast<const QImage*>(store->paintDevice());
    if (!image) return 0;
    const QPoint middle = driver_.view().mapTo(&window_, driver_.view().rect().center());
    std::uint32_t sample = 2166136261u;
    for (int step = -60; step <= 60; ++step)
        sample = (sample ^ image->pixel(middle + QPoint(3 * step, 0))) * 16777619u;
    return sample;
}

void CineRecorder::playUntil(const std::function<bool()>& enough) const {
    while (!enough()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

}  // namespace cinedisc::bench
