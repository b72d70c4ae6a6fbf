#include "app/TreePanel.h"

#include "panels/PanelParts.h"
#include "viewer/WindowWords.h"

#include <QVBoxLayout>

namespace cinedisc {

TreePanel::TreePanel(QWidget* parent) : QGroupBox(tr("Patient List.."), parent) {
    setObjectName("FraTree");
    TreeView1 = named(new PatientTreeView(this), "TreeView1");
    TreeView1->setAccessibleName(title());
    TreeView1->setFrameShape(QFrame::NoFrame);
    TreeView1->setHint(windowWords::firstSteps());
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    remark = named(new QLabel(this), "lblRemark");
    remark->setTextFormat(Qt::PlainText);
    remark->setWordWrap(true);
    remark->setMargin(panelGap);
    remark->hide();
    layout->addWidget(remark);
    layout->addWidget(TreeView1);
}

}  // namespace cinedisc
