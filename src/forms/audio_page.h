#pragma once

#include "core/control_array.h"

namespace Corvetape {

/// Tab "Audio Devices": the input, its level and its gain.
struct AudioPage {
    explicit AudioPage(Form& form);

    ComboBox cmbInputDevices;  ///< item data: device number
    CheckBox chk48kHz;
    CommandButton cmdAutoInput;
    CommandButton cmdAGC;
    CommandButton cmdOpenMixer;
    CommandButton cmdSaveMixerSettings;
    CommandButton cmdResetMixerSettings;
    CheckBox chkMixerAutoUpdate;
    ScrollBar vscMultiplier;  ///< per cent, from 1000 at the top to 100 at the bottom
    Label lblMultiplier;
    Label lblHistogramMin;
    Label lblHistogramMax;
    Label lblMaxBuffers;
};

}  // namespace Corvetape
