// empty_window: the least that a program with a window does, the measure for our start.
// empty_window TEXT: the same with one line of text, which takes fonts.
#include "bench/FirstPaint.h"

#include <QApplication>
#include <QLabel>

int main(int argc, char** argv) {
    using namespace cinedisc::bench;
    QApplication application(argc, argv);
    QLabel window(argc > 1 ? argv[1] : "");
    window.resize(1280, 900);
    const FirstPaint first(
        window, [] { return true; }, endMeasurement);
    window.show();
    return QApplication::exec();
}
