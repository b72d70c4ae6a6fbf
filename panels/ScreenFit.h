#pragma once

#include <QObject>
#include <QSize>

#include <functional>

class QMainWindow;

namespace cinedisc {

/// Keeps a window, its frame included, inside the room that its screen has, and as large as its contents
/// need. Looks when the window is shown and when it comes to another screen.
class ScreenFit final : public QObject {
    Q_OBJECT

  public:
    /// `arrange` makes the contents stand in as many rows as a width takes.
    ScreenFit(QMainWindow& window, std::function<void(int width)> arrange);

    /// Makes the window fit what a screen has available.
    void fitTo(QSize screen);
    /// What the toolkit must draw everything smaller by, and the letters beyond that, for a window to fit a
    /// screen of so many units, each of so many pixels. Nothing is drawn right at less than one pixel a unit.
    struct Scale {
        double all = 1, letters = 1;
    };
    static Scale scaleFor(QSize screen, double pixelRatio);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    QMainWindow& window_;
    std::function<void(int)> arrange_;
};

}  // namespace cinedisc
