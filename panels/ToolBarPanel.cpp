#include "panels/ToolBarPanel.h"

#include "panels/PanelParts.h"
#include "viewer/ViewerControl.h"

#include <QFrame>
#include <QHBoxLayout>

namespace cinedisc {

ToolBarPanel::ToolBarPanel(const ButtonTable& buttons, const ToolBarDesign& design, QWidget* parent)
    : QWidget(parent) {
    setObjectName(design.name);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(buttonGap);
    const auto add = [&](std::initializer_list<const char*> names) {
        for (const char* name : names) row->addWidget(buttons.make(name, this));
    };
    const auto addLine = [&] {
        row->addSpacing(buttonGap);
        row->addWidget(groupLine(this));
        row->addSpacing(buttonGap);
    };
    add({design.open, "cmdExport"});
    addLine();
    add({"cmdWindow", "cmdMagnify", "cmdLabel", "cmdPanning"});
    addLine();
    add({"cmdZoom", "cmdInvert", "cmdSmooth", "cmdHeader", "cmdOverlay"});
    if (!design.lastGroup.empty()) addLine();
    for (const char* name : design.lastGroup) add({name});
    row->addSpacing(panelGap);
    room_ = new QHBoxLayout;
    room_->addStretch();
    row->addLayout(room_, 1);
    row->addSpacing(panelGap);
    add({design.exit});
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
