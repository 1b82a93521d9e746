#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>

#include "platform/event_loop.h"
#include "platform/virtual/sim_clock.h"

namespace Corvetape {

struct SimLoopState;

/// An event loop on virtual time. Time stands still while a handler runs and moves on only here: to the next
/// due timer, to the end of RunFor, and in Sleep. So a day of events takes as long as its handlers do.
///
/// A timer keeps its rhythm: if it was kept waiting past one or more periods, it fires once and goes on at
/// the next multiple of its interval. While its handler runs it does not fire again, also not from
/// ProcessEvents within the handler. Posted work comes before timers of the same moment.
class SimLoop : public EventLoop {
 public:
    /// Called before virtual time moves on, with the time that it is to move to.
    using PaceHook = std::function<void(int64_t virtualNs)>;

    /// The clock is moved by this loop and outlives it.
    explicit SimLoop(SimClock& clock);
    ~SimLoop() override;
    SimLoop(const SimLoop&) = delete;
    SimLoop& operator=(const SimLoop&) = delete;

    std::unique_ptr<LoopTimer> NewTimer(std::function<void()> fired) override;
    void Post(std::function<void()> work) override;
    void ProcessEvents() override;
    void Sleep(std::chrono::milliseconds duration) override;

    /// Returns also when nothing can happen any more: no timer runs and nothing is posted.
    void Run() override;
    void Quit() override;

    /// Handles everything that falls due within `duration`, its end included, and leaves the clock at its
    /// end. Quit does not end it. May be called from within a handler.
    void RunFor(std::chrono::nanoseconds duration);

    /// Runs until `reached` holds, which is asked first and then after every event. False if `limit` passed
    /// before; the clock then stands at the limit.
    bool RunUntil(const std::function<bool()>& reached, std::chrono::nanoseconds limit);

    /// Somebody has called Quit since the last Run began.
    bool QuitWanted() const;

    /// Timers fired and posted work handled so far.
    uint64_t EventCount() const;

    /// Lets `hook` hold up virtual time, for a run at a chosen multiple of real time. What other threads post
    /// while it waits is handled before time moves on. An empty hook lets time run freely.
    void PaceWith(PaceHook hook);

 private:
    std::shared_ptr<SimLoopState> State;
};

/// A hook that keeps virtual time from running ahead of `speed` times the time of `real`, both counted from
/// now. `wait` stands still for a real duration. A late run catches up without waiting.
SimLoop::PaceHook PaceAgainst(const Clock& real, const Clock& simulated, double speed,
                              std::function<void(std::chrono::nanoseconds)> wait);

}  // namespace Corvetape
