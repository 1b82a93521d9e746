#pragma once

#include <cstddef>
#include <cstdint>

#include "audio/pause_settings.h"
#include "audio/signal_state.h"
#include "mixer/input_list.h"
#include "mixer/mixer_wait.h"
#include "mixer/mod_mixer.h"
#include "platform/system_info.h"

namespace Corvetape {

/// The largest magnitude among the newest n + 1 levels; 0 if there is none. Ends of songs are no levels.
int32_t PeakOfLastLevels(const LevelHistory& history, size_t n);

/// What the gain search works with. All of it outlives the search.
struct AutoGainParts {
    modMixer& Mixers;
    const InputList& Inputs;
    PauseSettings& Pause;  ///< LevelMultiplier is set
    const SignalState& Signal;
    MixerWait& Wait;
};

/// Finds the recording level while loud music plays: a signal that is too weak at full volume is raised by
/// the software, one that is too strong is turned down in the mixer.
class AutoGain {
 public:
    /// `version` is that of the machine.
    AutoGain(AutoGainParts parts, const SystemVersion& version);

    /// For machines on which a selector chooses one of several source lines, whose volume is set. Hands over
    /// to AutoGainDevice on others. True when the level was reached. False without a line to set, with
    /// LevelMultiplier untouched; when the signal stays silent, too weak or too strong; when nothing is heard
    /// any more.
    bool AutoGainLine();

    /// The same on the volume of the recording line itself.
    bool AutoGainDevice();

 private:
    bool FillHistory();
    bool FindGain(MixerDevice& device, const MIXERLINE& line);
    bool TurnDown(MixerDevice& device, const MIXERLINE& line, int32_t peak);
    bool Hear(float milliseconds);
    void SetVolume(MixerDevice& device, const MIXERLINE& line, int32_t volume);

    AutoGainParts Parts;
    bool OneDeviceEach;  ///< each input is a device of its own
};

}  // namespace Corvetape
