#pragma once

#include "control/frames/FrameRun.h"

namespace cinedisc {

enum class PlayDirection { Forward, Reverse };

/// Where a view stands in a run and which way it moves: which frames are due next, and which last.
struct PlayOrder {
    const FrameRun* run = nullptr;
    const FrameRun* next = nullptr;  ///< the run that may follow
    int frame = 0;                   ///< the one shown, counted from 0
    int frames = 0;
    PlayDirection direction = PlayDirection::Forward;
    int window = 0;    ///< how many frames ahead are to be decoded
    bool fits = true;  ///< the whole run, decoded, has room in memory

    /// The frame that is due after some steps, 0 ... frames - 1 of them: a run goes round.
    int ahead(int steps) const;
    /// Steps until a frame is due: those of the following run come behind the window, those of other runs
    /// never.
    int stepsTo(const FrameKey& key) const;
    static constexpr int never = 0x7FFFFFFF;
};

}  // namespace cinedisc
