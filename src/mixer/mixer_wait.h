#pragma once

#include "core/event_wait.h"
#include "platform/clock.h"
#include "platform/event_loop.h"

namespace Corvetape {

/// The waits of the searches: events are handled meanwhile, so that capture goes on and levels come in. They
/// are over at once when the program ends, and so is whoever waits.
class MixerWait {
 public:
    /// Both outlive it.
    MixerWait(const Clock& clock, EventLoop& loop) : Time(clock), Loop(loop) {}

    /// False if the program has ended meanwhile: nothing more is to be done.
    bool For(float milliseconds) {
        if (!Over) PauseWithEvents(Time, Loop, milliseconds, Over);
        return !Over;
    }

    /// The program ends.
    void End() { Over = true; }
    bool Ended() const { return Over; }

 private:
    const Clock& Time;
    EventLoop& Loop;
    bool Over = false;
};

}  // namespace Corvetape
