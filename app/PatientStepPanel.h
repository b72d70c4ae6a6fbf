#pragma once

#include "panels/ButtonTable.h"
#include "platform/widgets/ElidedLabel.h"

#include <QFrame>

namespace cinedisc {

/// Frame1: the patient and series steps of the cine panel.
class PatientStepPanel final : public QFrame {
    Q_OBJECT

  public:
    explicit PatientStepPanel(const ButtonTable& buttons, QWidget* parent = nullptr);

    ElidedLabel* Label13 = nullptr;  ///< the patient's name
    ElidedLabel* Label15 = nullptr;  ///< the series' name
};

}  // namespace cinedisc
