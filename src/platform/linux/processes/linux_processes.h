#pragma once

#include <memory>
#include <string_view>

#include "platform/processes.h"

namespace Corvetape {

/// Splits a parameter text the way a shell would, without one: blanks separate, single quotes keep
/// everything, double quotes keep all but a backslash before a quote or a backslash, a backslash outside
/// of quotes keeps the next character. Nothing is expanded. An open quote ends with the text.
std::vector<std::string> SplitParameters(std::string_view parameters);

/// Starts programs, and collects those that have ended from a thread of its own, by their process
/// descriptors. It touches no signal handler and no child that somebody else has started.
class LinuxProcesses : public Processes {
 public:
    LinuxProcesses();

    /// Jobs that still run go on.
    ~LinuxProcesses() override;
    LinuxProcesses(const LinuxProcesses&) = delete;
    LinuxProcesses& operator=(const LinuxProcesses&) = delete;

    /// Runs in a session of its own, input and output to nowhere: what a job has to say it writes into
    /// its own file. False if the shell or the working folder is not there.
    bool IsWhole(const CommandTemplate& commands) const override;
    bool StartHidden(const HiddenJob& job) override;

    std::string StartedRun() override { return OwnRun; }

    /// A program file is started with its parameters, without a shell. Anything else, also a folder or an
    /// address such as "https://...", is handed to the desktop through xdg-open, without the parameters.
    /// A name without a folder is searched on the search path. An empty working folder means this one.
    /// Codes of failures: 2 not found, 3 its folder not found, 5 access denied, 8 not enough memory, 11 not
    /// a program, 31 nothing there to open documents with. 33 on success.
    int32_t ShellOpen(const std::string& path, const std::string& parameters,
                      const std::string& workingFolder) override;

    /// What xdg-open has failed to open soon after it was started.
    std::vector<std::string> TakeUnopened() override;

    size_t Running() override;
    std::vector<JobResult> TakeFinished() override;
    bool WaitForAll(std::chrono::milliseconds limit) override;

 private:
    class Collector;
    std::unique_ptr<Collector> Reaper;
    std::string OwnRun;
};

}  // namespace Corvetape
