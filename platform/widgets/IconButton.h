#pragma once

#include "platform/widgets/StateButton.h"

namespace cinedisc {

/// A push button without words. A class of its own, so that style sheets find it by its name, which is much
/// quicker than by a property.
class IconButton final : public StateButton {
    Q_OBJECT

  public:
    using StateButton::StateButton;
};

}  // namespace cinedisc
