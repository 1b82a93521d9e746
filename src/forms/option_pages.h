#pragma once

#include "core/control_array.h"

namespace Corvetape {

/// Tab "Options 1": what the program does around a recording.
struct Options1Page {
    explicit Options1Page(Form& form);

    CheckBox chkNormalize;
    CheckBox chkEncodeOffline;
    CheckBox chkDelTemp;
    CheckBox chkDelTempFolder;
    CheckBox chkQuitAfterRecording;
    CheckBox chkDelayUnload;
    CheckBox chkDisableSoundScheme;
    CheckBox chkRestartRadioIfSilent;
    CheckBox chkStoreCoverImage;
    CheckBox chkNoStartupInfo;
    ListBox lstEncodeDelay;  ///< entries 30 down to 0
    ListBox lstBufferFlag;   ///< entries 4 down to 1
};

/// Tab "Options 2": disk limits, programs to launch.
struct Options2Page {
    explicit Options2Page(Form& form);

    TextBox txtLowTempSpace;
    TextBox txtLowMusicSpace;
    CheckBox chkStartApp;
    TextBox txtStartApp;
    TextBox txtStartAppCommandLine;
    CheckBox chkStopApp;
    TextBox txtStopApp;
    TextBox txtStopAppCommandLine;
    ControlArray<CommandButton, 2> cmdAppSearch;
};

/// Tab "Folders & Files": where files go and what they are called.
struct FoldersPage {
    explicit FoldersPage(Form& form);

    ControlArray<TextBox, 3> txtPath;  ///< 0 temporary, 1 music, 2 log
    ControlArray<CommandButton, 3> cmdGetDir;
    CheckBox chkUseMusicSubfolder;
    TextBox txtMusicFolderTemplate;
    ControlArray<TextBox, 2> txtMusicFileTemplate;
};

}  // namespace Corvetape
