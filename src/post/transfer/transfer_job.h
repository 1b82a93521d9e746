#pragma once

#include <cstdint>
#include <string>

#include "audio/pause_settings.h"
#include "core/controls/event.h"
#include "core/media_state.h"
#include "post/transfer/encoder_start.h"
#include "post/transfer/song_passage.h"
#include "post/transfer/temp_names.h"

namespace Corvetape {

class Log;
class SongCounter;
class WatchPages;

/// What the job works with. All of it outlives the job.
struct TransferParts {
    Files& Disk;
    Processes& Programs;
    Log& Journal;
    SongNotes& Notes;
    SongCounter& Counter;
    WatchPages& Lists;
};

/// Takes a closed temporary song to its final place: names it, makes its folder, renames its temporary
/// files, and starts the command that encodes it.
class TransferJob {
 public:
    /// `media` and `pause` outlive it: whether media data name a song, and what its source is called.
    TransferJob(TransferPlace place, const MediaState& media, const PauseSettings& pause,
                TransferParts parts);
    TransferJob(const TransferJob&) = delete;
    TransferJob& operator=(const TransferJob&) = delete;

    /// The job, for a song by its record. Failing file operations are passed over. An encoder or a quality
    /// that does not exist is reported in a log line "ERROR", and the song stays where it is under its final
    /// name. While an earlier song of the same name has no music file yet, the files of this one get " (2)".
    void TransferSong(const STATIONANDSONGDATA& song);

    /// The same for a song that an earlier run has left. `seconds` is its length.
    void TransferLeftSong(const LeftSong& song, int32_t seconds);

    /// What a song is called by the settings as they are now.
    SongNames NamesOf(const STATIONANDSONGDATA& song) const;

    /// Its encoder is through. The note of a song that has its music file goes; that of another one stays
    /// where notes are left. Without a TempFile, whose name a later song has, nothing happens.
    void NoteEnd(const TransferredSong& song, bool isMade);

    /// Raised at the end of each job.
    Event<const TransferredSong&> Transferred;

 private:
    SongPassage Begin(const STATIONANDSONGDATA& song, SongNames names) const;
    void HandOn(SongPassage& passage, bool named);
    void MakeSubFolder(const SongNames& names);
    void WriteSongLine(const TransferredSong& song, bool named);

    TransferPlace Place;
    const MediaState& Media;
    const PauseSettings& Pause;
    TransferParts Parts;
    TempNames Names;
    EncoderStart Encoder;
};

}  // namespace Corvetape
