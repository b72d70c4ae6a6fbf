#include "panels/ScreenFit.h"

#include <QCoreApplication>
#include <QEvent>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QLayout>
#include <QMainWindow>
#include <QMenuBar>
#include <QScreen>

#include <algorithm>

namespace cinedisc {

namespace {

constexpr QSize firstWindow(1280, 900);

/// What the desktop puts around a window.
constexpr QSize frame(4, 36);

/// What a window needs, in heights of a letter: everything in one row, in two, one below the other.
constexpr QSizeF needs[] = {{65.5, 27}, {46, 35}, {39, 40}};

}  // namespace

ScreenFit::ScreenFit(QMainWindow& window, std::function<void(int)> arrange)
    : QObject(&window), window_(window), arrange_(std::move(arrange)) {
    window.installEventFilter(this);
}

bool ScreenFit::eventFilter(QObject* watched, QEvent* event) {
    const bool comes = event->type() == QEvent::Show && !event->spontaneous();
    if (comes || event->type() == QEvent::ScreenChangeInternal) {
        const QRect room = window_.screen()->availableGeometry();
        fitTo(room.size());
        // Some systems put a new window where it does not reach beyond the screen only if it is small.
        QRect place(QPoint(), window_.size() + frame);
        place.moveCenter(room.center());
        if (comes && !window_.testAttribute(Qt::WA_Moved)) window_.move(place.topLeft());
    }
    return QObject::eventFilter(watched, event);
}

void ScreenFit::fitTo(QSize screen) {
    QWidget& contents = *window_.centralWidget();
    const QSize room = screen - frame;
    contents.setMinimumSize(0, 0);
    arrange_(room.width());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    const int menuHeight = window_.menuBar()->sizeHint().height();
    const QSize least = contents.layout()->minimumSize();
    contents.setMinimumSize(least.boundedTo(room - QSize(0, menuHeight)));
    window_.layout()->activate();
    if (window_.testAttribute(Qt::WA_Resized)) return;
    // Of a large screen most, but not all.
    window_.resize((room * 6 / 7).expandedTo(firstWindow).boundedTo(room));
}

ScreenFit::Scale ScreenFit::scaleFor(QSize screen, double pixelRatio) {
    // Icons and gaps do not shrink with very small letters.
    constexpr double smallestLetter = 14.5;
    const double letter = std::max(smallestLetter, QFontMetricsF(QGuiApplication::font()).height());
    const QSizeF room = screen - frame;
    double scale = 0;
    for (const QSizeF& need : needs)
        scale = std::max(scale, std::min(room.width() / (need.width() * letter),
                                         room.height() / (need.height() * letter)));
    scale = std::min(scale, 1.0);
    const double all = std::min(1.0, std::max(scale, 1 / pixelRatio));
    constexpr double leastReadable = 0.75;
    return {all, std::max(leastReadable, scale / all)};
}

}  // namespace cinedisc
