#pragma once

#include "audio/audio_ring.h"
#include "audio/cut_state.h"
#include "audio/drain.h"
#include "audio/pause_settings.h"
#include "audio/recording_flags.h"
#include "audio/signal_state.h"
#include "core/lifecycle_flags.h"
#include "core/media_state.h"
#include "core/program_requests.h"
#include "forms/frm_main.h"
#include "media/provider_choice.h"
#include "recording/session.h"

namespace Corvetape {

/// What a change of title acts on. All of it outlives the cuts.
struct TitleCutParts {
    RecordingFlags& Flags;
    CutState& Cut;
    SignalState& Signal;
    const AudioRing& Ring;
    AudioDrain& Drain;   ///< for a cut that another change finds pending
    Session& Recording;  ///< its check boxes follow the flags
};

/// The cut between two songs by their titles. From the change on the flags mean the song whose title is
/// shown; the one that has ended keeps those it had, and what was known of it last, until its file is closed.
/// That holds while recording is off too: the title is over for whoever looks, and what the ring keeps has
/// its cut.
class TitleCut {
 public:
    TitleCut(TitleCutParts parts, ProgramRequests& requests) : Parts(parts), Requests(requests) {}

    /// Another title was read than that of `ended`, which is empty before the first one: marks the place in
    /// the level history.
    void NoteChange(const STATIONANDSONGDATA& ended);

    /// The song of this record ends here.
    void EndSong(const STATIONANDSONGDATA& ended);

 private:
    void SettleEarlierCut();

    TitleCutParts Parts;
    ProgramRequests& Requests;
};

/// What the poll reads and compares. All of it outlives the poll.
struct MediaPollParts {
    frmMain& Form;
    MediaState& Media;
    const CutState& Cut;
    const LifecycleFlags& Lifecycle;
    const PauseSettings& Pause;
    ProviderChoice& Providers;
    TitleCut& Change;
};

/// The poll of the media data in end of song by media data: every 500 ms while tmrGetMediaData runs. A
/// change of artist or title raises the cut.
class MediaPoll {
 public:
    explicit MediaPoll(MediaPollParts parts);

 private:
    void Tick();

    /// True if another song plays.
    bool Compare();

    MediaPollParts Parts;
    STATIONANDSONGDATA LastTitled;  ///< the last reading with a title
    std::string LastSource;         ///< the provider that it is from
    bool Busy = false;              ///< a tick waits for an answer of the user
};

}  // namespace Corvetape
