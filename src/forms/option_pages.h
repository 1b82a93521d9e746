#pragma once

#include "core/controls/control_array.h"
#include "core/controls/form_parts.h"

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
    CheckBox chkNotifySongs;
    CheckBox chkMaximizeButton;
    Label lblLanguage;
    ComboBox cmbLanguage;
    CheckBox chkNoStartupInfo;  ///< on no page and yet visible: it is for pages of the assistant
    ListBox lstEncodeDelay;     ///< entries 30 down to 0
    ListBox lstBufferFlag;      ///< entries 4 down to 1
};

/// Tab "Options 2": disk limits, programs to launch.
struct Options2Page {
    explicit Options2Page(Form& form);

    GroupBox fraLowSpace;
    TextBox txtLowTempSpace;
    Label lblLowTempSpace;  ///< stands after its text box
    TextBox txtLowMusicSpace;
    Label lblLowMusicSpace;  ///< stands after its text box
    CheckBox chkStartApp;
    TextBox txtStartApp;
    Label lblStartAppCommandLine;
    TextBox txtStartAppCommandLine;
    CheckBox chkStopApp;
    TextBox txtStopApp;
    Label lblStopAppCommandLine;
    TextBox txtStopAppCommandLine;
    ControlArray<CommandButton, 2> cmdAppSearch;
};

/// Tab "Folders & Files": where files go and what they are called.
struct FoldersPage {
    explicit FoldersPage(Form& form);

    ControlArray<Label, 3> lblPath;
    ControlArray<TextBox, 3> txtPath;  ///< 0 temporary, 1 music, 2 log; the tool tip is the whole path
    ControlArray<CommandButton, 3> cmdGetDir;
    CheckBox chkUseMusicSubfolder;
    Label lblMusicFolderTemplate;
    TextBox txtMusicFolderTemplate;
    ControlArray<Label, 2> lblMusicFileTemplate;
    ControlArray<TextBox, 2> txtMusicFileTemplate;
};

}  // namespace Corvetape
