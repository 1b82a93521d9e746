#include "platform/linux/processes/linux_processes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "support/live_session.h"
#include "support/temp_folder.h"

namespace Corvetape {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using testing::ElementsAre;
using testing::IsEmpty;

HiddenJob JobOf(const std::string& name, const std::string& commands, const std::string& folder) {
    return {name, {CommandTemplate{commands, {}}}, folder};
}

class LinuxProcessesTest : public testing::Test {
 protected:
    std::string Get(const std::string& name) const {
        std::ifstream file(folder / name);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    void Script(const std::string& name, const std::string& content) const {
        std::ofstream(folder / name) << content;
        chmod((folder / name).c_str(), 0755);
    }
    /// Runs one job to its end; what it printed is in the file "out".
    std::string Run(const std::string& command) {
        EXPECT_TRUE(processes.StartHidden(JobOf("job", "{ " + command + "; } >out 2>&1", folder.Path())));
        EXPECT_TRUE(processes.WaitForAll(seconds(30)));
        return Get("out");
    }

    TempFolder folder;
    LiveSession session;
    LinuxProcesses processes;
};

TEST_F(LinuxProcessesTest, AJobRunsInTheShellInItsFolder) {
    EXPECT_EQ(Run("pwd; echo \"$((1 + 2))\""), folder.Path() + "\n3\n");
}

TEST_F(LinuxProcessesTest, AJobIsNiceAndInASessionOfItsOwn) {
    setpriority(PRIO_PROCESS, 0, -5);  // granted to some only; the job's value is the same anyway
    std::istringstream out(
        Run("ps -o ni=,pid=,pgid=,sid= -p $$; readlink /proc/self/fd/0; ls /proc/self/fd"));
    setpriority(PRIO_PROCESS, 0, 0);
    int nice = 0;
    pid_t pid = 0;
    pid_t group = 0;
    pid_t ownSession = 0;
    std::string input;
    out >> nice >> pid >> group >> ownSession >> input;
    EXPECT_EQ(nice, 10);
    EXPECT_EQ(group, pid);
    EXPECT_EQ(ownSession, pid);
    EXPECT_EQ(input, "/dev/null");
    std::string descriptors;
    for (std::string number; out >> number;) descriptors += number + " ";
    EXPECT_EQ(descriptors, "0 1 2 3 ") << "3 is that of ls";
}

TEST_F(LinuxProcessesTest, ResultsComeOnceInTheOrderOfTheEnds) {
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    processes.StartHidden(JobOf("slow", "read x < pipe; exit 3", folder.Path()));
    processes.StartHidden(JobOf("quick", "exit 7", folder.Path()));
    std::vector<JobResult> results;
    const auto collect = [&] {
        for (JobResult& result : processes.TakeFinished()) results.push_back(result);
        return results.size();
    };
    ASSERT_TRUE(session.WaitFor([&] { return collect() == 1; }, seconds(30)));
    EXPECT_EQ(results[0].Name, "quick");
    EXPECT_EQ(results[0].ExitCode, 7);
    EXPECT_EQ(processes.Running(), 1u);
    EXPECT_FALSE(processes.WaitForAll(milliseconds(20)));
    std::ofstream(folder / "pipe") << "x\n";
    EXPECT_TRUE(processes.WaitForAll(seconds(30)));
    EXPECT_EQ(processes.Running(), 0u);
    ASSERT_EQ(collect(), 2u);
    EXPECT_EQ(results[1].Name, "slow");
    EXPECT_EQ(results[1].ExitCode, 3);
    EXPECT_THAT(processes.TakeFinished(), IsEmpty());
}

TEST_F(LinuxProcessesTest, AKilledJobShows128PlusTheSignal) {
    processes.StartHidden(JobOf("job", "kill -9 $$", folder.Path()));
    ASSERT_TRUE(processes.WaitForAll(seconds(30)));
    const std::vector<JobResult> results = processes.TakeFinished();
    ASSERT_EQ(results.size(), 1u);
    EXPECT_EQ(results[0].ExitCode, 137);
}

TEST_F(LinuxProcessesTest, NothingIsLeftOfJobsThatHaveEnded) {
    for (int i = 0; i < 30; ++i) processes.StartHidden(JobOf("job", "exit 0", folder.Path()));
    ASSERT_TRUE(processes.WaitForAll(seconds(30)));
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD) << "a child was left as a zombie";
}

TEST_F(LinuxProcessesTest, ChildrenOfOthersAreNotTouched) {
    const pid_t own = fork();
    if (own == 0) _exit(5);
    processes.StartHidden(JobOf("job", "exit 0", folder.Path()));
    ASSERT_TRUE(processes.WaitForAll(seconds(30)));
    int status = 0;
    ASSERT_EQ(waitpid(own, &status, 0), own);
    EXPECT_EQ(WEXITSTATUS(status), 5);
}

TEST_F(LinuxProcessesTest, AMissingFolderIsAFailedStart) {
    EXPECT_FALSE(processes.StartHidden(JobOf("job", "exit 0", folder / "none")));
    EXPECT_EQ(processes.Running(), 0u);
    EXPECT_THAT(processes.TakeFinished(), IsEmpty());
}

TEST_F(LinuxProcessesTest, AJobSurvivesItsStarter) {
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    const pid_t starter = fork();
    if (starter == 0) {
        LinuxProcesses own;
        own.StartHidden(JobOf("job", "read x < pipe; echo $x > out.new; mv out.new out", folder.Path()));
        _exit(0);
    }
    ASSERT_EQ(waitpid(starter, nullptr, 0), starter);
    std::ofstream(folder / "pipe") << "alive\n";
    EXPECT_TRUE(session.WaitFor([&] { return Get("out") == "alive\n"; }, seconds(30)));
}

TEST_F(LinuxProcessesTest, AJobIsNotBlockedBySignalsThatThisProgramIgnores) {
    signal(SIGPIPE, SIG_IGN);
    sigset_t blocked;
    sigset_t before;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &blocked, &before);
    const std::string masks = Run("grep -E 'SigBlk|SigIgn' /proc/self/status");
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    signal(SIGPIPE, SIG_DFL);
    // Signal 32 belongs to the C library; whoever started the tests may ignore it, and nobody can undo that.
    EXPECT_THAT(masks, testing::AnyOf("SigBlk:\t0000000000000000\nSigIgn:\t0000000000000000\n",
                                      "SigBlk:\t0000000000000000\nSigIgn:\t0000000080000000\n"));
}

