#include "recording/automatic/slot_clock.h"

#include <gtest/gtest.h>

namespace Corvetape::Test {
namespace {

/// The input stands still 5 s after its beginning, by 9 s.
SlotClock StandingClock() {
    SlotClock clock;
    clock.SlotAt(0, 0);
    clock.SlotAt(5000, 100);
    clock.SlotAt(9000, 100);
    return clock;
}

TEST(SlotClock, BuffersThatPileUpAreOnTheirWay) {
    SlotClock clock;
    for (int64_t slot = 0; slot < 100; ++slot) EXPECT_EQ(clock.SlotAt(slot * 50, slot), slot);
    EXPECT_EQ(clock.SlotAt(100 * 50 + 1000, 100), 120);
    EXPECT_FALSE(clock.StandsStill());
    EXPECT_EQ(clock.SlotAt(100 * 50 + 1050, 121), 121) << "they were";
}

TEST(SlotClock, AnInputThatStandsStillHasNothingOnItsWay) {
    SlotClock clock;
    clock.SlotAt(0, 0);
    clock.SlotAt(5000, 100);
    EXPECT_EQ(clock.SlotAt(7000, 100), 140);
    EXPECT_FALSE(clock.StandsStill());
    EXPECT_EQ(clock.SlotAt(7050, 100), 100);
    EXPECT_TRUE(clock.StandsStill());
    EXPECT_EQ(clock.SlotAt(60'000, 100), 100);
}

TEST(SlotClock, AfterAStandstillTheClockIsNotAhead) {
    SlotClock clock = StandingClock();
    ASSERT_TRUE(clock.StandsStill());
    EXPECT_EQ(clock.SlotAt(9500, 110), 110);
    EXPECT_FALSE(clock.StandsStill());
    EXPECT_EQ(clock.SlotAt(10'000, 120), 120);
}

TEST(SlotClock, AnInputThatIsOpenedAnewDoesNotStandStill) {
    SlotClock clock = StandingClock();
    EXPECT_EQ(clock.SlotAt(9100, 0), 0);
    EXPECT_FALSE(clock.StandsStill());
}

}  // namespace
}  // namespace Corvetape::Test
