#pragma once

#include <QPushButton>

namespace cinedisc {

/// A push button without words. A class of its own, so that style sheets find it by its name, which is much
/// quicker than by a property.
class IconButton final : public QPushButton {
    Q_OBJECT

  public:
    using QPushButton::QPushButton;
};

}  // namespace cinedisc
