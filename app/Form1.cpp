#include "app/Form1.h"

#include "app/CommandTable.h"
#include "app/Main.h"
#include "panels/MenuTable.h"
#include "platform/Paths.h"
#include "platform/widgets/TextViewerLauncher.h"
#include "viewerwindow/ViewerCommands.h"
#include "viewerwindow/ViewerEvents.h"

#include <QCloseEvent>
#include <QMenuBar>

namespace cinedisc {

Form1::Form1(const QString& programFolder)
    : programFolder_(programFolder),
      layout_(*this),
      controls_(*this, layout_, programFolder),
      behaviour_(controls_.viewer, controls_.disc, controls_.tools, controls_.exportFormat, controls_.wheel) {
    setObjectName("Form1");
    const auto runCommand = [this](const QString& command) { run(command); };
    MenuBuilder::build(*menuBar(), mainMenuTable(), runCommand);
    routeButtons(*this, runCommand);
    ViewerEvents::connect(layout_, behaviour_);
    controls_.TreeView1.onNodeClick([this](int node) { behaviour_.patients.TreeView1_NodeClick(node); });
    behaviour_.Form_Load();
}

void Form1::run(const QString& command) {
    if (!runCommand(windowCommands(), command, *this) && !runCommand(discCommands(), command, behaviour_))
        runCommand<ViewerBehaviour>(viewerCommands(), command, behaviour_);
}

void Form1::showLicence() {
    TextViewerLauncher::open(findIgnoringCase(programFolder_, {"license.txt"}).trimmed());
}

void Form1::closeEvent(QCloseEvent* event) {
    behaviour_.Form_Unload();
    StripWheel::setMainScrollBar(nullptr);
    MainForm = nullptr;
    event->accept();
}

}  // namespace cinedisc
