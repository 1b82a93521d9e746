#pragma once

#include "audio/input_device.h"
#include "audio/recording_flags.h"
#include "audio/song_writer.h"
#include "core/reporter.h"
#include "recording/session.h"

namespace Corvetape {

/// What a search interrupts. All of it outlives the break.
struct SearchBreakParts {
    RecordingFlags& Flags;
    InputDevice& Input;
    SongWriter& Song;
    Session& Recording;
    Reporter& Say;
};

/// Keeps what other inputs play out of the songs while they are searched.
class SearchBreak {
 public:
    explicit SearchBreak(SearchBreakParts parts) : Parts(parts) {}

    /// A search begins: a song that is being kept ends here, with a line of the log that says why, and
    /// nothing is kept from now on.
    void Begin();

    /// The chosen input is open again: whoever was recording goes on with the next song.
    void End();

 private:
    SearchBreakParts Parts;
    bool Wanted = false;  ///< a song was wanted, this one or the next
};

}  // namespace Corvetape
