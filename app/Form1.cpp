#include "app/Form1.h"

#include "app/CommandTable.h"
#include "app/Main.h"
#include "app/TreePanel.h"
#include "control/ezDICOMX.h"
#include "viewerwindow/PictureCommands.h"
#include "viewerwindow/ViewerCommands.h"
#include "viewerwindow/ViewerEvents.h"

#include <QCloseEvent>
#include <QMenuBar>
#include <QPushButton>

namespace cinedisc {

Form1::Form1(const QString& programFolder)
    : layout_(*this),
      controls_(*this, layout_, programFolder),
      behaviour_(controls_.viewer, controls_.disc, controls_.tools, controls_.exportFormat, controls_.wheel) {
    setObjectName("Form1");
    CommandHandlers handlers;
    handlers.add(discCommands(), behaviour_);
    handlers.add<ViewerBehaviour>(viewerCommands(), behaviour_);
    handlers.add(windowCommands(), behaviour_);
    buildMenus(*menuBar(), form1Faces().items, handlers);
    routeButtons(*this, handlers);
    connectEvents(layout_, behaviour_);
    controls_.TreeView1.onNodeClick([this](int node) {
        behaviour_.patients.TreeView1_NodeClick(node);
        if (!layout_.ezDicom->FileName().isEmpty()) layout_.ezDicom->setFocus();
    });
    const auto toTree = [this] { layout_.FraTree->TreeView1->setFocus(); };
    connect(findChild<QPushButton*>("Open"), &QPushButton::clicked, this, toTree);
    connect(findChild<QAction*>("mnuOpenCD"), &QAction::triggered, this, toTree);
    connectPicture({*this, layout_, behaviour_, controls_.dialogs,
                    [handlers](const QString& command) { handlers(command)(); },
                    [this] { return StillsMode(); }, [this] { return !CurrentFolder().isEmpty(); }});
    behaviour_.Form_Load();
}

void Form1::closeEvent(QCloseEvent* event) {
    behaviour_.Form_Unload();
    StripWheel::setMainScrollBar(nullptr);
    MainForm = nullptr;
    event->accept();
}

}  // namespace cinedisc
