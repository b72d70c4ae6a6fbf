#pragma once

#include <QString>

namespace cinedisc {

class Form1;

/// The main window; null before it is made and when it has been closed.
extern Form1* MainForm;

/// The start-up procedure: makes the main window and shows it, whatever the screen's size. The program lives
/// on in the message loop and ends with its last window.
void Main();
/// The same for a disc in another folder than the program's.
void Main(const QString& folder);

}  // namespace cinedisc
