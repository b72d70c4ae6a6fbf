#include "app/ToolBarPanel.h"

#include "app/PanelParts.h"
#include "platform/widgets/NamedButton.h"
#include "viewer/ViewerControl.h"

#include <QFrame>
#include <QHBoxLayout>

#include <span>

namespace cinedisc {

namespace {

constexpr ButtonRow disc[] = {
    {"Open", "", Picture::Disc, "Open Disc"},
    {"cmdExport", "Export..", Picture::None, "Save the picture as JPEG or BMP"},
};
constexpr ButtonRow mouseTools[] = {
    {"cmdWindow", "", Picture::Window, "Window: drag to change contrast and brightness"},
    {"cmdMagnify", "", Picture::Magnify, "Magnify: a loupe under the mouse while it is pressed"},
    {"cmdLabel", "", Picture::Label, "Label: click to write on the picture"},
    {"cmdPanning", "Panning", Picture::None, "Panning: drag to move the picture"},
};
constexpr ButtonRow display[] = {
    {"cmdZoom", "Zoom", Picture::None, "Choose the magnification"},
    {"cmdInvert", "Invert", Picture::None, "Invert the grey scale"},
    {"cmdSmooth", "Smooth", Picture::None, "Smooth drawing on or off"},
    {"cmdHeader", "Header", Picture::None, "Show the file's header as text"},
    {"cmdOverlay", "Overlay", Picture::None, "Choose the background"},
};
constexpr ButtonRow option[] = {{"Command3", "Command3", Picture::None, "Display option"}};
constexpr ButtonRow exitRow = {"cmdExit", "Exit", Picture::None, "End the program"};

}  // namespace

ToolBarPanel::ToolBarPanel(QWidget* parent) : QWidget(parent) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(buttonGap);
    const auto addGroup = [&](std::span<const ButtonRow> group) {
        for (const ButtonRow& button : group) row->addWidget(makeButton(button, this));
    };
    const auto addLine = [&] {
        row->addSpacing(buttonGap);
        row->addWidget(groupLine(this));
        row->addSpacing(buttonGap);
    };
    addGroup(disc);
    addLine();
    addGroup(mouseTools);
    addLine();
    addGroup(display);
    addLine();
    addGroup(option);
    Label1 = named(new ElidedLabel("", "", this), "Label1");
    Label1->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    Label1->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    // Of a folder's path the end tells most.
    Label1->setElideMode(Qt::ElideLeft);
    asRemark(*Label1);
    row->addSpacing(panelGap);
    row->addWidget(Label1, 1);
    row->addSpacing(panelGap);
    row->addWidget(makeButton(exitRow, this));
    cmdZoom = findChild<QPushButton*>("cmdZoom");
    cmdOverlay = findChild<QPushButton*>("cmdOverlay");
}

void ToolBarPanel::showMouseTool(int mouseMode) {
    constexpr std::pair<const char*, int> tools[] = {{"cmdWindow", ViewerControl::MouseWindow},
                                                     {"cmdMagnify", ViewerControl::MouseMagnify},
                                                     {"cmdLabel", ViewerControl::MouseLabel},
                                                     {"cmdPanning", ViewerControl::MousePan}};
    for (const auto& [name, mode] : tools) markActive(*findChild<QPushButton*>(name), mode == mouseMode);
}

}  // namespace cinedisc
