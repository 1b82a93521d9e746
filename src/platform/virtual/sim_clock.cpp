#include "platform/virtual/sim_clock.h"

namespace Corvetape {

namespace {

constexpr int64_t MillisecondsPerDay = 86'400'000;
constexpr int64_t NanosecondsPerMillisecond = 1'000'000;

int64_t FloorDivide(int64_t number, int64_t divisor) {
    const int64_t quotient = number / divisor;
    return number % divisor < 0 ? quotient - 1 : quotient;
}

}  // namespace

int64_t MillisecondsOf(const DateTime& time) {
    using namespace std::chrono;
    // Months past December count into the next years, as days past their month do.
    const year_month month = year_month(year(time.Year), January) + months(time.Month - 1);
    const int64_t days = sys_days(month / 1).time_since_epoch().count() + time.Day - 1;
    const int64_t seconds = (int64_t{time.Hour} * 60 + time.Minute) * 60 + time.Second;
    return days * MillisecondsPerDay + seconds * 1000 + time.Millisecond;
}

DateTime DateTimeOf(int64_t milliseconds) {
    using namespace std::chrono;
    const int64_t dayNumber = FloorDivide(milliseconds, MillisecondsPerDay);
    auto rest = static_cast<int32_t>(milliseconds - dayNumber * MillisecondsPerDay);
    const year_month_day date{sys_days(days(static_cast<int32_t>(dayNumber)))};

    DateTime time;
    time.Year = static_cast<int>(date.year());
    time.Month = static_cast<int32_t>(static_cast<unsigned>(date.month()));
    time.Day = static_cast<int32_t>(static_cast<unsigned>(date.day()));
    time.Millisecond = rest % 1000;
    rest /= 1000;
    time.Second = rest % 60;
    rest /= 60;
    time.Minute = rest % 60;
    time.Hour = rest / 60;
    return time;
}

SimClock::SimClock(const DateTime& wall, int64_t monotonicNs)
    : Monotonic(monotonicNs), WallBaseMs(MillisecondsOf(wall)), WallBaseMonotonic(monotonicNs) {}

DateTime SimClock::LocalNow() const {
    return DateTimeOf(WallBaseMs + (Monotonic - WallBaseMonotonic) / NanosecondsPerMillisecond);
}

void SimClock::Advance(std::chrono::nanoseconds duration) {
    if (duration.count() > 0) Monotonic += duration.count();
}

void SimClock::SetLocalNow(const DateTime& wall) {
    WallBaseMs = MillisecondsOf(wall);
    WallBaseMonotonic = Monotonic;
}

void SimClock::ShiftWall(std::chrono::milliseconds shift) {
    WallBaseMs += shift.count();
}

}  // namespace Corvetape
