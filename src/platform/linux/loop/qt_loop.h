#pragma once

#include <memory>

#include "platform/event_loop.h"

namespace Corvetape {

/// The event loop on top of Qt's: timers and posted work are handled by whatever Qt loop runs on the
/// thread, also by that of a box.
///
/// Make it on the thread of the logic after the QCoreApplication, and destroy it before. One Qt timer
/// wakes the loop for all timers: stopped timers cost nothing, and a coarse timer may come up to a
/// twentieth of its interval late so that several share a wake-up. A timer that missed several dates
/// fires once and keeps its beat. A timer does not fire while its own handler still runs.
class QtLoop : public EventLoop {
 public:
    QtLoop();
    ~QtLoop() override;
    QtLoop(const QtLoop&) = delete;
    QtLoop& operator=(const QtLoop&) = delete;

    /// A timer may outlive the loop; it is silent then.
    std::unique_ptr<LoopTimer> NewTimer(std::function<void()> fired) override;

    /// Work that is posted by posted work waits for the next round, so that ProcessEvents always returns.
    void Post(std::function<void()> work) override;

    void ProcessEvents() override;
    void Sleep(std::chrono::milliseconds duration) override;

    /// May be nested; Quit ends the innermost Run.
    void Run() override;
    void Quit() override;

 private:
    class Core;
    std::shared_ptr<Core> Inner;
};

}  // namespace Corvetape
