#include "mixer/mixer_line.h"

#include <algorithm>
#include <cstddef>

namespace Corvetape {

namespace {

bool HasItems(const MIXERCONTROL& control) {
    return (control.fdwControl & MIXERCONTROL_CONTROLF_MULTIPLE) != 0;
}

MIXERCONTROLDETAILS DetailsOf(const MIXERCONTROL& control) {
    MIXERCONTROLDETAILS details;
    details.dwControlID = control.dwControlID;
    if (HasItems(control)) details.cMultipleItems = control.cMultipleItems;
    return details;
}

}  // namespace

bool SetMixerControl(MixerDevice& device, const MIXERCONTROL& control, int32_t value) {
    const int32_t clamped = std::max(std::min(value, control.Bounds.lMaximum), control.Bounds.lMinimum);
    MixerValues slots{};
    if (!HasItems(control)) {
        slots[0] = clamped;
    } else {
        if (clamped < 0 || static_cast<size_t>(clamped) >= slots.size()) return false;
        slots[static_cast<size_t>(clamped)] = 1;
    }
    device.SetValues(DetailsOf(control), slots);  // a device that refuses, or is gone, stays as it is
    return true;
}

int32_t GetMixerControl(MixerDevice& device, const MIXERCONTROL& control) {
    const std::optional<MixerValues> slots = device.Values(DetailsOf(control));
    if (!slots) return 0;
    if (!HasItems(control)) return (*slots)[0];
    const size_t count = std::min<size_t>(control.cMultipleItems, slots->size());
    for (size_t i = 0; i < count; ++i) {
        if ((*slots)[i] != 0) return static_cast<int32_t>(i);
    }
    return static_cast<int32_t>(control.cMultipleItems);
}

int32_t FindListItem(MixerDevice& device, const MIXERCONTROL& control, int32_t lineId) {
    const auto items = device.Items(control);
    if (!items) return -1;
    const auto found =
        std::ranges::find(*items, static_cast<uint32_t>(lineId), &MIXERCONTROLDETAILS_LISTTEXT::dwParam1);
    return found == items->end() ? -1 : static_cast<int32_t>(found - items->begin());
}

int32_t GetListItem(MixerDevice& device, const MIXERCONTROL& control, int32_t index) {
    const auto items = device.Items(control);
    if (!items || index < 0 || static_cast<size_t>(index) >= items->size()) return -1;
    return static_cast<int32_t>((*items)[static_cast<size_t>(index)].dwParam1);
}

std::optional<MIXERLINE> FindWaveInLine(MixerDevice& device) {
    const uint32_t count = device.Caps().cDestinations;
    for (uint32_t destination = 0; destination < count; ++destination) {
        auto line = device.Destination(destination);
        if (line && line->dwComponentType == MIXERLINE_COMPONENTTYPE_DST_WAVEIN) return line;
    }
    return std::nullopt;
}

}  // namespace Corvetape
