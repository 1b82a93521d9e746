#pragma once

#include "core/control_array.h"

namespace Corvetape {

/// Tab "Recording": what is to be kept, and what plays.
struct RecordingPage {
    explicit RecordingPage(Form& form);

    CommandButton cmdQuickRecord;
    CommandButton cmdStartStop;
    CommandButton cmdSkipThisRecording;
    ControlArray<CheckBox, 2> chkStartStop;      ///< 0 current song, 1 next song
    ControlArray<CheckBox, 2> chkStopRecording;  ///< 0 at end of song, 1 after some minutes
    TextBox txtRecordingPeriod;
    Label lblStopRecording;

    CheckBox chkStationDataEnable;
    Label lblStationDataEnable;
    CommandButton cmdGetStationID;
    ControlArray<Label, 3> lblProvider;
    ControlArray<Label, 5> lblMedia;
    TextBox txtStation;
    TextBox txtArtist;
    TextBox txtSong;
    TextBox txtAlbum;
    TextBox txtTimeRemaining;

    ComboBox cmbURL;
    CommandButton cmdLaunchURL;
};

}  // namespace Corvetape
