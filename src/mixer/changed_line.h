#pragma once

#include <cstdint>
#include <vector>

#include "mixer/mod_mixer.h"

namespace Corvetape {

/// A line of the mixer that a search changes, with what the user had set on it.
class ChangedLine {
 public:
    /// `mixers` and `device` outlive it.
    ChangedLine(modMixer& mixers, MixerDevice& device, const MIXERLINE& line);

    /// Sets the first control of a type; nothing if the line has none. False if an item cannot be selected,
    /// as it has no slot.
    bool Set(uint32_t controlType, int32_t value);

    /// The value of the first control of a type, as modMixer::MixerLineAction answers.
    int32_t Get(uint32_t controlType) const;

    /// Sets everything that was changed to what it was before, the last one first.
    void PutBack();

 private:
    struct Changed {
        uint32_t ControlType = 0;
        int32_t Before = 0;
    };

    modMixer& Mixers;
    MixerDevice& Device;
    MIXERLINE Line;
    std::vector<Changed> Changes;
};

}  // namespace Corvetape
