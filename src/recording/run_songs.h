#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "audio/closed_song.h"
#include "core/controls/event.h"
#include "platform/processes.h"
#include "post/transfer/transfer_job.h"

namespace Corvetape {

/// How far a kept song is on its way to the music folder.
enum class SongProgress {
    None,      ///< not kept, so there is no way
    Waiting,   ///< for its turn
    Encoding,  ///< its encoder runs
    Made,      ///< the music file is there
    Stays,     ///< as the recording itself, because no encoder is chosen
    Failed,    ///< the encoder refused, or could not be started; the recording itself is still there
};

/// How good a song is that was kept.
enum class SongHealth {
    Whole,     ///< from its beginning to its end, nothing missing
    NotWhole,  ///< begun or ended in the middle
    Damaged,   ///< some of its sound was lost
};

/// A song of this run as a list shows it.
struct RunSong {
    uint64_t Number = 0;  ///< in this run, from 1 on
    SongFate Fate = SongFate::Unwanted;
    bool OnList = false;  ///< not kept because it is on the list of songs to drop
    SongHealth Health = SongHealth::NotWhole;
    SongProgress Progress = SongProgress::None;
    Certainty Begin =
        Certainty::None;  ///< how sure its cuts are, where songs end by everything that is known
    Certainty End = Certainty::None;
    int32_t Dropouts = 0;       ///< short holes in its sound
    bool Mixed = false;         ///< two players were heard at once
    bool Sought = false;        ///< somebody has jumped within it
    bool ByTitleAlone = false;  ///< nothing in its sound shows its end
    uint64_t Seconds = 0;
    STATIONANDSONGDATA Media;
    std::string TempFile;   ///< the recording itself; it may be gone
    std::string MusicFile;  ///< empty if none is made
    std::string JobName;    ///< of its encoder; empty if none was started
};

/// The songs that this run has seen, and what became of each.
class RunSongs {
 public:
    /// Songs that are remembered. A radio that runs for weeks must not fill the memory.
    static constexpr size_t Capacity = 2000;

    void SongClosed(const ClosedSong& song);
    /// A song that plays is on the list of those to drop. It is closed soon.
    void SongExcluded(const STATIONANDSONGDATA& song) { OnList = song; }

    void SongTransferred(const TransferredSong& song);
    void JobEnded(const JobResult& result);

    /// There is no music file of this song: its encoder has ended with this error.
    Event<const RunSong&, int32_t> EncoderFailed;

    /// An encoder has made this music file, whose name may have got a number.
    void MusicMade(const std::string& job, const std::string& musicFile);

    /// A song that was not kept was handed on after all, or one whose encoder failed once more.
    void KeptAfterwards(size_t index);

    /// Newest first.
    const std::vector<RunSong>& Songs() const { return Entries; }

    /// Where the song of this number is now. Nothing if it is not remembered any more.
    std::optional<size_t> Find(uint64_t number) const;

    /// Songs kept, songs not kept, and the seconds of those kept, of the whole run.
    uint64_t KeptSongs() const { return Kept; }
    uint64_t OtherSongs() const { return Others; }
    uint64_t KeptSeconds() const { return Seconds; }

    Event<> Added;                  ///< there is a new first one
    Event<size_t> ProgressChanged;  ///< the song at this index is further on its way

 private:
    void CountKept(RunSong& entry);

    std::vector<RunSong> Entries;
    STATIONANDSONGDATA OnList;  ///< the last one that was on the list; empty if there was none
    uint64_t Closed = 0;
    uint64_t Kept = 0;
    uint64_t Others = 0;
    uint64_t Seconds = 0;
};

}  // namespace Corvetape
