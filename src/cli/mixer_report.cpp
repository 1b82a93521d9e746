#include "cli/mixer_report.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <optional>

#include "cli/json_text.h"
#include "mixer/mixer_line.h"
#include "mixer/mixer_walk.h"
#include "platform/linux/desktop/one_line.h"

namespace Corvetape {

namespace {

struct ControlKind {
    uint32_t Type = 0;
    const char* Name = "";
};
constexpr auto ControlKinds = std::to_array<ControlKind>({
    {MIXERCONTROL_CONTROLTYPE_ONOFF, "switch"},
    {MIXERCONTROL_CONTROLTYPE_MUTE, "mute"},
    {MIXERCONTROL_CONTROLTYPE_VOLUME, "volume"},
    {MIXERCONTROL_CONTROLTYPE_MUX, "selector"},
});

const char* KindOf(const MIXERCONTROL& control) {
    const auto found = std::ranges::find(ControlKinds, control.dwControlType, &ControlKind::Type);
    return found == ControlKinds.end() ? "other" : found->Name;
}

/// A control with where it stands and what it is set to.
struct ShownControl {
    std::string Device;
    MIXERLINE Line;
    MixerPlace Place;
    std::string Key;
    MIXERCONTROL Control;
    int32_t Value = 0;
    std::vector<std::string> Items;

    /// The item that is on; empty for a simple control, or if none is.
    std::string Chosen() const {
        const auto index = static_cast<size_t>(Value);
        return Value >= 0 && index < Items.size() ? Items[index] : std::string();
    }
};

/// Calls `line` for each line and `control` for each of its controls.
template <typename OnLine, typename OnControl>
void ForAll(Mixer& mixer, OnLine onLine, OnControl onControl) {
    WalkMixers(mixer, [&](MixerDevice& device, const MIXERLINE& line, const MixerPlace& place) {
        const std::string name = device.Caps().szPname;
        onLine(name, line, place);
        const auto controls = device.Controls(line);
        for (uint32_t index = 0; controls && index < controls->size(); ++index) {
            const MIXERCONTROL& control = (*controls)[index];
            ShownControl shown{name, line, place, MixerKey(place, index), control, 0, {}};
            shown.Value = GetMixerControl(device, control);
            if (control.cMultipleItems > 0) {
                for (const auto& item :
                     device.Items(control).value_or(std::vector<MIXERCONTROLDETAILS_LISTTEXT>())) {
                    shown.Items.push_back(item.szName);
                }
            }
            onControl(shown);
        }
        return true;
    });
}

std::string ValueText(const ShownControl& shown) {
    if (!shown.Items.empty()) {
        const std::string chosen = shown.Chosen();
        return fmt::format("{}  {}", shown.Value, chosen.empty() ? "none" : OneLine(chosen));
    }
    return fmt::format("{}  of {} to {}", shown.Value, shown.Control.Bounds.lMinimum,
                       shown.Control.Bounds.lMaximum);
}

}  // namespace

std::string MixerText(Mixer& mixer) {
    std::string text;
    ForAll(
        mixer,
        [&](const std::string& device, const MIXERLINE& line, const MixerPlace& place) {
            if (place.Source) {
                text += fmt::format("      source {}: {}\n", *place.Source, OneLine(line.szName));
                return;
            }
            const bool input = line.dwComponentType == MIXERLINE_COMPONENTTYPE_DST_WAVEIN;
            text += fmt::format("{:>3}  {:<8} {}  ({})\n", place.Device, input ? "input" : "output",
                                OneLine(line.szName), OneLine(device));
        },
        [&](const ShownControl& shown) {
            text +=
                fmt::format("      {:<12} {:<9} {}\n", shown.Key, KindOf(shown.Control), ValueText(shown));
        });
    return text;
}

std::string MixerJson(Mixer& mixer) {
    std::string text;
    ForAll(
        mixer, [](const std::string&, const MIXERLINE&, const MixerPlace&) {},
        [&](const ShownControl& shown) {
            const std::string source = shown.Place.Source ? std::to_string(*shown.Place.Source) : "null";
            text += fmt::format(
                "{{\"key\":{},\"device\":{},\"name\":{},\"destination\":{},\"source\":{},\"line\":{},"
                "\"type\":{},\"value\":{},\"minimum\":{},\"maximum\":{},\"items\":[",
                JsonText(shown.Key), shown.Place.Device, JsonText(shown.Device), shown.Place.Destination,
                source, JsonText(shown.Line.szName), JsonText(KindOf(shown.Control)), shown.Value,
                shown.Control.Bounds.lMinimum, shown.Control.Bounds.lMaximum);
            for (size_t i = 0; i < shown.Items.size(); ++i) {
                text += (i == 0 ? "" : ",") + JsonText(shown.Items[i]);
            }
            text += "]}\n";
        });
    return text;
}

}  // namespace Corvetape
