#pragma once

#include "platform/Dialogs.h"

#include <QString>

#include <functional>

class QMainWindow;

namespace cinedisc {

class ViewerBehaviour;
class ViewerPanels;

/// What a viewer window's picture needs to run commands.
struct PictureCommands {
    QMainWindow& window;
    const ViewerPanels& panels;
    ViewerBehaviour& behaviour;
    Dialogs& dialogs;
    std::function<void(const QString& command)> run;
    /// Whether the window pages stills, whose files have buttons of their own.
    std::function<bool()> isStills;
    /// Whether there are series and patients to step to.
    std::function<bool()> hasPlace;
};

/// Gives a window what works at the picture itself: keys and wheel, full screen, context menu, film, the rate
/// of the cine, and the marks of what is in force. All of it belongs to the window.
void connectPicture(const PictureCommands& commands);

}  // namespace cinedisc
