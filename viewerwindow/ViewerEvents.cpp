#include "viewerwindow/ViewerEvents.h"

#include "control/ezDICOMX.h"
#include "panels/BackgroundPopUp.h"
#include "panels/StripPanel.h"
#include "panels/ViewerPanels.h"
#include "platform/widgets/EventGuard.h"
#include "platform/widgets/OptionHandler.h"
#include "viewer/WindowWords.h"
#include "viewerwindow/ViewerBehaviour.h"

#include <cstdint>
#include <utility>

namespace cinedisc {

void connectEvents(const ViewerPanels& panels, ViewerBehaviour& behaviour) {
    const auto on = [](auto* sender, auto signal, auto handler) {
        QObject::connect(sender, signal, sender, EventGuard::guarded(handler));
    };
    const CinePanel& cine = *panels.cinePanel;
    on(panels.strip->sb1, &QScrollBar::valueChanged, [&behaviour] { behaviour.sb1_Change(); });
    on(cine.Slider1, &QSlider::valueChanged, [&behaviour] { behaviour.cine.Slider1_Change(); });
    QObject::connect(cine.Slider1, &QSlider::valueChanged, cine.Slider1, [slider = cine.Slider1](int speed) {
        slider->setAccessibleDescription(windowWords::framePeriod(CinePlayer::intervalOf(speed)));
    });
    on(cine.Slider2, &QSlider::valueChanged, [&behaviour] { behaviour.frames.Slider2_Change(); });
    // A cine goes at the pace of the disc when that is slower: no tick comes before the picture of the last.
    const auto onTick = [&](QTimer* timer, auto handler) {
        on(timer, &QTimer::timeout, [view = panels.ezDicom, handler] {
            if (!view->isReading()) handler();
        });
    };
    onTick(panels.Timer4, [&behaviour] { behaviour.cine.Timer4_Timer(); });
    onTick(panels.Timer1, [&behaviour] { behaviour.cine.Timer1_Timer(); });
    connectOption(*cine.Option4, [&behaviour] { behaviour.cine.Option4_Click(); });
    connectOption(*panels.Frame6->Option1, [&behaviour] { behaviour.tools.Option1_Click(); });
    connectOption(*panels.Frame6->Option2, [&behaviour] { behaviour.tools.Option2_Click(); });
    connectOption(*panels.Frame6->Option3, [&behaviour] { behaviour.tools.Option3_Click(); });
    for (int i = 0; i < StripPanel::previewCount; ++i) {
        on(panels.strip->thumb[static_cast<std::size_t>(i)], &ezDICOMX::clicked,
           [&behaviour, i] { behaviour.thumb_Click(i); });
    }
    panels.ezDicom->setNeighbour([&form = behaviour.form](const QString& path, PlayDirection direction) {
        const int files = form.File1.ListCount();
        if (files == 0 || !std::in_range<std::int16_t>(files)) return QString();
        const auto next =
            form.File1.fullPath(form.neighbourOf(path, direction == PlayDirection::Forward ? 1 : -1));
        return next == path ? QString() : next;
    });
}

}  // namespace cinedisc
