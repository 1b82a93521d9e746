#include "platform/linux/loop/linux_clock.h"

#include <time.h>

namespace Corvetape {

DateTime LinuxClock::LocalNow() const {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    tzset();  // localtime_r alone would keep the time zone of the program's start
    tm local{};
    localtime_r(&now.tv_sec, &local);
    DateTime time;
    time.Year = local.tm_year + 1900;
    time.Month = local.tm_mon + 1;
    time.Day = local.tm_mday;
    time.Hour = local.tm_hour;
    time.Minute = local.tm_min;
    time.Second = local.tm_sec < 60 ? local.tm_sec : 59;  // a leap second counts to its minute
    time.Millisecond = static_cast<int32_t>(now.tv_nsec / 1'000'000);
    return time;
}

int64_t LinuxClock::MonotonicNanoseconds() const {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return int64_t{now.tv_sec} * 1'000'000'000 + now.tv_nsec;
}

}  // namespace Corvetape
