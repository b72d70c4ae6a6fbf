#pragma once

#include <QRadioButton>

class QLabel;

namespace cinedisc {

/// An option that shows its indicator only; the words a person reads stand in a label beside it, which can be
/// clicked instead. The caption stays the option's text.
class IndicatorOption final : public QRadioButton {
    Q_OBJECT

  public:
    IndicatorOption(const QString& caption, QLabel& words, QWidget* parent = nullptr);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void initStyleOption(QStyleOptionButton* option) const override;
    bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace cinedisc
