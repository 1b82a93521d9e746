#pragma once

#include <cstdint>

#include "audio/recording_flags.h"
#include "core/controls/controls.h"
#include "core/controls/event.h"
#include "core/media_state.h"
#include "core/program_requests.h"
#include "post/transfer/transfer_job.h"

namespace Corvetape {

/// Interval of tmrEncodeFile in ms for a setting of EncodeDelay.
constexpr int32_t EncodeInterval(int32_t encodeDelayMs) {
    return encodeDelayMs > 100 ? encodeDelayMs : 100;
}

/// The wait between the close of a song and its transfer, in which its record may be completed: one song at a
/// time, for as long as tmrEncodeFile runs.
class HandOver {
 public:
    /// Attaches itself to the timer and to `songKept`, which is raised with the record of each song that was
    /// closed and kept. All of them outlive it.
    HandOver(Event<const STATIONANDSONGDATA&>& songKept, TimerControl& tmrEncodeFile, TransferJob& job,
             const RecordingFlags& flags, ProgramRequests& requests);

    /// Transfers the song that waits, if there is one, now. If it is the one that QuitAtEndOfSong has waited
    /// for the program is then to end.
    void TransferNow();

 private:
    void Take(const STATIONANDSONGDATA& song);

    TimerControl& Wait;
    TransferJob& Job;
    const RecordingFlags& Flags;
    ProgramRequests& Requests;
    STATIONANDSONGDATA Waiting;  ///< the record of the song, while the timer runs
};

}  // namespace Corvetape
