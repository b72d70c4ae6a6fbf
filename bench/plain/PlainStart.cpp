#include "app/Form1.h"
#include "app/Main.h"
#include "bench/ProgramStart.h"
#include "panels/Theme.h"

#include <QApplication>

namespace cinedisc::bench {

void startProgram(const QString& folder) {
    MainForm = new Form1(folder);
    StripWheel::setMainScrollBar(&MainForm->sb1());
    applyStyleSheet(*qApp);
    MainForm->show();
}

}  // namespace cinedisc::bench
