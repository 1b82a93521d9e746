#pragma once

#include "core/controls/control_array.h"
#include "core/controls/form_parts.h"

namespace Corvetape {

/// Tab "Pause Recognition": how the end of a song is noticed. Of two labels beside a text box, 0 names it and
/// 1 is its unit.
struct PausePage {
    explicit PausePage(Form& form);

    TextBox txtLengthOfPause;
    ControlArray<Label, 2> lblLengthOfPause;
    TextBox txtSilenceAmplitude;
    ControlArray<Label, 2> lblSilenceAmplitude;
    TextBox txtEndOfSilenceAmplitude;
    ControlArray<Label, 2> lblEndOfSilenceAmplitude;
    CheckBox chkDetectSilenceByPeak;
    Label lblDetectSilenceByPeak;  ///< the rest of its caption
    CheckBox chkIgnoreSilence;
    Label txtIgnoreSilence;  ///< the rest of its caption
    TextBox txtQuitAfterSilence;
    ControlArray<Label, 2> lblQuitAfterSilence;
    TextBox txtIgnoreShortSongs;
    ControlArray<Label, 2> lblIgnoreShortSongs;
    GroupBox fraEndOfSong;
    OptionArray<4> optEndOfSong;
    TextBox txtEndOfSongTimer;
    Label lblEndOfSongTimer;  ///< its unit
    OptionArray<2> optDuplicatePartOfSong;
    Slider sldEndOfSongThreshold0;  ///< half-seconds before the change, -10 to 0
    Slider sldEndOfSongThreshold1;  ///< half-seconds after the change, 0 to 10

    /// 0 and 1 name the sliders, 2 what they are about; 3 and 4 are the seconds, 5 and 6 the unit.
    ControlArray<Label, 7> lblEndOfSongThreshold;
    CommandButton cmdAutoPauseParams;
    CommandButton cmdForgetCuts;  ///< what was learned about the titles of all sources goes

    /// The slider of a side, 0 before and 1 after.
    Slider& sldEndOfSongThreshold(size_t side) {
        return side == 0 ? sldEndOfSongThreshold0 : sldEndOfSongThreshold1;
    }
};

}  // namespace Corvetape
