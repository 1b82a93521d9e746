#include "core/event_wait.h"

#include <gtest/gtest.h>

#include "core/fakes.h"

namespace Corvetape {
namespace {

class PauseTest : public testing::Test {
 protected:
    StandingClock Time;
    CountingLoop Loop{Time};
};

TEST_F(PauseTest, WaitsInStepsOfTenMillisecondsWithEvents) {
    Time.Now = {2009, 12, 31, 1, 0, 0, 0};
    PauseWithEvents(Time, Loop, 500);
    EXPECT_GE(Loop.Slept.count(), 500);
    EXPECT_LE(Loop.Slept.count(), 510);
    EXPECT_EQ(Loop.Processed, Loop.Slept.count() / 10);
}

TEST_F(PauseTest, RunsAtLeastOnce) {
    PauseWithEvents(Time, Loop, 0);
    EXPECT_EQ(Loop.Processed, 1);
    EXPECT_EQ(Loop.Slept.count(), 10);
}

TEST_F(PauseTest, HandlesWorkThatCameMeanwhile) {
    bool done = false;
    Loop.Post([&] { done = true; });
    PauseWithEvents(Time, Loop, 10);
    EXPECT_TRUE(done);
}

TEST_F(PauseTest, AcrossMidnightItLastsHalfAnHourLonger) {
    Time.Now = {2009, 12, 31, 23, 59, 59, 500};
    PauseWithEvents(Time, Loop, 1000);
    // A day counts 84600 seconds here instead of 86400: the wait is 1800 s longer.
    EXPECT_NEAR(static_cast<double>(Loop.Slept.count()), 1'801'000.0, 20.0);
}

TEST_F(PauseTest, AClockThatDoesNotMoveCountsAsPastMidnight) {
    struct StillLoop : CountingLoop {
        using CountingLoop::CountingLoop;
        void Sleep(std::chrono::milliseconds) override { ++Sleeps; }
        int Sleeps = 0;
    } loop(Time);
    PauseWithEvents(Time, loop, 5000);
    EXPECT_EQ(loop.Sleeps, 1);
}

}  // namespace
}  // namespace Corvetape
