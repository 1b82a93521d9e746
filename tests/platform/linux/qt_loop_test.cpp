#include "platform/linux/loop/qt_loop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <thread>

#include "support/live_session.h"

namespace Corvetape {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using std::chrono::steady_clock;
using testing::ElementsAre;

class QtLoopTest : public testing::Test {
 protected:
    LiveSession session;
    QtLoop& loop = session.Loop;
};

TEST_F(QtLoopTest, ATimerFiresPeriodicallyFirstAfterOneInterval) {
    int fired = 0;
    const auto timer = loop.NewTimer([&] {
        if (++fired % 5 == 0) loop.Quit();
    });
    EXPECT_FALSE(timer->Active());
    const auto tookFive = [&] {
        const auto began = steady_clock::now();
        timer->Start(milliseconds(20), TimerPrecision::Precise);
        EXPECT_TRUE(timer->Active());
        loop.Run();
        return std::chrono::duration<double>(steady_clock::now() - began).count();
    };
    double took = tookFive();
    EXPECT_EQ(fired, 5);
    // On a busy machine it may have to wait for others.
    for (int i = 0; i < 20 && took >= 0.2; ++i) took = tookFive();
    EXPECT_GE(took, 0.1);
    EXPECT_LT(took, 0.2);
}

TEST_F(QtLoopTest, AStoppedTimerIsSilentAndCostsNothing) {
    int fired = 0;
    const auto silent = loop.NewTimer([&] { ++fired; });
    silent->Start(milliseconds(1), TimerPrecision::Precise);
    silent->Stop();
    EXPECT_FALSE(silent->Active());
    const auto end = loop.NewTimer([&] { loop.Quit(); });
    end->Start(milliseconds(200), TimerPrecision::Precise);
    rusage before{};
    rusage after{};
    getrusage(RUSAGE_THREAD, &before);
    loop.Run();
    getrusage(RUSAGE_THREAD, &after);
    EXPECT_EQ(fired, 0);
    EXPECT_LE(after.ru_nvcsw - before.ru_nvcsw, 5) << "wake-ups of the thread";
}

TEST_F(QtLoopTest, ATimerMayDestroyItselfAndAnother) {
    std::unique_ptr<LoopTimer> self;
    std::unique_ptr<LoopTimer> other;
    int otherFired = 0;
    other = loop.NewTimer([&] { ++otherFired; });
    self = loop.NewTimer([&] {
        other.reset();
        self.reset();
        loop.Quit();
    });
    self->Start(milliseconds(5), TimerPrecision::Precise);
    other->Start(milliseconds(6), TimerPrecision::Precise);
    loop.Sleep(milliseconds(10));  // both are due at once
    loop.Run();
    EXPECT_EQ(otherFired, 0);
    EXPECT_EQ(self, nullptr);
}

TEST_F(QtLoopTest, ATimerDoesNotFireWithinItsOwnHandlerButOthersDo) {
    int own = 0;
    int others = 0;
    const auto other = loop.NewTimer([&] { ++others; });
    const auto timer = loop.NewTimer([&] {
        ++own;
        const auto limit = steady_clock::now() + seconds(10);
        while (others < 4 && steady_clock::now() < limit) loop.ProcessEvents();
        loop.Quit();
    });
    other->Start(milliseconds(10), TimerPrecision::Precise);
    timer->Start(milliseconds(5), TimerPrecision::Precise);
    loop.Run();
    EXPECT_EQ(own, 1);
    EXPECT_GE(others, 4);
}

TEST_F(QtLoopTest, PostedWorkRunsInTheOrderOfPosting) {
    std::vector<int> order;
    for (int i = 0; i < 4; ++i) loop.Post([&, i] { order.push_back(i); });
    EXPECT_TRUE(order.empty());
    loop.ProcessEvents();
    EXPECT_THAT(order, ElementsAre(0, 1, 2, 3));
}

TEST_F(QtLoopTest, WorkOfManyThreadsAllArrivesEachThreadInItsOrder) {
    constexpr int Threads = 4;
    constexpr int Each = 5000;
    std::vector<int> next(Threads, 0);
    int wrong = 0;
    int all = 0;
    std::vector<std::thread> threads;
    for (size_t thread = 0; thread < Threads; ++thread) {
        threads.emplace_back([&, thread] {
            for (int i = 0; i < Each; ++i) {
                loop.Post([&, thread, i] {
                    if (next[thread]++ != i) ++wrong;
                    if (++all == Threads * Each) loop.Quit();
                });
            }
        });
    }
    loop.Run();
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(all, Threads * Each);
    EXPECT_EQ(wrong, 0);
}

TEST_F(QtLoopTest, WorkThatPostsItselfDoesNotKeepProcessEvents) {
    int runs = 0;
    std::function<void()> again = [&] {
        ++runs;
        loop.Post(again);
    };
    loop.Post(again);
    loop.ProcessEvents();
    EXPECT_GE(runs, 1);
    EXPECT_LE(runs, 3);
}

TEST_F(QtLoopTest, ANestedLoopHandlesTheWorkAfterTheOneThatOpenedIt) {
    std::vector<int> order;
    loop.Post([&] {
        order.push_back(1);
        loop.Run();
        order.push_back(3);
        loop.Quit();
    });
    loop.Post([&] {
        order.push_back(2);
        loop.Quit();
    });
    loop.Run();
    EXPECT_THAT(order, ElementsAre(1, 2, 3));
}

TEST_F(QtLoopTest, ProcessEventsFiresWhatIsDueAndReturns) {
    int fired = 0;
    const auto timer = loop.NewTimer([&] { ++fired; });
    timer->Start(milliseconds(10), TimerPrecision::Coarse);
    loop.ProcessEvents();
    EXPECT_EQ(fired, 0);
    loop.Sleep(milliseconds(35));
    EXPECT_EQ(fired, 0);
    loop.ProcessEvents();
    EXPECT_EQ(fired, 1);
}

TEST_F(QtLoopTest, ATimerOfMoreThan24DaysIsPossible) {
    const auto timer = loop.NewTimer([] { FAIL(); });
    timer->Start(std::chrono::hours(24 * 60), TimerPrecision::Precise);
    loop.ProcessEvents();
    EXPECT_TRUE(timer->Active());
}

TEST_F(QtLoopTest, ATimerMayOutliveItsLoop) {
    std::unique_ptr<LoopTimer> timer;
    {
        QtLoop shortLived;
        timer = shortLived.NewTimer([] { FAIL(); });
        timer->Start(milliseconds(1), TimerPrecision::Precise);
    }
    loop.Sleep(milliseconds(3));
    loop.ProcessEvents();
    timer->Start(milliseconds(1), TimerPrecision::Precise);
    timer.reset();
}

}  // namespace
}  // namespace Corvetape
