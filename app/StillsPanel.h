#pragma once

#include "panels/ButtonTable.h"
#include "platform/widgets/ElidedLabel.h"

#include <QFrame>

namespace cinedisc {

/// Frame8: the patient, series and image steps, shown in stills mode.
class StillsPanel final : public QFrame {
    Q_OBJECT

  public:
    explicit StillsPanel(const ButtonTable& buttons, QWidget* parent = nullptr);

    ElidedLabel* Label1 = nullptr;     ///< folder of the stills; a run has no use for it
    ElidedLabel* Label5 = nullptr;     ///< the patient's name
    ElidedLabel* Label6 = nullptr;     ///< the series' name
    ElidedLabel* lblSeries = nullptr;  ///< the image's position
};

}  // namespace cinedisc
