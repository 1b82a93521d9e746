#include "platform/linux/processes/linux_system.h"

#include <sys/random.h>
#include <sys/resource.h>
#include <time.h>
#include <unistd.h>

#include <fstream>
#include <sstream>
#include <string>

#include "platform/linux/processes/realtime_kit.h"

namespace Corvetape {
namespace {

constexpr int RaisedNice = -10;

/// When a process was started, in ticks since the machine was; empty if there is no such process.
std::string StartOf(const std::string& process) {
    std::ifstream stat("/proc/" + process + "/stat");
    std::string line;
    std::getline(stat, line);
    // The second field is the name in brackets, which may hold blanks; the start is the 22nd.
    const size_t nameEnd = line.rfind(')');
    if (nameEnd == std::string::npos) return {};
    std::istringstream fields(line.substr(nameEnd + 1));
    constexpr int fieldsToStart = 20;
    std::string field;
    for (int i = 0; i < fieldsToStart; ++i) fields >> field;
    return field;
}

}  // namespace

std::string RunNameOf(int process) {
    const std::string number = std::to_string(process);
    const std::string start = StartOf(number);
    return start.empty() ? start : number + "-" + start;
}

std::string LinuxSystemInfo::RunName() {
    return RunNameOf(getpid());
}

bool LinuxSystemInfo::RunIsAlive(const std::string& runName) {
    const size_t dash = runName.find('-');
    if (dash == 0 || dash == std::string::npos) return false;
    const std::string process = runName.substr(0, dash);
    if (process.find_first_not_of("0123456789") != std::string::npos) return false;
    const std::string start = StartOf(process);
    return !start.empty() && start == runName.substr(dash + 1);
}

SystemVersion LinuxSystemInfo::Version() {
    return {2, 6, 0, 0};
}

uint64_t LinuxSystemInfo::RandomSeed() {
    uint64_t seed = 0;
    if (getrandom(&seed, sizeof seed, GRND_NONBLOCK) == static_cast<ssize_t>(sizeof seed)) return seed;
    timespec now{};  // so early after power-on that the kernel has no randomness yet
    clock_gettime(CLOCK_REALTIME, &now);
    return static_cast<uint64_t>(now.tv_sec) * 1'000'000'007u ^ static_cast<uint64_t>(now.tv_nsec) ^
           static_cast<uint64_t>(getpid()) << 40;
}

void LinuxSystemInfo::RaisePriority() {
    if (getpriority(PRIO_PROCESS, 0) <= RaisedNice) return;
    if (setpriority(PRIO_PROCESS, 0, RaisedNice) != 0) AskRealtimeKitForNice(RaisedNice);
}

}  // namespace Corvetape
