// What is printed where nobody reads it, or where it has no room.
#include "cli/output.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "cli/cli_test.h"

namespace Corvetape {
namespace {

using namespace Test;
using testing::HasSubstr;
using testing::Not;
using testing::SizeIs;

constexpr const char* Lost = "corvetape-cli: the output could not be written\n";

class OutputTest : public CliTest {
 protected:
    CommandStart Demo(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"--input", "demo", "--speed", "1000"});
        return With("record", std::move(arguments));
    }
};

TEST_F(OutputTest, ThatNobodyReadsAnyMoreEndsTheRecordingInOrder) {
    Command command(Demo({}));
    command.StopReading();
    EXPECT_EQ(command.Wait(), 1);
    EXPECT_EQ(command.Err, Lost);
    EXPECT_THAT(FilesBelow(Home() + "/Music"), Not(testing::IsEmpty()));
    for (const std::string& left : FilesBelow(Home() + "/cache")) EXPECT_THAT(left, Not(HasSubstr(".note")));
}

TEST_F(OutputTest, ThatHasNoRoomIsAFailureButLosesNoSong) {
    CommandStart start = Demo({"--songs", "2", "--json"});
    start.Standard[STDOUT_FILENO] = "/dev/full";
    const Finished run = RunCommand(start);
    EXPECT_EQ(run.Code, 1);
    EXPECT_EQ(run.Err, Lost);
    EXPECT_THAT(FilesBelow(Home() + "/Music"), SizeIs(2));
}

TEST_F(OutputTest, OfErrorsThatCannotBeWrittenHindersNothing) {
    WriteSound(folder / "show.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_U8, MakeRecording().Frames, 1);
    CommandStart start = With("split", {"show.wav", "--out", Out(), "--json"});
    start.Standard[STDERR_FILENO] = "/dev/full";
    const Finished run = RunCommand(start);
    EXPECT_EQ(run.Code, 0);
    EXPECT_THAT(Objects(run.Out), SizeIs(3));
    start.Arguments.emplace_back("--loud");
    EXPECT_EQ(RunCommand(start).Code, 2);
}

TEST_F(OutputTest, ThatIsClosedHindersNothing) {
    CommandStart start = With("split", {PutWave("show.wav", MakeRecording()), "--out", Out()});
    start.Standard = {{STDIN_FILENO, ""}, {STDOUT_FILENO, ""}, {STDERR_FILENO, ""}};
    EXPECT_EQ(RunCommand(start).Code, 0);
    EXPECT_THAT(FilesBelow(Out()), SizeIs(3));
}

TEST(OpenStandardFiles, LeavesNoneOfThemToAnotherFile) {
    const auto next = [] {
        close(STDIN_FILENO);
        close(STDOUT_FILENO);
        OpenStandardFiles();
        _exit(open("/dev/null", O_RDONLY) > STDERR_FILENO ? 0 : 1);
    };
    EXPECT_EXIT(next(), testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace Corvetape