TEST_F(LinuxProcessesTest, ShellOpenPassesItsParametersWithoutAShell) {
    Script("show", "#!/bin/sh\nfor a; do echo \"[$a]\"; done > \"$PWD/out.new\"; mv out.new out\n");
    EXPECT_EQ(processes.ShellOpen(folder / "show", "a \"b c\" '$HOME' d\\ e `x` ;", folder.Path()), 33);
    EXPECT_TRUE(session.WaitFor([&] { return !Get("out").empty(); }, seconds(30)));
    EXPECT_EQ(Get("out"), "[a]\n[b c]\n[$HOME]\n[d e]\n[`x`]\n[;]\n");
    EXPECT_EQ(processes.Running(), 0u);
    EXPECT_THAT(processes.TakeFinished(), IsEmpty());
}

TEST_F(LinuxProcessesTest, ShellOpenSearchesNamesOnTheSearchPath) {
    EXPECT_EQ(processes.ShellOpen("true", "", ""), 33);
    EXPECT_EQ(processes.ShellOpen("corvetape-has-no-such-program", "", ""), 2);
}

TEST_F(LinuxProcessesTest, ShellOpenReportsWhyItFailed) {
    Script("broken",
           "\x7f"
           "ELF but not really");
    Script("no-interpreter", "#!" + (folder / "none") + "\n");
    EXPECT_EQ(processes.ShellOpen("", "", ""), 2);
    EXPECT_EQ(processes.ShellOpen(folder / "none", "", ""), 2);
    EXPECT_EQ(processes.ShellOpen(folder / "none/none", "", ""), 3);
    EXPECT_EQ(processes.ShellOpen(folder / "broken/none", "", ""), 3);
    EXPECT_EQ(processes.ShellOpen(folder / "broken", "", ""), 11);
    EXPECT_EQ(processes.ShellOpen(folder / "no-interpreter", "", ""), 2);
    EXPECT_EQ(processes.ShellOpen("true", "", folder / "none"), 3);
}

