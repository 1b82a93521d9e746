#include "platform/linux/loop/timer_queue.h"

#include <gtest/gtest.h>

namespace Corvetape {
namespace {

using std::chrono::milliseconds;

constexpr int64_t Ms = 1'000'000;

TEST(TimerQueue, OfTimersDueAtTheSameTimeTheOneMadeFirstFiresFirst) {
    TimerQueue queue;
    const auto first = queue.Add({});
    const auto second = queue.Add({});
    TimerQueue::Start(*second, 0, milliseconds(10), TimerPrecision::Precise);
    TimerQueue::Start(*first, 0, milliseconds(10), TimerPrecision::Precise);
    EXPECT_EQ(queue.TakeDue(10 * Ms), first);
    EXPECT_EQ(queue.TakeDue(10 * Ms), second);
    EXPECT_EQ(queue.TakeDue(10 * Ms), nullptr);
}

TEST(TimerQueue, AnEarlierTimerComesBeforeOneMadeFirst) {
    TimerQueue queue;
    const auto slow = queue.Add({});
    const auto fast = queue.Add({});
    TimerQueue::Start(*slow, 0, milliseconds(10), TimerPrecision::Precise);
    TimerQueue::Start(*fast, 0, milliseconds(9), TimerPrecision::Precise);
    EXPECT_EQ(queue.TakeDue(10 * Ms), fast);
    EXPECT_EQ(queue.TakeDue(10 * Ms), slow);
}

TEST(TimerQueue, ALateTimerFiresOnceAndKeepsItsBeat) {
    TimerQueue queue;
    const auto timer = queue.Add({});
    TimerQueue::Start(*timer, 0, milliseconds(10), TimerPrecision::Precise);
    EXPECT_EQ(queue.TakeDue(57 * Ms), timer);
    EXPECT_EQ(queue.TakeDue(57 * Ms), nullptr);
    EXPECT_EQ(queue.NextWake(), 60 * Ms);
}

TEST(TimerQueue, ACoarseTimerMayComeATwentiethOfItsIntervalLate) {
    TimerQueue queue;
    const auto coarse = queue.Add({});
    TimerQueue::Start(*coarse, 0, milliseconds(200), TimerPrecision::Coarse);
    EXPECT_EQ(queue.NextWake(), 210 * Ms);
    EXPECT_EQ(queue.TakeDue(200 * Ms), coarse) << "it is due before, should the loop wake up anyway";
}

TEST(TimerQueue, CoarseTimersShareAWakeUp) {
    TimerQueue queue;
    const auto one = queue.Add({});
    const auto two = queue.Add({});
    TimerQueue::Start(*one, 0, milliseconds(200), TimerPrecision::Coarse);
    TimerQueue::Start(*two, 7 * Ms, milliseconds(200), TimerPrecision::Coarse);
    const int64_t wake = *queue.NextWake();
    EXPECT_EQ(queue.TakeDue(wake), one);
    EXPECT_EQ(queue.TakeDue(wake), two);
}

TEST(TimerQueue, StoppedTimersNeedNoWakeUp) {
    TimerQueue queue;
    const auto timer = queue.Add({});
    EXPECT_FALSE(queue.NextWake());
    TimerQueue::Start(*timer, 0, milliseconds(10), TimerPrecision::Precise);
    queue.Remove(timer);
    EXPECT_FALSE(queue.NextWake());
    EXPECT_EQ(queue.TakeDue(100 * Ms), nullptr);
}

TEST(TimerQueue, AnIntervalBelowOneMillisecondCountsAsOne) {
    TimerQueue queue;
    const auto timer = queue.Add({});
    TimerQueue::Start(*timer, 0, milliseconds(0), TimerPrecision::Precise);
    EXPECT_EQ(queue.NextWake(), Ms);
}

}  // namespace
}  // namespace Corvetape
