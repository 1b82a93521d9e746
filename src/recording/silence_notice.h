#pragma once

#include "audio/recording_flags.h"
#include "audio/signal_state.h"
#include "core/reporter.h"

namespace Corvetape {

/// The notice of a long silence.
class SilenceNotice {
 public:
    /// All of them outlive it.
    SilenceNotice(const RecordingFlags& flags, const SignalState& signal, Reporter& say)
        : Flags(flags), Signal(signal), Say(say) {}

    /// True from the first notice of a silence on up to the return of the sound, which switches recording on.
    bool Given() const { return IsGiven; }

    /// Every second of the silence; the first of it goes into the log.
    void Give();

    /// The status line shows how long the silence lasts, and that a recording which is off waits for its end.
    void Show();

    /// The sound is back.
    void TakeBack();

 private:
    const RecordingFlags& Flags;
    const SignalState& Signal;
    Reporter& Say;
    bool IsGiven = false;
};

}  // namespace Corvetape
