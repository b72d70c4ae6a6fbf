#pragma once

#include <QLabel>

namespace cinedisc {

/// A label of one line that cuts a long text where it draws it, and there only: text() stays whole, and is
/// the tooltip of a text that is cut. Its text never changes its size, so that a label written at every frame
/// moves nothing.
class ElidedLabel final : public QLabel {
    Q_OBJECT

  public:
    /// As wide as `sample` needs, wherever there is room for it.
    ElidedLabel(const QString& text, const QString& sample, QWidget* parent = nullptr);
    /// Where a long text is cut; at its end unless told otherwise.
    void setElideMode(Qt::TextElideMode mode) { elideMode_ = mode; }
    QSize sizeHint() const override { return hint_; }
    /// Where room is scarce it cuts earlier.
    QSize minimumSizeHint() const override { return {hint_.width() / 2, hint_.height()}; }

  protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    QString drawnText() const;

    QSize hint_;
    Qt::TextElideMode elideMode_ = Qt::ElideRight;
};

}  // namespace cinedisc
