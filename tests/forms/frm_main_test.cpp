#include "forms/frm_main.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <utility>

namespace Corvetape::Test {
namespace {

using testing::ElementsAre;

TEST(MainForm, HasItsElevenTabsInOrderAndBeginsWithTheFirst) {
    const frmMain form;
    EXPECT_THAT(form.tbsMain.Keys(), ElementsAre("TAB_RECORDING", "TAB_AUDIO", "TAB_PAUSE", "TAB_MP3_WMA",
                                                 "TAB_OPTIONS1", "TAB_OPTIONS2", "TAB_FOLDERS", "TAB_LOGFILE",
                                                 "TAB_INCLUDE", "TAB_EXCLUDE", "TAB_ABOUT"));
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

TEST(MainForm, TheGainRunsFrom100To1000PerCent) {
    const frmMain form;
    EXPECT_EQ(form.vscMultiplier.Minimum(), 100);
    EXPECT_EQ(form.vscMultiplier.Maximum(), 1000);
    EXPECT_EQ(form.vscMultiplier.Value(), 100);
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
    EXPECT_EQ(form.lstEncodeDelay.Items()[0].Text, "30");
    EXPECT_EQ(form.lstEncodeDelay.Items()[30].Text, "0");
    EXPECT_EQ(form.lstBufferFlag.Items().size(), 4U);
}

TEST(MainForm, CaptionsOfThePausePageStandAsTheyAre) {
    const frmMain form;
    EXPECT_EQ(form.txtLengthOfPause.Caption(), "Length of pause between songs:");
    EXPECT_EQ(form.txtSilenceAmplitude.Caption(), "Max. silence volume (no sound):");
    EXPECT_EQ(form.txtEndOfSilenceAmplitude.Caption(), "End of silence volume (sound):");
    EXPECT_EQ(form.optEndOfSong[0].Caption(), "silence is recognized,");
    EXPECT_EQ(form.optEndOfSong[1].Caption(), "media data changes or");
    EXPECT_EQ(form.optEndOfSong[2].Caption(), "after fixed time period of");
    EXPECT_EQ(form.optDuplicatePartOfSong[0].Caption(), "Search for end of song within these time intervals");
    EXPECT_EQ(form.optDuplicatePartOfSong[1].Caption(), "Duplicate this amount of music");
    EXPECT_EQ(form.cmdAutoPauseParams.Caption(), "Optimize pause recogn.");
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
