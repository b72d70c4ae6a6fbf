#pragma once

#include <QString>

namespace cinedisc {

/// The title of the window and of every message box.
inline const QString programTitle = QStringLiteral("Cine Disc Viewer");

}  // namespace cinedisc