TEST_F(LinuxProcessesTest, DocumentsAndAddressesAreHandedToTheDesktop) {
    std::ofstream(folder / "notes.txt") << "text";
    std::filesystem::create_directory(folder / "bin");
    const std::string path = std::getenv("PATH");
    setenv("PATH", (folder / "bin").c_str(), 1);
    EXPECT_EQ(processes.ShellOpen(folder / "notes.txt", "", ""), 31) << "nothing there to open it with";
    EXPECT_EQ(processes.ShellOpen("https://localhost/", "", ""), 31);
    Script("bin/xdg-open", "#!/bin/sh\n/bin/echo \"$#:$1\" >> '" + folder.Path() + "/out'\n");
    const auto opened = [&](const std::string& what) {
        std::filesystem::remove(folder / "out");
        EXPECT_EQ(processes.ShellOpen(what, "ignored", ""), 33);
        EXPECT_TRUE(session.WaitFor([&] { return !Get("out").empty(); }, seconds(30)));
        return Get("out");
    };
    EXPECT_EQ(opened(folder / "notes.txt"), "1:" + (folder / "notes.txt") + "\n");
    EXPECT_EQ(opened(folder / "bin"), "1:" + (folder / "bin") + "\n");
    EXPECT_EQ(opened("https://localhost/a?b=c&d"), "1:https://localhost/a?b=c&d\n");
    setenv("PATH", path.c_str(), 1);
}

TEST_F(LinuxProcessesTest, WhatTheDesktopCouldNotOpenIsToldOnce) {
    std::filesystem::create_directory(folder / "bin");
    const std::string path = std::getenv("PATH");
    setenv("PATH", (folder / "bin").c_str(), 1);
    Script("bin/xdg-open",
           "#!/bin/sh\n[ \"$1\" != https://localhost/ ] || exit 3\n>'" + folder.Path() + "/opened'\n");
    Script("fails", "#!/bin/sh\nexit 3\n");
    EXPECT_EQ(processes.ShellOpen("https://localhost/", "", ""), 33);
    std::vector<std::string> unopened;
    EXPECT_TRUE(session.WaitFor([&] { return !(unopened = processes.TakeUnopened()).empty(); }, seconds(30)));
    EXPECT_THAT(unopened, ElementsAre("https://localhost/"));
    // A program's own failure is no failure to open it.
    EXPECT_EQ(processes.ShellOpen(folder / "fails", "", ""), 33);
    EXPECT_EQ(processes.ShellOpen(folder / "bin", "", ""), 33);
    EXPECT_TRUE(session.WaitFor([&] { return std::filesystem::exists(folder / "opened"); }, seconds(30)));
    EXPECT_EQ(Run("true"), "");  // whoever has ended before is collected
    EXPECT_THAT(processes.TakeUnopened(), IsEmpty());
    setenv("PATH", path.c_str(), 1);
}

TEST(SplitParameters, SplitsLikeAShellThatExpandsNothing) {
    EXPECT_THAT(SplitParameters(""), IsEmpty());
    EXPECT_THAT(SplitParameters(" \t a  b\n"), ElementsAre("a", "b"));
    EXPECT_THAT(SplitParameters("\"a b\" 'c \"d' e\\ f"), ElementsAre("a b", "c \"d", "e f"));
    EXPECT_THAT(SplitParameters("x\"y z\"w ''"), ElementsAre("xy zw", ""));
    EXPECT_THAT(SplitParameters("\"a\\\"b\\\\c\\d\""), ElementsAre("a\"b\\c\\d"));
    EXPECT_THAT(SplitParameters("'a\\'b"), ElementsAre("a\\b"));
    EXPECT_THAT(SplitParameters("\"open end"), ElementsAre("open end"));
    EXPECT_THAT(SplitParameters("end\\"), ElementsAre("end\\"));
    EXPECT_THAT(SplitParameters("$x *.wav `id` ~"), ElementsAre("$x", "*.wav", "`id`", "~"));
}

}  // namespace
}  // namespace Corvetape
