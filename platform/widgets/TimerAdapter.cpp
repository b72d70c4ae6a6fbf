#include "platform/widgets/TimerAdapter.h"

#include "platform/RunTimeError.h"

namespace cinedisc {

TimerAdapter::TimerAdapter(QTimer& timer) : timer_(timer) {
    timer_.setTimerType(Qt::PreciseTimer);
    timer_.setSingleShot(false);
}

void TimerAdapter::putEnabled(bool on) {
    if (on == timer_.isActive()) return;
    if (on)
        timer_.start();
    else
        timer_.stop();
}

void TimerAdapter::putInterval(int milliseconds) {
    if (milliseconds < 1) throw RunTimeError::invalidPropertyValue();
    if (milliseconds != timer_.interval()) timer_.setInterval(milliseconds);
}

}  // namespace cinedisc
