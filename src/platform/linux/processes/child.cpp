#include "platform/linux/processes/child.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>

#include "platform/linux/files/descriptor.h"

namespace Corvetape {
namespace {

struct Failure {
    int Error = 0;
    int AtFolder = 0;
};

/// All that the child does between its birth and the program's take-over. Other threads of the parent do
/// not exist here and may have held any lock: system calls only.
[[noreturn]] void BecomeProgram(const ChildStart& start, char* const* arguments, int report) {
    Failure failure;
    setsid();
    if (getpriority(PRIO_PROCESS, 0) < start.Nice) setpriority(PRIO_PROCESS, 0, start.Nice);
    close_range(3, ~0U, CLOSE_RANGE_CLOEXEC);  // whatever a library forgot to mark
    if (start.Keep > 2) fcntl(start.Keep, F_SETFD, 0);
    for (int number = 1; number < NSIG; ++number) {
        struct sigaction action {};
        action.sa_handler = SIG_DFL;
        sigaction(number, &action, nullptr);
    }
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    const int nowhere = open("/dev/null", O_RDWR);
    for (int standard = 0; standard <= 2 && nowhere >= 0; ++standard) dup2(nowhere, standard);
    if (nowhere > 2) close(nowhere);
    if (!start.WorkingFolder.empty() && chdir(start.WorkingFolder.c_str()) != 0) {
        failure = {errno, 1};
    } else {
        execv(start.Program.c_str(), arguments);
        failure = {errno, 0};
    }
    [[maybe_unused]] const ssize_t written = write(report, &failure, sizeof failure);
    _exit(127);
}

}  // namespace

StartedChild StartChild(const ChildStart& start) {
    std::vector<char*> arguments;
    for (const std::string& argument : start.Arguments) {
        arguments.push_back(const_cast<char*>(argument.c_str()));
    }
    arguments.push_back(nullptr);
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) return {-1, errno, false};
    const Descriptor reading(ends[0]);
    Descriptor writing(ends[1]);

    // No handler of this program may run in the child.
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    const pid_t pid = fork();
    const int forkError = errno;
    if (pid == 0) BecomeProgram(start, arguments.data(), writing.Number());
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    if (pid < 0) return {-1, forkError, false};

    writing.Close();
    Failure failure;
    const ssize_t got = Uninterrupted([&] { return read(reading.Number(), &failure, sizeof failure); });
    if (got != static_cast<ssize_t>(sizeof failure)) return {pid, 0, false};  // the program runs
    Uninterrupted([&] { return waitpid(pid, nullptr, 0); });
    return {-1, failure.Error, failure.AtFolder != 0};
}

}  // namespace Corvetape
