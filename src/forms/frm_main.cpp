#include "forms/frm_main.h"

#include "core/text/text.h"
#include "core/version.h"

namespace Corvetape {

namespace {

/// What pages may run by name; the other handlers are the form's own business. A handler of a control array
/// takes the index.
constexpr const char* PublicHandlers[] = {
    "cmdQuickRecord_Click",
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
    "optEndOfSong_Click",
    "txtEndOfSongTimer_Validate",
    "optDuplicatePartOfSong_Click",
    "cmdGetEncoder_Click",
    "chkQuickButtons_Click",
    "cmdAppSearch_Click",
    "cmdGetDir_Click",
    "cmdNews_Click",
    "cmdCheckUpdateNow_Click",
    "cmdDeleteLogFiles_Click",
    "cmdOpenLogFile_Click",
    "cmdAddToWatchList_Click",
    "cmdDeleteFromWatchList_Click",
};

}  // namespace

frmMain::frmMain()
    : Form("frmMain", ProgramTitle, "100"),
      RecordingPage(static_cast<Form&>(*this)),
      AudioPage(static_cast<Form&>(*this)),
      PausePage(static_cast<Form&>(*this)),
      EncoderPage(static_cast<Form&>(*this)),
      Options1Page(static_cast<Form&>(*this)),
      Options2Page(static_cast<Form&>(*this)),
      FoldersPage(static_cast<Form&>(*this)),
      LogPage(static_cast<Form&>(*this)),
      WatchPage(static_cast<Form&>(*this)),
      AboutPage(static_cast<Form&>(*this)),
      TrayMenu(static_cast<Form&>(*this)),
      tbsMain(*this, "tbsMain"),
      picOptions(*this, "picOptions"),
      lblStatus(*this, "lblStatus"),
      lblGetWidth(*this, "lblGetWidth"),
      chkQuickButtons(*this, "chkQuickButtons"),
      tmr1Second(*this, "tmr1Second", 500),
      tmrGetMediaData(*this, "tmrGetMediaData", 500),
      tmrEncodeFile(*this, "tmrEncodeFile", 0),
      tmrVU(*this, "tmrVU", 200),
      tmrMsgBox(*this, "tmrMsgBox", 1000) {
    lblGetWidth.Caption(" 00,00% ");
    lblGetWidth.Visible(false);
    chkQuickButtons.Wording("1270", "Hide the quick buttons");
    AddTabs();
    AddMethods();
    tbsMain.Select("TAB_RECORDING");
}

void frmMain::AddTabs() {
    tbsMain.AddTab({"TAB_RECORDING", "recording", "1240", "Recording", ""});
    tbsMain.AddTab({"TAB_AUDIO", "audio", "1241", "Audio Devices", ""});
    tbsMain.AddTab({"TAB_PAUSE", "pauserecognition", "1242", "Pause Recognition", ""});
    tbsMain.AddTab({"TAB_MP3_WMA", "mp3wma", "1243", "MP3, WMA, ...", ""});
    tbsMain.AddTab({"TAB_OPTIONS1", "options1", "1244", "Options 1", ""});
    tbsMain.AddTab({"TAB_OPTIONS2", "options2", "1245", "Options 2", ""});
    tbsMain.AddTab({"TAB_FOLDERS", "folders", "1246", "Folders && Files ", ""});
    tbsMain.AddTab({"TAB_LOGFILE", "logfile", "1247", "Log file", ""});
    tbsMain.AddTab({"TAB_INCLUDE", "include", "1248", "White List", ""});
    tbsMain.AddTab({"TAB_EXCLUDE", "exclude", "1249", "Blacklist", ""});
    tbsMain.AddTab({"TAB_ABOUT", "about", "1250", "About", ""});
    for (size_t i = 0; i < tbsMain.Tabs().size(); ++i) {
        picOptions[static_cast<int32_t>(i) + 1].Tag(tbsMain.Tabs()[i].Tag);
    }
    tbsMain.Click.Connect([this] { ShowSelectedPanel(); });
}

void frmMain::AddMethods() {
    for (const char* handler : PublicHandlers) PublishHandler(handler);
    Methods.Add<std::string>("SelectTab", [this](const std::string& key) { tbsMain.Select(key); });
}

void frmMain::ShowSelectedPanel() {
    for (Panel& panel : picOptions) panel.Visible(false);
    for (Panel& panel : picOptions) {
        if (EqualIgnoringCase(panel.Tag(), tbsMain.Selected()->Tag)) return panel.Visible(true);
    }
}

}  // namespace Corvetape
