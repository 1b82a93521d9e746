#pragma once

#include <string>
#include <vector>

#include "audio/pause_settings.h"
#include "audio/signal_state.h"
#include "core/controls/messages.h"
#include "core/media_state.h"
#include "core/settings/settings.h"
#include "mixer/changed_line.h"
#include "mixer/input_list.h"
#include "mixer/input_probe.h"
#include "mixer/mixer_wait.h"
#include "mixer/mod_mixer.h"
#include "platform/dialogs.h"

namespace Corvetape {

/// What the search works with. All of it outlives the search.
struct InputSearchParts {
    modMixer& Mixers;
    InputList& Inputs;
    PauseSettings& Pause;
    SignalState& Signal;
    const MediaState& Media;
    const Corvetape::Settings& Settings;  ///< KeepRejectedInputs
    MixerWait& Wait;
};

/// Tries one input after the other, listens to each, and asks the user whether the first one with sound is
/// the right one. The input that is confirmed stays selected at full volume.
///
/// What becomes of the others is a setting: an input that the user has refused ends at volume 0, as the
/// question says. One without sound gets its volume back, or with KeepRejectedInputs off ends at 0 too.
class InputSearch {
 public:
    /// `boxes` and `texts` outlive it.
    InputSearch(InputSearchParts parts, Dialogs& boxes, const clsLocalizeControls& texts);

    /// For machines on which one device has several source lines and a selector: tries the lines of the
    /// chosen device, which stays open. The name of the line that was found and confirmed; empty without one.
    std::string SearchInputLine();

    /// For machines on which each input is a device of its own: tries all devices, and those with ports port
    /// by port. The chosen device is closed meanwhile and opened again at the end. The name of the input that
    /// was found and confirmed, whose device is then the chosen one; empty without one.
    std::string SearchInputDevice();

    /// The program ends: whatever is under way gives up, and the analysis has the user's values again.
    void End();

 private:
    /// What listening to an input has come to.
    enum class Verdict { Confirmed, Refused, Silent, Ended };

    /// A source line that a selector can choose.
    struct Port {
        int32_t Item = -1;  ///< -1: there is no choice
        std::string Name;
    };
    class Session;

    std::string TryLines(MixerDevice& device, const MIXERLINE& recording);
    std::string TryDevice(const std::string& name, MixerDevice& device);
    std::string TryDestination(const std::string& name, MixerDevice& device, const MIXERLINE& line);
    std::vector<Port> PortsOf(MixerDevice& device, const MIXERLINE& line) const;
    int32_t ItemOf(MixerDevice& device, const MIXERLINE& recording, const MIXERLINE& source) const;
    Verdict Listen(const std::string& name);
    void Reject(ChangedLine& line, Verdict verdict) const;

    InputSearchParts Parts;
    Dialogs& Boxes;
    const clsLocalizeControls& Texts;
    InputProbe* Probe = nullptr;  ///< while a search listens
};

}  // namespace Corvetape
