#include "app/Main.h"

#include "panels/Theme.h"
#include "platform/widgets/GuardedApplication.h"

#include <QApplication>

int main(int argc, char** argv) {
    using namespace cinedisc;
    // Menus belong to the window, on every desktop.
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeMenuBar);
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    GuardedApplication application(argc, argv);
    QCoreApplication::setApplicationName("cinedisc");
    applyColours(application);
    Main();
    return QApplication::exec();
}
