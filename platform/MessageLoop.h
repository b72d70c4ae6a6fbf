#pragma once

namespace cinedisc {

/// The yields of handlers to the message loop: the only places where another handler can run in between.
class MessageLoop {
  public:
    virtual ~MessageLoop() = default;
    virtual void doEvents() = 0;
};

}  // namespace cinedisc
