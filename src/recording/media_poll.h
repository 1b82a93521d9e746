#pragma once

#include <functional>

#include "audio/audio_ring.h"
#include "audio/cut_state.h"
#include "audio/signal_state.h"
#include "core/media_state.h"
#include "forms/frm_main.h"

namespace Corvetape {

struct MediaPollParts {
    frmMain& Form;
    MediaState& Media;
    CutState& Cut;
    SignalState& Signal;
    const AudioRing& Ring;
};

struct MediaPollActions {
    std::function<bool()> Ready;           ///< false in the first second of the program
    std::function<void()> GetStationData;  ///< asks the present provider
    std::function<void(const std::string& cover)> LoadImage;
};

/// The poll of the media data in end of song by media data: every 500 ms while tmrGetMediaData runs. A
/// change of artist or title raises the cut.
class MediaPoll {
 public:
    MediaPoll(MediaPollParts parts, MediaPollActions actions);

 private:
    void Tick();

    /// True if another song plays.
    bool Compare();

    MediaPollParts Parts;
    MediaPollActions Actions;
    bool Busy = false;  ///< a tick waits for an answer of the user
};

}  // namespace Corvetape
