#include "mixer/mixer_rescue.h"

#include <utility>
#include <vector>

#include "core/settings/profile.h"
#include "core/text/numbers.h"
#include "mixer/mixer_line.h"
#include "mixer/mixer_walk.h"

namespace Corvetape {

namespace {

/// A device's name as the name of a section: the names of sections ignore case, and cannot
/// hold line ends.
std::string SectionOf(const std::string& device) {
    std::string section;
    for (const char each : device) {
        const bool small = (each >= 'a' && each <= 'z') || (each >= '0' && each <= '9');
        if (small || each == '.' || each == '_' || each == '-') {
            section += each;
        } else {
            section += "%" + std::to_string(static_cast<unsigned char>(each)) + "%";
        }
    }
    return section;
}

/// Visits the controls of the lines that feed wave-in, each with its name on its device. A selector comes
/// before the values, since a port may bring its own volume.
template <typename Visit>
void ForInputs(Mixer& mixer, Visit visit) {
    WalkMixers(mixer, [&](MixerDevice& device, const MIXERLINE& line, MixerPlace place) {
        const auto destination = device.Destination(place.Destination);
        if (!destination || destination->dwComponentType != MIXERLINE_COMPONENTTYPE_DST_WAVEIN) return true;
        place.Device = 0;
        const auto controls = device.Controls(line).value_or(std::vector<MIXERCONTROL>());
        for (const bool selectors : {true, false}) {
            for (uint32_t index = 0; index < controls.size(); ++index) {
                const bool selector = controls[index].dwControlType == MIXERCONTROL_CONTROLTYPE_MUX;
                if (selector == selectors) visit(device, controls[index], MixerKey(place, index));
            }
        }
        return true;
    });
}

}  // namespace

MixerRescue::MixerRescue(Mixer& mixer, Files& files, std::string path)
    : Devices(mixer), Disk(files), Path(std::move(path)) {}

void MixerRescue::Keep() {
    PutBack();  // what a run before this one has left: its start may have found no sound server
    Kept.clear();
    ForInputs(Devices, [this](MixerDevice& device, const MIXERCONTROL& control, const std::string& key) {
        Kept[SectionOf(device.Caps().szPname)][key] = GetMixerControl(device, control);
    });
    Profile file(Disk, Path, WriteCare::Process);
    for (const auto& [name, values] : Kept) {
        std::vector<std::pair<std::string, std::string>> entries;
        for (const auto& [key, value] : values) entries.emplace_back(key, std::to_string(value));
        // What cannot be written is put back by this run at least.
        static_cast<void>(file.ReplaceSection(name, entries));
    }
}

void MixerRescue::Forget() {
    if (Kept.empty()) return;  // a file that is there all the same waits for a machine with mixers
    Kept.clear();
    Disk.Delete(Path);  // one that stays is put back needlessly at the next start
}

void MixerRescue::ReadFile() {
    const Profile file(Disk, Path);
    for (const std::string& name : file.Sections()) {
        for (const std::string& key : file.Keys(name)) {
            const auto value = WholeNumberFromText(file.ReadText(name, key, ""));
            if (value) Kept[name][key] = *value;
        }
    }
}

bool MixerRescue::PutBack() {
    if (Kept.empty()) ReadFile();
    if (Kept.empty() || Devices.CountDevices() == 0) return false;
    ForInputs(Devices, [this](MixerDevice& device, const MIXERCONTROL& control, const std::string& key) {
        const auto values = Kept.find(SectionOf(device.Caps().szPname));
        if (values == Kept.end()) return;
        const auto value = values->second.find(key);
        if (value == values->second.end() || GetMixerControl(device, control) == value->second) return;
        static_cast<void>(SetMixerControl(device, control, value->second));  // as good as it can
    });
    Forget();
    return true;
}

}  // namespace Corvetape
