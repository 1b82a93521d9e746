#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/nesting_loop.h"
#include "platform/virtual/sim_loop.h"

namespace Corvetape::Test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

class NestingLoop : public testing::Test {
 protected:
    SimClock Clock;
    SimLoop Below{Clock};
    std::unique_ptr<EventLoop> Loop = NestingView(Below);
    std::vector<std::string> Notes;
};

TEST_F(NestingLoop, ItsTimersFireWhileTheirOwnHandlerWaitsInALoop) {
    int calls = 0;
    const auto timer = Loop->NewTimer([&] {
        if (++calls > 1) return;
        Below.RunFor(170ms);  // as a box does
        EXPECT_EQ(calls, 4);
    });
    timer->Start(50ms, TimerPrecision::Coarse);
    Below.RunFor(60ms);
    EXPECT_EQ(calls, 4);
}

TEST_F(NestingLoop, ATimerThatIsStoppedAndStartedAgainFiresAgain) {
    int calls = 0;
    const auto timer = Loop->NewTimer([&] { ++calls; });
    timer->Start(50ms, TimerPrecision::Coarse);
    Below.RunFor(60ms);
    timer->Stop();
    EXPECT_FALSE(timer->Active());
    Below.RunFor(200ms);
    EXPECT_EQ(calls, 1);
    timer->Start(50ms, TimerPrecision::Coarse);
    EXPECT_TRUE(timer->Active());
    Below.RunFor(60ms);
    EXPECT_EQ(calls, 2);
}

TEST_F(NestingLoop, ATimerMayGoInItsOwnHandler) {
    std::unique_ptr<LoopTimer> timer;
    timer = Loop->NewTimer([&] {
        timer.reset();
        Notes.emplace_back("gone");
    });
    timer->Start(50ms, TimerPrecision::Coarse);
    Below.RunFor(200ms);
    EXPECT_THAT(Notes, ElementsAre("gone"));
}

TEST_F(NestingLoop, KeepsItsTimersAheadOfTheLaterOnesOfTheSameMoment) {
    const auto first = Loop->NewTimer([&] { Notes.emplace_back("first"); });
    const auto second = Below.NewTimer([&] { Notes.emplace_back("second"); });
    first->Start(50ms, TimerPrecision::Coarse);
    second->Start(50ms, TimerPrecision::Coarse);
    Below.RunFor(50ms);
    EXPECT_THAT(Notes, ElementsAre("first", "second"));
}

}  // namespace
}  // namespace Corvetape::Test
