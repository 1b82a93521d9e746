#pragma once

#include <functional>

#include "audio/analyze.h"
#include "audio/audio_ring.h"
#include "audio/cut_state.h"
#include "audio/pause_settings.h"
#include "audio/recording_flags.h"
#include "audio/signal_state.h"
#include "audio/wave_buffer.h"

namespace Corvetape {

/// What the pause recognition reads and writes.
struct RouteParts {
    SignalState& Signal;
    CutState& Cut;
    const PauseSettings& Pause;
    const RecordingFlags& Flags;
    AudioRing& Ring;
};

/// Where a buffer goes from here. Both are set; both return false if a song file could not be made, and the
/// program is then to end.
struct RouteTargets {
    /// The way to the file of the end of song by silence; `end`: this buffer is the song's last.
    std::function<bool(const SignalBuffer& buffer, bool end)> WriteBufferToSong;

    /// Called when the next buffer would reach unread audio of the ring, to have some of it written.
    std::function<bool()> MakeRoom;
};

/// The pause recognition: decides whether an analysed buffer is written, dropped or held, and whether a song
/// has ended. False if the program is to end.
bool RouteBuffer(const SignalBuffer& buffer, const RouteParts& parts, const RouteTargets& targets);

/// What happens to one buffer, in its fixed order: analysis, the skipping after a pause, routing.
class SignalPath {
 public:
    /// The parts outlive it.
    SignalPath(AnalysisParts analysis, RouteParts route, RouteTargets targets);

    /// False if the program is to end.
    bool Handle(WaveBuffer& buffer) const;

 private:
    AnalysisParts Analysis;
    RouteParts Route;
    RouteTargets Targets;
};

}  // namespace Corvetape
