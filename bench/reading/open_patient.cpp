// open_patient DISC: opens the first patient in the program's own main window (probe, five previews, main
// view) and prints what was read of the files until all are drawn.
#include "app/Form1.h"
#include "app/Main.h"
#include "bench/FirstPaint.h"
#include "bench/WindowDriver.h"
#include "bench/reading/ReadLog.h"
#include "platform/widgets/GuardedApplication.h"

#include <cstdio>
#include <cstdlib>

int main(int argc, char** argv) {
    using namespace cinedisc;
    if (argc != 2) return EXIT_FAILURE;
    GuardedApplication application(argc, argv);
    Main(QString::fromLocal8Bit(argv[1]));
    const bench::WindowDriver driver(*MainForm);
    driver.openPatient(0);
    const auto shown = [&] {
        for (const char* preview : {"thumb(0)", "thumb(1)", "thumb(2)", "thumb(3)", "thumb(4)"}) {
            if (!driver.find<QWidget>(preview)->accessibleDescription().isEmpty()) return false;
        }
        return driver.showsPicture();
    };
    const bench::FirstPaint drawn(driver.view(), shown, [] {
        bench::ReadLog::shared().report();
        std::fflush(stdout);
        bench::endMeasurement();
    });
    return QApplication::exec();
}
