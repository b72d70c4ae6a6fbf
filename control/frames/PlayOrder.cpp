#include "control/frames/PlayOrder.h"

namespace cinedisc {

int PlayOrder::ahead(int steps) const {
    return direction == PlayDirection::Forward ? (frame + steps) % frames : (frame - steps + frames) % frames;
}

int PlayOrder::stepsTo(const FrameKey& key) const {
    if (!key.run) return never;
    if (key.run == run) {
        const int steps = direction == PlayDirection::Forward ? key.index - frame : frame - key.index;
        return steps < 0 ? steps + frames : steps;
    }
    return key.run == next ? window + 1 : never;
}

}  // namespace cinedisc
