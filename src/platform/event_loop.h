#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace Corvetape {

/// How exactly a timer must keep its time. A precise one costs more wake-ups.
enum class TimerPrecision { Coarse, Precise };

/// A periodic timer of an event loop. Destroying it stops it.
class LoopTimer {
 public:
    virtual ~LoopTimer() = default;

    /// Fires every `interval` from now on, first after one interval. A running timer is started anew.
    /// An interval below 1 ms counts as 1 ms. A timer that was kept waiting past several intervals fires
    /// once for all of them, and it does not fire again while its own handler runs.
    virtual void Start(std::chrono::milliseconds interval, TimerPrecision precision) = 0;
    virtual void Stop() = 0;
    virtual bool Active() const = 0;
};

/// The loop of the one logic thread. Everything but Post is called on that thread only.
class EventLoop {
 public:
    virtual ~EventLoop() = default;

    /// Makes a timer, stopped. Of timers that are due at the same time the one made first fires first.
    /// `fired` may stop, restart or destroy any timer, also its own.
    virtual std::unique_ptr<LoopTimer> NewTimer(std::function<void()> fired) = 0;

    /// Runs `work` on the logic thread, in the order of posting. May be called from any thread.
    virtual void Post(std::function<void()> work) = 0;

    /// Handles everything that is due now, and returns. May be called from within a handler.
    virtual void ProcessEvents() = 0;

    /// Stands still for `duration` without handling events. On a simulated loop its time moves on.
    virtual void Sleep(std::chrono::milliseconds duration) = 0;

    /// Handles events until Quit.
    virtual void Run() = 0;

    /// Makes Run return after the present event.
    virtual void Quit() = 0;
};

}  // namespace Corvetape
