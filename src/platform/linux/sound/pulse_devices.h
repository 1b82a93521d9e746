#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "platform/wave_in.h"

namespace Corvetape {

/// Asks the sound server at `server` (empty: the user's own) for its sources, over a connection of its own
/// that ends with the call. Monitors first, that of the default output leading, then the inputs,
/// the default one leading; the first of all is marked. Empty if there
/// is no answer within `limit`.
std::vector<WaveInDevice> ListPulseDevices(const std::string& server, std::chrono::milliseconds limit);

}  // namespace Corvetape
