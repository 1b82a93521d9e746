#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "platform/linux/sound/pulse_connection.h"
#include "platform/wave_in.h"

namespace Corvetape {

/// Asks the sound server at `server` (empty: the user's own) for its sources, over a connection of its own
/// that ends with the call. The monitors come first, then the inputs, each in the order of the server's
/// stable names: neither which output is the default one nor a restart of the server moves any. The monitor
/// of the default output is marked, or the default input where there is none. Empty, with the
/// reason, if there is no answer within `limit`.
WaveInList ListPulseDevices(const std::string& server, std::chrono::milliseconds limit);

/// The same over a connection that is there.
WaveInList ListPulseDevices(PulseConnection& server);

/// The names of the outputs in their order. Empty if there is no answer in time.
std::vector<std::string> ListPulseSinks(PulseConnection& server);

}  // namespace Corvetape
