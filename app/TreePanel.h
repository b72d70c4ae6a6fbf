#pragma once

#include "platform/widgets/PatientTreeView.h"

#include <QGroupBox>

namespace cinedisc {

/// FraTree: the frame of the patient tree.
class TreePanel final : public QGroupBox {
    Q_OBJECT

  public:
    explicit TreePanel(QWidget* parent = nullptr);

    PatientTreeView* TreeView1 = nullptr;
};

}  // namespace cinedisc
