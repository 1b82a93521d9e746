#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "core/controls/controls.h"
#include "core/controls/form.h"
#include "platform/event_loop.h"

namespace Corvetape::Test {
namespace {

using std::chrono::milliseconds;

/// A loop that has nothing but timers, and time that the test moves.
class HandLoop : public EventLoop {
 public:
    std::unique_ptr<LoopTimer> NewTimer(std::function<void()> fired) override {
        return std::make_unique<HandTimer>(*this, std::move(fired));
    }
    void Post(std::function<void()> work) override { work(); }
    void ProcessEvents() override {}
    void Sleep(milliseconds duration) override { Advance(duration); }
    void Run() override {}
    void Quit() override {}

    void Advance(milliseconds duration) {
        for (milliseconds passed{0}; passed < duration; ++passed) {
            ++Now;
            for (size_t i = 0; i < Timers.size(); ++i) {
                if (Timers[i]->Due == Now) Timers[i]->Fire();
            }
        }
    }

    size_t TimerCount() const { return Timers.size(); }

 private:
    struct HandTimer : LoopTimer {
        HandTimer(HandLoop& loop, std::function<void()> fired) : Loop(loop), Fired(std::move(fired)) {
            Loop.Timers.push_back(this);
        }
        ~HandTimer() override { std::erase(Loop.Timers, this); }
        void Start(milliseconds interval, TimerPrecision) override {
            Interval = std::max(interval, milliseconds(1));
            Due = Loop.Now + Interval;
        }
        void Stop() override { Due = milliseconds(-1); }
        bool Active() const override { return Due >= milliseconds(0); }
        void Fire() {
            Due += Interval;
            Fired();
        }

        HandLoop& Loop;
        std::function<void()> Fired;
        milliseconds Interval{0};
        milliseconds Due{-1};
    };

    milliseconds Now{0};
    std::vector<HandTimer*> Timers;
};

class TimerControls : public testing::Test {
 protected:
    TimerControls() {
        Timer.Timer.Connect([this] { ++Fired; });
    }

    HandLoop Loop;
    Form Owner{"frm", ""};
    TimerControl Timer{Owner, "tmr", 200};
    int Fired = 0;
};

TEST_F(TimerControls, AreStoppedFromTheStart) {
    Timer.Attach(Loop);
    Loop.Advance(milliseconds(1000));
    EXPECT_FALSE(Timer.Running());
    EXPECT_EQ(Timer.ValueText(), "0");
    EXPECT_EQ(Fired, 0);
}

TEST_F(TimerControls, FireEachIntervalWhileTheyRun) {
    Timer.Attach(Loop);
    Timer.Running(true);
    Loop.Advance(milliseconds(199));
    EXPECT_EQ(Fired, 0);
    Loop.Advance(milliseconds(1));
    EXPECT_EQ(Fired, 1);
    Loop.Advance(milliseconds(400));
    EXPECT_EQ(Fired, 3);
    Timer.Running(false);
    Loop.Advance(milliseconds(1000));
    EXPECT_EQ(Fired, 3);
}

TEST_F(TimerControls, StartedWithoutALoopRunOnceTheyHaveOne) {
    Timer.Running(true);
    EXPECT_EQ(Timer.ValueText(), "1");
    Timer.Attach(Loop);
    Loop.Advance(milliseconds(200));
    EXPECT_EQ(Fired, 1);
}

TEST_F(TimerControls, WithAnIntervalOfZeroNeverFire) {
    Timer.Attach(Loop);
    Timer.Interval(0);
    Timer.Running(true);
    Loop.Advance(milliseconds(1000));
    EXPECT_EQ(Fired, 0);
    EXPECT_TRUE(Timer.Running());
}

TEST_F(TimerControls, ANewIntervalBeginsAtOnce) {
    Timer.Attach(Loop);
    Timer.Running(true);
    Loop.Advance(milliseconds(150));
    Timer.Interval(100);
    Loop.Advance(milliseconds(99));
    EXPECT_EQ(Fired, 0);
    Loop.Advance(milliseconds(1));
    EXPECT_EQ(Fired, 1);
}

TEST_F(TimerControls, StartingARunningOneDoesNotBeginItsIntervalAgain) {
    Timer.Attach(Loop);
    Timer.Running(true);
    Loop.Advance(milliseconds(150));
    Timer.Running(true);
    Loop.Advance(milliseconds(50));
    EXPECT_EQ(Fired, 1);
}

TEST_F(TimerControls, AHandlerMayStopItsOwnTimer) {
    Timer.Timer.Connect([this] { Timer.Running(false); });
    Timer.Attach(Loop);
    Timer.Running(true);
    Loop.Advance(milliseconds(1000));
    EXPECT_EQ(Fired, 1);
}

TEST_F(TimerControls, DetachedKeepTheirStateAndNoTimerOfTheLoop) {
    Timer.Attach(Loop);
    Timer.Running(true);
    Timer.Detach();
    EXPECT_EQ(Loop.TimerCount(), 0U);
    Loop.Advance(milliseconds(1000));
    EXPECT_EQ(Fired, 0);
    EXPECT_TRUE(Timer.Running());
}

TEST_F(TimerControls, NotifyTheScreenWhenTheyStartAndStop) {
    int changes = 0;
    Timer.Changed.Connect([&changes] { ++changes; });
    Timer.Running(true);
    Timer.Running(true);
    Timer.Running(false);
    EXPECT_EQ(changes, 2);
}

}  // namespace
}  // namespace Corvetape::Test
