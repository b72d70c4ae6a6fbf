#include "platform/widgets/EventGuard.h"

#include "platform/widgets/FatalErrorBox.h"

#include <new>

namespace cinedisc {

namespace {

EventGuard::FatalAction& fatalAction() {
    static EventGuard::FatalAction action = tellErrorAndEnd;
    return action;
}

bool tellingErrorNow = false;
int pauses = 0;

RunTimeError currentError() {
    try {
        throw;
    } catch (const RunTimeError& error) {
        return error;
    } catch (const std::bad_alloc&) {
        return RunTimeError::outOfMemory();
    } catch (...) {
        return RunTimeError::internalError();
    }
}

}  // namespace

EventGuard::FatalAction EventGuard::replaceFatalAction(FatalAction action) {
    return std::exchange(fatalAction(), std::move(action));
}

EventGuard::Pause::Pause() { ++pauses; }
EventGuard::Pause::~Pause() { --pauses; }
bool EventGuard::isPaused() { return pauses > 0; }

bool EventGuard::tellingError() { return tellingErrorNow; }

void EventGuard::failWithCurrentException() {
    // Something that fails while the box is up (painting, say) has nothing left to tell.
    if (std::exchange(tellingErrorNow, true)) return;
    fatalAction()(currentError());
    tellingErrorNow = false;
}

}  // namespace cinedisc
