#pragma once

#include "audio/capture.h"
#include "audio/route.h"
#include "audio/song_writer.h"
#include "recording/media_poll.h"
#include "recording/session.h"
#include "recording/supervisor.h"

namespace Corvetape {

struct ProgramParts;

/// How the parts of a program reach one another. Each gives what one part asks of others; the results hold
/// references into `parts`, which need not be complete yet.
CaptureEvents CaptureEventsOf(ProgramParts& parts);
SongPlace SongPlaceOf(ProgramParts& parts);
SongEvents SongEventsOf(ProgramParts& parts);
SessionActions SessionActionsOf(ProgramParts& parts);
MediaPollActions MediaPollActionsOf(ProgramParts& parts);
SupervisorActions SupervisorActionsOf(ProgramParts& parts);

}  // namespace Corvetape
