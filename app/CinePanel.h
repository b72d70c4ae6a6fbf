#pragma once

#include "platform/widgets/ElidedLabel.h"

#include <QFrame>
#include <QRadioButton>
#include <QSlider>

namespace cinedisc {

class PatientStepPanel;

/// Frame9: what plays and steps the frames of a run, shown in cine mode.
class CinePanel final : public QFrame {
    Q_OBJECT

  public:
    explicit CinePanel(QWidget* parent = nullptr);

    QSlider* Slider1 = nullptr;        ///< speed, 0 to 10
    QSlider* Slider2 = nullptr;        ///< frame, from 1
    QRadioButton* Option4 = nullptr;   ///< loop
    QRadioButton* Option11 = nullptr;  ///< continuous
    QRadioButton* Option9 = nullptr;   ///< forward
    QRadioButton* Option10 = nullptr;  ///< reverse
    ElidedLabel* lblImg = nullptr;
    ElidedLabel* lblFra = nullptr;
    PatientStepPanel* Frame1 = nullptr;

  private:
    QWidget* playButtons();
    QWidget* directionFrame();
    QWidget* frameHeading();
    QWidget* frameSeeker();
    QWidget* endOfRunAndSpeed();
    QSlider* makeSlider(const char* name, const char* text, int min, int max);
};

}  // namespace cinedisc
