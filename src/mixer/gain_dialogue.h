#pragma once

#include "audio/pause_settings.h"
#include "core/controls/messages.h"
#include "forms/frm_main.h"
#include "mixer/auto_gain.h"
#include "mixer/mod_mixer.h"
#include "mixer/search_guard.h"
#include "platform/dialogs.h"

namespace Corvetape {

/// What the dialogue works with. All of it outlives it.
struct GainDialogueParts {
    frmMain& Form;         ///< vscMultiplier shows what the search has found
    PauseSettings& Pause;  ///< LevelMultiplier
    modMixer& Mixers;
    AutoGain& Gain;
    SearchGuard& Guard;
    Corvetape::Dialogs& Dialogs;
    const clsLocalizeControls& Texts;
};

/// Asks for the gain search, runs it, and asks whether its result is to be saved.
class GainDialogue {
 public:
    explicit GainDialogue(GainDialogueParts parts) : Parts(parts) {}

    void Run();

 private:
    GainDialogueParts Parts;
};

}  // namespace Corvetape
