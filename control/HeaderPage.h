#pragma once

#include <QBasicTimer>
#include <QPlainTextEdit>

namespace cinedisc {

/// The header of the file as text over the picture: to be read, scrolled, selected and copied, never changed.
/// A child of the view.
class HeaderPage : public QPlainTextEdit {
    Q_OBJECT

  public:
    explicit HeaderPage(QWidget& view);

    /// Shows a text, its beginning at once. What follows the first few thousand lines comes bit by bit, as
    /// other events allow: half a million lines would take seconds.
    void putText(const QString& text);

  protected:
    bool event(QEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

  private:
    QString takePiece();

    QString rest_;
    qsizetype shown_ = 0;  ///< of the rest's letters
    QBasicTimer next_;
};

}  // namespace cinedisc
