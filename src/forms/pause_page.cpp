#include "forms/pause_page.h"

namespace Corvetape {

PausePage::PausePage(Form& form)
    : txtLengthOfPause(form, "txtLengthOfPause"),
      lblLengthOfPause(form, "lblLengthOfPause"),
      txtSilenceAmplitude(form, "txtSilenceAmplitude"),
      lblSilenceAmplitude(form, "lblSilenceAmplitude"),
      txtEndOfSilenceAmplitude(form, "txtEndOfSilenceAmplitude"),
      lblEndOfSilenceAmplitude(form, "lblEndOfSilenceAmplitude"),
      chkDetectSilenceByPeak(form, "chkDetectSilenceByPeak"),
      lblDetectSilenceByPeak(form, "lblDetectSilenceByPeak"),
      chkIgnoreSilence(form, "chkIgnoreSilence"),
      txtIgnoreSilence(form, "txtIgnoreSilence"),
      txtQuitAfterSilence(form, "txtQuitAfterSilence"),
      lblQuitAfterSilence(form, "lblQuitAfterSilence"),
      txtIgnoreShortSongs(form, "txtIgnoreShortSongs"),
      lblIgnoreShortSongs(form, "lblIgnoreShortSongs"),
      fraEndOfSong(form, "fraEndOfSong"),
      optEndOfSong(form, "optEndOfSong"),
      txtEndOfSongTimer(form, "txtEndOfSongTimer"),
      lblEndOfSongTimer(form, "lblEndOfSongTimer"),
      optDuplicatePartOfSong(form, "optDuplicatePartOfSong"),
      sldEndOfSongThreshold0(form, "sldEndOfSongThreshold", 0, -10, 0),
      sldEndOfSongThreshold1(form, "sldEndOfSongThreshold", 1, 0, 10),
      lblEndOfSongThreshold(form, "lblEndOfSongThreshold"),
      cmdAutoPauseParams(form, "cmdAutoPauseParams"),
      cmdForgetCuts(form, "cmdForgetCuts") {
    txtLengthOfPause.TextKey("1080");
    lblLengthOfPause[0].Wording("1081", "Length of pause between songs:");
    lblLengthOfPause[1].Wording("1082", "msec");
    txtSilenceAmplitude.TextKey("1083");
    lblSilenceAmplitude[0].Wording("1084", "Max. silence volume (no sound):");
    lblSilenceAmplitude[1].Wording("1085", "units");
    txtEndOfSilenceAmplitude.TextKey("1086");
    lblEndOfSilenceAmplitude[0].Wording("1087", "End of silence volume (sound):");
    lblEndOfSilenceAmplitude[1].Wording("1088", "units");
    chkDetectSilenceByPeak.Wording("1089", "Detect silence");
    lblDetectSilenceByPeak.Wording("1090", "by peak level");
    chkIgnoreSilence.Wording("1091", "Do not record");
    txtIgnoreSilence.Wording("1092", "silence");
    txtQuitAfterSilence.TextKey("1093");
    lblQuitAfterSilence[0].Wording("1094", "End of recording after silence:");
    lblQuitAfterSilence[1].Wording("1095", "minutes");
    txtIgnoreShortSongs.TextKey("1096");
    lblIgnoreShortSongs[0].Wording("1097", "Ignore songs that are shorter than:");
    lblIgnoreShortSongs[1].Wording("1098", "seconds");
    fraEndOfSong.Wording("1099", "Assume end of song when");
    optEndOfSong[0].Wording("1100", "silence is recognized,");
    optEndOfSong[1].Wording("1101", "media data changes or");
    optEndOfSong[2].Wording("1102", "after fixed time period of");
    optEndOfSong[3].Wording("1650", "Automatic: by everything that is known");
    txtEndOfSongTimer.TextKey("1103");
    lblEndOfSongTimer.Wording("1104", "minutes");
    optDuplicatePartOfSong[0].Wording("1105", "Search for end of song within these time intervals");
    optDuplicatePartOfSong[1].Wording("1106", "Duplicate this amount of music");
    sldEndOfSongThreshold0.TextKey("1107");
    sldEndOfSongThreshold1.TextKey("1108");
    lblEndOfSongThreshold[0].Wording("1109", "before");
    lblEndOfSongThreshold[1].Wording("1110", "after");
    lblEndOfSongThreshold[2].Wording("1111", "change of media data");
    lblEndOfSongThreshold[5].Wording("1112", "seconds");
    lblEndOfSongThreshold[6].Wording("1113", "seconds");
    cmdAutoPauseParams.Wording("1114", "Optimize pause recogn.");
    cmdForgetCuts.Wording("1651", "Forget what was learned");
}

}  // namespace Corvetape
