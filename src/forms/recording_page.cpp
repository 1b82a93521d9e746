#include "forms/recording_page.h"

namespace Corvetape {

RecordingPage::RecordingPage(Form& form)
    : cmdQuickRecord(form, "cmdQuickRecord"),
      cmdStartStop(form, "cmdStartStop"),
      cmdSkipThisRecording(form, "cmdSkipThisRecording"),
      chkStartStop(form, "chkStartStop"),
      chkStopRecording(form, "chkStopRecording"),
      txtRecordingPeriod(form, "txtRecordingPeriod"),
      lblStopRecording(form, "lblStopRecording"),
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
      cmdLaunchURL(form, "cmdLaunchURL") {
    cmdQuickRecord.Caption("Quick recording");
    cmdStartStop.Caption("Record");
    cmdSkipThisRecording.Caption("Skip");
    chkStartStop[0].Caption("Record current song");
    chkStartStop[1].Caption("Start recording with next song");
    chkStopRecording[0].Caption("Stop recording at end of song");
    chkStopRecording[1].Caption("Stop recording after ");
    lblStopRecording.Caption("minutes");
    lblStationDataEnable.Caption("Get media data from provider");
    lblMedia[0].Caption("Station name:");
    lblMedia[1].Caption("Artist:");
    lblMedia[2].Caption("Title:");
    lblMedia[3].Caption("Album title:");
    chkStopRecording[0].Enabled(false);
    chkStopRecording[1].Enabled(false);
    lblStopRecording.Enabled(false);
    cmdSkipThisRecording.Enabled(false);
    // Nothing can be recorded before an input is open.
    chkStartStop[0].Enabled(false);
    chkStartStop[1].Enabled(false);
}

}  // namespace Corvetape
