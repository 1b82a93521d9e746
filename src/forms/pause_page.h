#pragma once

#include "core/control_array.h"

namespace Corvetape {

/// Tab "Pause Recognition": how the end of a song is noticed.
struct PausePage {
    explicit PausePage(Form& form);

    TextBox txtLengthOfPause;
    Label lblLengthOfPause;  ///< its unit
    TextBox txtSilenceAmplitude;
    Label lblSilenceAmplitude;  ///< its unit
    TextBox txtEndOfSilenceAmplitude;
    CheckBox chkDetectSilenceByPeak;
    Label lblDetectSilenceByPeak;  ///< the rest of its caption
    CheckBox chkIgnoreSilence;
    Label txtIgnoreSilence;
    TextBox txtQuitAfterSilence;
    ControlArray<Label, 2> lblQuitAfterSilence;  ///< what it is, its unit
    TextBox txtIgnoreShortSongs;
    OptionArray<3> optEndOfSong;
    TextBox txtEndOfSongTimer;
    OptionArray<2> optDuplicatePartOfSong;
    Slider sldEndOfSongThreshold0;  ///< half-seconds before the change, -10 to 0
    Slider sldEndOfSongThreshold1;  ///< half-seconds after the change, 0 to 10
    ControlArray<Label, 7> lblEndOfSongThreshold;
    CommandButton cmdAutoPauseParams;

    /// The slider of a side, 0 before and 1 after.
    Slider& sldEndOfSongThreshold(size_t side) {
        return side == 0 ? sldEndOfSongThreshold0 : sldEndOfSongThreshold1;
    }
};

}  // namespace Corvetape
