#pragma once

#include <cstdint>
#include <optional>

#include "audio/closed_song.h"
#include "core/media_state.h"

namespace Corvetape {

/// The song before a pending cut, as it was when the title of the next one came.
struct EndedSong {
    STATIONANDSONGDATA Media;  ///< what was told of it last; without a title SongMedia holds what is known
    bool Wanted = false;       ///< RecordCurrentSong as it was; the flag means the next song by now
    SongTrust Trust = {};      ///< of a song that was ended by everything that is known
};

/// The cut: raised by whoever notices the end of a song, carried out when the ring is drained.
struct CutState {
    bool SongBoundary = false;     ///< a song ended or the media data changed; the supervisor clears it
    bool CutPending = false;       ///< a cut is due at CutIndex
    int32_t CutIndex = 0;          ///< slot of the ring
    int32_t FixedTimeSeconds = 0;  ///< seconds since the last fixed-time cut

    /// Set while a cut is pending that a change of title has raised during a recording.
    std::optional<EndedSong> Ended;

    /// The cut has been carried out, or nobody wants it any more.
    void Settle() {
        CutPending = false;
        Ended.reset();
    }
};

}  // namespace Corvetape
