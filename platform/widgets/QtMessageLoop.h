#pragma once

#include "platform/MessageLoop.h"

namespace cinedisc {

/// Yields to the toolkit's event loop: delivers what is waiting, and returns.
class QtMessageLoop final : public MessageLoop {
  public:
    void doEvents() override;
};

}  // namespace cinedisc
