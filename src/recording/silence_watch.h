#pragma once

#include "audio/pause_settings.h"
#include "audio/recording_flags.h"
#include "audio/route.h"
#include "audio/signal_state.h"
#include "core/lifecycle_flags.h"
#include "core/reporter.h"
#include "core/settings/settings.h"
#include "forms/frm_main.h"
#include "platform/clock.h"
#include "recording/radio_restart.h"
#include "recording/session.h"
#include "recording/silence_notice.h"

namespace Corvetape {

/// What decides how a silence is taken. All of it outlives the watch.
struct SilenceFacts {
    const Clock& Time;
    const Settings& Options;
    const PauseSettings& Pause;
    const LifecycleFlags& Lifecycle;
    const SignalState& Signal;
};

/// Those who act on a long silence. All of them outlive the watch.
struct SilenceActors {
    frmMain& Form;
    RecordingFlags& Flags;
    RadioRestart& Radio;
    Session& Recording;
    SongTargets& Songs;
};

/// The reactions to a long silence: notice, restart of the radio, end of the recording.
class SilenceWatch {
 public:
    /// `notice` and `say` outlive it.
    SilenceWatch(SilenceFacts facts, SilenceActors actors, SilenceNotice& notice, Reporter& say)
        : Facts(facts), Actors(actors), Notice(notice), Say(say) {}

    /// Once a second. False if the program is to end: nobody attends it, or a song file could not be made.
    bool Tick();

 private:
    void BreakOffSong();
    void BreakOff();
    bool EndRecording();
    void SoundReturned();

    SilenceFacts Facts;
    SilenceActors Actors;
    SilenceNotice& Notice;
    Reporter& Say;
    bool RecordingEnded = false;
};

}  // namespace Corvetape
