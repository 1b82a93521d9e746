#include "cli/run_support.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/hosts.h"
#include "cli/live_state.h"
#include "cli/obstacles.h"
#include "forms/frm_main.h"
#include "sim/sim_files.h"
#include "support/temp_folder.h"

namespace Corvetape {
namespace {

using testing::Contains;
using testing::ElementsAre;

MATCHER_P3(IsSetting, section, key, value, "") {
    return arg.Section == section && arg.Key == key && arg.Value == value && !arg.InDataFile;
}

TEST(ConversionText, AFileThatIsTakenAsItIsNeedsNone) {
    EXPECT_EQ(ConversionText("a.wav", {44100, 2, 16}, 44100), std::nullopt);
    EXPECT_EQ(ConversionText("a.ogg", {48000, 2, 0}, 48000), std::nullopt);
}

TEST(ConversionText, NamesEverythingThatIsConverted) {
    EXPECT_EQ(ConversionText("a.wav", {44100, 1, 16}, 44100),
              "a.wav: is mono; converted to 16-bit stereo at 44100 Hz");
    EXPECT_EQ(ConversionText("a.wav", {44100, 2, 8}, 44100),
              "a.wav: is 8-bit; converted to 16-bit stereo at 44100 Hz");
    EXPECT_EQ(ConversionText("a.mp3", {22050, 1, 0}, 44100),
              "a.mp3: is mono, 22050 Hz; converted to 16-bit stereo at 44100 Hz");
    EXPECT_EQ(ConversionText("a.flac", {96000, 2, 24}, 44100),
              "a.flac: is 24-bit, 96000 Hz; converted to 16-bit stereo at 44100 Hz");
}

TEST(MakeOverrides, TheUsersComeLastAndSoWin) {
    CommonArguments arguments;
    arguments.Settings = {{"Options", "Encoder", "1"}};
    const auto made = MakeOverrides({{"Options", "Encoder", "0"}}, arguments);
    ASSERT_GE(made.size(), 2u);
    EXPECT_THAT(made.front(), IsSetting("Options", "Encoder", "0"));
    EXPECT_THAT(made.back(), IsSetting("Options", "Encoder", "1"));
}

TEST(MakeOverrides, WhatHoldsForEverySourceIsPassedOnAsThat) {
    CommonArguments arguments;
    arguments.Settings = {{"Source", "LengthOfPause", "500"}};
    EXPECT_THAT(MakeOverrides({}, arguments), Contains(IsSetting("Source", "LengthOfPause", "500")));
}

/// Processes of which some run until they are waited for.
class FewProcesses : public Processes {
 public:
    bool IsWhole(const CommandTemplate&) const override { return true; }
    bool StartHidden(const HiddenJob&) override { return true; }
    int32_t ShellOpen(const std::string&, const std::string&, const std::string&) override { return 42; }
    size_t Running() override { return Jobs; }
    std::vector<JobResult> TakeFinished() override { return {}; }
    bool WaitForAll(std::chrono::milliseconds) override {
        ++Waits;
        if (Jobs > 0) --Jobs;
        return Jobs == 0;
    }

    size_t Jobs = 0;
    int Waits = 0;
};

TEST(WaitForEncoderRoom, WaitsWhileMoreEncodersRunThanTheMachineHasRoomFor) {
    FewProcesses processes;
    processes.Jobs = 100'000;
    WaitForEncoderRoom(processes);
    const size_t room = processes.Jobs;
    EXPECT_GE(room, 2u);
    EXPECT_LT(room, 10'000u);
    processes.Waits = 0;
    WaitForEncoderRoom(processes);
    EXPECT_EQ(processes.Waits, 0) << "there was room";
    processes.Jobs = room + 1;
    WaitForEncoderRoom(processes);
    EXPECT_EQ(processes.Waits, 1);
}

TEST(MakeFolders, MakesAllLevels) {
    SimFiles files;
    EXPECT_TRUE(MakeFolders(files, "/a/b/c"));
    EXPECT_TRUE(files.IsFolder("/a/b/c"));
    EXPECT_TRUE(MakeFolders(files, "/a/b/c"));
}

TEST(FolderObstacle, LeavesNothingBehind) {
    const TempFolder folder;
    LinuxFiles files;
    EXPECT_EQ(FolderObstacle(files, folder / "a/b"), std::nullopt);
    EXPECT_TRUE(files.List(folder / "a/b").empty());
}

class FormatObstacleTest : public testing::Test {
 protected:
    FormatObstacleTest() {
        settings.EncoderCommand.fill("make it\\r\\n");
        settings.MP3.EncParams = {"-b 128", "-b 192"};
        settings.MP3Quality = 1;
        for (OptionButton& option : page.optEncoder) option.Enabled(true);
    }

    std::string Told() const { return FormatObstacle(settings, page).value_or(""); }

    Settings settings;
    frmMain page;
};

TEST_F(FormatObstacleTest, WithAllToolsEachFormatCanBeMade) {
    for (int32_t encoder : {0, 1, 5}) {
        settings.Encoder = encoder;
        EXPECT_EQ(Told(), "");
    }
}

TEST_F(FormatObstacleTest, AListWithoutQualitiesIsReported) {
    settings.Encoder = 2;
    EXPECT_EQ(Told(), "there is no quality 5 for OggVorbis; OggVorbis.EncParams has 0 of them, from 0 on");
}

TEST_F(FormatObstacleTest, WithoutSoxOnlyWhatNeedsItIsReported) {
    page.optEncoder[5].Enabled(false);
    EXPECT_EQ(Told(), "");
    settings.SPDIF48kHz = true;
    EXPECT_EQ(Told(), "making 44.1 kHz out of a 48 kHz recording needs sox, which is not installed");
    settings.Encoder = 1;
    EXPECT_EQ(Told(), "");
    settings.Normalize = true;
    EXPECT_EQ(Told(), "normalising needs sox, which is not installed");
}

TEST(ProgressText, IsABarWithItsFigure) {
    EXPECT_EQ(ProgressText(0), "[----------------------------------------]   0 %");
    EXPECT_EQ(ProgressText(0.5), "[####################--------------------]  50 %");
    EXPECT_EQ(ProgressText(1), "[########################################] 100 %");
    EXPECT_EQ(ProgressText(1.2), ProgressText(1));
    EXPECT_EQ(ProgressText(-1), ProgressText(0));
}

TEST(VirtualHost, HasTheMachinesFilesUnderItsHomeAndTimeOfItsOwn) {
    const TempFolder folder;
    VirtualHost host(folder / "home");
    SourceWaveIn inputs(host.Clock, host.Loop);
    const Machine machine = host.With(inputs);
    EXPECT_EQ(&machine.Clock, &host.Clock);
    EXPECT_EQ(&machine.WaveIn, &inputs);
    EXPECT_TRUE(machine.Folders.ShellFolderPath(ShellFolder::MyMusic).starts_with(folder / "home"));
    EXPECT_TRUE(machine.Desktop.ClaimInstance());
    EXPECT_TRUE(machine.Desktop.ClaimInstance()) << "any number of command lines may run";
    const int64_t before = host.Clock.MonotonicNanoseconds();
    bool hourPassed = false;
    const auto timer = host.Loop.NewTimer([&] { hourPassed = true; });
    timer->Start(std::chrono::hours(1), TimerPrecision::Coarse);
    EXPECT_TRUE(host.Loop.RunUntil([&] { return hourPassed; }, std::chrono::hours(2)));
    EXPECT_GE(host.Clock.MonotonicNanoseconds() - before, 3'600'000'000'000);
}

}  // namespace
}  // namespace Corvetape
