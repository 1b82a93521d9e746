#include "forms/pause_page.h"

namespace Corvetape {

PausePage::PausePage(Form& form)
    : txtLengthOfPause(form, "txtLengthOfPause"),
      lblLengthOfPause(form, "lblLengthOfPause"),
      txtSilenceAmplitude(form, "txtSilenceAmplitude"),
      lblSilenceAmplitude(form, "lblSilenceAmplitude"),
      txtEndOfSilenceAmplitude(form, "txtEndOfSilenceAmplitude"),
      chkDetectSilenceByPeak(form, "chkDetectSilenceByPeak"),
      lblDetectSilenceByPeak(form, "lblDetectSilenceByPeak"),
      chkIgnoreSilence(form, "chkIgnoreSilence"),
      txtIgnoreSilence(form, "txtIgnoreSilence"),
      txtQuitAfterSilence(form, "txtQuitAfterSilence"),
      lblQuitAfterSilence(form, "lblQuitAfterSilence"),
      txtIgnoreShortSongs(form, "txtIgnoreShortSongs"),
      optEndOfSong(form, "optEndOfSong"),
      txtEndOfSongTimer(form, "txtEndOfSongTimer"),
      optDuplicatePartOfSong(form, "optDuplicatePartOfSong"),
      sldEndOfSongThreshold0(form, "sldEndOfSongThreshold", 0, -10, 0),
      sldEndOfSongThreshold1(form, "sldEndOfSongThreshold", 1, 0, 10),
      lblEndOfSongThreshold(form, "lblEndOfSongThreshold"),
      cmdAutoPauseParams(form, "cmdAutoPauseParams") {
    txtLengthOfPause.Caption("Length of pause between songs:");
    lblLengthOfPause.Caption("msec");
    txtSilenceAmplitude.Caption("Max. silence volume (no sound):");
    lblSilenceAmplitude.Caption("units");
    txtEndOfSilenceAmplitude.Caption("End of silence volume (sound):");
    chkDetectSilenceByPeak.Caption("Detect silence");
    lblDetectSilenceByPeak.Caption("by peak level");
    chkIgnoreSilence.Caption("Do not record");
    txtIgnoreSilence.Caption("silence");
    lblQuitAfterSilence[0].Caption("End of recording after silence:");
    lblQuitAfterSilence[1].Caption("minutes");
    txtIgnoreShortSongs.Caption("Ignore songs that are shorter than:");
    optEndOfSong[0].Caption("silence is recognized,");
    optEndOfSong[1].Caption("media data changes or");
    optEndOfSong[2].Caption("after fixed time period of");
    optDuplicatePartOfSong[0].Caption("Search for end of song within these time intervals");
    optDuplicatePartOfSong[1].Caption("Duplicate this amount of music");
    lblEndOfSongThreshold[0].Caption("before");
    lblEndOfSongThreshold[1].Caption("after");
    lblEndOfSongThreshold[2].Caption("change of media data");
    cmdAutoPauseParams.Caption("Optimize pause recogn.");
}

}  // namespace Corvetape
