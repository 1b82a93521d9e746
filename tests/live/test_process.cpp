#include "live/test_process.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/linux/files/descriptor.h"
#include "support/refuse_links.h"

namespace Corvetape {
namespace {

std::vector<char*> Pointers(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts) pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

std::vector<std::string> Merged(const std::map<std::string, std::string>& changes) {
    std::vector<std::string> variables;
    for (char** variable = environ; *variable != nullptr; ++variable) {
        const std::string text = *variable;
        if (!changes.contains(text.substr(0, text.find('=')))) variables.push_back(text);
    }
    for (const auto& [name, value] : changes) variables.push_back(name + "=" + value);
    return variables;
}

}  // namespace

TestProcess::TestProcess(const Start& start) {
    std::vector<std::string> command = start.Command;
    std::vector<std::string> environment = Merged(start.Environment);
    const std::vector<char*> arguments = Pointers(command);
    const std::vector<char*> variables = Pointers(environment);
    const std::string output = start.Output.empty() ? "/dev/null" : start.Output;
    pid = fork();
    if (pid == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (start.RefusesLinks && !RefuseHardLinks()) _exit(126);
        const int in = open("/dev/null", O_RDONLY);
        const int out = open(output.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
        dup2(in, 0);
        dup2(out, 1);
        dup2(out, 2);
        execvpe(arguments[0], arguments.data(), variables.data());
        _exit(127);
    }
    if (pid < 0) ADD_FAILURE() << "cannot start " << start.Command.front();
}

TestProcess::~TestProcess() {
    Stop();
}

void TestProcess::Signal(int number) const {
    if (pid <= 0 || result || kill(pid, number) != 0 || number != SIGSTOP) return;
    siginfo_t state{};
    Uninterrupted(
        [&] { return waitid(P_PID, static_cast<id_t>(pid), &state, WSTOPPED | WEXITED | WNOWAIT); });
}

void TestProcess::Kill() {
    Signal(SIGKILL);
    EXPECT_TRUE(Wait(std::chrono::seconds(30)).has_value());
}

void TestProcess::Stop() {
    if (pid < 0 || result) return;
    Signal(SIGTERM);
    if (!Wait(std::chrono::seconds(2))) Kill();
}

std::optional<int> TestProcess::Wait(std::chrono::milliseconds limit) {
    if (pid < 0 || result) return result;
    const Descriptor process(static_cast<int>(syscall(SYS_pidfd_open, pid, 0)));
    pollfd ended{process.Number(), POLLIN, 0};
    const auto milliseconds = static_cast<int>(limit.count());
    if (Uninterrupted([&] { return poll(&ended, 1, milliseconds); }) <= 0) return std::nullopt;
    int status = 0;
    if (waitpid(pid, &status, 0) != pid) return std::nullopt;
    result = WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
    return result;
}

}  // namespace Corvetape
