#include "folderview/frmViewLayout.h"

#include "control/ezDICOMX.h"
#include "folderview/frmViewCommandTable.h"
#include "panels/PanelParts.h"
#include "panels/StripPanel.h"

#include <QListWidget>

namespace cinedisc {

namespace {

constexpr int sunkenBorder = 2;

const ViewerDesign design = {
    .title = "DICOM Viewer for Coronal Angiography",
    .toolBar = {.name = "Frame3", .open = "cmdOpen", .lastGroup = {}, .exit = "Command15"},
    .cinePanel = {.name = "Frame1", .frames = {"", "Frame Seek Bar"}, .images = {"", "Image"}},
};

}  // namespace

frmViewLayout::frmViewLayout(QMainWindow& window)
    : frmViewLayout(window, ButtonTable(frmViewFaces().buttons)) {}

frmViewLayout::frmViewLayout(QMainWindow& window, const ButtonTable& buttons)
    : ViewerPanels(window, buttons, design), ListView1(named(new QListWidget(surface), "ListView1")) {
    ListView1->setIconSize(QSize(iconEdge, iconEdge));
    ListView1->hide();
    ezDicom->putThumbStyle(sunkenBorder);
    strip->setObjectName("Frame4");
    cinePanel->addToDirections(*buttons.make("Command3", cinePanel->Frame2));
    stack(*ezDicom, *cinePanel);
}

}  // namespace cinedisc
