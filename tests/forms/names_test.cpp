#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>

#include "core/controls/form_parts.h"
#include "forms/dlg_language.h"
#include "forms/dlg_provider.h"
#include "forms/frm_cover_buttons.h"
#include "forms/frm_main.h"
#include "forms/frm_quick_buttons.h"
#include "forms/frm_wizard.h"

namespace Corvetape::Test {
namespace {

/// A name that pages and windows bind to, and the first and last index of its array, -1 for none.
struct NameRow {
    const char* Name;
    int32_t First = -1;
    int32_t Last = -1;
};

void ExpectNames(const Form& form, std::initializer_list<NameRow> rows) {
    for (const NameRow& row : rows) {
        for (int32_t index = row.First; index <= row.Last; ++index) {
            EXPECT_NE(form.Find(row.Name, index), nullptr) << form.Name() << "." << row.Name << " " << index;
        }
    }
}

TEST(Names, OfTheMainWindow) {
    const frmMain form;
    EXPECT_EQ(form.Name(), "frmMain");
    ExpectNames(form, {{"tbsMain"},
                       {"picOptions", 1, 11},
                       {"lblStatus", 1, 3},
                       {"lblGetWidth"},
                       {"chkQuickButtons"},
                       {"tmr1Second"},
                       {"tmrGetMediaData"},
                       {"tmrEncodeFile"},
                       {"tmrVU"},
                       {"tmrMsgBox"},
                       {"picTaskBar", 0, 2},
                       {"mnuTaskbar"},
                       {"mnuTaskbarItem", 10, 10},
                       {"mnuTaskbarItem", 15, 15},
                       {"mnuTaskbarItem", 20, 20},
                       {"mnuTaskbarItem", 90, 90}});
}

TEST(Names, OfTheRecordingPage) {
    const frmMain form;
    ExpectNames(form, {{"cmdQuickRecord"},
                       {"cmdStartStop"},
                       {"cmdSkipThisRecording"},
                       {"chkStartStop", 0, 1},
                       {"chkStopRecording", 0, 1},
                       {"txtRecordingPeriod"},
                       {"lblStopRecording"},
                       {"fraCurrentSong"},
                       {"chkStationDataEnable"},
                       {"lblStationDataEnable"},
                       {"cmdGetStationID"},
                       {"lblProvider", 0, 2},
                       {"lblMedia", 0, 4},
                       {"txtStation"},
                       {"txtArtist"},
                       {"txtSong"},
                       {"txtAlbum"},
                       {"txtTimeRemaining"},
                       {"cmbURL"},
                       {"cmdLaunchURL"},
                       {"objWebBrowser"},
                       {"picStart"},
                       {"picStop"},
                       {"picSkip"}});
}

TEST(Names, OfThePagesOfInputAndPauses) {
    const frmMain form;
    ExpectNames(form, {{"cmbInputDevices"},
                       {"chk48kHz"},
                       {"cmdAutoInput"},
                       {"cmdAGC"},
                       {"cmdOpenMixer"},
                       {"cmdSaveMixerSettings"},
                       {"cmdResetMixerSettings"},
                       {"chkMixerAutoUpdate"},
                       {"picVUMeter"},
                       {"vscMultiplier"},
                       {"lblMultiplier"},
                       {"picHistogram"},
                       {"lblHistogramMin"},
                       {"lblHistogramMax"},
                       {"lblMaxBuffers"}});
    ExpectNames(form, {{"txtLengthOfPause"},
                       {"txtSilenceAmplitude"},
                       {"txtEndOfSilenceAmplitude"},
                       {"chkDetectSilenceByPeak"},
                       {"chkIgnoreSilence"},
                       {"txtIgnoreSilence"},
                       {"txtQuitAfterSilence"},
                       {"lblQuitAfterSilence", 0, 1},
                       {"txtIgnoreShortSongs"},
                       {"optEndOfSong", 0, 2},
                       {"txtEndOfSongTimer"},
                       {"optDuplicatePartOfSong", 0, 1},
                       {"sldEndOfSongThreshold", 0, 1},
                       {"lblEndOfSongThreshold", 0, 6},
                       {"cmdAutoPauseParams"}});
}

TEST(Names, OfThePagesOfEncodersAndOptions) {
    const frmMain form;
    ExpectNames(
        form,
        {{"optEncoder", 0, 5}, {"cmbMP3"}, {"cmbOgg"}, {"cmbWMA44"}, {"cmbWMA48"}, {"cmdGetEncoder", 0, 1}});
    ExpectNames(form, {{"chkNormalize"},
                       {"chkEncodeOffline"},
                       {"chkDelTemp"},
                       {"chkDelTempFolder"},
                       {"chkQuitAfterRecording"},
                       {"chkDelayUnload"},
                       {"chkDisableSoundScheme"},
                       {"chkRestartRadioIfSilent"},
                       {"chkStoreCoverImage"},
                       {"chkNotifySongs"},
                       {"lblLanguage"},
                       {"cmbLanguage"},
                       {"chkNoStartupInfo"},
                       {"lstEncodeDelay"},
                       {"lstBufferFlag"},
                       {"txtLowTempSpace"},
                       {"txtLowMusicSpace"},
                       {"chkStartApp"},
                       {"txtStartApp"},
                       {"txtStartAppCommandLine"},
                       {"chkStopApp"},
                       {"txtStopApp"},
                       {"txtStopAppCommandLine"},
                       {"cmdAppSearch", 0, 1}});
}

TEST(Names, OfTheLastPages) {
    const frmMain form;
    ExpectNames(form, {{"txtPath", 0, 2},
                       {"cmdGetDir", 0, 2},
                       {"chkUseMusicSubfolder"},
                       {"txtMusicFolderTemplate"},
                       {"txtMusicFileTemplate", 0, 1},
                       {"txtLogFile"},
                       {"fraLogFile"},
                       {"cmdOpenLogFile"},
                       {"cmdDeleteLogFiles"}});
    ExpectNames(form, {{"lstWatch", 0, 1},
                       {"txtWatch", 0, 1},
                       {"cmdAddToWatchList", 0, 1},
                       {"cmdDeleteFromWatchList", 0, 1},
                       {"cmdEditWatchList", 0, 1},
                       {"chkAutoExclude"}});
    ExpectNames(form, {{"lblVersion"},
                       {"lblHomePage"},
                       {"lblMailTo"},
                       {"picLogo"},
                       {"cmdNews"},
                       {"cmdCheckUpdateNow"},
                       {"txtlblF1"}});
}

TEST(Names, OfTheBars) {
    const frmQuickButtons plain;
    EXPECT_EQ(plain.Name(), "frmQuickButtons");
    EXPECT_EQ(plain.Tag(), "quickbuttons");
    ExpectNames(plain, {{"picButtons"},
                        {"cmdSwitchDesign"},
                        {"cmdMinMax"},
                        {"cmdQuickRecord"},
                        {"cmdSkipThisRecording"},
                        {"cmdStartStop"},
                        {"picStart"},
                        {"picStop"},
                        {"picSkip"},
                        {"Picture1"}});
    const frmCoverButtons cover;
    EXPECT_EQ(cover.Name(), "frmCoverButtons");
    ExpectNames(cover, {{"imgCover"},
                        {"shpTop"},
                        {"lblArtist"},
                        {"lblSong"},
                        {"picButtons"},
                        {"imgStartStop"},
                        {"imgStart"},
                        {"imgStop"},
                        {"imgSkip", 0, 1},
                        {"tmrHide"},
                        {"inet"},
                        {"mnuContext"},
                        {"mnuContextItem", 10, 10},
                        {"mnuContextItem", 19, 20},
                        {"mnuContextItem", 30, 30},
                        {"Image1"},
                        {"Image2"}});
    EXPECT_EQ(cover.tmrHide.Interval(), 2000);
}

TEST(Names, OfTheAssistantAndTheDialogs) {
    const frmWizard wizard;
    EXPECT_EQ(wizard.Name(), "frmWizard");
    ExpectNames(wizard, {{"objWebBrowser1"},
                         {"objWebBrowser2"},
                         {"objScriptControl"},
                         {"picTop"},
                         {"cmdMove", 0, 1},
                         {"cmdWizard"},
                         {"cmdPrint"},
                         {"txtSearch"},
                         {"cmdSearch"},
                         {"picTopRight"},
                         {"imgMove", 0, 3},
                         {"tmrUnload"},
                         {"cmdOnOffline"}});
    const dlgLanguage language;
    EXPECT_EQ(language.Name(), "dlgLanguage");
    ExpectNames(language, {{"cboLanguage"}, {"flist"}, {"cmdOK"}, {"Label1"}});
    const dlgProvider provider;
    ExpectNames(provider, {{"cboProvider"}, {"lblInfo"}, {"Label1"}, {"cmdOK"}, {"cmdCancel"}});
}

TEST(Names, OfTheMethodsThatPagesCall) {
    const frmMain form;
    for (const char* method : {"cmdQuickRecord_Click",
                               "cmdStartStop_Click",
                               "cmdSkipThisRecording_Click",
                               "cmdLaunchURL_Click",
                               "cmdGetStationID_Click",
                               "cmdAutoInput_Click",
                               "cmdAGC_Click",
                               "cmdOpenMixer_Click",
                               "cmdResetMixerSettings_Click",
                               "cmdSaveMixerSettings_Click",
                               "vscMultiplier_Change",
                               "vscMultiplier_Scroll",
                               "cmdAutoPauseParams_Click",
                               "txtLengthOfPause_Validate",
                               "txtSilenceAmplitude_Validate",
                               "txtEndOfSilenceAmplitude_Validate",
                               "chkDetectSilenceByPeak_Click",
                               "txtQuitAfterSilence_Validate",
                               "txtIgnoreShortSongs_Validate",
                               "chkIgnoreSilence_Click",
                               "txtEndOfSongTimer_Validate",
                               "chkQuickButtons_Click",
                               "cmdNews_Click",
                               "cmdCheckUpdateNow_Click",
                               "cmdDeleteLogFiles_Click",
                               "cmdOpenLogFile_Click"}) {
        EXPECT_TRUE(form.Methods.Call(method)) << method;
    }
    for (const char* method :
         {"optEndOfSong_Click", "optDuplicatePartOfSong_Click", "cmdGetEncoder_Click", "cmdAppSearch_Click",
          "cmdGetDir_Click", "cmdAddToWatchList_Click", "cmdDeleteFromWatchList_Click"}) {
        const MethodArgument index = 1;
        EXPECT_TRUE(form.Methods.Call(method, {&index, 1})) << method;
        EXPECT_FALSE(form.Methods.Call(method)) << method;
    }
}

}  // namespace
}  // namespace Corvetape::Test
