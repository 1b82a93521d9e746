#include "platform/virtual/sim_loop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

namespace Corvetape {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

constexpr int64_t Millisecond = 1'000'000;

class SimLoopTest : public testing::Test {
 protected:
    std::unique_ptr<LoopTimer> Every(std::chrono::milliseconds interval, std::function<void()> fired) {
        auto timer = Loop.NewTimer(std::move(fired));
        timer->Start(interval, TimerPrecision::Coarse);
        return timer;
    }
    std::function<void()> Noting(const std::string& word) {
        return [this, word] { Notes.push_back(word + "@" + std::to_string(NowMs())); };
    }
    int64_t NowMs() const { return Clock.MonotonicNanoseconds() / Millisecond; }

    SimClock Clock;
    SimLoop Loop{Clock};
    std::vector<std::string> Notes;
};

TEST_F(SimLoopTest, ATimerFiresFirstAfterOneInterval) {
    const auto timer = Every(50ms, Noting("a"));
    Loop.RunFor(149ms);
    EXPECT_THAT(Notes, ElementsAre("a@50", "a@100"));
    EXPECT_EQ(NowMs(), 149);
}

TEST_F(SimLoopTest, TheEndOfRunForIsIncluded) {
    const auto timer = Every(50ms, Noting("a"));
    Loop.RunFor(50ms);
    EXPECT_THAT(Notes, ElementsAre("a@50"));
}

TEST_F(SimLoopTest, OfTimersDueAtTheSameTimeTheOneMadeFirstFiresFirst) {
    const auto first = Loop.NewTimer(Noting("first"));
    const auto second = Loop.NewTimer(Noting("second"));
    second->Start(100ms, TimerPrecision::Coarse);
    first->Start(50ms, TimerPrecision::Precise);
    Loop.RunFor(100ms);
    EXPECT_THAT(Notes, ElementsAre("first@50", "first@100", "second@100"));
}

TEST_F(SimLoopTest, AnEarlierTimerComesBeforeOneMadeFirst) {
    const auto first = Every(60ms, Noting("first"));
    const auto second = Every(50ms, Noting("second"));
    Loop.Sleep(70ms);
    Loop.ProcessEvents();
    EXPECT_THAT(Notes, ElementsAre("second@70", "first@70"));
}

TEST_F(SimLoopTest, StartAgainBeginsANewInterval) {
    const auto timer = Every(50ms, Noting("a"));
    Loop.RunFor(40ms);
    timer->Start(20ms, TimerPrecision::Coarse);
    Loop.RunFor(20ms);
    EXPECT_THAT(Notes, ElementsAre("a@60"));
}

TEST_F(SimLoopTest, AnIntervalBelowOneMillisecondCountsAsOne) {
    const auto timer = Every(0ms, Noting("a"));
    Loop.RunFor(2ms);
    EXPECT_THAT(Notes, ElementsAre("a@1", "a@2"));
}

TEST_F(SimLoopTest, AStoppedTimerIsSilent) {
    const auto timer = Every(50ms, Noting("a"));
    EXPECT_TRUE(timer->Active());
    timer->Stop();
    EXPECT_FALSE(timer->Active());
    Loop.RunFor(1s);
    EXPECT_TRUE(Notes.empty());
}

TEST_F(SimLoopTest, ATimerMayStopItself) {
    std::unique_ptr<LoopTimer> timer;
    timer = Every(50ms, [&] {
        Noting("a")();
        timer->Stop();
    });
    Loop.RunFor(1s);
    EXPECT_THAT(Notes, ElementsAre("a@50"));
}

TEST_F(SimLoopTest, ATimerMayDestroyItself) {
    std::unique_ptr<LoopTimer> timer;
    timer = Every(50ms, [this, &timer, text = std::string(100, 'x')] {
        timer.reset();
        Notes.push_back(text.substr(0, 1));  // what the handler holds is still there
    });
    Loop.RunFor(1s);
    EXPECT_THAT(Notes, ElementsAre("x"));
}

TEST_F(SimLoopTest, ATimerMayDestroyAnotherOneThatIsDue) {
    std::unique_ptr<LoopTimer> second;
    const auto first = Every(50ms, [&] {
        Noting("first")();
        second.reset();
    });
    second = Every(50ms, Noting("second"));
    Loop.RunFor(60ms);
    EXPECT_THAT(Notes, ElementsAre("first@50"));
}

TEST_F(SimLoopTest, ATimerMayStartItselfWithAnotherInterval) {
    std::unique_ptr<LoopTimer> timer;
    timer = Every(50ms, [&] {
        Noting("a")();
        timer->Start(70ms, TimerPrecision::Coarse);
    });
    Loop.RunFor(200ms);
    EXPECT_THAT(Notes, ElementsAre("a@50", "a@120", "a@190"));
}

TEST_F(SimLoopTest, ALateTimerFiresOnceAndKeepsItsRhythm) {
    const auto timer = Every(50ms, Noting("a"));
    Loop.Sleep(175ms);
    Loop.RunFor(30ms);
    EXPECT_THAT(Notes, ElementsAre("a@175", "a@200"));
}

TEST_F(SimLoopTest, ATimerDoesNotFireWithinItsOwnHandlerButOthersDo) {
    const auto slow = Every(50ms, [this] {
        Notes.emplace_back("in");
        Loop.Sleep(60ms);
        Loop.ProcessEvents();
        Notes.emplace_back("out");
    });
    const auto other = Every(100ms, Noting("other"));
    Loop.RunFor(110ms);
    EXPECT_THAT(Notes, ElementsAre("in", "other@110", "out", "in", "out"));
}

TEST_F(SimLoopTest, RunForWithinAHandlerLetsOthersGoOn) {
    const auto waiting = Every(100ms, [this] {
        Loop.RunFor(30ms);
        Noting("waited")();
    });
    const auto other = Every(60ms, Noting("other"));
    Loop.RunFor(130ms);
    EXPECT_THAT(Notes, ElementsAre("other@60", "other@120", "waited@130"));
}

TEST_F(SimLoopTest, SleepMovesTimeWithoutHandlingEvents) {
    const auto timer = Every(50ms, Noting("a"));
    Loop.Post(Noting("posted"));
    Loop.Sleep(80ms);
    EXPECT_EQ(NowMs(), 80);
    EXPECT_TRUE(Notes.empty());
}

TEST_F(SimLoopTest, ProcessEventsDoesNotMoveTime) {
    const auto timer = Every(50ms, Noting("a"));
    Loop.ProcessEvents();
    EXPECT_TRUE(Notes.empty());
    EXPECT_EQ(NowMs(), 0);
}

TEST_F(SimLoopTest, ProcessEventsHandlesAllThatWasDueWhenItWasCalledThoughAHandlerSleeps) {
    const auto slow = Every(50ms, [this] {
        Noting("slow")();
        Loop.Sleep(10ms);
    });
    const auto other = Every(50ms, Noting("other"));
    const auto later = Every(55ms, Noting("later"));
    Loop.Sleep(50ms);
    Loop.ProcessEvents();
    EXPECT_THAT(Notes, ElementsAre("slow@50", "other@60"));
}

TEST_F(SimLoopTest, PostedWorkRunsInTheOrderOfPostingAndBeforeTimers) {
    const auto timer = Every(50ms, Noting("timer"));
    Loop.Sleep(50ms);
    Loop.Post([this] {
        Noting("one")();
        Loop.Post(Noting("three"));
    });
    Loop.Post(Noting("two"));
    Loop.ProcessEvents();
    EXPECT_THAT(Notes, ElementsAre("one@50", "two@50", "three@50", "timer@50"));
}

TEST_F(SimLoopTest, WorkOfManyThreadsAllArrivesEachThreadInItsOrder) {
    constexpr int threads = 4;
    constexpr int works = 500;
    std::vector<std::vector<int>> seen(threads);
    {
        std::vector<std::jthread> posters;
        for (int thread = 0; thread < threads; ++thread) {
            posters.emplace_back([this, thread, &seen] {
                for (int work = 0; work < works; ++work) {
                    Loop.Post([&seen, thread, work] { seen[static_cast<size_t>(thread)].push_back(work); });
                }
            });
        }
        Loop.ProcessEvents();
    }
    Loop.ProcessEvents();
    std::vector<int> expected(works);
    for (int work = 0; work < works; ++work) expected[static_cast<size_t>(work)] = work;
    for (const auto& order : seen) EXPECT_EQ(order, expected);
}

TEST_F(SimLoopTest, QuitEndsRunAfterThePresentEvent) {
    const auto quitter = Every(100ms, [this] {
        Loop.Quit();
        Noting("quit")();
    });
    const auto other = Every(100ms, Noting("other"));
    Loop.Run();
    EXPECT_THAT(Notes, ElementsAre("quit@100"));
    EXPECT_TRUE(Loop.QuitWanted());
    Loop.Run();
    EXPECT_THAT(Notes, ElementsAre("quit@100", "other@100", "quit@200"));
}

TEST_F(SimLoopTest, RunReturnsWhenNothingCanHappenAnyMore) {
    std::unique_ptr<LoopTimer> timer;
    timer = Every(50ms, [&] { timer->Stop(); });
    Loop.Run();
    EXPECT_EQ(NowMs(), 50);
    EXPECT_FALSE(Loop.QuitWanted());
}

TEST_F(SimLoopTest, RunUntilStopsAtTheEventThatMadeItTrue) {
    int fired = 0;
    const auto timer = Every(50ms, [&] { ++fired; });
    EXPECT_TRUE(Loop.RunUntil([&] { return fired == 3; }, 10s));
    EXPECT_EQ(NowMs(), 150);
    EXPECT_FALSE(Loop.RunUntil([&] { return fired == 100; }, 1s));
    EXPECT_EQ(NowMs(), 1150);
}

TEST_F(SimLoopTest, APaceHookIsCalledBeforeTimeMovesOn) {
    std::vector<std::string> paces;
    Loop.PaceWith([&](int64_t virtualNs) {
        paces.push_back(std::to_string(NowMs()) + "->" + std::to_string(virtualNs / Millisecond));
    });
    const auto timer = Every(50ms, [] {});
    Loop.RunFor(120ms);
    Loop.Sleep(10ms);
    EXPECT_THAT(paces, ElementsAre("0->50", "50->100", "100->120", "120->130"));
}

TEST_F(SimLoopTest, WhatIsPostedWhileThePaceHookWaitsRunsBeforeTimeMoves) {
    bool posted = false;
    Loop.PaceWith([&](int64_t) {
        if (!std::exchange(posted, true)) Loop.Post(Noting("posted"));
    });
    const auto timer = Every(50ms, Noting("timer"));
    Loop.RunFor(50ms);
    EXPECT_THAT(Notes, ElementsAre("posted@0", "timer@50"));
}

TEST_F(SimLoopTest, PacingKeepsVirtualTimeAtAMultipleOfRealTime) {
    SimClock real;
    std::vector<int64_t> waits;
    Loop.PaceWith(PaceAgainst(real, Clock, 20, [&](std::chrono::nanoseconds wait) {
        waits.push_back(wait.count());
        real.Advance(wait);
    }));
    bool stalled = false;
    const auto timer = Every(1000ms, [&] {
        if (!std::exchange(stalled, true)) real.Advance(70ms);  // the program is busy
    });
    Loop.RunFor(4s);
    // A second takes 50 ms; the stall is caught up without waiting.
    EXPECT_THAT(waits, ElementsAre(50 * Millisecond, 30 * Millisecond, 50 * Millisecond));
    EXPECT_EQ(real.MonotonicNanoseconds(), 200 * Millisecond);
}

TEST_F(SimLoopTest, ATimerMayOutliveItsLoop) {
    SimClock clock;
    auto loop = std::make_unique<SimLoop>(clock);
    const auto timer = loop->NewTimer([] {});
    timer->Start(50ms, TimerPrecision::Coarse);
    loop.reset();
    EXPECT_TRUE(timer->Active());
    timer->Stop();
    EXPECT_FALSE(timer->Active());
}

TEST_F(SimLoopTest, ADayOfBuffersIsAHandfulOfEventsPerSecondAndNoneIsLost) {
    uint64_t buffers = 0;
    uint64_t seconds = 0;
    const auto buffer = Every(50ms, [&] { ++buffers; });
    const auto second = Every(500ms, [&] { ++seconds; });
    Loop.RunFor(24h);
    EXPECT_EQ(buffers, 24U * 3600 * 20);
    EXPECT_EQ(seconds, 24U * 3600 * 2);
    EXPECT_EQ(Loop.EventCount(), buffers + seconds);
}

}  // namespace
}  // namespace Corvetape
