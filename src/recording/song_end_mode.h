#pragma once

#include "audio/input_device.h"
#include "audio/pause_settings.h"
#include "forms/frm_main.h"

namespace Corvetape {

/// Decides how the end of a song is noticed: by silence, by media data, by time, or by all that is
/// known. Nobody else sets
/// EndOfSongDetection.
class SongEndMode {
 public:
    /// All of them outlive it.
    SongEndMode(frmMain& form, PauseSettings& pause, InputDevice& input)
        : Form(form), Pause(pause), Input(input) {}

    /// Changes the mode, and what can be set on the tab "TAB_PAUSE". Called by the handlers of optEndOfSong
    /// only, which a click, a loaded setting or a page runs. Media data are switched on where they end songs.
    void Choose(EndOfSong mode);

 private:
    void LeaveFor(EndOfSong next);
    void ShowControls(EndOfSong mode);

    frmMain& Form;
    PauseSettings& Pause;
    InputDevice& Input;
};

}  // namespace Corvetape
