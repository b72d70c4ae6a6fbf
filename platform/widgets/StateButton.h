#pragma once

#include <QPushButton>

namespace cinedisc {

/// A push button that can be marked as the choice in force. Style sheets see it as checked then; it stays a
/// plain button otherwise, which runs a command and changes nothing by itself.
class StateButton : public QPushButton {
    Q_OBJECT
    Q_PROPERTY(bool active READ isActive WRITE setActive)

  public:
    using QPushButton::QPushButton;
    bool isActive() const { return isActive_; }
    void setActive(bool on);

  protected:
    void initStyleOption(QStyleOptionButton* option) const override;

  private:
    bool isActive_ = false;
};

}  // namespace cinedisc
