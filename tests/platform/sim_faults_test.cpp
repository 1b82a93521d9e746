#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>

#include "sim/sim_machine.h"

namespace Corvetape {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

std::span<const std::byte> Bytes(std::string_view text) {
    return std::as_bytes(std::span(text));
}

FileFault FaultAt(FileOperation operation, const std::string& pattern = "*") {
    FileFault fault;
    fault.Operation = operation;
    fault.Pattern = pattern;
    return fault;
}

TEST(MatchesPattern, StarsAndQuestionMarks) {
    EXPECT_TRUE(MatchesPattern("*", ""));
    EXPECT_TRUE(MatchesPattern("*.wav", "/tmp/a.wav"));
    EXPECT_FALSE(MatchesPattern("*.wav", "/tmp/a.wave"));
    EXPECT_TRUE(MatchesPattern("/t?p/*/x*y", "/tmp/a/b/xay"));
    EXPECT_FALSE(MatchesPattern("/t?p", "/tp"));
    EXPECT_TRUE(MatchesPattern("a*b*c", "axxbxbxc"));
    EXPECT_FALSE(MatchesPattern("a*b*c", "axxbxbx"));
    EXPECT_TRUE(MatchesPattern("abc**", "abc"));
    EXPECT_FALSE(MatchesPattern("", "a"));
}

TEST(SimFaults, EachOperationCanFailAndLeavesTheDiskAsItWas) {
    const auto prepare = [](SimFiles& files) {
        files.Put("/d/a", "0123456789");
        files.MakeFolders("/d/empty");
    };
    // The number of the failure; what has none to give is a look that finds nothing.
    struct Case {
        FileOperation Operation;
        std::function<int32_t(SimFiles&)> Run;
    };
    const std::vector<Case> cases = {
        {FileOperation::Create, [](SimFiles& files) { return files.Create("/d/a").Failure.Code(); }},
        {FileOperation::Read, [](SimFiles& files) { return files.ReadAll("/d/a", 99).Failure.Code(); }},
        {FileOperation::Read, [](SimFiles& files) { return files.ReadPart("/d/a", 0, 9).Failure.Code(); }},
        {FileOperation::Patch, [](SimFiles& files) { return files.Patch("/d/a", 0, "x").Code(); }},
        {FileOperation::Replace, [](SimFiles& files) { return files.ReplaceAtomically("/d/a", "x").Code(); }},
        {FileOperation::Append, [](SimFiles& files) { return files.Append("/d/a", "x").Code(); }},
        {FileOperation::Rename, [](SimFiles& files) { return files.Rename("/d/a", "/d/b").Code(); }},
        {FileOperation::Copy, [](SimFiles& files) { return files.Copy("/d/a", "/d/b").Code(); }},
        {FileOperation::Delete, [](SimFiles& files) { return files.Delete("/d/a").Code(); }},
        {FileOperation::MakeFolder, [](SimFiles& files) { return files.MakeFolder("/d/new").Code(); }},
        {FileOperation::DeleteFolder, [](SimFiles& files) { return files.DeleteFolder("/d/empty").Code(); }},
        {FileOperation::Look, [](SimFiles& files) { return files.IsFolder("/d/empty") ? 0 : EACCES; }},
        {FileOperation::Look, [](SimFiles& files) { return files.FileSize("/d/a").Failure.Code(); }},
        {FileOperation::Look, [](SimFiles& files) { return files.List("/d").empty() ? EACCES : 0; }},
        {FileOperation::FreeSpace, [](SimFiles& files) { return files.FreeSpace("/d").Failure.Code(); }},
    };
    for (const Case& each : cases) {
        SimFiles files;
        prepare(files);
        const SimDiskImage before = files.Snapshot();
        FileFault fault = FaultAt(each.Operation);
        fault.Error = EACCES;
        const size_t rule = files.AddFault(fault);
        EXPECT_EQ(each.Run(files), EACCES) << NameOf(each.Operation);
        EXPECT_EQ(files.Snapshot(), before) << NameOf(each.Operation);
        EXPECT_EQ(files.FailedOperations().size(), 1U);
        files.RemoveFault(rule);
        EXPECT_EQ(each.Run(files), 0) << NameOf(each.Operation);
    }
}

TEST(SimFaults, AWriteFailsAfterSoManyBytesAndKeepsWhatFitted) {
    SimFiles files;
    FileFault fault = FaultAt(FileOperation::Write, "*.wav");
    fault.AfterBytes = 10;
    fault.Error = ENOSPC;
    files.AddFault(fault);
    const auto song = files.Create("/a.wav");
    const auto other = files.Create("/a.txt");
    EXPECT_TRUE(song->Write(Bytes("0123456789")));
    EXPECT_FALSE(song->Write(Bytes("x")));
    EXPECT_TRUE(other->Write(Bytes("01234567890123456789")));
    EXPECT_EQ(files.Content("/a.wav"), "0123456789");
    const auto next = files.Create("/b.wav");
    EXPECT_TRUE(next->Write(Bytes("0123")));
    EXPECT_EQ(next->Write(Bytes("456789abc")).Code(), ENOSPC);
    EXPECT_EQ(files.Content("/b.wav"), "0123456789");
    EXPECT_EQ(next->Position(), 10U);
}

TEST(SimFaults, SeekAndCloseCanFailAndAFailedCloseClosesAllTheSame) {
    SimFiles files;
    files.AddFault(FaultAt(FileOperation::Seek));
    files.AddFault(FaultAt(FileOperation::Close));
    const auto file = files.Create("/a");
    EXPECT_TRUE(file->Write(Bytes("abc")));
    EXPECT_FALSE(file->Seek(1));
    EXPECT_EQ(file->Position(), 3U);
    EXPECT_EQ(file->Close().Code(), EIO);
    EXPECT_EQ(files.OpenHandles(), 0U);
    EXPECT_EQ(files.Content("/a"), "abc");
}

TEST(SimFaults, ARuleCanLetCallsPassAndEndAfterSomeTimes) {
    SimFiles files;
    FileFault fault = FaultAt(FileOperation::Append);
    fault.AfterCalls = 2;
    fault.Times = 1;
    files.AddFault(fault);
    std::vector<bool> results;
    for (int call = 0; call < 5; ++call) results.push_back(static_cast<bool>(files.Append("/log", "x")));
    EXPECT_THAT(results, ElementsAre(true, true, false, true, true));
}

TEST(SimFaults, ARuleWithoutAnOperationStrikesAllOnItsPaths) {
    SimFiles files;
    files.Put("/bad/a", "1");
    FileFault fault;
    fault.Pattern = "/bad*";
    files.AddFault(fault);
    EXPECT_EQ(files.ReadAll("/bad/a", 10), std::nullopt);
    EXPECT_FALSE(files.Delete("/bad/a"));
    EXPECT_FALSE(files.IsFolder("/bad"));
    EXPECT_TRUE(files.MakeFolder("/good"));
    EXPECT_THAT(files.FailedOperations(), ElementsAre("Read /bad/a", "Delete /bad/a", "Look /bad"));
    files.ClearFaults();
    EXPECT_TRUE(files.Delete("/bad/a"));
}

TEST(SimFaults, EveryOperationOfARunCanBeMadeToFailInTurn) {
    const auto run = [](SimFiles& files) {
        int done = 0;
        done += files.MakeFolder("/t") ? 1 : 0;
        if (const auto file = files.Create("/t/a")) {
            ++done;
            done += file->Write(Bytes("abc")) ? 1 : 0;
            done += file->Seek(0) ? 1 : 0;
            done += file->Close() ? 1 : 0;
        }
        done += files.Rename("/t/a", "/t/b") ? 1 : 0;
        return done;
    };
    SimFiles whole;
    EXPECT_EQ(run(whole), 6);
    EXPECT_EQ(whole.OperationCount(), 6U);
    const std::vector<std::string> expected = {"MakeFolder /t", "Create /t/a", "Write /t/a",
                                               "Seek /t/a",     "Close /t/a",  "Rename /t/a"};
    for (uint64_t number = 1; number <= 6; ++number) {
        SimFiles files;
        files.FailOperation(number, EROFS);
        EXPECT_LT(run(files), 6);
        EXPECT_THAT(files.FailedOperations(), ElementsAre(expected[number - 1]));
        EXPECT_EQ(files.OpenHandles(), 0U);
    }
    SimFiles beyond;
    beyond.FailOperation(7);
    EXPECT_EQ(run(beyond), 6);
}

TEST(SimFaults, ASlowOperationMovesVirtualTimeAndDoesItsWork) {
    SimMachine machine;
    FileFault slow = FaultAt(FileOperation::Write);
    slow.Error = 0;
    slow.Delay = 250ms;
    slow.Times = 2;
    machine.Files.AddFault(slow);
    bool fired = false;
    const auto timer = machine.Loop.NewTimer([&] { fired = true; });
    timer->Start(100ms, TimerPrecision::Coarse);
    const auto file = machine.Files.Create("/a");
    for (int write = 0; write < 3; ++write) EXPECT_TRUE(file->Write(Bytes("x")));
    EXPECT_EQ(machine.Clock.MonotonicNanoseconds(), 500'000'000);
    EXPECT_FALSE(fired);  // the program stands still meanwhile
    EXPECT_EQ(machine.Files.Content("/a"), "xxx");
}

TEST(SimFaults, AFaultCanBeSlowAndFailToo) {
    SimMachine machine;
    FileFault fault = FaultAt(FileOperation::Create);
    fault.Delay = 20s;
    machine.Files.AddFault(fault);
    EXPECT_EQ(machine.Files.Create("/a"), nullptr);
    EXPECT_EQ(machine.Clock.MonotonicNanoseconds(), 20'000'000'000);
}

TEST(SimFaults, OfTwoRulesASlowOneComesBeforeAFailingOne) {
    SimMachine machine;
    FileFault slow;
    slow.Error = 0;
    slow.Delay = 1s;
    machine.Files.AddFault(slow);
    machine.Files.AddFault(FaultAt(FileOperation::Create));
    EXPECT_EQ(machine.Files.Create("/a"), nullptr);
    EXPECT_EQ(machine.Clock.MonotonicNanoseconds(), 1'000'000'000);
}

}  // namespace
}  // namespace Corvetape
