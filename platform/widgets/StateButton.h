#pragma once

#include <QPushButton>

namespace cinedisc {

/// A push button that can be marked as the choice in force: it is checked then. Only who knows the state
/// marks it; a click runs the command and changes nothing by itself.
class StateButton : public QPushButton {
    Q_OBJECT

  public:
    using QPushButton::QPushButton;

  protected:
    void nextCheckState() override {}
};

}  // namespace cinedisc
