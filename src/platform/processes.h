#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace Corvetape {

/// A hidden command line to start.
struct HiddenJob {
    std::string Name;         ///< the caller's word for it, given back with the result
    std::string CommandLine;  ///< for /bin/sh -c
    std::string WorkingFolder;
};

struct JobResult {
    std::string Name;
    int32_t ExitCode = 0;  ///< as a shell shows it: 128 plus the signal for a killed one
};

class Processes {
 public:
    virtual ~Processes() = default;

    /// Starts the command line without a window, nice 10, in a process group of its own, its input from
    /// nowhere. It runs on when the program ends. False if it could not be started.
    virtual bool StartHidden(const HiddenJob& job) = 0;

    /// Name of the process that StartHidden started last, as SystemInfo::RunIsAlive takes it. Empty if it is
    /// not known.
    virtual std::string StartedRun() { return {}; }

    /// Opens a program or document as a desktop would. Returns above 32 on success, else one of the codes
    /// that ShellErrorText knows (2: not found, 5: access denied, 11: not a program, ...).
    virtual int32_t ShellOpen(const std::string& path, const std::string& parameters,
                              const std::string& workingFolder) = 0;

    /// Hidden jobs that have not ended yet.
    virtual size_t Running() = 0;

    /// Results of the hidden jobs that have ended since the last call, in the order of their ends.
    virtual std::vector<JobResult> TakeFinished() = 0;

    /// Waits until no hidden job runs, at most `limit` of real time. True if none runs.
    virtual bool WaitForAll(std::chrono::milliseconds limit) = 0;
};

}  // namespace Corvetape
