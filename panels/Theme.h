#pragma once

class QApplication;

namespace cinedisc {

/// Dark surroundings for a dark reading room: greys, one accent colour for what is chosen or has the
/// keyboard.
void applyTheme(QApplication& application);

}  // namespace cinedisc
