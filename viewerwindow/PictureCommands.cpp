#include "viewerwindow/PictureCommands.h"

#include "control/ezDICOMX.h"
#include "panels/ViewerPanels.h"
#include "viewerwindow/CineRate.h"
#include "viewerwindow/FilmCommand.h"
#include "viewerwindow/FullScreen.h"
#include "viewerwindow/PictureKeys.h"
#include "viewerwindow/PictureMenu.h"
#include "viewerwindow/StateMarks.h"
#include "viewerwindow/ViewerBehaviour.h"

#include <QMainWindow>

namespace cinedisc {

void connectPicture(const PictureCommands& c) {
    auto* fullScreen = new FullScreen(c.window, *c.panels.surface, *c.panels.ezDicom);
    auto* keys = new PictureKeys(c.window, {c.panels, c.behaviour, c.run, c.isStills, *fullScreen});
    const FilmCommand film(*c.panels.ezDicom, c.behaviour.form.Timer4, c.dialogs);
    new PictureMenu(*c.panels.ezDicom, c.run,
                    {[film] { film.exportFilm(); }, [fullScreen] { fullScreen->toggle(); },
                     [keys] { keys->toggleKeysPage(); }});
    new CineRate(c.window, c.panels, c.behaviour);
    new StateMarks({c.window, c.panels, c.isStills, c.hasPlace});
}

}  // namespace cinedisc
