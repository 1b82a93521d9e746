#pragma once

#include <sys/types.h>

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace Corvetape {

/// A program that a test runs beside itself. It is ended by its own number, at the latest when the test
/// program ends.
class TestProcess {
 public:
    struct Start {
        std::vector<std::string> Command;                ///< the program is searched on the search path
        std::map<std::string, std::string> Environment;  ///< on top of the test's own
        std::string Output;                              ///< file for what it prints; empty for nowhere
        bool RefusesLinks = false;                       ///< its disks have one name for each file
    };

    /// Fails the test if the program cannot be started.
    explicit TestProcess(const Start& start);

    /// Ends it if it still runs: by SIGTERM, and if that does not help within 2 s by SIGKILL.
    ~TestProcess();
    TestProcess(const TestProcess&) = delete;
    TestProcess& operator=(const TestProcess&) = delete;

    /// After SIGSTOP it stands still when this returns.
    void Signal(int number) const;

    /// Ends it at once and waits for its end.
    void Kill();
    void Stop();

    /// The exit code, 128 plus the signal's number if killed, nothing if it still runs after `limit`.
    std::optional<int> Wait(std::chrono::milliseconds limit);

 private:
    pid_t pid = -1;
    std::optional<int> result;
};

}  // namespace Corvetape
