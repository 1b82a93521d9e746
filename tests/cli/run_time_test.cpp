#include "cli/run_time.h"

#include <gtest/gtest.h>

namespace Corvetape {
namespace {

TEST(RunTime, IsThatOfTheInputWhileItGivesSound) {
    RunTime time;
    for (int second = 0; second <= 60; ++second) time.Look(1000 + second, second * 0.5);
    EXPECT_FALSE(time.InputIsGone());
    EXPECT_DOUBLE_EQ(time.Seconds(), 30);
}

TEST(RunTime, AnInputThatStandsStillForTenSecondsIsNotGone) {
    RunTime time;
    time.Look(0, 0);
    time.Look(1, 1);
    time.Look(11, 1);
    EXPECT_FALSE(time.InputIsGone());
    EXPECT_DOUBLE_EQ(time.Seconds(), 1);
}

TEST(RunTime, IsThatOfTheClockWhileTheInputIsGone) {
    RunTime time;
    time.Look(0, 0);
    time.Look(1, 1);
    time.Look(11.5, 1);
    EXPECT_TRUE(time.InputIsGone());
    EXPECT_DOUBLE_EQ(time.Seconds(), 11.5);
    time.Look(20, 1);
    EXPECT_DOUBLE_EQ(time.Seconds(), 20);
}

TEST(RunTime, CountsAnAbsenceThatIsOver) {
    RunTime time;
    time.Look(0, 0);
    time.Look(5, 5);
    time.Look(25, 5);
    time.Look(26, 6);
    EXPECT_FALSE(time.InputIsGone());
    EXPECT_DOUBLE_EQ(time.Seconds(), 27) << "6 of the input and 21 by the clock";
}

TEST(RunTime, AnInputThatNeverGaveAnythingIsGoneToo) {
    RunTime time;
    for (int second = 0; second <= 13; ++second) time.Look(second, 0);
    EXPECT_TRUE(time.InputIsGone());
    EXPECT_DOUBLE_EQ(time.Seconds(), 13);
}

TEST(RunTime, GoesOnWhenTheInputIsOpenedAgain) {
    RunTime time;
    time.Look(0, 0);
    time.Look(7, 7);
    time.Look(9, 1);
    EXPECT_DOUBLE_EQ(time.Seconds(), 8);
}

}  // namespace
}  // namespace Corvetape
