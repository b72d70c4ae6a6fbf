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

    /// Opens with the middle of the text's left edge at a point of the view, in the font `letters`, no
    /// smaller or larger than can be typed in.
    void open(QPointF at, const QString& text, const QFont& letters);
    /// Hands the text over, as leaving the line does.
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
    void keepInView();

    bool open_ = false;
};

}  // namespace cinedisc
