#pragma once

#include <bitset>
#include <cstdint>

#include "audio/route.h"
#include "core/program_requests.h"
#include "platform/clock.h"
#include "recording/buffer_watch.h"
#include "recording/countdown.h"
#include "recording/disk_check.h"
#include "recording/first_run.h"
#include "recording/heard_song.h"
#include "recording/media_display.h"
#include "recording/session.h"
#include "recording/silence_watch.h"
#include "recording/song_age.h"
#include "recording/source_tick.h"
#include "recording/timed_pieces.h"

namespace Corvetape {

/// Those who have something to do every second. All of them outlive the tick.
struct TickParts {
    FirstRun& First;
    SourceTick& Source;
    SongAge& Age;
    HeardSong& Heard;
    MediaDisplay& Display;
    Session& Recording;
    Countdown& Period;
    SilenceWatch& Silence;
    BufferWatch& Buffers;
    TimedPieces& Pieces;
    SongTargets& Songs;
    DiskCheck& Disk;
};

/// The once-a-second look at everything that no buffer drives. It runs from the end of the start to the end
/// of the program; the order of its steps matters.
class SecondTick {
 public:
    /// Attaches itself to tmr1Second. All of them outlive it.
    SecondTick(TimerControl& tmr1Second, const Clock& clock, LifecycleFlags& lifecycle, TickParts parts,
               ProgramRequests& requests);

    /// One event of the timer: acts if the whole clock second has changed. A step that still waits for its
    /// box to be closed holds up itself and the rest of its own run, but none of the other steps of later
    /// runs.
    void TimerFired();

 private:
    TimerControl& Timer;
    const Clock& Time;
    LifecycleFlags& Lifecycle;  ///< counts the runs
    TickParts Parts;
    ProgramRequests& Requests;
    std::bitset<32> UnderWay;  ///< steps that have not returned, by their place
    int32_t LastSecond = -1;
};

}  // namespace Corvetape
