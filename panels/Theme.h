#pragma once

class QApplication;

namespace cinedisc {

/// Dark surroundings for a dark reading room: greys, one accent colour for what is chosen or has the
/// keyboard.
void applyTheme(QApplication& application);

/// The theme in two steps, for a quick start: a window that is made in between is polished with the sheet
/// once, not again whenever a widget gets its place. No size that depends on the sheet may be asked for in
/// between.
void applyColours(QApplication& application);
void applyStyleSheet(QApplication& application);

}  // namespace cinedisc
