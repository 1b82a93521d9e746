#pragma once

#include <functional>

#include "audio/audio_ring.h"
#include "audio/cut_state.h"
#include "audio/pause_settings.h"
#include "audio/recording_flags.h"
#include "audio/signal_state.h"
#include "audio/song_writer.h"
#include "core/media_state.h"
#include "forms/frm_main.h"

namespace Corvetape {

/// What the session needs of others. All of it outlives the session.
struct SessionParts {
    frmMain& Form;
    RecordingFlags& Flags;
    CutState& Cut;
    const MediaState& Media;
    const PauseSettings& Pause;
    const SignalState& Signal;
    AudioRing& Ring;
    SongWriter& Song;
};

struct SessionActions {
    std::function<void()> CutNow;              ///< drains the ring up to a pending cut without waiting
    std::function<void()> ResumeRecording;     ///< wanted while nothing is written: writes again, or says why
                                               ///< not; may be missing
    std::function<void()> RefuseZeroMinutes;   ///< tells that a timed recording needs a time
    std::function<void()> ShowRecordingState;  ///< captions and pictures follow RecordCurrentSong
    std::function<void(int32_t minutes)> StorePeriod;  ///< keeps a period that was typed; may be missing
    std::function<bool()> PeriodRefused;               ///< the check of txtRecordingPeriod, 1 to 1440 minutes
};

/// The recording as the user steers it: the handlers of the record, skip and stop controls. They are the
/// single place where the flags change on the user's behalf; whoever wants something sets a control.
class Session {
 public:
    Session(SessionParts parts, SessionActions actions);

    /// Brings the check boxes into line with flags that running code has changed. Their handlers run, but
    /// nothing is cut: nobody has clicked.
    void ShowFlags();

    /// Silence has broken off what plays: it is not kept, and the wish to record passes on. By fixed time no
    /// other song will come: what was heard before the silence is a piece of its own, the silence goes, and
    /// the next piece begins at once.
    void BreakOff();

 private:
    void StartStopClicked(size_t index);
    void FollowFlags();
    void CutAtOnce();
    void BreakOffPiece();
    void StopAtEndOfSongClicked();
    void StopAfterMinutesClicked();

    SessionParts Parts;
    SessionActions Actions;
    bool Following = false;    ///< the boxes follow the flags; nobody has clicked
    bool BreakingOff = false;  ///< silence passes the wish to record on; nobody has clicked
    int32_t Depth = 0;         ///< handlers of the two boxes that are running now
};

}  // namespace Corvetape
