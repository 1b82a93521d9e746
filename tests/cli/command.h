#pragma once

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace Corvetape::Test {

/// Longest wait for anything that a command does; a machine under load may need some of it.
inline constexpr std::chrono::seconds Patience{60};

/// How a command is started.
struct CommandStart {
    std::vector<std::string> Arguments;
    std::map<std::string, std::string> Environment;  ///< on top of the test's own
    std::string Folder;                              ///< to run in; empty: the test's own
    bool Terminal = false;                           ///< its error output is a terminal
    bool IgnoresHangup = false;                      ///< as after "nohup"

    /// Files in the place of standard ones, by number; an empty path closes one.
    std::map<int, std::string> Standard{};
};

/// The built command line while it runs. It is ended with the test at the latest. No sound server of the
/// user's is within its reach.
class Command {
 public:
    explicit Command(const CommandStart& start);
    ~Command();
    Command(const Command&) = delete;
    Command& operator=(const Command&) = delete;

    /// Takes what it prints until the condition holds. False if it does not within the limit.
    bool WaitUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit = Patience);

    /// The exit code, 128 plus the signal's number if killed. -1, and a failed test, if it does not end.
    int Wait(std::chrono::milliseconds limit = Patience);

    /// Reads nothing more of its standard output, as a reader that ends.
    void StopReading();

    void Signal(int number) const;
    bool HasEnded();

    std::string Out;  ///< what it has printed so far
    std::string Err;

 private:
    void Launch(const CommandStart& start);
    static void Take(int& descriptor, std::string& text);
    pid_t Pid = -1;
    int OutPipe = -1;
    int ErrPipe = -1;
    std::optional<int> Result;
};

/// A command that has ended.
struct Finished {
    int Code = -1;
    std::string Out;
    std::string Err;
};

/// Runs the command line to its end.
Finished RunCommand(const CommandStart& start);

/// The lines of a text, without their ends.
std::vector<std::string> LinesOf(const std::string& text);

/// Empty if there is none.
std::string LastLineOf(const std::string& text);

}  // namespace Corvetape::Test
