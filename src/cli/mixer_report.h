#pragma once

#include <string>

#include "platform/mixer.h"

namespace Corvetape {

/// Every control of the mixer, in the order in which they are walked: the devices with their lines, and below
/// each line the names under which its controls are saved, their values and what they can be set to.
std::string MixerText(Mixer& mixer);

/// The same as one JSON object for each control, a line each.
std::string MixerJson(Mixer& mixer);

}  // namespace Corvetape
