#include "mixer/changed_line.h"

#include <algorithm>

namespace Corvetape {

ChangedLine::ChangedLine(modMixer& mixers, MixerDevice& device, const MIXERLINE& line)
    : Mixers(mixers), Device(device), Line(line) {}

bool ChangedLine::Set(uint32_t controlType, int32_t value) {
    if (std::ranges::find(Changes, controlType, &Changed::ControlType) == Changes.end()) {
        const int32_t before = Get(controlType);
        if (before != -1) Changes.push_back({controlType, before});
    }
    return Mixers.MixerLineAction(Device, Line, {MixerMode::SetValue, controlType, value}).has_value();
}

int32_t ChangedLine::Get(uint32_t controlType) const {
    return Mixers.MixerLineAction(Device, Line, {MixerMode::GetValue, controlType}).value_or(-1);
}

void ChangedLine::PutBack() {
    while (!Changes.empty()) {
        const Changed last = Changes.back();
        Changes.pop_back();
        static_cast<void>(
            Mixers.MixerLineAction(Device, Line, {MixerMode::SetValue, last.ControlType, last.Before}));
    }
}

}  // namespace Corvetape
