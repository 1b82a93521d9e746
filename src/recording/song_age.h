#pragma once

#include <cstdint>

#include "audio/cut_state.h"
#include "audio/recording_flags.h"
#include "core/controls/event.h"
#include "core/media_state.h"
#include "core/reporter.h"
#include "core/settings/settings.h"
#include "forms/frm_main.h"
#include "post/lists/watch_list.h"

namespace Corvetape {

/// What the age of a song is counted by and what depends on it. All of it outlives the age.
struct SongAgeParts {
    const frmMain& Form;  ///< its timer of the hand-over
    const Settings& Options;
    RecordingFlags& Flags;
    CutState& Cut;
    MediaState& Media;
    const WatchLists& Lists;
};

/// How long the song plays, and the take-over of its record some seconds into it.
class SongAge {
 public:
    SongAge(SongAgeParts parts, Reporter& say) : Parts(parts), Say(say) {}

    /// Seconds since a boundary between songs was last seen, while media data are on.
    int32_t Seconds() const { return Age; }

    /// Once a second.
    void Tick();

    /// The record of the song that plays becomes that of the song in the file, once the song before is sure
    /// to need it no more. A song on the list of those to drop is not kept from then on.
    void TakeSongData();

    /// This song plays and is on the list of those to drop.
    Event<const STATIONANDSONGDATA&> Excluded;

 private:
    bool IsDue() const;

    SongAgeParts Parts;
    Reporter& Say;
    int16_t Age = 0;
    bool SongDataTaken = false;  ///< for this song
};

}  // namespace Corvetape
