#pragma once

#include "audio/recording_flags.h"
#include "audio/signal_state.h"
#include "core/deferred_messages.h"

namespace Corvetape {

/// What the recorder does now, in one word for whoever looks at it.
enum class PresentState {
    NoInput,      ///< no device is open
    InputGone,    ///< a device is open and gives nothing
    NoSound,      ///< the device gives silence for longer than a pause between songs
    DiskFull,     ///< the disk is nearly full: nothing is kept after the song that plays
    DiskStopped,  ///< nothing is kept any more, for want of room on the disk
    NotEnabled,   ///< songs are wanted, but recording is off: without media data, or after an error
    Recording,    ///< the song that plays is kept
    LastSong,     ///< the same, and nothing is kept after it
    Waiting,      ///< songs are kept from the next one on
    Listening,    ///< nothing is kept
};

/// What is to be known besides the flags.
struct PresentFacts {
    const RecordingFlags& Flags;
    const SignalState& Signal;
    const DeferredMessages& Messages;
    bool InputOpen = false;
    double SecondsWithoutBuffers = 0;
};

/// Trouble comes first: a recording of nothing is none.
PresentState PresentStateOf(const PresentFacts& facts);

}  // namespace Corvetape
