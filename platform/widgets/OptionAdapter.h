#pragma once

#include "platform/OptionButton.h"

#include <QRadioButton>

namespace cinedisc {

/// An option on a QRadioButton that somebody else owns. Its group is the options with the same parent widget.
/// What selecting runs is connected with connectOption.
class OptionAdapter final : public OptionButton {
  public:
    explicit OptionAdapter(QRadioButton& button) : button_(button) {}
    bool Value() const override { return button_.isChecked(); }
    /// False deselects this option and selects no other.
    void putValue(bool selected) override;

  private:
    QRadioButton& button_;
};

}  // namespace cinedisc
