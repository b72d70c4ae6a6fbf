#include "app/Main.h"

#include "app/Confinement.h"
#include "panels/ScreenFit.h"
#include "panels/Theme.h"
#include "platform/widgets/GuardedApplication.h"

#include <QApplication>
#include <QFont>
#include <QScreen>

#include <memory>
#include <vector>

int main(int argc, char** argv) {
    using namespace cinedisc;
    confineLibraries(argc, argv);
    // Menus belong to the window, on every desktop.
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeMenuBar);
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    std::vector<char*> arguments(argv, argv + argc + 1);
    auto application = std::make_unique<GuardedApplication>(argc, argv);
    const auto scale = ScreenFit::scaleFor(application->primaryScreen()->availableSize(),
                                           application->primaryScreen()->devicePixelRatio());
    if (scale.all < 1) {
        // The desktop's scale leaves the window no room. The toolkit takes another one when it starts.
        const char* const factor = "QT_SCALE_FACTOR";
        const QByteArray given = qgetenv(factor);
        application.reset();
        qputenv(factor, QByteArray::number(given.isEmpty() ? scale.all : given.toDouble() * scale.all));
        argc = static_cast<int>(arguments.size()) - 1;
        application = std::make_unique<GuardedApplication>(argc, arguments.data());
        // What is started from here has its own.
        given.isEmpty() ? qunsetenv(factor) : qputenv(factor, given);
    }
    if (QFont letters = QApplication::font(); scale.letters < 1 && letters.pointSizeF() > 0) {
        letters.setPointSizeF(letters.pointSizeF() * scale.letters);
        QApplication::setFont(letters);
    }
    QCoreApplication::setApplicationName("cinedisc");
    applyColours(*application);
    Main();
    return QApplication::exec();
}
