#pragma once

#include "core/controls/control_array.h"
#include "core/controls/form_parts.h"

namespace Corvetape {

/// Tab "Recording": what is to be kept, and what plays.
struct RecordingPage {
    explicit RecordingPage(Form& form);

    CommandButton cmdQuickRecord;
    CommandButton cmdStartStop;  ///< its tag plus the value of chkStartStop(0) is the key of its caption
    CommandButton cmdSkipThisRecording;
    Picture picStart;  ///< seen while the current song is not recorded
    Picture picStop;   ///< seen while it is
    Picture picSkip;
    ControlArray<CheckBox, 2> chkStartStop;      ///< 0 current song, 1 next song
    ControlArray<CheckBox, 2> chkStopRecording;  ///< 0 at end of song, 1 after some minutes
    TextBox txtRecordingPeriod;
    Label lblStopRecording;  ///< the unit of the period

    GroupBox fraCurrentSong;
    CheckBox chkStationDataEnable;
    Label lblStationDataEnable;
    CommandButton cmdGetStationID;
    ControlArray<Label, 3> lblProvider;
    ControlArray<Label, 5> lblMedia;  ///< names of the five text boxes below
    TextBox txtStation;
    TextBox txtArtist;
    TextBox txtSong;
    TextBox txtAlbum;
    TextBox txtTimeRemaining;

    ComboBox cmbURL;
    CommandButton cmdLaunchURL;
    BrowserView objWebBrowser;
};

}  // namespace Corvetape
