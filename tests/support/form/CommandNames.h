#pragma once

#include "viewerwindow/Commands.h"

#include <QStringList>

namespace cinedisc::test {

/// The names of a window's buttons and menu items.
inline QStringList commandNames(const CommandFaces& faces) {
    QStringList names;
    for (const ButtonRow& button : faces.buttons) names << button.name;
    for (const MenuRow& item : faces.items)
        if (item.kind == MenuKind::Command) names << item.name;
    return names;
}

}  // namespace cinedisc::test
