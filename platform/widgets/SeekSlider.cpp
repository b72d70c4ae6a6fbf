#include "platform/widgets/SeekSlider.h"

#include <QMouseEvent>
#include <QStyle>
#include <QStyleOptionSlider>

namespace cinedisc {

void SeekSlider::mousePressEvent(QMouseEvent* event) {
    QStyleOptionSlider option;
    initStyleOption(&option);
    const QRect handle = style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, this);
    if (event->button() == Qt::LeftButton && !handle.contains(event->position().toPoint())) {
        const QRect groove =
            style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderGroove, this);
        const int position = qRound(event->position().x()) - groove.x() - handle.width() / 2;
        setValue(QStyle::sliderValueFromPosition(minimum(), maximum(), position,
                                                 groove.width() - handle.width(), option.upsideDown));
    }
    // The handle is under the mouse now, so that what follows drags it.
    QSlider::mousePressEvent(event);
}

}  // namespace cinedisc
