#include "platform/virtual/sim_clock.h"

#include <gtest/gtest.h>

namespace Corvetape {
namespace {

using namespace std::chrono_literals;

TEST(SimClock, TheWallClockRunsAlongWithTheMonotonicOne) {
    SimClock clock({2024, 5, 14, 12, 0, 0, 0}, 5'000);
    clock.Advance(90s + 250ms);
    EXPECT_EQ(clock.LocalNow(), (DateTime{2024, 5, 14, 12, 1, 30, 250}));
    EXPECT_EQ(clock.MonotonicNanoseconds(), 90'250'005'000);
}

TEST(SimClock, MidnightGoesOverToTheNextDay) {
    SimClock clock({2024, 12, 31, 23, 59, 59, 950});
    clock.Advance(49ms);
    EXPECT_EQ(clock.LocalNow(), (DateTime{2024, 12, 31, 23, 59, 59, 999}));
    clock.Advance(1ms);
    EXPECT_EQ(clock.LocalNow(), (DateTime{2025, 1, 1, 0, 0, 0, 0}));
}

TEST(SimClock, FebruaryHas29DaysInLeapYearsOnly) {
    const auto dayAfter = [](const DateTime& day) {
        SimClock clock(day);
        clock.Advance(24h);
        return clock.LocalNow();
    };
    EXPECT_EQ(dayAfter({2024, 2, 28}), (DateTime{2024, 2, 29}));
    EXPECT_EQ(dayAfter({2024, 2, 29}), (DateTime{2024, 3, 1}));
    EXPECT_EQ(dayAfter({2023, 2, 28}), (DateTime{2023, 3, 1}));
    EXPECT_EQ(dayAfter({2000, 2, 28}), (DateTime{2000, 2, 29}));
    EXPECT_EQ(dayAfter({1900, 2, 28}), (DateTime{1900, 3, 1}));
    EXPECT_EQ(dayAfter({2100, 2, 28}), (DateTime{2100, 3, 1}));
}

TEST(SimClock, SettingTheWallClockBackLeavesTheMonotonicOne) {
    SimClock clock({2024, 10, 27, 3, 0, 0, 0});
    clock.Advance(10s);
    const int64_t monotonic = clock.MonotonicNanoseconds();
    clock.ShiftWall(-1h);
    EXPECT_EQ(clock.LocalNow(), (DateTime{2024, 10, 27, 2, 0, 10, 0}));
    EXPECT_EQ(clock.MonotonicNanoseconds(), monotonic);

    clock.SetLocalNow({1999, 12, 31, 23, 59, 59, 0});
    clock.Advance(1s);
    EXPECT_EQ(clock.LocalNow(), (DateTime{2000, 1, 1, 0, 0, 0, 0}));
    EXPECT_EQ(clock.MonotonicNanoseconds(), monotonic + 1'000'000'000);
}

TEST(SimClock, TimeNeverRunsBackward) {
    SimClock clock;
    clock.Advance(1s);
    clock.Advance(-1s);
    EXPECT_EQ(clock.MonotonicNanoseconds(), 1'000'000'000);
}

TEST(SimClock, TheMillisecondClockWrapsToItsLowestNumber) {
    SimClock clock(SimClock::DefaultWallTime, SimClock::NanosecondsToWrap - 1'000'000);
    EXPECT_EQ(clock.TimeGetTime(), 2147483647);
    clock.Advance(1ms);
    EXPECT_EQ(clock.TimeGetTime(), -2147483647 - 1);
}

TEST(SimClock, CalendarTimesGoThereAndBackOverCenturies) {
    for (const DateTime& time :
         {DateTime{1, 1, 1, 0, 0, 0, 0}, DateTime{1601, 3, 1, 23, 59, 59, 999},
          DateTime{1969, 12, 31, 23, 59, 59, 999}, DateTime{1970, 1, 1, 0, 0, 0, 0},
          DateTime{2038, 1, 19, 3, 14, 8, 1}, DateTime{9999, 12, 31, 12, 30, 15, 500}}) {
        EXPECT_EQ(DateTimeOf(MillisecondsOf(time)), time) << time.Year;
    }
    EXPECT_EQ(MillisecondsOf({1970, 1, 1, 0, 0, 0, 0}), 0);
    EXPECT_EQ(MillisecondsOf({1969, 12, 31, 23, 59, 59, 999}), -1);
    EXPECT_EQ(MillisecondsOf({2001, 9, 9, 1, 46, 40, 0}), 1'000'000'000'000);
}

TEST(SimClock, ADayPastItsMonthCountsIntoTheNext) {
    EXPECT_EQ(DateTimeOf(MillisecondsOf({2024, 4, 31})), (DateTime{2024, 5, 1}));
    EXPECT_EQ(DateTimeOf(MillisecondsOf({2024, 13, 1})), (DateTime{2025, 1, 1}));
}

}  // namespace
}  // namespace Corvetape
