#include "forms/recording_page.h"

namespace Corvetape {

RecordingPage::RecordingPage(Form& form)
    : cmdQuickRecord(form, "cmdQuickRecord"),
      cmdStartStop(form, "cmdStartStop"),
      cmdSkipThisRecording(form, "cmdSkipThisRecording"),
      picStart(form, "picStart"),
      picStop(form, "picStop"),
      picSkip(form, "picSkip"),
      chkStartStop(form, "chkStartStop"),
      chkStopRecording(form, "chkStopRecording"),
      txtRecordingPeriod(form, "txtRecordingPeriod"),
      lblStopRecording(form, "lblStopRecording"),
      fraCurrentSong(form, "fraCurrentSong"),
      chkStationDataEnable(form, "chkStationDataEnable"),
      lblStationDataEnable(form, "lblStationDataEnable"),
      cmdGetStationID(form, "cmdGetStationID"),
      lblProvider(form, "lblProvider"),
      lblMedia(form, "lblMedia"),
      txtStation(form, "txtStation"),
      txtArtist(form, "txtArtist"),
      txtSong(form, "txtSong"),
      txtAlbum(form, "txtAlbum"),
      txtTimeRemaining(form, "txtTimeRemaining"),
      cmbURL(form, "cmbURL"),
      cmdLaunchURL(form, "cmdLaunchURL"),
      objWebBrowser(form, "objWebBrowser") {
    cmdQuickRecord.Wording("1000", "Quick recording");
    cmdStartStop.Wording("1001", "Record");
    cmdStartStop.Tag("1001");
    cmdSkipThisRecording.Wording("1003", "Skip");
    chkStartStop[0].Wording("1004", "Record current song");
    chkStartStop[1].Wording("1005", "Start recording with next song");
    chkStopRecording[0].Wording("1006", "Stop recording at end of song");
    chkStopRecording[1].Wording("1007", "Stop recording after ");
    txtRecordingPeriod.TextKey("1008");
    lblStopRecording.Wording("1009", "minutes");
    fraCurrentSong.Wording("1010", "Current song");
    chkStationDataEnable.TextKey("1011");
    lblStationDataEnable.Wording("1012", "Get media data from provider");
    cmdGetStationID.Wording("1013", "Refresh");
    lblMedia[0].Wording("1014", "Station name:");
    lblMedia[1].Wording("1015", "Artist:");
    lblMedia[2].Wording("1016", "Title:");
    lblMedia[3].Wording("1017", "Album title:");
    lblMedia[4].Wording("1018", "Time remaining:");
    cmbURL.Wording("1019", "Stations and players:");
    cmdLaunchURL.Wording("1020", "Launch selection");
    picStop.Visible(false);
    chkStopRecording[0].Enabled(false);
    chkStopRecording[1].Enabled(false);
    lblStopRecording.Enabled(false);
    cmdSkipThisRecording.Enabled(false);
    picSkip.Enabled(false);
    // Nothing can be recorded before an input is open.
    chkStartStop[0].Enabled(false);
    chkStartStop[1].Enabled(false);
}

}  // namespace Corvetape
