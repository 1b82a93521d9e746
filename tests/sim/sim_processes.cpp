#include "sim/sim_processes.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace Corvetape {

namespace {

constexpr int64_t NanosecondsPerMillisecond = 1'000'000;

void AddTexts(const CommandTemplate& step, std::vector<std::string>& texts) {
    texts.push_back(step.Text);
    for (const TemplateParameter& parameter : step.Parameters) texts.push_back(parameter.Value);
}

void AddTexts(const ProgramCall& step, std::vector<std::string>& texts) {
    texts.insert(texts.end(), step.Arguments.begin(), step.Arguments.end());
}

/// Steps that start nothing.
template <typename Step>
void AddTexts(const Step& /*step*/, std::vector<std::string>& /*texts*/) {}

}  // namespace

bool Mentions(const HiddenJob& job, std::string_view text) {
    std::vector<std::string> texts;
    for (const JobStep& step : job.Steps) {
        std::visit([&](const auto& each) { AddTexts(each, texts); }, step);
    }
    return std::ranges::any_of(texts,
                               [&](const std::string& each) { return each.find(text) != std::string::npos; });
}

SimProcesses::SimProcesses(Clock& clock, EventLoop& loop)
    : Time(clock), Loop(loop), Timer(loop.NewTimer([this] { FinishDue(); })) {}

bool SimProcesses::IsWhole(const CommandTemplate& commands) const {
    char open = '\0';
    for (const char letter : commands.Text) {
        if (letter == open) {
            open = '\0';
        } else if (open == '\0' && (letter == '"' || letter == '\'')) {
            open = letter;
        }
    }
    return open == '\0';
}

bool SimProcesses::StartHidden(const HiddenJob& job) {
    Jobs.push_back(job);
    if (RefuseJobs) return false;
    const std::chrono::milliseconds duration = DurationOf ? DurationOf(job) : std::chrono::milliseconds(0);
    LastRun = "job-" + std::to_string(++Runs);
    if (duration.count() <= 0) {
        Finish(job);
        return true;
    }
    RunningJobs.push_back(
        {job, Time.MonotonicNanoseconds() + std::chrono::nanoseconds(duration).count(), LastRun});
    Tell(LastRun, true);
    Arm();
    return true;
}

int32_t SimProcesses::ShellOpen(const std::string& path, const std::string& parameters,
                                const std::string& workingFolder) {
    const ShellCall call = {path, parameters, workingFolder};
    ShellCalls.push_back(call);
    return OnShellOpen ? OnShellOpen(call) : 42;
}

size_t SimProcesses::Running() {
    FinishDue();
    return RunningJobs.size();
}

std::vector<JobResult> SimProcesses::TakeFinished() {
    FinishDue();
    return std::exchange(Finished, {});
}

bool SimProcesses::WaitForAll(std::chrono::milliseconds limit) {
    const int64_t end = Time.MonotonicNanoseconds() + std::chrono::nanoseconds(limit).count();
    FinishDue();
    while (!RunningJobs.empty() && Time.MonotonicNanoseconds() < end) {
        const int64_t wait = std::min(NextEnd(), end) - Time.MonotonicNanoseconds();
        const int64_t waitMs = (wait + NanosecondsPerMillisecond - 1) / NanosecondsPerMillisecond;
        Loop.Sleep(std::chrono::milliseconds(std::max<int64_t>(waitMs, 1)));
        FinishDue();
    }
    return RunningJobs.empty();
}

int64_t SimProcesses::NextEnd() const {
    int64_t next = std::numeric_limits<int64_t>::max();
    for (const RunningJob& job : RunningJobs) next = std::min(next, job.EndsAt);
    return next;
}

/// Ends the jobs whose time has come, in the order of their ends, of equal ones the oldest first. What a job
/// does may start further jobs.
void SimProcesses::FinishDue() {
    while (!RunningJobs.empty()) {
        const auto next = std::ranges::min_element(RunningJobs, {}, &RunningJob::EndsAt);
        if (next->EndsAt > Time.MonotonicNanoseconds()) break;
        const HiddenJob job = std::move(next->Job);
        Tell(next->Run, false);
        RunningJobs.erase(next);
        Finish(job);
    }
    Arm();
}

void SimProcesses::KillAll() {
    for (const RunningJob& job : RunningJobs) Tell(job.Run, false);
    RunningJobs.clear();
    Arm();
}

void SimProcesses::Finish(const HiddenJob& job) {
    const int32_t exitCode = OnJob ? OnJob(job) : 0;
    Finished.push_back({job.Name, exitCode});
}

void SimProcesses::Arm() {
    if (RunningJobs.empty()) {
        Timer->Stop();
        return;
    }
    const int64_t wait = NextEnd() - Time.MonotonicNanoseconds();
    Timer->Start(
        std::chrono::milliseconds((wait + NanosecondsPerMillisecond - 1) / NanosecondsPerMillisecond),
        TimerPrecision::Coarse);
}

}  // namespace Corvetape
