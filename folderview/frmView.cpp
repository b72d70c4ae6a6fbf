#include "folderview/frmView.h"

#include "folderview/frmViewCommandTable.h"
#include "viewerwindow/PictureCommands.h"
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
    CommandHandlers handlers;
    handlers.add(frmViewCommandTable(), behaviour_);
    handlers.add<ViewerBehaviour>(viewerCommands(), behaviour_);
    buildMenus(*menuBar(), frmViewFaces().items, handlers);
    routeButtons(*this, handlers);
    connectEvents(layout_, behaviour_);
    connectPicture({*this, layout_, behaviour_, dialogs ? *dialogs : controls_.dialogs,
                    [handlers](const QString& command) { handlers(command)(); }, [] { return false; },
                    [] { return true; }});
    behaviour_.Form_Load();
}

void frmView::closeEvent(QCloseEvent* event) {
    behaviour_.Form_Unload();
    event->accept();
}

}  // namespace cinedisc
