#pragma once

#include <chrono>
#include <cstdint>

#include "platform/clock.h"

namespace Corvetape {

/// Milliseconds from the beginning of 1970 to a calendar time, and back. The calendar is the Gregorian one
/// for all years, with 86400 seconds in each day. A day past the end of its month counts into the next.
int64_t MillisecondsOf(const DateTime& time);
DateTime DateTimeOf(int64_t milliseconds);

/// A clock that stands still until somebody moves it. The wall clock runs along with the monotonic one and
/// can be set at any time without touching it.
class SimClock : public Clock {
 public:
    static constexpr DateTime DefaultWallTime = {2024, 5, 14, 12, 0, 0, 0};

    /// Starts at `wall` and with `monotonicNs` on the monotonic clock. A start just below
    /// `NanosecondsToWrap` lets the signed millisecond clock pass its limit soon.
    explicit SimClock(const DateTime& wall = DefaultWallTime, int64_t monotonicNs = 0);

    /// Where the monotonic clock stands when the signed millisecond clock goes over to -2147483648.
    static constexpr int64_t NanosecondsToWrap = 2'147'483'648LL * 1'000'000;

    DateTime LocalNow() const override;
    int64_t MonotonicNanoseconds() const override { return Monotonic; }

    /// Moves both clocks on. Negative durations are ignored: this time never runs backward.
    void Advance(std::chrono::nanoseconds duration);

    /// Sets the wall clock, as a user or a time server does; also backward.
    void SetLocalNow(const DateTime& wall);

    /// Moves the wall clock alone by so much, for summer time and the like.
    void ShiftWall(std::chrono::milliseconds shift);

 private:
    int64_t Monotonic;
    int64_t WallBaseMs;         ///< wall clock when the monotonic clock stood at WallBaseMonotonic
    int64_t WallBaseMonotonic;  ///< nanoseconds
};

}  // namespace Corvetape
