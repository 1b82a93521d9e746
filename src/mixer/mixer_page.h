#pragma once

#include <string>

#include "audio/pause_settings.h"
#include "core/controls/event.h"
#include "core/controls/messages.h"
#include "core/controls/open_forms.h"
#include "core/lifecycle_flags.h"
#include "forms/frm_main.h"
#include "mixer/auto_gain.h"
#include "mixer/input_list.h"
#include "mixer/input_search.h"
#include "mixer/mixer_rescue.h"
#include "mixer/mixer_wait.h"
#include "mixer/mod_mixer.h"
#include "platform/desktop.h"
#include "platform/dialogs.h"
#include "platform/processes.h"
#include "platform/system_info.h"

namespace Corvetape {

/// What the buttons set going. All of it outlives the page.
struct MixerTools {
    modMixer& Mixers;
    InputList& Inputs;
    InputSearch& Search;
    AutoGain& Gain;
    MixerRescue& Rescue;
    MixerWait& Wait;
};

/// What the page shows and asks with. All of it outlives the page.
struct MixerPageParts {
    frmMain& Form;
    PauseSettings& Pause;  ///< LevelMultiplier is shown after the gain search
    LifecycleFlags& Lifecycle;
    const OpenForms& Opened;  ///< the assistant is among them while it is open
    Corvetape::Dialogs& Dialogs;
    Corvetape::Processes& Processes;
    Corvetape::Desktop& Desktop;  ///< its pointer is that of a wait while a search runs
    const clsLocalizeControls& Texts;
};

/// The buttons of the mixer: the search for the input, the gain search, the sound settings of the desktop,
/// and saving and resetting. The main window is disabled while a search runs.
class MixerPage {
 public:
    /// Attaches itself to the buttons. `version` is that of the machine.
    MixerPage(MixerPageParts parts, MixerTools tools, const SystemVersion& version);
    MixerPage(const MixerPage&) = delete;
    MixerPage& operator=(const MixerPage&) = delete;

    /// The program ends. A search that is under way gives up and shows nothing more, and the inputs are again
    /// as they were before it.
    void End();

    /// Inputs are about to be opened that nobody wants to record from, and: the chosen one is open again.
    Event<> SearchBegins;
    Event<> SearchEnds;

    /// The assistant is to open the page of this name.
    Event<const std::string&> SetUrl;

 private:
    void AutoInputClicked();
    void OfferSoundSettings();
    bool AskAndSearch();
    void Search();
    void TellFound(const std::string& name);
    void AutoGainClicked();
    void AskAndFindGain();

    MixerPageParts Parts;
    MixerTools Tools;
    bool OneDeviceEach;      ///< each input is a device of its own
    bool Searching = false;  ///< a dialogue of one of the searches is under way
};

}  // namespace Corvetape
