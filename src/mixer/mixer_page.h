#pragma once

#include "forms/frm_main.h"
#include "mixer/gain_dialogue.h"
#include "mixer/input_dialogue.h"
#include "mixer/mod_mixer.h"
#include "mixer/search_guard.h"
#include "mixer/sound_settings.h"
#include "platform/system_info.h"

namespace Corvetape {

/// What the buttons set going. All of it outlives the page.
struct MixerPageParts {
    frmMain& Form;
    modMixer& Mixers;
    SoundSettings& Settings;
    InputDialogue& Input;
    GainDialogue& Gain;
    SearchGuard& Guard;
};

/// The buttons of the mixer: the search for the input, the gain search, the sound settings of the desktop,
/// and saving and resetting. The main window is disabled while a search runs.
class MixerPage {
 public:
    /// Attaches itself to the buttons. `version` is that of the machine.
    MixerPage(MixerPageParts parts, const SystemVersion& version);
    MixerPage(const MixerPage&) = delete;
    MixerPage& operator=(const MixerPage&) = delete;

    /// The program ends. A search that is under way gives up and shows nothing more, and the inputs are again
    /// as they were before it.
    void End();

 private:
    void AutoInputClicked();
    void AutoGainClicked();

    MixerPageParts Parts;
    bool OffersSettings;  ///< inputs may have to be switched on there before they are found
};

}  // namespace Corvetape
