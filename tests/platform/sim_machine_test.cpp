#include "sim/sim_machine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Corvetape {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> NamesOf(const std::vector<JobResult>& results) {
    std::vector<std::string> names;
    for (const JobResult& result : results)
        names.push_back(result.Name + "=" + std::to_string(result.ExitCode));
    return names;
}

TEST(SimMachine, HandsOutItsOwnParts) {
    SimMachine machine;
    const Machine parts = machine.Get();
    EXPECT_EQ(&parts.Clock, &machine.Clock);
    EXPECT_EQ(&parts.Loop, &machine.Loop);
    EXPECT_EQ(&parts.WaveIn, &machine.WaveIn);
    EXPECT_EQ(&parts.Files, &machine.Files);
    EXPECT_EQ(&parts.Processes, &machine.Processes);
    EXPECT_EQ(&parts.Folders, &machine.Folders);
    EXPECT_EQ(&parts.Dialogs, &machine.Dialogs);
    EXPECT_EQ(&parts.System, &machine.System);
    EXPECT_EQ(&parts.Desktop, &machine.Desktop);
    EXPECT_TRUE(parts.Files.IsFolder("/home/user"));
    EXPECT_TRUE(parts.Files.IsFolder(parts.Folders.ProgramFolder()));
}

TEST(SimMachine, StartsWhenItIsTold) {
    SimMachineOptions options;
    options.WallTime = {1999, 12, 31, 23, 59, 59, 0};
    options.MonotonicNanoseconds = SimClock::NanosecondsToWrap;
    options.Seed = 99;
    SimMachine machine(options);
    EXPECT_EQ(machine.Clock.LocalNow(), options.WallTime);
    EXPECT_EQ(machine.Clock.TimeGetTime(), -2147483647 - 1);
    EXPECT_EQ(machine.System.RandomSeed(), 99U);
}

TEST(SimProcesses, AJobWithoutDurationIsDoneAtOnceAndReported) {
    SimMachine machine;
    machine.Processes.OnJob = [&](const HiddenJob& job) {
        machine.Files.Put("/out.mp3", std::get<CommandTemplate>(job.Steps.at(0)).Text);
        return 3;
    };
    EXPECT_TRUE(machine.Processes.StartHidden({"song", {CommandTemplate{"lame a b", {}}}, "/tmp"}));
    EXPECT_EQ(machine.Files.Content("/out.mp3"), "lame a b");
    EXPECT_EQ(machine.Processes.Running(), 0U);
    EXPECT_THAT(NamesOf(machine.Processes.TakeFinished()), ElementsAre("song=3"));
    EXPECT_THAT(machine.Processes.TakeFinished(), IsEmpty());
    ASSERT_EQ(machine.Processes.Jobs.size(), 1U);
    EXPECT_EQ(machine.Processes.Jobs[0].WorkingFolder, "/tmp");
}

