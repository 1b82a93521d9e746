#include "post/options/program_options.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "post/post_bench.h"

namespace Corvetape {
namespace {

class ProgramOptionsTest : public ::testing::Test {
 protected:
    std::string Option(const char* key) { return Bench.StoredOption(key); }
    size_t Boxes() { return Bench.Sim.Dialogs.Boxes.size(); }

    Testing::PostBench Bench;
    frmMain& Form = Bench.Form;
    Settings& Options = Bench.Options;
    ProgramOptions Binding{Form, Options, Bench.Store, Bench.Flags, Bench.Sim.Dialogs, Bench.Messages};
};

TEST_F(ProgramOptionsTest, EveryCheckBoxWritesItsKeyAtOnce) {
    struct {
        CheckBox& Box;
        bool Settings::*Value;
        const char* Key;
    } rows[] = {
        {Form.chkNormalize, &Settings::Normalize, "Normalize"},
        {Form.chkEncodeOffline, &Settings::EncodeOffline, "EncodeOffline"},
        {Form.chkDelTemp, &Settings::DelTemp, "DelTemp"},
        {Form.chkDelTempFolder, &Settings::DelTempFolder, "DelTempFolder"},
        {Form.chkQuitAfterRecording, &Settings::QuitAfterRecording, "QuitAfterRecording"},
        {Form.chkDelayUnload, &Settings::DelayUnload, "DelayUnload"},
        {Form.chkDisableSoundScheme, &Settings::DisableSoundScheme, "DisableSoundScheme"},
        {Form.chkRestartRadioIfSilent, &Settings::RestartRadioIfSilent, "RestartRadioIfSilent"},
        {Form.chkStoreCoverImage, &Settings::StoreCoverImage, "StoreCoverImage"},
        {Form.chkNotifySongs, &Settings::NotifySongs, "NotifySongs"},
        {Form.chkAutoExclude, &Settings::AutoExclude, "AutoExclude"},
        {Form.chkNoStartupInfo, &Settings::NoStartupInfo, "NoStartupInfo"},
        {Form.chkUseMusicSubfolder, &Settings::UseMusicSubfolder, "UseMusicSubfolder"},
        {Form.chkStartApp, &Settings::StartApp, "StartApp"},
        {Form.chkStopApp, &Settings::StopApp, "StopApp"},
    };
    for (auto& row : rows) {
        row.Box.Press();
        EXPECT_TRUE(Options.*row.Value) << row.Key;
        EXPECT_EQ(Option(row.Key), "1") << row.Key;
    }
    for (auto& row : rows) {
        if (row.Box.Value() == 1) row.Box.Press();
        EXPECT_FALSE(Options.*row.Value) << row.Key;
        EXPECT_EQ(Option(row.Key), "0") << row.Key;
    }
}

TEST_F(ProgramOptionsTest, EveryChangeOfATextIsWritten) {
    struct {
        TextBox& Box;
        std::string& Value;
        const char* Key;
    } rows[] = {
        {Form.txtMusicFolderTemplate, Options.MusicFolderTemplate, "MusicFolderTemplate"},
        {Form.txtMusicFileTemplate[0], Options.MusicFileTemplate[0], "MusicFileTemplate1"},
        {Form.txtMusicFileTemplate[1], Options.MusicFileTemplate[1], "MusicFileTemplate2"},
        {Form.txtStartApp, Options.StartAppName, "StartAppName"},
        {Form.txtStartAppCommandLine, Options.StartAppParams, "StartAppParams"},
        {Form.txtStopApp, Options.StopAppName, "StopAppName"},
        {Form.txtStopAppCommandLine, Options.StopAppParams, "StopAppParams"},
    };
    for (auto& row : rows) {
        row.Box.Text("x");
        EXPECT_EQ(Option(row.Key), "x");
        row.Box.Text(std::string("x ") + row.Key);
        EXPECT_EQ(row.Value, std::string("x ") + row.Key);
        EXPECT_EQ(Option(row.Key), row.Value);
    }
}

TEST_F(ProgramOptionsTest, UncheckingDelTempUnchecksDelTempFolder) {
    Form.chkDelTempFolder.Value(1);
    Form.chkDelTemp.Press();
    EXPECT_EQ(Form.chkDelTempFolder.Value(), 0);
    EXPECT_FALSE(Options.DelTempFolder);
    EXPECT_EQ(Option("DelTemp"), "0");
    EXPECT_EQ(Option("DelTempFolder"), "0");
}

TEST_F(ProgramOptionsTest, CheckingDelTempFolderChecksDelTemp) {
    Form.chkDelTempFolder.Press();
    EXPECT_EQ(Form.chkDelTemp.Value(), 1);
    EXPECT_TRUE(Options.DelTemp);
    EXPECT_EQ(Option("DelTemp"), "1");
    EXPECT_EQ(Option("DelTempFolder"), "1");
}

TEST_F(ProgramOptionsTest, UncheckingDelTempFolderLeavesDelTemp) {
    Form.chkDelTempFolder.Press();
    Form.chkDelTempFolder.Press();
    EXPECT_EQ(Form.chkDelTemp.Value(), 1);
}

TEST_F(ProgramOptionsTest, CheckingDelTempLeavesDelTempFolder) {
    Form.chkDelTemp.Press();
    EXPECT_EQ(Form.chkDelTempFolder.Value(), 0);
}

TEST_F(ProgramOptionsTest, AClickOnDelayUnloadTakesTheRequestToCloseBack) {
    for (int32_t i = 0; i < 2; ++i) {
        Bench.Flags.DisableAtEndOfSong = true;
        Form.lblStatus[1].Caption("closing");
        Form.chkDelayUnload.Press();
        EXPECT_FALSE(Bench.Flags.DisableAtEndOfSong);
        EXPECT_EQ(Form.lblStatus[1].Caption(), "");
    }
}

TEST_F(ProgramOptionsTest, ASpaceLimitIsTakenWhenItsFieldIsLeft) {
    struct {
        TextBox& Box;
        int32_t& Value;
        const char* Key;
    } rows[] = {{Form.txtLowTempSpace, Options.LowTempSpace, "LowTempSpace"},
                {Form.txtLowMusicSpace, Options.LowMusicSpace, "LowMusicSpace"}};
    for (auto& row : rows) {
        row.Box.Text("1000000");
        EXPECT_EQ(row.Value, 300);
        EXPECT_FALSE(row.Box.RunValidate());
        EXPECT_EQ(row.Value, 1000000);
        EXPECT_EQ(Option(row.Key), "1000000");
        row.Box.Text("100");
        EXPECT_FALSE(row.Box.RunValidate());
        EXPECT_EQ(row.Value, 100);
        EXPECT_EQ(Boxes(), 0U);
    }
}

TEST_F(ProgramOptionsTest, ASpaceLimitThatIsRefusedKeepsTheFocusAndTheOldLimit) {
    struct {
        const char* Typed;
        const char* Told;
    } rows[] = {{"99", "text 703 100 1000000"},
                {"1000001", "text 703 100 1000000"},
                {"100.5", "text 702"},
                {"much", "text 701"},
                {"", "text 701"}};
    for (auto& row : rows) {
        Form.txtLowTempSpace.Text(row.Typed);
        EXPECT_TRUE(Form.txtLowTempSpace.RunValidate()) << row.Typed;
        EXPECT_EQ(Bench.Sim.Dialogs.Boxes.back().Text, row.Told);
        EXPECT_EQ(Bench.Sim.Dialogs.Boxes.back().Icon, DialogIcon::Exclamation);
    }
    EXPECT_EQ(Options.LowTempSpace, 300);
    EXPECT_EQ(Option("LowTempSpace"), "(none)");
}

TEST_F(ProgramOptionsTest, TheListOfDelaysStoresThirtySecondsLessItsIndex) {
    for (int32_t index = 0; index <= 30; ++index) {
        ASSERT_TRUE(Form.lstEncodeDelay.Select(index));
        EXPECT_EQ(Bench.Stored("DoNotChange", "EncodeDelay"), std::to_string((30 - index) * 1000));
    }
    EXPECT_FALSE(Form.lstEncodeDelay.Select(31));
}

TEST_F(ProgramOptionsTest, TheThirdEntryOfTheDelaysStoresTwentyEightSeconds) {
    EXPECT_EQ(Form.lstEncodeDelay.Items()[2].Text, "28");
    Form.lstEncodeDelay.ListIndex(2);
    EXPECT_EQ(Bench.Stored("DoNotChange", "EncodeDelay"), "28000");
}

TEST_F(ProgramOptionsTest, TheTwoListsActFromTheNextStartOn) {
    Form.lstEncodeDelay.ListIndex(2);
    Form.lstBufferFlag.ListIndex(0);
    EXPECT_EQ(Options.EncodeDelay, 5000);
    EXPECT_EQ(Options.PollRecordingBuffers, 0);
    Bench.LoadSettings();
    EXPECT_EQ(Options.EncodeDelay, 28000);
    EXPECT_EQ(Options.PollRecordingBuffers, 3);
}

TEST_F(ProgramOptionsTest, ShowingAStoredDelayDoesNotRoundIt) {
    Bench.Sim.Files.Put(Bench.Store.Ini().Path(), "[DoNotChange]\nEncodeDelay=5500\n");
    Bench.LoadSettings();
    EXPECT_EQ(Form.lstEncodeDelay.Items()[static_cast<size_t>(Form.lstEncodeDelay.ListIndex())].Text, "5");
    EXPECT_EQ(Options.EncodeDelay, 5500);
    EXPECT_EQ(Bench.Stored("DoNotChange", "EncodeDelay"), "5500");
}

TEST_F(ProgramOptionsTest, TheListOfBufferMethodsStoresThreeLessItsIndex) {
    const char* entries[] = {"4", "3", "2", "1"};
    for (int32_t index = 0; index < 4; ++index) {
        EXPECT_EQ(Form.lstBufferFlag.Items()[static_cast<size_t>(index)].Text, entries[index]);
        Form.lstBufferFlag.Select(index);
        EXPECT_EQ(Bench.Stored("DoNotChange", "PollRecordingBuffers"), std::to_string(3 - index));
        EXPECT_EQ(Options.PollRecordingBuffers, 0) << "it acts from the next start on";
    }
}

TEST_F(ProgramOptionsTest, TheFirstChangeOfTheBufferMethodIsReportedASecondLaterAndOnlyOnce) {
    Form.tmrMsgBox.Attach(Bench.Sim.Loop);
    Form.lstBufferFlag.ListIndex(0);
    EXPECT_TRUE(Form.tmrMsgBox.Running());
    Bench.Sim.Loop.RunFor(std::chrono::milliseconds(999));
    EXPECT_EQ(Boxes(), 0U);
    Bench.Sim.Loop.RunFor(std::chrono::milliseconds(1));
    ASSERT_EQ(Boxes(), 1U);
    EXPECT_EQ(Bench.Sim.Dialogs.Boxes[0].Text, "text 813");
    EXPECT_EQ(Bench.Sim.Dialogs.Boxes[0].Icon, DialogIcon::Information);
    EXPECT_FALSE(Form.tmrMsgBox.Running());
    Form.lstBufferFlag.ListIndex(1);
    Bench.Sim.Loop.RunFor(std::chrono::milliseconds(5000));
    EXPECT_EQ(Boxes(), 1U);
}

TEST_F(ProgramOptionsTest, ShowingTheStoredBufferMethodIsNoChange) {
    Bench.Sim.Files.Put(Bench.Store.Ini().Path(), "[DoNotChange]\nPollRecordingBuffers=2\n");
    Bench.LoadSettings();
    EXPECT_EQ(Form.lstBufferFlag.ListIndex(), 1);
    EXPECT_FALSE(Form.tmrMsgBox.Running());
}

TEST_F(ProgramOptionsTest, AChosenApplicationIsTrimmedAndStored) {
    Bench.Sim.Dialogs.FileAnswers = {"  /usr/bin/one ", "/usr/bin/two"};
    Form.cmdAppSearch[0].Press();
    Form.cmdAppSearch[1].Press();
    EXPECT_EQ(Form.txtStartApp.Text(), "/usr/bin/one");
    EXPECT_EQ(Option("StartAppName"), "/usr/bin/one");
    EXPECT_EQ(Form.txtStopApp.Text(), "/usr/bin/two");
    EXPECT_EQ(Option("StopAppName"), "/usr/bin/two");
    EXPECT_EQ(Bench.Sim.Dialogs.Boxes[0].Text, "text 5910");
    EXPECT_EQ(Bench.Sim.Dialogs.Boxes[0].Filter, std::string("text 5900 \0.", 12));
}

TEST_F(ProgramOptionsTest, ACancelledChoiceOfAnApplicationChangesNothing) {
    Form.txtStartApp.Text("old");
    Form.cmdAppSearch[0].Press();
    EXPECT_EQ(Form.txtStartApp.Text(), "old");
}

TEST_F(ProgramOptionsTest, LoadingSetsTheControlsAndKeepsTheFile) {
    Bench.Sim.Files.Put(Bench.Store.Ini().Path(),
                        "[Options]\nNormalize=1\nDelTempFolder=1\nDelTemp=1\nStoreCoverImage=0\n"
                        "LowTempSpace=1234\nStartAppName=/bin/x\nMusicFileTemplate2=%Title%\n");
    Bench.LoadSettings();
    EXPECT_EQ(Form.chkNormalize.Value(), 1);
    EXPECT_EQ(Form.chkDelTempFolder.Value(), 1);
    EXPECT_EQ(Form.chkDelTemp.Value(), 1);
    EXPECT_EQ(Form.chkStoreCoverImage.Value(), 0);
    EXPECT_EQ(Form.txtLowTempSpace.Text(), "1234");
    EXPECT_EQ(Form.txtStartApp.Text(), "/bin/x");
    EXPECT_EQ(Form.txtMusicFileTemplate[1].Text(), "%Title%");
    EXPECT_EQ(Option("Normalize"), "1");
    EXPECT_EQ(Option("DelTempFolder"), "1");
    EXPECT_EQ(Option("LowTempSpace"), "1234");
    EXPECT_TRUE(Options.UseMusicSubfolder);
    EXPECT_EQ(Boxes(), 0U);
}

}  // namespace
}  // namespace Corvetape
