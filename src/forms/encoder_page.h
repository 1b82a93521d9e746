#pragma once

#include "core/controls/control_array.h"

namespace Corvetape {

/// Tab "MP3, WMA, ...": the format of the music files.
struct EncoderPage {
    explicit EncoderPage(Form& form);

    OptionArray<6> optEncoder;
    ComboBox cmbMP3;
    ComboBox cmbOgg;
    ComboBox cmbWMA44;
    ComboBox cmbWMA48;
    ControlArray<CommandButton, 2> cmdGetEncoder;
};

}  // namespace Corvetape
