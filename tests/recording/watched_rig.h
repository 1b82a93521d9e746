#pragma once

#include "recording/tick_rig.h"

namespace Corvetape::Test {

/// A session that the tick looks after by the clock of the machine.
class WatchedRig : public TickRig {
 public:
    WatchedRig() : TickRig(&Machine.Clock) {
        Options.EncodeDelay = 0;
        Pause.QuitAfterSilence = 300;
    }

    /// Whole clock seconds go by.
    void Seconds(int count) {
        for (int i = 0; i < count; ++i) {
            Machine.Clock.Advance(std::chrono::seconds(1));
            Watch.TimerFired();
        }
    }
};

}  // namespace Corvetape::Test
