#include "forms/frm_main.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <utility>
#include <vector>

namespace Corvetape::Test {
namespace {

using testing::ElementsAre;

TEST(MainForm, HasItsElevenTabsInOrderAndBeginsWithTheFirst) {
    const frmMain form;
    std::vector<std::string> tabs;
    for (const Tab& tab : form.tbsMain.Tabs()) tabs.push_back(tab.Key + " " + tab.Tag + " " + tab.Caption);
    EXPECT_THAT(tabs, ElementsAre("TAB_RECORDING recording Recording", "TAB_AUDIO audio Audio Devices",
                                  "TAB_PAUSE pauserecognition Pause Recognition",
                                  "TAB_MP3_WMA mp3wma MP3, WMA, ...", "TAB_OPTIONS1 options1 Options 1",
                                  "TAB_OPTIONS2 options2 Options 2", "TAB_FOLDERS folders Folders && Files ",
                                  "TAB_LOGFILE logfile Log file", "TAB_INCLUDE include White List",
                                  "TAB_EXCLUDE exclude Blacklist", "TAB_ABOUT about About"));
    EXPECT_EQ(form.tbsMain.SelectedKey(), "TAB_RECORDING");
}

TEST(MainForm, HasNoTwoControlsOfTheSameNameAndIndex) {
    const frmMain form;
    std::set<std::pair<std::string, int32_t>> seen;
    for (const Control* control : form.Controls()) {
        EXPECT_TRUE(seen.emplace(control->Name(), control->Index()).second) << control->Name();
    }
}

TEST(MainForm, EveryControlIsFoundByItsName) {
    const frmMain form;
    for (Control* control : form.Controls()) {
        EXPECT_EQ(form.Find(control->Name(), control->Index()), control) << control->Name();
    }
}

TEST(MainForm, EveryTimerIsOffAndHasItsInterval) {
    const frmMain form;
    for (const TimerControl* timer :
         {&form.tmr1Second, &form.tmrGetMediaData, &form.tmrEncodeFile, &form.tmrVU, &form.tmrMsgBox}) {
        EXPECT_FALSE(timer->Running()) << timer->Name();
    }
    EXPECT_EQ(form.tmr1Second.Interval(), 500);
    EXPECT_EQ(form.tmrGetMediaData.Interval(), 500);
    EXPECT_EQ(form.tmrVU.Interval(), 200);
    EXPECT_EQ(form.tmrMsgBox.Interval(), 1000);
}

TEST(MainForm, NothingCanBeRecordedBeforeAnInputIsOpen) {
    const frmMain form;
    EXPECT_FALSE(form.chkStartStop[0].Enabled());
    EXPECT_FALSE(form.chkStartStop[1].Enabled());
    EXPECT_FALSE(form.chkStopRecording[0].Enabled());
    EXPECT_FALSE(form.chkStopRecording[1].Enabled());
    EXPECT_FALSE(form.cmdSkipThisRecording.Enabled());
}

TEST(MainForm, TheGainRunsFrom100To1000PerCentInStepsOfTen) {
    const frmMain form;
    EXPECT_EQ(form.vscMultiplier.Minimum(), 100);
    EXPECT_EQ(form.vscMultiplier.Maximum(), 1000);
    EXPECT_EQ(form.vscMultiplier.Value(), 100);
    EXPECT_EQ(form.vscMultiplier.Step(), 10);
    EXPECT_EQ(form.sldEndOfSongThreshold0.Step(), 1);
}

TEST(MainForm, TheSlidersOfTheCutReachFiveSecondsToEitherSide) {
    frmMain form;
    EXPECT_EQ(form.sldEndOfSongThreshold(0).Minimum(), -10);
    EXPECT_EQ(form.sldEndOfSongThreshold(0).Maximum(), 0);
    EXPECT_EQ(form.sldEndOfSongThreshold(1).Minimum(), 0);
    EXPECT_EQ(form.sldEndOfSongThreshold(1).Maximum(), 10);
    EXPECT_EQ(form.sldEndOfSongThreshold(1).Index(), 1);
}

TEST(MainForm, TheDelayListRunsFrom30SecondsDownToNone) {
    const frmMain form;
    ASSERT_EQ(form.lstEncodeDelay.Items().size(), 31U);
    for (size_t i = 0; i <= 30; ++i) {
        EXPECT_EQ(form.lstEncodeDelay.Items()[i].Text, std::to_string(30 - static_cast<int32_t>(i)));
    }
    EXPECT_EQ(form.lstBufferFlag.Items().size(), 4U);
}

struct CaptionRow {
    const char* Control;
    int32_t Index;  ///< -1 for a single control
    const char* Caption;
};

constexpr CaptionRow CaptionTable[] = {
    {"lblLengthOfPause", 0, "Length of pause between songs:"},
    {"lblLengthOfPause", 1, "msec"},
    {"lblSilenceAmplitude", 0, "Max. silence volume (no sound):"},
    {"lblSilenceAmplitude", 1, "units"},
    {"lblEndOfSilenceAmplitude", 0, "End of silence volume (sound):"},
    {"chkDetectSilenceByPeak", -1, "Detect silence"},
    {"lblDetectSilenceByPeak", -1, "by peak level"},
    {"chkIgnoreSilence", -1, "Do not record"},
    {"txtIgnoreSilence", -1, "silence"},
    {"optEndOfSong", 0, "silence is recognized,"},
    {"optEndOfSong", 1, "media data changes or"},
    {"optEndOfSong", 2, "after fixed time period of"},
    {"optDuplicatePartOfSong", 0, "Search for end of song within these time intervals"},
    {"optDuplicatePartOfSong", 1, "Duplicate this amount of music"},
    {"lblQuitAfterSilence", 0, "End of recording after silence:"},
    {"lblQuitAfterSilence", 1, "minutes"},
    {"lblIgnoreShortSongs", 0, "Ignore songs that are shorter than:"},
    {"cmdAutoPauseParams", -1, "Optimize pause recogn."},
    {"chkNormalize", -1, "Normalize music files after recording"},
    {"chkEncodeOffline", -1, "Do not encode while recording"},
    {"chkDelTemp", -1, "Delete temporary files after encoding"},
    {"chkDelTempFolder", -1, "Delete temporary files and folder at program termination"},
    {"chkQuitAfterRecording", -1, "Terminate program at end of timed recording"},
    {"lblLanguage", -1, "Language:"},
    {"chkMaximizeButton", -1, "Maximise button makes the window large"},
    {"chkDelayUnload", -1, "Delay program termination until end of song"},
    {"chkDisableSoundScheme", -1, "Disable sound scheme when Corvetape starts"},
    {"chkRestartRadioIfSilent", -1, "Try to restart radio if silence detected"},
    {"chkUseMusicSubfolder", -1, "Put (encode) music files into subfolder(s) with the following name:"},
    {"lblMusicFolderTemplate", -1, "Format or name of music subfolder (if song data available):"},
    {"lblMusicFileTemplate", 0, "Format of music file name (if NO song data available):"},
    {"lblMusicFileTemplate", 1, "Format of music file name (if song data available):"},
    {"lblLowTempSpace", -1, "MB in folder for temporary data"},
    {"lblLowMusicSpace", -1, "MB in music folder"},
    {"chkStartApp", -1, "Launch this program when Corvetape starts:"},
    {"chkStopApp", -1, "Launch this program when Corvetape quits:"},
    {"lstEncodeDelay", -1, "Start encoding to MP3, WMA etc. after a delay of n seconds"},
    {"lstBufferFlag", -1, "Buffer processing method"},
    {"cmbInputDevices", -1, "Record from this input device (soundcard)"},
    {"chk48kHz", -1, "Use optical input at 48 kHz"},
    {"cmdAutoInput", -1, "Automatic input search"},
    {"cmdAGC", -1, "Automatic gain control"},
    {"cmdOpenMixer", -1, "Open mixer settings"},
    {"cmdSaveMixerSettings", -1, "Save mixer settings"},
    {"cmdResetMixerSettings", -1, "Reset mixer settings"},
    {"fraVUMeter", -1, "Rec. level"},
    {"fraHistogram", -1, "Recording level statistic for 10 seconds"},
    {"cmdQuickRecord", -1, "Quick recording"},
    {"cmdStartStop", -1, "Record"},
    {"cmdLaunchURL", -1, "Launch selection"},
    {"fraEndOfSong", -1, "Assume end of song when"},
    {"mnuTaskbarItem", 10, "Restore"},
    {"mnuTaskbarItem", 15, "Quick buttons"},
    {"mnuTaskbarItem", 20, "Quick recording"},
    {"mnuTaskbarItem", 90, "Quit"},
    {"chkMixerAutoUpdate", -1, "Use saved mixer settings at start of Corvetape"},
};

TEST(MainForm, EachControlOfThePagesHasItsCaption) {
    const frmMain form;
    for (const CaptionRow& row : CaptionTable) {
        const Control* control = form.Find(row.Control, row.Index);
        ASSERT_NE(control, nullptr) << row.Control;
        EXPECT_EQ(control->Caption(), row.Caption) << row.Control << row.Index;
    }
}

TEST(MainForm, TheBoxThatOnlyPagesSetCanBePressedByThem) {
    const frmMain form;
    EXPECT_TRUE(form.chkNoStartupInfo.Visible());
}

TEST(MainForm, ThePanelOfTheSelectedTabIsSeenAndNoOther) {
    frmMain form;
    for (const Tab& tab : form.tbsMain.Tabs()) {
        form.tbsMain.Select(tab.Key);
        std::string seen;
        for (const Panel& panel : form.picOptions) {
            if (panel.Visible()) seen += panel.Tag();
        }
        EXPECT_EQ(seen, tab.Tag);
    }
}

TEST(MainForm, TwoFormsShareNothing) {
    frmMain first;
    const frmMain second;
    first.chkDelTemp.Value(1);
    first.optEncoder[2].Value(true);
    EXPECT_EQ(second.chkDelTemp.Value(), 0);
    EXPECT_EQ(second.optEncoder.Selected(), -1);
}

}  // namespace
}  // namespace Corvetape::Test