TEST(SimProcesses, JobsDoTheirWorkAtTheirEndInTheOrderOfTheirEnds) {
    SimMachine machine;
    std::vector<std::string> done;
    machine.Processes.OnJob = [&](const HiddenJob& job) {
        done.push_back(job.Name + "@" + std::to_string(machine.Clock.MonotonicNanoseconds() / 1'000'000'000));
        return 0;
    };
    machine.Processes.DurationOf = [](const HiddenJob& job) {
        return std::chrono::milliseconds(job.Name == "long" ? 9000 : 4000);
    };
    for (const char* name : {"long", "short", "same"}) machine.Processes.StartHidden({name, {}, ""});
    machine.Loop.RunFor(3s);
    EXPECT_EQ(machine.Processes.Running(), 3U);
    EXPECT_THAT(machine.Processes.TakeFinished(), IsEmpty());
    machine.Loop.RunFor(10s);
    EXPECT_THAT(done, ElementsAre("short@4", "same@4", "long@9"));
    EXPECT_THAT(NamesOf(machine.Processes.TakeFinished()), ElementsAre("short=0", "same=0", "long=0"));
}

TEST(SimProcesses, AJobMayStartAnother) {
    SimMachine machine;
    machine.Processes.DurationOf = [](const HiddenJob&) { return 1s; };
    machine.Processes.OnJob = [&](const HiddenJob& job) {
        if (job.Name == "first") machine.Processes.StartHidden({"second", {}, ""});
        return 0;
    };
    machine.Processes.StartHidden({"first", {}, ""});
    machine.Loop.RunFor(1500ms);
    EXPECT_EQ(machine.Processes.Running(), 1U);
    machine.Loop.RunFor(500ms);
    EXPECT_THAT(NamesOf(machine.Processes.TakeFinished()), ElementsAre("first=0", "second=0"));
}

TEST(SimProcesses, WaitingForAllMovesTimeToTheLastEndOrTheLimit) {
    SimMachine machine;
    bool fired = false;
    const auto timer = machine.Loop.NewTimer([&] { fired = true; });
    timer->Start(10ms, TimerPrecision::Coarse);
    machine.Processes.DurationOf = [](const HiddenJob&) { return 5s; };
    machine.Processes.StartHidden({"a", {}, ""});
    EXPECT_FALSE(machine.Processes.WaitForAll(2s));
    EXPECT_EQ(machine.Clock.MonotonicNanoseconds(), 2'000'000'000);
    EXPECT_TRUE(machine.Processes.WaitForAll(60s));
    EXPECT_EQ(machine.Clock.MonotonicNanoseconds(), 5'000'000'000);
    EXPECT_FALSE(fired);
    EXPECT_TRUE(machine.Processes.WaitForAll(0s));
}

TEST(SimProcesses, RefusedJobsAreWrittenDownAndNotRun) {
    SimMachine machine;
    bool ran = false;
    machine.Processes.OnJob = [&](const HiddenJob&) {
        ran = true;
        return 0;
    };
    machine.Processes.RefuseJobs = true;
    EXPECT_FALSE(machine.Processes.StartHidden({"a", {}, ""}));
    EXPECT_FALSE(ran);
    EXPECT_EQ(machine.Processes.Jobs.size(), 1U);
    EXPECT_THAT(machine.Processes.TakeFinished(), IsEmpty());
}

TEST(SimProcesses, ShellOpenSucceedsUnlessTheScriptSaysOtherwise) {
    SimMachine machine;
    EXPECT_GT(machine.Processes.ShellOpen("/usr/bin/player", "-x", "/tmp"), 32);
    machine.Processes.OnShellOpen = [](const ShellCall& call) { return call.Path == "/none" ? 2 : 33; };
    EXPECT_EQ(machine.Processes.ShellOpen("/none", "", ""), 2);
    EXPECT_THAT(machine.Processes.ShellCalls,
                ElementsAre(ShellCall{"/usr/bin/player", "-x", "/tmp"}, ShellCall{"/none", "", ""}));
}

TEST(SimFolders, ShellFoldersAreMadeAndUnknownOnesEmpty) {
    SimMachine machine;
    EXPECT_EQ(machine.Folders.ShellFolderPath(ShellFolder::MyMusic), "/home/user/Music");
    EXPECT_TRUE(machine.Files.IsFolder("/home/user/Music"));
    machine.Folders.ShellFolders.erase(ShellFolder::MyMusic);
    EXPECT_EQ(machine.Folders.ShellFolderPath(ShellFolder::MyMusic), "");
}

TEST(SimFolders, VariablesAreFoundExactlyThenIgnoringCase) {
    SimMachine machine;
    machine.Folders.Variables = {{"Path", "exact"}, {"PATH", "capitals"}, {"Temp", "/t"}};
    EXPECT_EQ(machine.Folders.Environment("PATH"), "capitals");
    EXPECT_EQ(machine.Folders.Environment("Path"), "exact");
    EXPECT_EQ(machine.Folders.Environment("TEMP"), "/t");
    EXPECT_EQ(machine.Folders.Environment("none"), std::nullopt);
}

TEST(SimFolders, SettingAVariableKeepsTheNameItHas) {
    SimMachine machine;
    EXPECT_TRUE(machine.Folders.SetEnvironment("Path", "/opt/tools"));
    EXPECT_EQ(machine.Folders.Environment("PATH"), "/opt/tools");
    EXPECT_FALSE(machine.Folders.Variables.contains("Path"));
    EXPECT_TRUE(machine.Folders.SetEnvironment("New", "1"));
    EXPECT_EQ(machine.Folders.Environment("new"), "1");
    machine.Folders.RefuseVariables = true;
    EXPECT_FALSE(machine.Folders.SetEnvironment("New", "2"));
    EXPECT_EQ(machine.Folders.Environment("New"), "1");
}

TEST(SimFolders, ProgramsAreSearchedInTheOrderOfTheSearchPath) {
    SimMachine machine;
    EXPECT_EQ(machine.Folders.FindProgram("lame"), std::nullopt);
    machine.Files.Put("/bin/lame", "");
    EXPECT_EQ(machine.Folders.FindProgram("lame"), "/bin/lame");
    machine.Files.Put("/usr/bin/lame", "");
    EXPECT_EQ(machine.Folders.FindProgram("lame"), "/usr/bin/lame");
    machine.Files.MakeFolders("/usr/local/bin/lame");  // a folder is no program
    EXPECT_EQ(machine.Folders.FindProgram("lame"), "/usr/bin/lame");
    machine.Folders.SetEnvironment("PATH", "::");
    EXPECT_EQ(machine.Folders.FindProgram("lame"), std::nullopt);
}

TEST(SimDialogs, WithoutAnswersBoxesAreClosed) {
    SimDialogs dialogs;
    dialogs.ShowMessage("text", DialogIcon::Critical);
    EXPECT_FALSE(dialogs.AskYesNo("sure?", DialogIcon::Exclamation));
    EXPECT_EQ(dialogs.BrowseForFolder("Folder", "/a"), std::nullopt);
    EXPECT_EQ(dialogs.OpenFile("File", "*.exe", "/b"), std::nullopt);
    dialogs.Beep();
    EXPECT_EQ(dialogs.Beeps, 1U);
    EXPECT_THAT(dialogs.Boxes,
                ElementsAre(ShownBox{BoxKind::Message, "text", DialogIcon::Critical, "", ""},
                            ShownBox{BoxKind::YesNo, "sure?", DialogIcon::Exclamation, "", ""},
                            ShownBox{BoxKind::Folder, "Folder", DialogIcon::Information, "", "/a"},
                            ShownBox{BoxKind::File, "File", DialogIcon::Information, "*.exe", "/b"}));
}

TEST(SimDialogs, AnswersAreUsedInTheirOrder) {
    SimDialogs dialogs;
    dialogs.YesNoAnswers = {true, false};
    dialogs.FolderAnswers = {std::nullopt, "/music"};
    dialogs.FileAnswers = {"/bin/x"};
    EXPECT_TRUE(dialogs.AskYesNo("1", DialogIcon::Information));
    EXPECT_FALSE(dialogs.AskYesNo("2", DialogIcon::Information));
    EXPECT_FALSE(dialogs.AskYesNo("3", DialogIcon::Information));
    EXPECT_EQ(dialogs.BrowseForFolder("", ""), std::nullopt);
    EXPECT_EQ(dialogs.BrowseForFolder("", ""), "/music");
    EXPECT_EQ(dialogs.OpenFile("", "", ""), "/bin/x");
}

TEST(SimDialogs, KindsOfQuestionsAreNotedAndShareTheirAnswers) {
    SimDialogs dialogs;
    dialogs.YesNoAnswers = {true};
    EXPECT_TRUE(dialogs.AskOkCancel("begin", DialogIcon::Question));
    EXPECT_FALSE(dialogs.AskNoYes("sure?", DialogIcon::Information));
    EXPECT_THAT(dialogs.Boxes,
                ElementsAre(ShownBox{BoxKind::OkCancel, "begin", DialogIcon::Question, "", ""},
                            ShownBox{BoxKind::NoYes, "sure?", DialogIcon::Information, "", ""}));
}

TEST(SimDialogs, TimeCanPassWhileABoxIsOpen) {
    SimMachine machine;
    size_t ticks = 0;
    size_t openAtTick = 0;
    const auto timer = machine.Loop.NewTimer([&] {
        ++ticks;
        openAtTick = machine.Dialogs.Open;
    });
    timer->Start(1s, TimerPrecision::Coarse);
    machine.Dialogs.WhileOpen = [&](const ShownBox& box) {
        EXPECT_EQ(box.Text, "wait");
        machine.Loop.RunFor(3s);
        machine.Dialogs.YesNoAnswers.push_back(true);
    };
    EXPECT_TRUE(machine.Dialogs.AskYesNo("wait", DialogIcon::Information));
    EXPECT_EQ(ticks, 3U);
    EXPECT_EQ(openAtTick, 1U);
    EXPECT_EQ(machine.Dialogs.Open, 0U);
}

TEST(SimDesktop, OfTwoProgramsInOnePlaceTheFirstHoldsIt) {
    SimMachineOptions options;
    options.Place = std::make_shared<InstancePlace>();
    auto first = std::make_unique<SimMachine>(options);
    SimMachine second(options);
    SimMachine elsewhere;
    EXPECT_TRUE(first->Desktop.ClaimInstance());
    EXPECT_TRUE(first->Desktop.ClaimInstance());
    EXPECT_FALSE(second.Desktop.ClaimInstance());
    EXPECT_TRUE(elsewhere.Desktop.ClaimInstance());
    second.Desktop.ActivateOther();
    first->Desktop.ActivateOther();
    EXPECT_EQ(options.Place->Activations, 1U);
    first.reset();
    EXPECT_TRUE(second.Desktop.ClaimInstance());
}

TEST(SimSystemInfo, CountsRaisedPrioritiesAndGivesItsVersion) {
    SimMachine machine;
    machine.System.RaisePriority();
    EXPECT_EQ(machine.System.PriorityRaises, 1U);
    machine.System.VersionRecord = {1, 4, 90, 3000};
    EXPECT_EQ(machine.Get().System.Version().Minor, 90U);
}

}  // namespace
}  // namespace Corvetape
