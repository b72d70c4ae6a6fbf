// The least that a program with a window does: the measure for our start.
#include "bench/FirstPaint.h"

#include <QApplication>

int main(int argc, char** argv) {
    using namespace cinedisc::bench;
    QApplication application(argc, argv);
    QWidget window;
    window.resize(1280, 900);
    const FirstPaint first(
        window, [] { return true; }, endMeasurement);
    window.show();
    return QApplication::exec();
}
