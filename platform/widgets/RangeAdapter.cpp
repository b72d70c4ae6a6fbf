#include "platform/widgets/RangeAdapter.h"

#include "platform/RunTimeError.h"

#include <QSignalBlocker>

namespace cinedisc {

void RangeAdapter::putValue(int value) {
    if (value < slider_.minimum() || value > slider_.maximum()) throw RunTimeError::invalidPropertyValue();
    slider_.setValue(value);
}

void RangeAdapter::putMax(int max) {
    // The toolkit would lower the minimum along with it.
    if (max < slider_.minimum()) throw RunTimeError::invalidPropertyValue();
    QSignalBlocker silence(slider_);
    if (maxPull_ == MaxPull::RaisesChange) silence.unblock();
    slider_.setMaximum(max);
}

}  // namespace cinedisc
