// start_window: starts the program and ends when its main window is drawn.
// start_window DISC: opens the disc and its first patient then, and ends when the first picture is drawn.
#include "app/Form1.h"
#include "app/Main.h"
#include "bench/FirstPaint.h"
#include "bench/WindowDriver.h"
#include "panels/Theme.h"
#include "platform/widgets/GuardedApplication.h"

#include <memory>

using namespace cinedisc;

int main(int argc, char** argv) {
    // What the program's own main function does, but for the disc's folder.
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeMenuBar);
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    GuardedApplication application(argc, argv);
    QCoreApplication::setApplicationName("cinedisc");
    applyColours(application);
    const bool toPicture = argc > 1;
    if (toPicture)
        Main(QString::fromLocal8Bit(argv[1]));
    else
        Main();

    const bench::WindowDriver driver(*MainForm);
    std::unique_ptr<bench::FirstPaint> picture;
    const bench::FirstPaint window(
        driver.view(), [] { return true; },
        [&] {
            if (!toPicture) bench::endMeasurement();
            picture = std::make_unique<bench::FirstPaint>(
                driver.view(), [&] { return driver.showsPicture(); }, bench::endMeasurement);
            driver.openPatient(0);
        });
    return QApplication::exec();
}
