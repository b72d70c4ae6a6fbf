#pragma once

#include <QByteArray>
#include <QObject>
#include <QPointer>
#include <QRect>
#include <QWidget>

class QMainWindow;

namespace cinedisc {

/// The picture alone on the whole screen, and back. What else the window has stays as it is underneath.
class FullScreen final : public QObject {
    Q_OBJECT

  public:
    /// `surface` is the window's central widget and holds the picture somewhere.
    FullScreen(QMainWindow& window, QWidget& surface, QWidget& picture);

    bool isOn() const { return home_ != nullptr; }
    void toggle() { isOn() ? leave() : enter(); }
    void leave();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void enter();

    QMainWindow& window_;
    QWidget& surface_;
    QWidget& picture_;
    QPointer<QWidget> home_;  ///< the picture's parent in the window, null while it is there
    int place_ = -1;          ///< in it, where it is a splitter
    QByteArray sizes_;
    QRect frame_;  ///< of the picture in its home
    bool wasMaximized_ = false;
};

}  // namespace cinedisc
