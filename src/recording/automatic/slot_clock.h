#pragma once

#include <cstdint>
#include <deque>

namespace Corvetape {

/// Finds which slot of 50 ms is being heard at a moment, though it may not have arrived yet: on a busy
/// machine buffers pile up and come all at once. They are late at times, but never early, so that the least
/// delay of the last few seconds is the true one.
class SlotClock {
 public:
    /// Further ahead than so many slots of what has arrived nothing is on its way: the input stands still.
    static constexpr int64_t MostWaiting = 40;

    /// The slot that is heard at `nowMs` of the monotonic clock, by when `arrived` slots have arrived: at
    /// least `arrived`, and just that if the input stands still. Slots that are fewer than at the call before
    /// are counted anew.
    int64_t SlotAt(int64_t nowMs, int64_t arrived);

    /// By the last call nothing has arrived for so long that nothing is on its way.
    bool StandsStill() const { return Stands; }

 private:
    /// When the first slot would have arrived, by what a moment has shown.
    struct Moment {
        int64_t AtMs = 0;
        int64_t FirstSlotMs = 0;
    };

    std::deque<Moment> Moments;
    int64_t Arrived = 0;
    int64_t ArrivedAtMs = 0;  ///< when the last of them was first seen
    bool Stands = false;
};

}  // namespace Corvetape
