#pragma once

#include "core/controls/control_array.h"
#include "core/controls/form_parts.h"

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
    GroupBox fraVUMeter;
    Picture picVUMeter;
    ScrollBar vscMultiplier;  ///< per cent, from 1000 at the top to 100 at the bottom
    Label lblMultiplier;
    GroupBox fraHistogram;
    Picture picHistogram;
    ControlArray<Label, 2> lblHistogram;  ///< names of the two values below
    Label lblHistogramMin;
    Label lblHistogramMax;
    Label lblMaxBuffersUsed;  ///< names the value below
    Label lblMaxBuffers;
};

}  // namespace Corvetape
