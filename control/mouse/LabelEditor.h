#pragma once

#include <QLineEdit>

#include <functional>

namespace cinedisc {

/// The line in which a label is typed, inside the view. Return, or leaving it for something else, hands the
/// text over; Escape drops it. Hides itself then.
class LabelEditor : public QLineEdit {
    Q_OBJECT

  public:
    explicit LabelEditor(QWidget& view);

    /// Opens with the text's left end's middle at a point of the view, in letters of `letters` as far as they
    /// can be typed in.
    void open(QPointF at, const QString& text, const QFont& letters);
    /// As leaving it does.
    void handOver();

  signals:
    void handedOver(const QString& text);
    void dropped();

  protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

  private:
    void drop();
    /// Whether it was open.
    bool shut();
    void fitText();

    bool open_ = false;
};

}  // namespace cinedisc
