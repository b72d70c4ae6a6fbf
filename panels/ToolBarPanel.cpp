#include "panels/ToolBarPanel.h"

#include "panels/PanelParts.h"
#include "viewer/ViewerControl.h"

#include <QFrame>
#include <QHBoxLayout>

namespace cinedisc {

namespace {

constexpr ButtonRow exportRow = {"cmdExport", "Export..", Icon::None, "Save the picture as JPEG or BMP"};
constexpr ButtonRow mouseTools[] = {
    {"cmdWindow", "", Icon::Window, "Window: drag to change contrast and brightness"},
    {"cmdMagnify", "", Icon::Magnify, "Magnify: a loupe under the mouse while it is pressed"},
    {"cmdLabel", "", Icon::Label, "Label: click to write on the picture"},
};
constexpr ButtonRow display[] = {
    {"cmdZoom", "Zoom", Icon::None, "Choose the magnification"},
    {"cmdInvert", "Invert", Icon::None, "Invert the grey scale"},
    {"cmdSmooth", "Smooth", Icon::None, "Smooth drawing on or off"},
    {"cmdHeader", "Header", Icon::None, "Show the file's header as text"},
    {"cmdOverlay", "Overlay", Icon::None, "Choose the background"},
};

}  // namespace

ToolBarPanel::ToolBarPanel(const ToolBarDesign& design, QWidget* parent) : QWidget(parent) {
    setObjectName(design.name);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(buttonGap);
    const auto add = [&](const ButtonRow& button) { row->addWidget(makeButton(button, this)); };
    const auto addLine = [&] {
        row->addSpacing(buttonGap);
        row->addWidget(groupLine(this));
        row->addSpacing(buttonGap);
    };
    add(design.open);
    add(exportRow);
    addLine();
    for (const ButtonRow& button : mouseTools) add(button);
    add(design.panning);
    addLine();
    for (const ButtonRow& button : display) add(button);
    if (!design.lastGroup.empty()) addLine();
    for (const ButtonRow& button : design.lastGroup) add(button);
    row->addSpacing(panelGap);
    room_ = new QHBoxLayout;
    room_->addStretch();
    row->addLayout(room_, 1);
    row->addSpacing(panelGap);
    add(design.exit);
    cmdZoom = findChild<QPushButton*>("cmdZoom");
    cmdOverlay = findChild<QPushButton*>("cmdOverlay");
}

void ToolBarPanel::fillRoom(QWidget& widget) { room_->addWidget(&widget, 1); }

void ToolBarPanel::showMouseTool(int mouseMode) {
    constexpr std::pair<const char*, int> tools[] = {{"cmdWindow", ViewerControl::MouseWindow},
                                                     {"cmdMagnify", ViewerControl::MouseMagnify},
                                                     {"cmdLabel", ViewerControl::MouseLabel},
                                                     {"cmdPanning", ViewerControl::MousePan}};
    for (const auto& [name, mode] : tools) markActive(*findChild<QPushButton*>(name), mode == mouseMode);
}

}  // namespace cinedisc
