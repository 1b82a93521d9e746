#pragma once

#include <cstdint>
#include <optional>

#include "platform/mixer.h"

namespace Corvetape {

/// The mixer works with one number for each control: the value of a simple control on all its channels alike,
/// or the index of the item that is on. Failures of the device pass silently.

/// Sets a control to a value, or switches the item of this index on and all others off. A value outside the
/// control's bounds is pulled to the nearest one. False, with nothing set, if the item has no slot.
bool SetMixerControl(MixerDevice& device, const MIXERCONTROL& control, int32_t value);

/// The value of a control, or the index of the item that is on: the number of items if none is. 0 on failure.
int32_t GetMixerControl(MixerDevice& device, const MIXERCONTROL& control);

/// The item of a selector that stands for the source line of this id; -1 if there is none, or on failure.
int32_t FindListItem(MixerDevice& device, const MIXERCONTROL& control, int32_t lineId);

/// The id of the source line that an item of a selector stands for; -1 for an index out of range, or on
/// failure.
int32_t GetListItem(MixerDevice& device, const MIXERCONTROL& control, int32_t index);

/// The first destination of a device that feeds wave-in. Nothing without one.
std::optional<MIXERLINE> FindWaveInLine(MixerDevice& device);

}  // namespace Corvetape
