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
      chkNoStartupInfo(form, "chkNoStartupInfo"),
      lstEncodeDelay(form, "lstEncodeDelay"),
      lstBufferFlag(form, "lstBufferFlag") {
    chkNormalize.Caption("Normalize music files after recording");
    chkEncodeOffline.Caption("Do not encode while recording");
    chkDelTemp.Caption("Delete temporary files after encoding");
    chkDelTempFolder.Caption("Delete temporary files and folder at program termination");
    chkQuitAfterRecording.Caption("Terminate program at end of timed recording");
    chkDelayUnload.Caption("Delay program termination until end of song");
    chkDisableSoundScheme.Caption("Disable sound scheme when Corvetape starts");
    chkRestartRadioIfSilent.Caption("Try to restart radio if silence detected");
    chkStoreCoverImage.Caption("Store the cover image with the song");
    lstEncodeDelay.Caption("Start encoding to MP3, WMA etc. after a delay of n seconds");
    lstBufferFlag.Caption("Buffer processing method");
    chkNoStartupInfo.Visible(false);
    for (int32_t seconds = 30; seconds >= 0; --seconds) lstEncodeDelay.AddItem(std::to_string(seconds));
    for (int32_t method = 4; method >= 1; --method) lstBufferFlag.AddItem(std::to_string(method));
}

Options2Page::Options2Page(Form& form)
    : txtLowTempSpace(form, "txtLowTempSpace"),
      txtLowMusicSpace(form, "txtLowMusicSpace"),
      chkStartApp(form, "chkStartApp"),
      txtStartApp(form, "txtStartApp"),
      txtStartAppCommandLine(form, "txtStartAppCommandLine"),
      chkStopApp(form, "chkStopApp"),
      txtStopApp(form, "txtStopApp"),
      txtStopAppCommandLine(form, "txtStopAppCommandLine"),
      cmdAppSearch(form, "cmdAppSearch") {
    txtLowTempSpace.Caption("MB in folder for temporary data");
    txtLowMusicSpace.Caption("MB in music folder");
    chkStartApp.Caption("Launch this program when Corvetape starts:");
    chkStopApp.Caption("Launch this program when Corvetape quits:");
}

FoldersPage::FoldersPage(Form& form)
    : txtPath(form, "txtPath"),
      cmdGetDir(form, "cmdGetDir"),
      chkUseMusicSubfolder(form, "chkUseMusicSubfolder"),
      txtMusicFolderTemplate(form, "txtMusicFolderTemplate"),
      txtMusicFileTemplate(form, "txtMusicFileTemplate") {
    chkUseMusicSubfolder.Caption("Put (encode) music files into subfolder(s) with the following name:");
    txtMusicFolderTemplate.Caption("Format or name of music subfolder (if song data available):");
    txtMusicFileTemplate[0].Caption("Format of music file name (if NO song data available):");
    txtMusicFileTemplate[1].Caption("Format of music file name (if song data available):");
}

}  // namespace Corvetape
