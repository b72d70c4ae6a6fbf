#include "folderview/frmView.h"

#include "folderview/frmViewCommandTable.h"
#include "panels/MenuTable.h"
#include "viewerwindow/ViewerCommands.h"
#include "viewerwindow/ViewerEvents.h"

#include <QCloseEvent>
#include <QMenuBar>

namespace cinedisc {

frmView::frmView(Dialogs* dialogs)
    : layout_(*this),
      controls_(*this, layout_),
      behaviour_({controls_.viewer, controls_.tools, controls_.exportFormat, controls_.wheel,
                  dialogs ? *dialogs : controls_.dialogs}) {
    setObjectName("frmView");
    const auto runCommand = [this](const QString& command) { run(command); };
    MenuBuilder::build(*menuBar(), menuTableWithout({"mnuOpenCD", "mnuAbout"}), runCommand);
    routeButtons(*this, runCommand);
    ViewerEvents::connect(layout_, behaviour_);
    behaviour_.Form_Load();
}

void frmView::run(const QString& command) {
    if (!runCommand(frmViewCommandTable(), command, *this))
        runCommand<ViewerBehaviour>(viewerCommands(), command, behaviour_);
}

void frmView::closeEvent(QCloseEvent* event) {
    behaviour_.Form_Unload();
    event->accept();
}

}  // namespace cinedisc
