#include "forms/option_pages.h"

#include <string>

namespace Corvetape {

Options1Page::Options1Page(Form& form)
    : chkNormalize(form, "chkNormalize"),
      chkEncodeOffline(form, "chkEncodeOffline"),
      chkDelTemp(form, "chkDelTemp"),
      chkDelTempFolder(form, "chkDelTempFolder"),
      chkQuitAfterRecording(form, "chkQuitAfterRecording"),
      chkDelayUnload(form, "chkDelayUnload"),
      chkDisableSoundScheme(form, "chkDisableSoundScheme"),
      chkRestartRadioIfSilent(form, "chkRestartRadioIfSilent"),
      chkStoreCoverImage(form, "chkStoreCoverImage"),
      chkNotifySongs(form, "chkNotifySongs"),
      chkMaximizeButton(form, "chkMaximizeButton"),
      lblLanguage(form, "lblLanguage"),
      cmbLanguage(form, "cmbLanguage"),
      chkNoStartupInfo(form, "chkNoStartupInfo"),
      lstEncodeDelay(form, "lstEncodeDelay"),
      lstBufferFlag(form, "lstBufferFlag") {
    chkNormalize.Wording("1140", "Normalize music files after recording");
    chkEncodeOffline.Wording("1141", "Do not encode while recording");
    chkDelTemp.Wording("1142", "Delete temporary files after encoding");
    chkDelTempFolder.Wording("1143", "Delete temporary files and folder at program termination");
    chkQuitAfterRecording.Wording("1144", "Terminate program at end of timed recording");
    chkDelayUnload.Wording("1145", "Delay program termination until end of song");
    chkDisableSoundScheme.Wording("1146", "Disable sound scheme when Corvetape starts");
    chkRestartRadioIfSilent.Wording("1147", "Try to restart radio if silence detected");
    chkStoreCoverImage.Wording("1148", "Store the cover image with the song");
    chkNotifySongs.Wording("1700", "Show a desktop notification for each song that is kept");
    chkMaximizeButton.Wording("1551", "Maximise button makes the window large");
    lblLanguage.Wording("61883", "Language:");
    lstEncodeDelay.Wording("1149", "Start encoding to MP3, WMA etc. after a delay of n seconds");
    lstBufferFlag.Wording("1150", "Buffer processing method");
    for (int32_t seconds = 30; seconds >= 0; --seconds) lstEncodeDelay.AddItem(std::to_string(seconds));
    for (int32_t method = 4; method >= 1; --method) lstBufferFlag.AddItem(std::to_string(method));
}

Options2Page::Options2Page(Form& form)
    : fraLowSpace(form, "fraLowSpace"),
      txtLowTempSpace(form, "txtLowTempSpace"),
      lblLowTempSpace(form, "lblLowTempSpace"),
      txtLowMusicSpace(form, "txtLowMusicSpace"),
      lblLowMusicSpace(form, "lblLowMusicSpace"),
      chkStartApp(form, "chkStartApp"),
      txtStartApp(form, "txtStartApp"),
      lblStartAppCommandLine(form, "lblStartAppCommandLine"),
      txtStartAppCommandLine(form, "txtStartAppCommandLine"),
      chkStopApp(form, "chkStopApp"),
      txtStopApp(form, "txtStopApp"),
      lblStopAppCommandLine(form, "lblStopAppCommandLine"),
      txtStopAppCommandLine(form, "txtStopAppCommandLine"),
      cmdAppSearch(form, "cmdAppSearch") {
    fraLowSpace.Wording("1160", "Stop recording when the free space falls to");
    txtLowTempSpace.TextKey("1161");
    lblLowTempSpace.Wording("1162", "MB in folder for temporary data");
    txtLowMusicSpace.TextKey("1163");
    lblLowMusicSpace.Wording("1164", "MB in music folder");
    chkStartApp.Wording("1165", "Launch this program when Corvetape starts:");
    txtStartApp.TextKey("1166");
    lblStartAppCommandLine.Wording("1167", "Parameters:");
    txtStartAppCommandLine.TextKey("1168");
    chkStopApp.Wording("1169", "Launch this program when Corvetape quits:");
    txtStopApp.TextKey("1170");
    lblStopAppCommandLine.Wording("1171", "Parameters:");
    txtStopAppCommandLine.TextKey("1172");
    cmdAppSearch[0].Wording("1173", "Browse...");
    cmdAppSearch[1].Wording("1174", "Browse...");
}

FoldersPage::FoldersPage(Form& form)
    : lblPath(form, "lblPath"),
      txtPath(form, "txtPath"),
      cmdGetDir(form, "cmdGetDir"),
      chkUseMusicSubfolder(form, "chkUseMusicSubfolder"),
      lblMusicFolderTemplate(form, "lblMusicFolderTemplate"),
      txtMusicFolderTemplate(form, "txtMusicFolderTemplate"),
      lblMusicFileTemplate(form, "lblMusicFileTemplate"),
      txtMusicFileTemplate(form, "txtMusicFileTemplate") {
    lblPath[0].Wording("1180", "Folder for temporary files:");
    lblPath[1].Wording("1181", "Folder for music:");
    lblPath[2].Wording("1182", "Folder for log files:");
    cmdGetDir[0].Wording("1183", "Browse...");
    cmdGetDir[1].Wording("1184", "Browse...");
    cmdGetDir[2].Wording("1185", "Browse...");
    chkUseMusicSubfolder.Wording("1186",
                                 "Put (encode) music files into subfolder(s) with the following name:");
    lblMusicFolderTemplate.Wording("1187", "Format or name of music subfolder (if song data available):");
    txtMusicFolderTemplate.TextKey("1188");
    lblMusicFileTemplate[0].Wording("1189", "Format of music file name (if NO song data available):");
    lblMusicFileTemplate[1].Wording("1190", "Format of music file name (if song data available):");
    txtMusicFileTemplate[0].TextKey("1191");
    txtMusicFileTemplate[1].TextKey("1192");
}

}  // namespace Corvetape
