#include "viewerwindow/CineRate.h"

#include "control/ezDICOMX.h"
#include "panels/ViewerPanels.h"
#include "viewerwindow/ViewerBehaviour.h"

#include <QCheckBox>

namespace cinedisc {

CineRate::CineRate(QObject& window, const ViewerPanels& panels, ViewerBehaviour& behaviour)
    : QObject(&window), panels_(panels), behaviour_(behaviour) {
    clock_.start();
    constexpr int readable = 400;  // milliseconds between two numbers
    refresh_.setInterval(readable);
    connect(&refresh_, &QTimer::timeout, this, &CineRate::show);
    refresh_.start();
    connect(panels.Timer4, &QTimer::timeout, this, &CineRate::tick);
    connect(panels.ezDicom, &ezDICOMX::frameDrawn, this, [this] { meter_.drawn(now()); });
    const CinePanel& cine = *panels.cinePanel;
    connect(cine.chkRecordedRate, &QCheckBox::toggled, this, &CineRate::choose);
    // The speed bar has the last word.
    connect(cine.Slider1, &QSlider::valueChanged, cine.chkRecordedRate,
            [box = cine.chkRecordedRate] { box->setChecked(false); });
}

void CineRate::tick() {
    const double recorded = panels_.ezDicom->recordedRate();
    if (!panels_.cinePanel->chkRecordedRate->isChecked() || recorded <= 0) return;
    behaviour_.form.Timer4.putInterval(pace_.next(now(), recorded));
}

void CineRate::choose(bool recordedRate) {
    if (recordedRate) return tick();
    behaviour_.form.Timer4.putInterval(CinePlayer::intervalOf(behaviour_.form.Slider1.Value()));
}

void CineRate::show() {
    const double recorded = panels_.ezDicom->recordedRate();
    const double drawn = panels_.Timer4->isActive() ? meter_.rate(now()) : 0;
    const auto number = [](double rate) {
        return QString::number(rate, 'f', rate < 9.95 && rate != int(rate) ? 1 : 0);
    };
    QString words = drawn > 0 ? tr("%1 fps").arg(number(drawn)) : QString();
    if (recorded > 0)
        words += (words.isEmpty() ? tr("recorded %1 fps") : tr(" (recorded %1)")).arg(number(recorded));
    if (panels_.cinePanel->lblRate->text() != words) panels_.cinePanel->lblRate->setText(words);
}

}  // namespace cinedisc
