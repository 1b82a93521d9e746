#pragma once

#include "audio/capture.h"
#include "audio/route.h"
#include "audio/song_writer.h"

namespace Corvetape {

struct ProgramParts;

/// Where the news of the signal go: what happens to songs and to the input. The results hold references into
/// `parts`, which need not be complete yet.
CaptureEvents CaptureEventsOf(ProgramParts& parts);
SongEvents SongEventsOf(ProgramParts& parts);

}  // namespace Corvetape
