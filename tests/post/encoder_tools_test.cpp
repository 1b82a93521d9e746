#include "post/encoders/encoder_tools.h"

#include <gtest/gtest.h>

#include <string>

#include "core/settings/registry.h"
#include "sim/sim_machine.h"

namespace Corvetape {
namespace {

class EncoderToolsTest : public ::testing::Test {
 protected:
    FoundTools Find() { return FindTools(Sim.Files, Sim.Folders, Places, &Probe); }

    SimMachine Sim;
    RegistryBranches Registry{Sim.Files, "/home/user/user.reg", "/home/user/machine.reg"};
    WmaEncoderProbe Probe{Sim.Files, Sim.Processes, Registry};
    WorkingFolders Places{{}, "", "/usr/share/Corvet", "/opt/corvetape"};
};

TEST_F(EncoderToolsTest, NothingIsFoundOnAnEmptyMachine) {
    const FoundTools found = Find();
    for (const EncoderTool tool :
         {EncoderTool::Lame, EncoderTool::OggEnc, EncoderTool::WmaEncoder, EncoderTool::Sox}) {
        EXPECT_FALSE(HasTool(found, tool));
    }
    EXPECT_TRUE(HasTool(found, EncoderTool::None));
}

TEST_F(EncoderToolsTest, AToolCountsBesideTheProgram) {
    Sim.Files.Put("/opt/corvetape/lame", "x");
    EXPECT_EQ(Find().Lame, "/opt/corvetape/lame");
    EXPECT_TRUE(HasTool(Find(), EncoderTool::Lame));
}

TEST_F(EncoderToolsTest, AToolCountsInTheCommonFolder) {
    Sim.Files.Put("/usr/share/Corvet/oggenc", "x");
    EXPECT_EQ(Find().OggEnc, "/usr/share/Corvet/oggenc");
    EXPECT_TRUE(HasTool(Find(), EncoderTool::OggEnc));
}

TEST_F(EncoderToolsTest, AToolCountsOnTheSearchPath) {
    Sim.Folders.SetEnvironment("PATH", "/usr/local/bin:/usr/bin");
    Sim.Files.Put("/usr/bin/sox", "x");
    EXPECT_EQ(Find().Sox, "/usr/bin/sox");
    EXPECT_TRUE(HasTool(Find(), EncoderTool::Sox));
}

TEST_F(EncoderToolsTest, BesideTheProgramComesFirstThenTheCommonFolder) {
    Sim.Folders.SetEnvironment("PATH", "/usr/bin");
    Sim.Files.Put("/usr/bin/lame", "x");
    Sim.Files.Put("/usr/share/Corvet/lame", "x");
    EXPECT_EQ(Find().Lame, "/usr/share/Corvet/lame");
    Sim.Files.Put("/opt/corvetape/lame", "x");
    EXPECT_EQ(Find().Lame, "/opt/corvetape/lame");
}

TEST_F(EncoderToolsTest, AFolderOfTheNameIsNoTool) {
    Sim.Files.MakeFolders("/opt/corvetape/lame");
    EXPECT_EQ(Find().Lame, "");
}

TEST_F(EncoderToolsTest, AnFfmpegIsAskedForItsEncoderOnceForEachFile) {
    EXPECT_FALSE(HasTool(Find(), EncoderTool::WmaEncoder));
    EXPECT_EQ(Sim.Processes.Jobs.size(), 0U);
    Sim.Files.Put("/opt/corvetape/ffmpeg", "x");
    for (int start = 0; start < 2; ++start) {
        EXPECT_TRUE(HasTool(Find(), EncoderTool::WmaEncoder));
        EXPECT_EQ(Sim.Processes.Jobs.size(), 1U);
    }
    Sim.Files.Put("/opt/corvetape/ffmpeg", "another one");
    EXPECT_TRUE(HasTool(Find(), EncoderTool::WmaEncoder));
    EXPECT_EQ(Sim.Processes.Jobs.size(), 2U);
    EXPECT_EQ(FindTools(Sim.Files, Sim.Folders, Places, nullptr).WmaEncoderVersion, "");
}

TEST_F(EncoderToolsTest, AWmaEncoderOfVersionNineOrLaterCounts) {
    const auto counts = [](const char* version) {
        return HasTool({"", "", "", "", version}, EncoderTool::WmaEncoder);
    };
    EXPECT_TRUE(counts("9"));
    EXPECT_TRUE(counts("9.00.00.2980"));
    EXPECT_TRUE(counts("10"));
    EXPECT_FALSE(counts("8.0"));
    EXPECT_FALSE(counts("8.99"));
    EXPECT_FALSE(counts(""));
    EXPECT_FALSE(counts("new"));
}

TEST_F(EncoderToolsTest, TheProbeAnswersNineIfItsCommandSucceeds) {
    EXPECT_EQ(ProbeWmaEncoder(Sim.Processes, "/opt/it's/ffmpeg"), "9");
    ASSERT_EQ(Sim.Processes.Jobs.size(), 1U);
    EXPECT_TRUE(Mentions(Sim.Processes.Jobs[0], "/opt/it's/ffmpeg"));
}

TEST_F(EncoderToolsTest, TheProbeAnswersNothingIfItsCommandFailsHangsOrCannotStart) {
    Sim.Processes.OnJob = [](const HiddenJob&) { return 1; };
    EXPECT_EQ(ProbeWmaEncoder(Sim.Processes, "ffmpeg"), "");
    Sim.Processes.OnJob = nullptr;
    Sim.Processes.DurationOf = [](const HiddenJob&) { return std::chrono::milliseconds(60000); };
    EXPECT_EQ(ProbeWmaEncoder(Sim.Processes, "ffmpeg"), "");
    Sim.Processes.RefuseJobs = true;
    EXPECT_EQ(ProbeWmaEncoder(Sim.Processes, "ffmpeg"), "");
}

}  // namespace
}  // namespace Corvetape
