#include "mixer/mod_mixer.h"

#include <array>
#include <string_view>

#include "core/text/numbers.h"
#include "mixer/mixer_line.h"

namespace Corvetape {

namespace {

/// What a section of the mixer holds besides its values, and which modes leave it there.
struct KeptKey {
    std::string_view Key;
    bool WhenForgotten = false;
};
constexpr auto KeptKeys = std::to_array<KeptKey>({
    {"LevelMultiplier", false},  // the gain that was found is saved with the volume that it belongs to
    {"KeepRejectedInputs", true},
});

}  // namespace

modMixer::modMixer(Mixer& mixer, SettingsStore& store, const MediaState& media)
    : Devices(mixer), Store(store), Media(media) {}

bool modMixer::MixerAction(MixerMode mode) {
    Saved.clear();
    if (mode == MixerMode::Forget) {
        ReplaceSection(mode);
        return true;
    }
    if (mode == MixerMode::TakeSnapshot) Snapshot.clear();
    const bool whole =
        WalkMixers(Devices, [&](MixerDevice& device, const MIXERLINE& line, const MixerPlace& place) {
            return MixerLineAction(device, line, {mode}, place).has_value();
        });
    if (mode == MixerMode::Save) ReplaceSection(mode);
    return whole;
}

std::optional<int32_t> modMixer::MixerLineAction(MixerDevice& device, const MIXERLINE& line,
                                                 const MixerStep& step, const MixerPlace& place) {
    if (line.cControls == 0) return 0;
    const auto controls = device.Controls(line);
    if (!controls) return 0;
    for (uint32_t index = 0; index < controls->size(); ++index) {
        const MIXERCONTROL& control = (*controls)[index];
        if (step.Mode < MixerMode::SetValue) {
            if (!KeepOrSet(device, control, step.Mode, MixerKey(place, index))) return std::nullopt;
            continue;
        }
        if (control.dwControlType != step.ControlType) continue;
        if (step.Mode == MixerMode::GetValue) return GetMixerControl(device, control);
        if (step.Mode == MixerMode::FindItem) return FindListItem(device, control, step.Value);
        if (step.Mode == MixerMode::GetItem) return GetListItem(device, control, step.Value);
        if (!SetMixerControl(device, control, step.Value)) return std::nullopt;
        break;
    }
    return -1;
}

/// False if the error ends the walk.
bool modMixer::KeepOrSet(MixerDevice& device, const MIXERCONTROL& control, MixerMode mode,
                         const std::string& key) {
    switch (mode) {
        case MixerMode::TakeSnapshot:
            Snapshot[key] = GetMixerControl(device, control);
            return true;
        case MixerMode::Restore: {
            const auto kept = Snapshot.find(key);
            return kept != Snapshot.end() && SetMixerControl(device, control, kept->second);
        }
        case MixerMode::Save:
            Saved.emplace_back(key, std::to_string(GetMixerControl(device, control)));
            return true;
        default: {
            const std::string text = Store.ReadProviderText(Media.MixerSectionName, key);
            const std::optional<int32_t> value = WholeNumberFromText(text);
            return !value || SetMixerControl(device, control, *value);
        }
    }
}

void modMixer::ReplaceSection(MixerMode mode) {
    const std::string& section = Media.MixerSectionName;
    for (const KeptKey& each : KeptKeys) {
        if (mode == MixerMode::Forget && !each.WhenForgotten) continue;
        const std::string value = Store.ReadProviderText(section, each.Key);
        if (!value.empty()) Saved.emplace_back(each.Key, value);
    }
    Store.ReplaceSection(section, Saved);
    Saved.clear();
}

}  // namespace Corvetape
