// A recording never takes the place of the file that it comes from.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/cli_test.h"

namespace Corvetape {
namespace {

using namespace Test;
using testing::Contains;
using testing::SizeIs;

/// All songs have the name of the file, and the rule that lets them replace what is there.
class OwnSourceTest : public CliTest {
 protected:
    OwnSourceTest() { Put("names.csv", "0,,Ann,One,\n"); }

    Finished SplitHere(const std::string& file) const {
        return RunCommand(With("split", {file, "--out", folder.Path(), "--media", "names.csv", "--set",
                                         "Options.SameName=0", "--set", "Options.DelTemp=1", "--json"}));
    }
};

TEST_F(OwnSourceTest, AFileThatIsSplitIntoItsOwnFolderStaysAsItIs) {
    const std::string file = PutWave("Ann - One.wav", MakeRecording({.Seconds = 10}));
    const std::string before = Content(file);
    const Finished run = SplitHere("Ann - One.wav");
    EXPECT_EQ(run.Code, 0) << run.Err;
    EXPECT_TRUE(Content(file) == before);
    EXPECT_THAT(Objects(run.Out), SizeIs(3));
    for (const Json& song : Objects(run.Out)) EXPECT_NE(song["file"], file);
    EXPECT_THAT(FilesBelow(folder.Path()), Contains("Ann - One (2).wav"));
}

TEST_F(OwnSourceTest, ThatHoldsForAnotherNameOfTheFileToo) {
    const std::string file = PutWave("tape.wav", MakeRecording({.Seconds = 10}));
    const std::string before = Content(file);
    std::filesystem::create_hard_link(file, folder / "Ann - One.wav");
    const Finished run = SplitHere("tape.wav");
    EXPECT_EQ(run.Code, 0) << run.Err;
    EXPECT_THAT(Objects(run.Out), SizeIs(3));
    EXPECT_TRUE(Content(file) == before);
    EXPECT_TRUE(std::filesystem::equivalent(file, folder / "Ann - One.wav"));
}

TEST_F(OwnSourceTest, AFileThatIsRecordedIntoItsOwnFolderStaysAsItIsToo) {
    PutWave("tape.wav", MakeRecording({.Seconds = 10}));
    ASSERT_EQ(SplitHere("tape.wav").Code, 0);
    std::filesystem::create_directories(Home() + "/Music");
    const std::string file = Home() + "/Music/Ann - One.wav";
    std::filesystem::rename(folder / "Ann - One.wav", file);  // with tags that name what is recorded of it
    const std::string before = Content(file);
    const Finished run = RunCommand(With(
        "record", {"--input", "file:" + file, "--speed", "1000", "--set", "Options.SameName=0", "--json"}));
    EXPECT_EQ(run.Code, 0) << run.Err;
    EXPECT_TRUE(Content(file) == before);
    ASSERT_THAT(Objects(run.Out), SizeIs(1));
    EXPECT_EQ(Objects(run.Out)[0]["title"], "One");
    EXPECT_THAT(Objects(run.Out)[0]["file"], testing::EndsWith("/Ann - One (2).wav"));
}

}  // namespace
}  // namespace Corvetape
