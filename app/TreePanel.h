#pragma once

#include "platform/widgets/PatientTreeView.h"

#include <QGroupBox>
#include <QLabel>

namespace cinedisc {

/// FraTree: the frame of the patient tree.
class TreePanel final : public QGroupBox {
    Q_OBJECT

  public:
    explicit TreePanel(QWidget* parent = nullptr);

    PatientTreeView* TreeView1 = nullptr;
    QLabel* remark = nullptr;  ///< what is wrong with the disc; hidden while nothing is
};

}  // namespace cinedisc
