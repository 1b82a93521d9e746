#include "platform/linux/run_shell.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>

namespace Corvetape::Testing {

namespace {

int32_t WaitFor(pid_t child) {
    int status = 0;
    if (waitpid(child, &status, 0) != child || !WIFEXITED(status)) return -1;
    return WEXITSTATUS(status);
}

}  // namespace

ShellRun RunShell(const std::string& commandLine) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) return {};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    std::string shell = "sh";
    std::string option = "-c";
    std::string line = commandLine;
    std::array<char*, 4> arguments = {shell.data(), option.data(), line.data(), nullptr};
    pid_t child = 0;
    const int failure = posix_spawn(&child, "/bin/sh", &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    ShellRun run;
    std::array<char, 4096> piece{};
    for (ssize_t count = 0; (count = read(ends[0], piece.data(), piece.size())) > 0;) {
        run.Output.append(piece.data(), static_cast<size_t>(count));
    }
    close(ends[0]);
    if (failure == 0) run.ExitCode = WaitFor(child);
    return run;
}

std::vector<std::string> PrintedArguments(const ShellRun& run) {
    std::vector<std::string> arguments;
    size_t begin = 0;
    for (size_t end = 0; (end = run.Output.find('\0', begin)) != std::string::npos; begin = end + 1) {
        arguments.push_back(run.Output.substr(begin, end - begin));
    }
    return arguments;
}

}  // namespace Corvetape::Testing
