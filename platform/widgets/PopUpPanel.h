#pragma once

#include <QFrame>
#include <QPointer>

namespace cinedisc {

/// A panel with choices that opens under its button, on top of whatever is there; not a window of its own.
/// Hidden at first. Escape hides it, and so does a click elsewhere.
class PopUpPanel : public QFrame {
    Q_OBJECT

  public:
    /// `surface` is what the panel lies on; it holds the button somewhere.
    PopUpPanel(QWidget& button, QWidget& surface);

  protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void place();

    QWidget& button_;
    QPointer<QWidget> focusBefore_;
};

}  // namespace cinedisc
