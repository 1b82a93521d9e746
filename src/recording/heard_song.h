#pragma once

#include <cstdint>

#include "audio/cut_state.h"
#include "audio/pause_settings.h"
#include "audio/signal_state.h"
#include "core/media_state.h"
#include "media/player_bridge.h"
#include "platform/clock.h"

namespace Corvetape {

/// What is known of the sound and of the songs in it. All of it outlives the song.
struct HeardSongParts {
    const SignalState& Signal;
    const PauseSettings& Pause;
    const CutState& Cut;
    const MediaState& Media;
    const PlayerBridge* Players;  ///< null in a run without players
    const Corvetape::Clock& Clock;
};

/// The song that plays as its listener hears it: since when there is sound of it, and whether that was its
/// beginning. The silence before a song is no part of it.
class HeardSong {
 public:
    explicit HeardSong(HeardSongParts parts) : Parts(parts) {}

    /// Once a second.
    void Tick();

    /// Seconds since the first sound after the last boundary between songs; without a boundary since the
    /// first sound at all. 0 while there is none yet.
    int32_t Seconds() const { return Age; }

    /// The song was heard from its beginning: another one, or silence, was heard before it, or its player
    /// says that it began there. What sounded already when the recorder began to listen was not.
    bool FromItsBeginning() const { return BeginHeard; }

 private:
    bool NewSound();
    bool SilenceWasFirst() const;
    void AskPlayer();

    HeardSongParts Parts;
    uint64_t Boundaries = 0;  ///< seen so far
    uint64_t Buffers = 0;     ///< heard until the last tick
    int32_t Age = 0;
    bool HasSound = false;
    bool BeginHeard = false;
    bool PlayerHasSaid = false;  ///< where the first song began
};

}  // namespace Corvetape
