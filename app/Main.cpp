#include "app/Main.h"

#include "app/Form1.h"
#include "panels/Theme.h"
#include "platform/Paths.h"
#include "platform/widgets/EventGuard.h"

#include <QApplication>

namespace cinedisc {

Form1* MainForm = nullptr;

void Main() {
    EventGuard::run([] {
        if (!MainForm) {
            MainForm = new Form1(programFolder());
            MainForm->setAttribute(Qt::WA_DeleteOnClose);
            StripWheel::setMainScrollBar(&MainForm->sb1());
            applyStyleSheet(*qApp);
        }
        MainForm->show();
    });
}

}  // namespace cinedisc
