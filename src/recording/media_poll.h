#pragma once

#include <functional>

#include "audio/audio_ring.h"
#include "audio/cut_state.h"
#include "audio/drain.h"
#include "audio/pause_settings.h"
#include "audio/recording_flags.h"
#include "audio/signal_state.h"
#include "core/media_state.h"
#include "forms/frm_main.h"
#include "recording/session.h"

namespace Corvetape {

struct MediaPollParts {
    frmMain& Form;
    MediaState& Media;
    CutState& Cut;
    RecordingFlags& Flags;
    SignalState& Signal;
    const AudioRing& Ring;
    const PauseSettings& Pause;
    AudioDrain& Drain;   ///< for a cut that another change finds pending
    Session& Recording;  ///< its check boxes follow the flags
};

struct MediaPollActions {
    std::function<bool()> Ready;           ///< false in the first second of the program
    std::function<void()> GetStationData;  ///< asks the present provider
    std::function<void(const std::string& cover)> LoadImage;
    std::function<void()> Unload;  ///< a song file could not be made: the program is to end
};

/// The poll of the media data in end of song by media data: every 500 ms while tmrGetMediaData runs. A
/// change of artist or title raises the cut. From then on the flags mean the song whose title is shown; the
/// one that has ended keeps those it had, and what was told of it last, until its file is closed. That holds
/// while recording is off too: the title is over for whoever looks, and what the ring keeps has its cut.
class MediaPoll {
 public:
    MediaPoll(MediaPollParts parts, MediaPollActions actions);

 private:
    void Tick();

    /// True if another song plays.
    bool Compare();

    void EndSong(const STATIONANDSONGDATA& ended);

    /// Carries out the cut of an earlier change if it is due, or if only the song since then is wanted.
    void SettleEarlierCut();

    MediaPollParts Parts;
    MediaPollActions Actions;
    STATIONANDSONGDATA LastTold;  ///< the last reading with a title
    std::string LastSource;       ///< the provider that it is from
    bool Busy = false;            ///< a tick waits for an answer of the user
};

}  // namespace Corvetape
