#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/clock.h"
#include "platform/event_loop.h"
#include "platform/processes.h"

namespace Corvetape {

/// A call of ShellOpen.
struct ShellCall {
    std::string Path;
    std::string Parameters;
    std::string WorkingFolder;

    bool operator==(const ShellCall&) const = default;
};

/// True if a command, an argument or a parameter of the job holds the text.
bool Mentions(const HiddenJob& job, std::string_view text);

/// Processes that are written down instead of started. What a job does is a function of the test, called at
/// the end of the job's virtual duration. With no duration it is called within StartHidden.
class SimProcesses : public Processes {
 public:
    SimProcesses(Clock& clock, EventLoop& loop);

    /// This machine knows quotations, and no parentheses.
    bool IsWhole(const CommandTemplate& commands) const override;
    bool StartHidden(const HiddenJob& job) override;
    int32_t ShellOpen(const std::string& path, const std::string& parameters,
                      const std::string& workingFolder) override;
    std::vector<std::string> TakeUnopened() override { return std::exchange(Unopened, {}); }
    std::string StartedRun() override { return LastRun; }
    size_t Running() override;
    std::vector<JobResult> TakeFinished() override;

    /// Moves virtual time on by at most `limit`, handling no events.
    bool WaitForAll(std::chrono::milliseconds limit) override;

    /// All jobs are gone at once, with the recorder, and have done nothing.
    void KillAll();

    /// Told when the process of a job begins and ends.
    std::function<void(const std::string& run, bool alive)> OnRun;

    /// Everything that was asked for, in order, also what was refused.
    std::vector<HiddenJob> Jobs;
    std::vector<ShellCall> ShellCalls;

    /// Does the work of a job and returns its exit code. Without it every job succeeds and does nothing.
    std::function<int32_t(const HiddenJob&)> OnJob;

    /// How long a job runs. Without it no time.
    std::function<std::chrono::milliseconds(const HiddenJob&)> DurationOf;

    /// Result of ShellOpen. Without it 42, a success.
    std::function<int32_t(const ShellCall&)> OnShellOpen;

    /// What TakeUnopened gives next.
    std::vector<std::string> Unopened;

    /// While set, no hidden job can be started.
    bool RefuseJobs = false;

 private:
    struct RunningJob {
        HiddenJob Job;
        int64_t EndsAt = 0;  ///< monotonic nanoseconds
        std::string Run;
    };

    void FinishDue();
    void Finish(const HiddenJob& job);
    void Tell(const std::string& run, bool alive) {
        if (OnRun) OnRun(run, alive);
    }
    void Arm();
    int64_t NextEnd() const;

    Clock& Time;
    EventLoop& Loop;
    std::unique_ptr<LoopTimer> Timer;
    std::vector<RunningJob> RunningJobs;  ///< in the order of their starts
    std::vector<JobResult> Finished;
    std::string LastRun;
    size_t Runs = 0;
};

}  // namespace Corvetape
