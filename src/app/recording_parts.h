#pragma once

#include "app/state.h"
#include "platform/machine.h"
#include "recording/disk_check.h"
#include "recording/media_poll.h"
#include "recording/recording_look.h"
#include "recording/recording_resume.h"
#include "recording/second_tick.h"

namespace Corvetape {

struct ProgramParts;

/// The parts of the recording in the order in which they are made, on top of all others.
struct RecordingParts {
    /// `parts` are those below, which are complete. All of it outlives them.
    RecordingParts(ProgramParts& parts, const Machine& machine, State& state);

    DiskCheck Disk;
    RecordingLook Look;
    SilenceNotice Notice;
    RecordingResume Resumption;
    TimedPieces Pieces;
    Session Clicks;
    Countdown Period;
    TitleCut Change;
    MediaPoll Poll;

    FirstRun First;
    SourceTick Source;
    SongAge Age;
    HeardSong Heard;
    MediaDisplay Display;
    RadioRestart Radio;
    SilenceWatch Silence;
    BufferWatch Buffers;
    SecondTick Tick;
};

}  // namespace Corvetape
