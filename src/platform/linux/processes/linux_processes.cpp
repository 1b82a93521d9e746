#include "platform/linux/processes/linux_processes.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>

#include <algorithm>
#include <cerrno>
#include <condition_variable>
#include <csignal>
#include <cstdlib>
#include <mutex>
#include <thread>

#include "platform/linux/files/descriptor.h"
#include "platform/linux/loop/thread_signals.h"
#include "platform/linux/processes/child.h"
#include "platform/linux/processes/linux_system.h"
#include "platform/linux/processes/program_search.h"
#include "platform/linux/processes/shell_script.h"

namespace Corvetape {

/// Waits for children on a thread of its own, which begins with the first child.
class LinuxProcesses::Collector {
 public:
    Collector() : WakeEvent(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

    ~Collector() {
        {
            const std::lock_guard guard(Lock);
            Ending = true;
        }
        Wake();
        if (Thread.joinable()) Thread.join();
    }
    Collector(const Collector&) = delete;
    Collector& operator=(const Collector&) = delete;

    /// A job of this name, whose result is taken.
    void WatchJob(pid_t pid, const std::string& name) { Watch(pid, {.Job = name}); }

    /// What is to open something, which is empty for a program of which nobody wants to know more.
    void WatchOpener(pid_t pid, const std::string& opened) { Watch(pid, {.Opened = opened}); }

    std::vector<std::string> TakeUnopened() {
        const std::lock_guard guard(Lock);
        return std::exchange(Unopened, {});
    }

    size_t Running() {
        const std::lock_guard guard(Lock);
        return Alive;
    }

    std::vector<JobResult> TakeFinished() {
        const std::lock_guard guard(Lock);
        return std::exchange(Finished, {});
    }

    bool WaitForAll(std::chrono::milliseconds limit) {
        std::unique_lock guard(Lock);
        const auto bounded = std::min<std::chrono::milliseconds>(limit, std::chrono::hours(24 * 365));
        return Ended.wait_for(guard, bounded, [this] { return Alive == 0; });
    }

 private:
    using SteadyTime = std::chrono::steady_clock;

    /// What a child was started for.
    struct Purpose {
        std::optional<std::string> Job = {};
        std::string Opened = {};
    };

    struct Child {
        pid_t Pid = -1;
        Descriptor Process;  // empty where the kernel gives none
        Purpose For;
        SteadyTime::time_point Begun = SteadyTime::now();
    };

    void Watch(pid_t pid, Purpose purpose) {
        Child child{pid, Descriptor(static_cast<int>(syscall(SYS_pidfd_open, pid, 0))), std::move(purpose)};
        {
            const std::lock_guard guard(Lock);
            if (child.For.Job) ++Alive;
            Children.push_back(std::move(child));
        }
        if (!Thread.joinable()) Thread = std::thread([this] { Collect(); });
        Wake();
    }

    void Wake() const {
        const uint64_t one = 1;
        [[maybe_unused]] const ssize_t written = write(WakeEvent.Number(), &one, sizeof one);
    }

    void Collect() {
        LeaveSignalsToTheMainThread();
        std::vector<pollfd> waits;
        for (;;) {
            waits.assign(1, {WakeEvent.Number(), POLLIN, 0});
            int limit = -1;
            {
                const std::lock_guard guard(Lock);
                if (Ending) return;
                ReapEnded();
                for (const Child& child : Children) {
                    if (child.Process) {
                        waits.push_back({child.Process.Number(), POLLIN, 0});
                    } else {
                        limit = 100;  // has to be asked from time to time
                    }
                }
            }
            poll(waits.data(), waits.size(), limit);
            uint64_t count = 0;
            [[maybe_unused]] const ssize_t got = read(WakeEvent.Number(), &count, sizeof count);
        }
    }

    void ReapEnded() {
        std::erase_if(Children, [this](const Child& child) {
            int status = 0;
            const pid_t pid = Uninterrupted([&] { return waitpid(child.Pid, &status, WNOHANG); });
            if (pid == 0) return false;
            const int code = pid < 0               ? 127
                             : WIFSIGNALED(status) ? 128 + WTERMSIG(status)
                                                   : WEXITSTATUS(status);
            if (child.For.Job) {
                Finished.push_back({*child.For.Job, code});
                --Alive;
            } else if (HasFailedToOpen(child, code)) {
                Unopened.push_back(child.For.Opened);
            }
            return true;
        });
        Ended.notify_all();
    }

    /// An opener may run for as long as the program that it has started. What that one says when it ends much
    /// later is no failure to open.
    static bool HasFailedToOpen(const Child& child, int code) {
        constexpr std::chrono::seconds longestAttempt{20};
        return !child.For.Opened.empty() && code != 0 && SteadyTime::now() - child.Begun < longestAttempt;
    }

    std::mutex Lock;
    std::condition_variable Ended;
    std::vector<Child> Children;
    std::vector<JobResult> Finished;
    std::vector<std::string> Unopened;
    size_t Alive = 0;
    bool Ending = false;
    Descriptor WakeEvent;
    std::thread Thread;
};

namespace {

constexpr int32_t Started = 33;

int32_t ShellCode(int error) {
    switch (error) {
        case ENOENT:
            return 2;
        case ENOTDIR:
        case ELOOP:
        case ENAMETOOLONG:
            return 3;
        case EACCES:
        case EPERM:
            return 5;
        case ENOMEM:
        case EAGAIN:
        case E2BIG:
            return 8;
        default:
            return 11;  // the file is there and is no program for this machine
    }
}

bool IsAddress(const std::string& path) {
    const size_t colon = path.find(':');
    if (colon == std::string::npos || colon < 2 || path[0] < 'A') return false;
    const auto inScheme = [](char letter) {
        return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') ||
               (letter >= '0' && letter <= '9') || letter == '+' || letter == '-' || letter == '.';
    };
    return std::all_of(path.begin(), path.begin() + static_cast<std::ptrdiff_t>(colon), inScheme);
}

/// Why a file that should be opened cannot even be looked at.
int32_t MissingCode(const std::string& path) {
    const int error = errno;
    if (error != ENOENT) return ShellCode(error);
    const size_t slash = path.rfind('/');
    struct stat status {};
    if (slash == std::string::npos || slash == 0) return 2;
    return stat(path.substr(0, slash).c_str(), &status) == 0 && S_ISDIR(status.st_mode) ? 2 : 3;
}

}  // namespace

std::vector<std::string> SplitParameters(std::string_view parameters) {
    std::vector<std::string> result;
    std::string word;
    bool inWord = false;
    char quote = '\0';
    for (size_t i = 0; i < parameters.size(); ++i) {
        const char letter = parameters[i];
        const char next = i + 1 < parameters.size() ? parameters[i + 1] : '\0';
        const bool blank = letter == ' ' || letter == '\t' || letter == '\n' || letter == '\r';
        if (quote == '\0' && blank) {
            if (inWord) result.push_back(std::exchange(word, {}));
            inWord = false;
            continue;
        }
        inWord = true;
        if (letter == quote) {
            quote = '\0';
        } else if (quote == '\0' && (letter == '"' || letter == '\'')) {
            quote = letter;
        } else if (letter == '\\' && next != '\0' &&
                   (quote == '\0' || (quote == '"' && (next == '"' || next == '\\')))) {
            word += next;
            ++i;
        } else {
            word += letter;
        }
    }
    if (inWord) result.push_back(word);
    return result;
}

LinuxProcesses::LinuxProcesses() : Reaper(std::make_unique<Collector>()) {}
LinuxProcesses::~LinuxProcesses() = default;

bool LinuxProcesses::IsWhole(const CommandTemplate& commands) const {
    return ShellScript({}).Add(commands);
}

bool LinuxProcesses::StartHidden(const HiddenJob& job) {
    const std::optional<std::string> line = ShellLine(job);
    if (!line) return false;
    const StartedChild child = StartChild({"/bin/sh", {"/bin/sh", "-c", *line}, job.WorkingFolder, 10});
    if (child.Pid < 0) return false;
    OwnRun = RunNameOf(child.Pid);  // before anybody can collect it
    Reaper->WatchJob(child.Pid, job.Name);
    return true;
}

int32_t LinuxProcesses::ShellOpen(const std::string& path, const std::string& parameters,
                                  const std::string& workingFolder) {
    if (path.empty()) return 2;
    ChildStart start{path, {path}, workingFolder, 0};
    bool isDocument = IsAddress(path);
    if (!isDocument) {
        struct stat status {};
        if (path.find('/') == std::string::npos) {
            if (const std::optional<std::string> found = SearchProgram(path)) start.Program = *found;
        }
        if (stat(start.Program.c_str(), &status) != 0) return MissingCode(start.Program);
        isDocument = !S_ISREG(status.st_mode) || (status.st_mode & 0111) == 0;
        char* const whole = realpath(start.Program.c_str(), nullptr);  // the working folder may be another
        if (whole != nullptr) start.Program = whole;
        std::free(whole);
    }
    if (isDocument) {
        const std::optional<std::string> opener = SearchProgram("xdg-open");
        if (!opener) return 31;
        start.Arguments = {"xdg-open", start.Program};
        start.Program = *opener;
    } else {
        for (std::string& argument : SplitParameters(parameters)) start.Arguments.push_back(argument);
    }
    const StartedChild child = StartChild(start);
    if (child.Pid < 0) return child.FolderFailed && child.Error == ENOENT ? 3 : ShellCode(child.Error);
    Reaper->WatchOpener(child.Pid, isDocument ? path : "");
    return Started;
}

std::vector<std::string> LinuxProcesses::TakeUnopened() {
    return Reaper->TakeUnopened();
}

size_t LinuxProcesses::Running() {
    return Reaper->Running();
}

std::vector<JobResult> LinuxProcesses::TakeFinished() {
    return Reaper->TakeFinished();
}

bool LinuxProcesses::WaitForAll(std::chrono::milliseconds limit) {
    return Reaper->WaitForAll(limit);
}

}  // namespace Corvetape
