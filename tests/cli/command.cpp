#include "cli/command.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <sstream>
#include <utility>

namespace Corvetape::Test {

namespace {

constexpr const char* Program = CORVETAPE_BINARY_DIR "/bin/corvetape-cli";

/// The two ends of what a command prints into.
struct Channel {
    int Ours = -1;
    int Theirs = -1;
};

/// Most tests are about songs that silence ends, which is quick and exact; the others name their way.
std::vector<std::string> WithMode(std::vector<std::string> words) {
    const bool records = !words.empty() && (words[0] == "record" || words[0] == "split");
    const auto names = [](const std::string& word) { return word.starts_with("--mode"); };
    if (records && std::ranges::none_of(words, names)) words.insert(words.begin() + 1, "--mode=silence");
    return words;
}

Channel MakePipe() {
    int ends[2] = {-1, -1};
    EXPECT_EQ(pipe2(ends, O_CLOEXEC), 0);
    return {ends[0], ends[1]};
}

Channel MakeTerminal() {
    Channel channel;
    channel.Ours = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    EXPECT_EQ(grantpt(channel.Ours), 0);
    EXPECT_EQ(unlockpt(channel.Ours), 0);
    channel.Theirs = open(ptsname(channel.Ours), O_RDWR | O_NOCTTY | O_CLOEXEC);
    EXPECT_GE(channel.Theirs, 0);
    return channel;
}

}  // namespace

Command::Command(const CommandStart& start) {
    Launch(start);
}

Command::~Command() {
    if (!Result) {
        Signal(SIGKILL);
        waitpid(Pid, nullptr, 0);
    }
    if (OutPipe >= 0) close(OutPipe);
    if (ErrPipe >= 0) close(ErrPipe);
}

void Command::Launch(const CommandStart& start) {
    const Channel out = MakePipe();
    const Channel error = start.Terminal ? MakeTerminal() : MakePipe();
    std::vector<std::string> words = {Program};
    for (std::string& word : WithMode(start.Arguments)) words.push_back(std::move(word));
    std::vector<char*> pointers;
    for (std::string& word : words) pointers.push_back(word.data());
    pointers.push_back(nullptr);
    Pid = fork();
    if (Pid == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        dup2(open("/dev/null", O_RDONLY), 0);
        dup2(out.Theirs, 1);
        dup2(error.Theirs, 2);
        for (const auto& [number, path] : start.Standard) {
            close(number);
            if (!path.empty()) dup2(open(path.c_str(), O_RDWR), number);
        }
        if (start.IgnoresHangup) std::signal(SIGHUP, SIG_IGN);
        setenv("PULSE_SERVER", "unix:/nonexistent/pulse", 1);
        for (const auto& [name, value] : start.Environment) setenv(name.c_str(), value.c_str(), 1);
        if (!start.Folder.empty() && chdir(start.Folder.c_str()) != 0) _exit(126);
        execv(Program, pointers.data());
        _exit(127);
    }
    EXPECT_GT(Pid, 0);
    close(out.Theirs);
    close(error.Theirs);
    OutPipe = out.Ours;
    ErrPipe = error.Ours;
    for (const int descriptor : {OutPipe, ErrPipe}) fcntl(descriptor, F_SETFL, O_NONBLOCK);
}

void Command::Take(int& descriptor, std::string& text) {
    std::array<char, 4096> part{};
    while (descriptor >= 0) {
        const ssize_t got = read(descriptor, part.data(), part.size());
        if (got < 0 && errno == EAGAIN) return;
        if (got > 0) {
            text.append(part.data(), static_cast<size_t>(got));
            continue;
        }
        close(descriptor);
        descriptor = -1;
    }
}

bool Command::HasEnded() {
    if (Result) return true;
    int status = 0;
    if (waitpid(Pid, &status, WNOHANG) != Pid) return false;
    Result = WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
    Take(OutPipe, Out);
    Take(ErrPipe, Err);
    return true;
}

bool Command::WaitUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit) {
    const auto end = std::chrono::steady_clock::now() + limit;
    while (true) {
        Take(OutPipe, Out);
        Take(ErrPipe, Err);
        if (condition()) return true;
        if (std::chrono::steady_clock::now() >= end) return false;
        constexpr int untilNextLook = 5;
        std::array<pollfd, 2> prints = {pollfd{OutPipe, POLLIN, 0}, pollfd{ErrPipe, POLLIN, 0}};
        poll(prints.data(), prints.size(), untilNextLook);
    }
}

int Command::Wait(std::chrono::milliseconds limit) {
    if (WaitUntil([this] { return HasEnded(); }, limit)) return *Result;
    ADD_FAILURE() << "the command does not end; it has printed\n" << Out << Err;
    return -1;
}

void Command::StopReading() {
    close(OutPipe);
    OutPipe = -1;
}

void Command::Signal(int number) const {
    if (Pid > 0 && !Result) kill(Pid, number);
}

Finished RunCommand(const CommandStart& start) {
    Command command(start);
    Finished finished;
    finished.Code = command.Wait();
    finished.Out = command.Out;
    finished.Err = command.Err;
    return finished;
}

std::vector<std::string> LinesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

std::string LastLineOf(const std::string& text) {
    const std::vector<std::string> lines = LinesOf(text);
    return lines.empty() ? std::string() : lines.back();
}

}  // namespace Corvetape::Test
