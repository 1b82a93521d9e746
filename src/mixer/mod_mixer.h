#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/media_state.h"
#include "core/settings/settings_store.h"
#include "mixer/mixer_walk.h"
#include "platform/mixer.h"

namespace Corvetape {

/// What is done with the controls of the mixer.
enum class MixerMode : int16_t {
    TakeSnapshot = 0,  ///< keeps the value of each control in MixerSnapshot
    Restore = 1,       ///< sets each control to its value there
    Save = 2,          ///< writes the value of each control into the section of the source
    Load = 3,          ///< sets each control that the section has a value for
    SetValue = 4,      ///< one line: sets the first control of a type
    GetValue = 5,      ///< one line: the value of the first control of a type
    FindItem = 6,      ///< one line: FindListItem of the first control of a type
    GetItem = 7,       ///< one line: GetListItem of the first control of a type
    Forget = 8,        ///< removes the section of the source
};

/// A mode for one line, with the type of control that it looks for and what it does with it.
struct MixerStep {
    MixerMode Mode = MixerMode::GetValue;
    uint32_t ControlType = 0;
    int32_t Value = 0;
};

/// All that the program does with the mixer: one walk over every control of every device, without knowledge
/// of what a card offers. The name under which a value is kept is the control's place in the walk.
///
/// Failures of devices pass silently, and the walk goes on with the next line.
class modMixer {
 public:
    /// All of them outlive it. The section in force is MediaState::MixerSectionName.
    modMixer(Mixer& mixer, SettingsStore& store, const MediaState& media);

    /// Walks all devices, or removes the section. False if an error has ended the walk: a control without a
    /// value in the snapshot, which belongs to a device that has come since, or an item without a slot.
    ///
    /// Saving and forgetting remove the whole section, whatever else it holds. Saving keeps the gain of the
    /// source, and both keep KeepRejectedInputs, as these are no values of the mixer.
    bool MixerAction(MixerMode mode);

    /// One step on one line, `place` being the line's. From SetValue on it ends at the first control of the
    /// type. 0 if the line has no controls or does not give them; the answer of GetValue, FindItem or GetItem
    /// where there is such a control; otherwise -1. Nothing if an error has ended it.
    std::optional<int32_t> MixerLineAction(MixerDevice& device, const MIXERLINE& line, const MixerStep& step,
                                           const MixerPlace& place = {});

    /// The mixer device of an input, by WaveInDevice::Id. Null without one.
    std::unique_ptr<MixerDevice> OpenWaveIn(const std::string& input) { return Devices.OpenWaveIn(input); }

    /// The values that TakeSnapshot has kept, by the names of their controls.
    const std::map<std::string, int32_t>& MixerSnapshot() const { return Snapshot; }

 private:
    bool KeepOrSet(MixerDevice& device, const MIXERCONTROL& control, MixerMode mode, const std::string& key);
    void ReplaceSection(MixerMode mode);

    Mixer& Devices;
    SettingsStore& Store;
    const MediaState& Media;
    std::map<std::string, int32_t> Snapshot;
    std::vector<std::pair<std::string, std::string>> Saved;  ///< by the walk that is under way
};

}  // namespace Corvetape
