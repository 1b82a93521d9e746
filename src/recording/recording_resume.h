#pragma once

#include <cstdint>

#include "audio/recording_flags.h"
#include "audio/song_writer.h"
#include "core/deferred_messages.h"
#include "core/media_state.h"
#include "core/reporter.h"
#include "recording/disk_check.h"
#include "recording/silence_notice.h"

namespace Corvetape {

/// What has ended a recording, and what it needs to go on. All of it outlives the resumption.
struct RecordingResumeParts {
    RecordingFlags& Flags;
    const MediaState& Media;
    const DeferredMessages& Messages;
    const SongWriter& Writer;
    DiskCheck& Disk;
    SilenceNotice& Silence;
};

/// Takes a recording up again that has ended by itself.
class RecordingResume {
 public:
    RecordingResume(RecordingResumeParts parts, Reporter& say) : Parts(parts), Say(say) {}

    /// Somebody wants to record while nothing is written. Writes again if nothing stands in the way any more;
    /// otherwise the status line says why nothing is recorded.
    void Resume();

 private:
    RecordingResumeParts Parts;
    Reporter& Say;
};

}  // namespace Corvetape
