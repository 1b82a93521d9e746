#pragma once

#include <cstdint>

namespace Corvetape {

/// The cut: raised by whoever notices the end of a song, carried out when the ring is drained.
struct CutState {
    bool SongBoundary = false;     ///< a song ended or the media data changed; the supervisor clears it
    bool CutPending = false;       ///< a cut is due at CutIndex
    int32_t CutIndex = 0;          ///< slot of the ring
    int32_t FixedTimeSeconds = 0;  ///< seconds since the last fixed-time cut
};

}  // namespace Corvetape
