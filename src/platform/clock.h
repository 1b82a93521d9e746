#pragma once

#include <compare>
#include <cstdint>

namespace Corvetape {

/// Local date and time of day, as a calendar shows it. Months and days count from 1.
struct DateTime {
    int32_t Year = 2000;
    int32_t Month = 1;
    int32_t Day = 1;
    int32_t Hour = 0;
    int32_t Minute = 0;
    int32_t Second = 0;
    int32_t Millisecond = 0;

    auto operator<=>(const DateTime&) const = default;
};

/// The only source of time for the logic.
class Clock {
 public:
    virtual ~Clock() = default;

    /// The wall clock in local time. It may jump when somebody sets it.
    virtual DateTime LocalNow() const = 0;

    /// Nanoseconds of a clock that nobody sets; only differences mean something.
    virtual int64_t MonotonicNanoseconds() const = 0;

    /// The millisecond clock as a signed 32-bit number. Past 2147483647 (about 24.8 days) it goes on from
    /// -2147483648.
    int32_t TimeGetTime() const {
        return static_cast<int32_t>(static_cast<uint32_t>(MonotonicNanoseconds() / 1'000'000));
    }
};

/// Seconds since midnight with their fraction, in single precision: the precision is part of the rules
/// that compare such times.
inline float SecondsSinceMidnight(const DateTime& time) {
    const int32_t seconds = (time.Hour * 60 + time.Minute) * 60 + time.Second;
    return static_cast<float>(static_cast<double>(seconds) + time.Millisecond / 1000.0);
}

}  // namespace Corvetape
