#include "folderview/frmViewLayout.h"

#include "control/ezDICOMX.h"
#include "panels/PanelParts.h"
#include "panels/StripPanel.h"

#include <QListWidget>

namespace cinedisc {

namespace {

constexpr int sunkenBorder = 2;

const ViewerDesign design = {
    "DICOM Viewer for Coronal Angiography",
    {"Frame3",
     {"cmdOpen", "", Icon::Folder, "Open Folder"},
     {"cmdPanning", "", Icon::Pan, "Panning: drag to move the picture"},
     {},
     {"Command15", "Exit", Icon::None, "End the program"}},
    {"Frame1",
     {"cmdReverse", "Reverse", Icon::Reverse, "Play backward"},
     {"cmdPlay", "Play", Icon::Play, "Play forward"},
     {"", "Frame Seek Bar"},
     {"", "Image"}},
};
constexpr ButtonRow displayOption = {"Command3", "Command3", Icon::None, "Display option"};

}  // namespace

frmViewLayout::frmViewLayout(QMainWindow& window)
    : ViewerPanels(window, design), ListView1(named(new QListWidget(surface), "ListView1")) {
    ListView1->setIconSize(QSize(iconEdge, iconEdge));
    ListView1->hide();
    ezDicom->putThumbStyle(sunkenBorder);
    strip->setObjectName("Frame4");
    cinePanel->addToDirections(displayOption);
    stack(*ezDicom, *cinePanel);
}

}  // namespace cinedisc
