#pragma once

#include <cstddef>
#include <cstdint>

#include "audio/recording_flags.h"
#include "core/media_state.h"
#include "forms/frm_main.h"
#include "recording/recording_look.h"
#include "recording/recording_resume.h"
#include "recording/timed_pieces.h"

namespace Corvetape {

/// What the session works on. All of it outlives the session.
struct SessionParts {
    frmMain& Form;
    RecordingFlags& Flags;
    const MediaState& Media;
    TimedPieces& Pieces;
    RecordingLook& Look;
    RecordingResume& Resumption;
};

/// The recording as the user steers it: the handlers of the record, skip and stop controls. They are the
/// single place where the flags change on the user's behalf; whoever wants something sets a control.
class Session {
 public:
    explicit Session(SessionParts parts);

    /// Brings the check boxes into line with flags that running code has changed. Their handlers run, but
    /// nothing is cut: nobody has clicked.
    void ShowFlags();

    /// Silence has broken off what plays: it is not kept, and the wish to record passes on. By fixed time no
    /// other song will come: what was heard before the silence is a piece of its own, the silence goes, and
    /// the next piece begins at once.
    void BreakOff();

    /// Recording goes on with the next song. By fixed time no other song will come, so the next piece begins
    /// at once.
    void GoOnWithNext();

 private:
    void StartStopClicked(size_t index);
    void FollowFlags();
    void StopAtEndOfSongClicked();

    SessionParts Parts;
    bool Following = false;    ///< the boxes follow the flags; nobody has clicked
    bool BreakingOff = false;  ///< silence passes the wish to record on; nobody has clicked
    int32_t Depth = 0;         ///< handlers of the two boxes that are running now
};

}  // namespace Corvetape
