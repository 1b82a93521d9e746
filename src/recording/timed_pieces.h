#pragma once

#include "audio/audio_ring.h"
#include "audio/cut_state.h"
#include "audio/drain.h"
#include "audio/pause_settings.h"
#include "audio/recording_flags.h"
#include "audio/song_writer.h"
#include "core/media_state.h"
#include "core/program_requests.h"

namespace Corvetape {

/// What pieces are cut with. All of it outlives them.
struct TimedPiecesParts {
    const PauseSettings& Pause;
    const MediaState& Media;
    RecordingFlags& Flags;
    CutState& Cut;
    AudioRing& Ring;
    SongWriter& Writer;
    AudioDrain& Drain;
};

/// The pieces that are cut after a fixed time. No pause and no change of media data will come, so that
/// whatever ends a piece early ends it at once.
class TimedPieces {
 public:
    TimedPieces(TimedPiecesParts parts, ProgramRequests& requests) : Parts(parts), Requests(requests) {}

    bool Active() const { return Parts.Pause.EndOfSongDetection == EndOfSong::FixedTime; }

    /// Once a second: raises the cut when the time of the piece is over.
    void Tick();

    /// The user has clicked: a piece that nobody wanted ends and the recording begins, or the other way
    /// round.
    void CutAtOnce();

    /// Silence has broken the piece off: what was heard before it is a piece of its own, the silence goes,
    /// and as no other song will come the next piece begins at once. Nothing unless a piece is kept.
    void BreakOff();

 private:
    void CutNow();
    void BeginAnew();

    TimedPiecesParts Parts;
    ProgramRequests& Requests;
};

}  // namespace Corvetape
