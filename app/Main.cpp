#include "app/Main.h"

#include "app/Form1.h"
#include "control/frames/ImageLibrary.h"
#include "panels/Theme.h"
#include "platform/Paths.h"
#include "platform/widgets/DrawWindows.h"
#include "platform/widgets/EventGuard.h"

#include <QApplication>

namespace cinedisc {

namespace {

/// Longer than a disc takes for a frame of an angiogram, too short to be felt.
constexpr std::chrono::milliseconds patienceWithTheDisc{80};

void tellOfWait(ImageLibrary::LongWait wait) {
    using enum ImageLibrary::LongWait;
    if (wait == Begins) QApplication::setOverrideCursor(Qt::WaitCursor);
    if (wait == GoesOn) drawWindows();
    if (wait == Ends) QApplication::restoreOverrideCursor();
}

}  // namespace

Form1* MainForm = nullptr;

void Main() { Main(programFolder()); }

void Main(const QString& folder) {
    EventGuard::run([&] {
        if (!MainForm) {
            ImageLibrary::shared().lookAhead(patienceWithTheDisc);
            ImageLibrary::shared().onLongWait(tellOfWait);
            MainForm = new Form1(folder);
            MainForm->setAttribute(Qt::WA_DeleteOnClose);
            StripWheel::setMainScrollBar(&MainForm->sb1());
            applyStyleSheet(*qApp);
        }
        MainForm->show();
    });
}

}  // namespace cinedisc
