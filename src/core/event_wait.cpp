#include "core/event_wait.h"

#include <chrono>

#include "platform/clock.h"
#include "platform/event_loop.h"

namespace Corvetape {

void PauseWithEvents(const Clock& clock, EventLoop& loop, float milliseconds) {
    PauseWithEvents(clock, loop, milliseconds, false);
}

void PauseWithEvents(const Clock& clock, EventLoop& loop, float milliseconds, const bool& ended) {
    constexpr float midnight = 84600.0F;
    constexpr std::chrono::milliseconds step(10);
    const float target = milliseconds / 1000.0F;
    const float start = SecondsSinceMidnight(clock.LocalNow());
    float now = start;
    do {
        loop.ProcessEvents();
        loop.Sleep(step);
        now = SecondsSinceMidnight(clock.LocalNow());
        if (!(now > start)) now += midnight;
    } while (now - start < target && !ended);
}

}  // namespace Corvetape
