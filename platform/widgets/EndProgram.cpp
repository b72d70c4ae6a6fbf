#include "platform/widgets/EndProgram.h"

#include <QApplication>
#include <QClipboard>
#include <QThreadPool>
#include <QWidget>

#include <cstdio>
#include <cstdlib>
#include <memory>

namespace cinedisc {

namespace {

/// The toolkit hands the clipboard over only when the application object goes, which also destroys the
/// windows' system resources without any close event. The widgets themselves stay: nothing returns to them.
void handClipboardOver() {
    if (!QGuiApplication::clipboard()->ownsClipboard()) return;
    QThreadPool::globalInstance()->clear();
    std::destroy_at(static_cast<QApplication*>(QCoreApplication::instance()));
}

}  // namespace

void endProgram() {
    for (QWidget* window : QApplication::topLevelWidgets()) window->hide();
    handClipboardOver();
    endProcess(ExitStatus::Success);
}

void endProcess(ExitStatus status) {
    std::fflush(nullptr);
    std::_Exit(static_cast<int>(status));
}

}  // namespace cinedisc
