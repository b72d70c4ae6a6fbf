#include "app/Form1Layout.h"

#include "app/CommandTable.h"
#include "app/PatientStepPanel.h"
#include "app/StillsPanel.h"
#include "app/TreePanel.h"
#include "control/ezDICOMX.h"
#include "panels/KeySplitter.h"
#include "panels/PanelParts.h"
#include "platform/widgets/ProgramTitle.h"

#include <QGridLayout>

namespace cinedisc {

namespace {

constexpr int treeWidth = 320;

constexpr const char* displayOption[] = {"Command3"};
const ViewerDesign design = {
    .title = programTitle,
    .toolBar = {.name = "", .open = "Open", .lastGroup = displayOption, .exit = "cmdExit"},
    .cinePanel = {.name = "Frame9",
                  .frames = {"Label8", "Frame Scroll Bar"},
                  .images = {"Label9", "Image Scroll Bar"}},
};

}  // namespace

Form1Layout::Form1Layout(QMainWindow& window) : Form1Layout(window, ButtonTable(form1Faces().buttons)) {}

Form1Layout::Form1Layout(QMainWindow& window, const ButtonTable& buttons)
    : ViewerPanels(window, buttons, design),
      FraTree(new TreePanel(surface)),
      ezTest(named(new ezDICOMX(ViewRole::Probe, surface), "ezTest")),
      Frame1(new PatientStepPanel(buttons, cinePanel)),
      Frame8(new StillsPanel(buttons, surface)) {
    ezTest->hide();
    cinePanel->addColumn(*Frame1);
    stack(*treeAndPicture(), *stepArea());
}

QWidget* Form1Layout::treeAndPicture() {
    auto* splitter = new KeySplitter(Qt::Horizontal, KeySplitter::tr("Width of the patient list"), surface);
    splitter->addWidget(FraTree);
    splitter->addWidget(ezDicom);
    splitter->setChildrenCollapsible(false);
    splitter->setHandleWidth(panelGap);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({treeWidth, surface->window()->width() - treeWidth});
    FraTree->setVisible(true);
    QWidget::setTabOrder(toolBar->findChild<QWidget*>("cmdExit"), FraTree->TreeView1);
    QWidget::setTabOrder(FraTree->TreeView1, splitter->handle(1));
    return splitter;
}

QWidget* Form1Layout::stepArea() {
    auto* area = new QWidget(surface);
    // Both in one place, and room for either: the picture does not jump when the mode changes.
    for (QWidget* panel : {static_cast<QWidget*>(cinePanel), static_cast<QWidget*>(Frame8)}) {
        QSizePolicy policy = panel->sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        panel->setSizePolicy(policy);
    }
    auto* place = new QGridLayout(area);
    place->setContentsMargins(0, 0, 0, 0);
    place->addWidget(cinePanel, 0, 0);
    place->addWidget(Frame8, 0, 0);
    cinePanel->setVisible(true);
    Frame8->setVisible(false);
    return area;
}

}  // namespace cinedisc
