#include "support/measured_process.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <fstream>

#include "platform/linux/files/descriptor.h"
#include "platform/linux/processes/program_search.h"

namespace Corvetape::Bench {

namespace {

constexpr int MillisecondsBetweenLooks = 5;

pid_t Start(const MeasuredCommand& command) {
    std::vector<std::string> words = command.Words;
    std::vector<char*> pointers;
    for (std::string& word : words) pointers.push_back(word.data());
    pointers.push_back(nullptr);
    const std::string output = command.Output.empty() ? "/dev/null" : command.Output;
    const pid_t pid = fork();
    if (pid != 0) return pid;
    if (!command.Folder.empty() && chdir(command.Folder.c_str()) != 0) _exit(126);
    const int nowhere = open("/dev/null", O_RDWR);
    dup2(nowhere, 0);
    dup2(open(output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666), 1);
    dup2(nowhere, 2);
    execvp(pointers[0], pointers.data());
    _exit(127);
}

/// The largest memory that a process has had up to now, as the system counts it; 0 once it has ended.
double LargestMegabytes(pid_t pid) {
    std::ifstream status("/proc/" + std::to_string(pid) + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("VmHWM:")) return std::stod(line.substr(6)) / 1024;
    }
    return 0;
}

double Seconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

template <typename Member>
double Median(std::vector<Cost>& costs, Member member) {
    std::ranges::sort(costs, {}, member);
    return costs[costs.size() / 2].*member;
}

}  // namespace

Cost Measure(const MeasuredCommand& command) {
    Cost cost;
    const auto began = std::chrono::steady_clock::now();
    const pid_t pid = Start(command);
    const Descriptor process(static_cast<int>(syscall(SYS_pidfd_open, pid, 0)));
    pollfd ended{process.Number(), POLLIN, 0};
    while (poll(&ended, 1, MillisecondsBetweenLooks) == 0) {
        cost.Megabytes = std::max(cost.Megabytes, LargestMegabytes(pid));
    }
    int status = 0;
    rusage usage{};
    while (wait4(pid, &status, 0, &usage) < 0 && errno == EINTR) {
    }
    const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - began;
    cost.WallSeconds = wall.count();
    cost.ProcessorSeconds = Seconds(usage.ru_utime) + Seconds(usage.ru_stime);
    cost.ExitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return cost;
}

Cost MedianOf(std::vector<Cost> costs) {
    Cost median;
    if (costs.empty()) return median;
    median.WallSeconds = Median(costs, &Cost::WallSeconds);
    median.ProcessorSeconds = Median(costs, &Cost::ProcessorSeconds);
    median.Megabytes = Median(costs, &Cost::Megabytes);
    median.ExitCode = std::ranges::max(costs, {}, &Cost::ExitCode).ExitCode;
    return median;
}

bool IsInstalled(const std::string& program) {
    return SearchProgram(program).has_value();
}

}  // namespace Corvetape::Bench
