// What the command line does to the program, pressed through the raw line as a user types it.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/desktop_notes.h"

namespace Corvetape::Test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

/// What a command line has set by the end of the start.
struct SwitchRowOfTest {
    const char* CommandLine;
    bool Waits;           ///< recording begins with the next song
    bool Timed;           ///< it ends after some minutes
    const char* Minutes;  ///< as shown
    bool Quits;
    bool DontAsk = false;
    bool Wizard = false;
};

class CommandLine : public testing::TestWithParam<SwitchRowOfTest> {};

TEST_P(CommandLine, SetsControlsAndFlagsAsAUserWould) {
    const SwitchRowOfTest& row = GetParam();
    World world(Starting(row.CommandLine));
    ASSERT_TRUE(world.Load());
    frmMain& form = world.Form();
    const RecordingFlags& flags = world.Values().Flags;
    EXPECT_EQ(form.chkStartStop[1].Value(), row.Waits ? 1 : 0);
    EXPECT_EQ(flags.RecordNextSong, row.Waits);
    EXPECT_EQ(form.chkStopRecording[1].Value(), row.Timed ? 1 : 0);
    EXPECT_EQ(flags.RecordingSecondsLeft, row.Timed ? std::stoi(row.Minutes) * 60 : 0);
    EXPECT_EQ(form.txtRecordingPeriod.Text(), row.Minutes);
    EXPECT_EQ(form.chkStopRecording[1].Enabled(), row.Waits);
    EXPECT_EQ(flags.DisableAtEndOfSong, row.Quits);
    EXPECT_EQ(world.Values().Options.QuitAfterRecording, row.Quits);
    EXPECT_EQ(world.Values().Lifecycle.DontAsk, row.DontAsk);
    EXPECT_EQ(world.Values().Lifecycle.WizardRequested, row.Wizard);
    EXPECT_FALSE(flags.RecordCurrentSong);
    EXPECT_THAT(world.Boxes(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Rows, CommandLine,
                         testing::Values(SwitchRowOfTest{"", false, false, "60", false},
                                         SwitchRowOfTest{"-auto", true, false, "60", false},
                                         SwitchRowOfTest{"-AUTO", true, false, "60", false},
                                         SwitchRowOfTest{"corvetape -auto-quit", true, false, "60", true},
                                         SwitchRowOfTest{"-quit", false, false, "60", true},
                                         SwitchRowOfTest{"-TIME 90", true, true, "90", false},
                                         SwitchRowOfTest{"-time90", true, true, "90", false},
                                         SwitchRowOfTest{"-time   90 minutes", true, true, "90", false},
                                         SwitchRowOfTest{"-time", true, false, "0", false},
                                         SwitchRowOfTest{"-time soon", true, false, "0", false},
                                         SwitchRowOfTest{"-time 0.5", true, true, "1", false},
                                         SwitchRowOfTest{"-time 0.1", true, true, "1", false},
                                         SwitchRowOfTest{"-time 0.0", true, false, "0", false},
                                         SwitchRowOfTest{"-time -5", true, false, "-5", false},
                                         SwitchRowOfTest{"-time 2000", true, true, "2000",
                                                         false},  // typed numbers end at 1440
                                         SwitchRowOfTest{"-quit-time 5", true, true, "5", true},
                                         SwitchRowOfTest{"-dontask", false, false, "60", false, true},
                                         SwitchRowOfTest{"-wizard", false, false, "60", false, false, true},
                                         SwitchRowOfTest{"/home/eva/my-autobahn", true, false, "60", false}));

TEST(QuitSwitch, LeavesTheStoredSettingAsItWas) {
    for (const char* stored : {"0", "1"}) {
        World world(Starting("-quit", {{"Options", "QuitAfterRecording", stored}}));
        ASSERT_TRUE(world.Load());
        world.RunFor(5);
        EXPECT_TRUE(world.Values().Options.QuitAfterRecording);
        EXPECT_EQ(world.Form().chkQuitAfterRecording.Value(), std::stoi(stored));
        world.Finish();
        EXPECT_EQ(world.Stored("Options", "QuitAfterRecording"), stored);
    }
}

TEST(HideSwitch, MinimizesTheWindowAfterItsPlacing) {
    World world(Starting("-hide", {{"Form", "Pos", "300;300;100;100"}}));
    DesktopNotes desktop;
    PutOn(world, desktop);
    ASSERT_TRUE(world.Load());
    const auto move = std::ranges::find(desktop.Asked, "MoveWindow 300 300");
    const auto hide = std::ranges::find(desktop.Asked, "MinimizeWindow");
    ASSERT_NE(hide, desktop.Asked.end());
    EXPECT_LT(move, hide);
}

TEST(WizardSwitch, OpensTheAssistantOnTheSecondTick) {
    World world(Starting("-wizard"));
    DesktopNotes desktop;
    PutOn(world, desktop);
    ASSERT_TRUE(world.Load());
    world.RunFor(0.9);
    EXPECT_THAT(desktop.Asked, Not(Contains(StartsWith("OpenAssistant"))));
    world.RunFor(5);
    EXPECT_THAT(desktop.Asked, Contains("OpenAssistant wizard.htm").Times(1));
}

TEST(UpdateSwitch, RunsTheUpdateCheckAsTheLastStep) {
    World world(Starting("-update"));
    DesktopNotes desktop;
    PutOn(world, desktop);
    ASSERT_TRUE(world.Load());
    EXPECT_EQ(desktop.Asked.back(), "CheckUpdate");
    EXPECT_TRUE(world.Values().Lifecycle.UpdateStart);
}

TEST(UpdateSwitch, IsTheOnlyOneThatDoes) {
    World world(Starting("-auto -quit -hide"));
    DesktopNotes desktop;
    PutOn(world, desktop);
    ASSERT_TRUE(world.Load());
    EXPECT_THAT(desktop.Asked, Not(Contains("CheckUpdate")));
}

TEST(RegClassesSwitch, EndsAfterItsMessageWithAllStepsOfTheStop) {
    World world(Starting("-regclasses -auto", {{"Options", "StartApp", "1"},
                                               {"Options", "StartAppName", "/usr/bin/radio"},
                                               {"Mixer", "AutoUpdate", "1"}}));
    DesktopNotes desktop;
    PutOn(world, desktop);
    EXPECT_FALSE(world.Load());
    ASSERT_EQ(world.Computer.Dialogs.Boxes.size(), 1U);
    EXPECT_EQ(world.Computer.Dialogs.Boxes[0].Icon, DialogIcon::Information);
    EXPECT_THAT(world.Computer.Dialogs.Boxes[0].Text, testing::Not(IsEmpty()));
    EXPECT_THAT(desktop.Asked, ElementsAre("BusyPointer", "BlankBrowser", "BusyPointer", "TextsReady",
                                           "ReportWindow", "RemoveTrayIcon", "CloseBars", "normal pointer"));
    EXPECT_THAT(LoggedKinds(world), ElementsAre("START", "END "));
    EXPECT_EQ(world.Ends, 1U);
    EXPECT_FALSE(world.Recorder->Running());
    EXPECT_THAT(world.Computer.Processes.ShellCalls, IsEmpty());

    world.RunFor(5);  // nothing is left that could run
    EXPECT_FALSE(world.Values().Flags.RecordNextSong);
    EXPECT_EQ(world.Ends, 1U);
}

TEST(RegClassesSwitch, ShowsTheTextOfItsKey) {
    World world(Starting("-regclasses"));
    world.Disk().Put("/opt/corvetape/english.lang", "909=the classes are there\r\n");
    EXPECT_FALSE(world.Load());
    EXPECT_THAT(world.Boxes(), ElementsAre("the classes are there"));
}

}  // namespace
}  // namespace Corvetape::Test
