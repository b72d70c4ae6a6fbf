#pragma once

#include "platform/RunTimeError.h"

#include <functional>
#include <utility>

namespace cinedisc {

/// Stands between the toolkit's signals and the handlers. A handler's untrapped error ends the program: a
/// message box tells the error, then the process ends with status 1 and without unload handlers. While the
/// box is up no other handler runs. No exception passes through the toolkit's event loop.
///
/// For the user-interface thread only.
class EventGuard {
  public:
    /// What an untrapped error does. The program's own one does not return.
    using FatalAction = std::function<void(const RunTimeError&)>;

    /// While one lives, handlers do not run: another is in the middle of its work.
    class Pause {
      public:
        Pause();
        ~Pause();
        Pause(const Pause&) = delete;
        Pause& operator=(const Pause&) = delete;
    };
    static bool isPaused();

    /// Runs a handler, unless an untrapped error is being told.
    template <typename Handler>
    static void run(Handler&& handler) {
        if (!tellingError() && !isPaused()) protect(std::forward<Handler>(handler));
    }

    /// As run, but also while an error is being told: for what the message box itself needs, like painting.
    template <typename Handler>
    static void protect(Handler&& handler) {
        try {
            std::forward<Handler>(handler)();
        } catch (...) {
            failWithCurrentException();
        }
    }

    /// A handler to be connected to a signal, whose arguments it does not take.
    static auto guarded(std::function<void()> handler) {
        return [handler = std::move(handler)] { run(handler); };
    }

    /// Replaces the fatal action and returns the old one. For tests.
    static FatalAction replaceFatalAction(FatalAction action);

  private:
    static bool tellingError();
    static void failWithCurrentException();
};

}  // namespace cinedisc
