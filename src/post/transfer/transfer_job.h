#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "audio/recording_flags.h"
#include "core/controls/event.h"
#include "post/transfer/encode_job.h"
#include "post/transfer/song_names.h"
#include "post/transfer/song_notes.h"

namespace Corvetape {

class Files;
class Log;
class Processes;
class TimerControl;

/// A song that the transfer job has dealt with.
struct TransferredSong {
    std::string MusicFile;  ///< that its command makes; empty if no command was started
    std::string TempFile;   ///< the temporary song as it is called now
    std::string JobName;    ///< of the started command, for its result; empty if none was started
    std::string MadeFile;   ///< where its command tells what it has made, see ReadMadeMusic
    std::string JobLabel;   ///< kind of its log line; "TEMP" for a song that stays as it is
    std::string Problem;    ///< why no command was started although one was wanted, in English
    STATIONANDSONGDATA Media;
};

/// What the job reads and counts. The parts outlive it.
struct TransferState {
    const MediaState& Media;  ///< `SongMedia` is the song
    const Settings& Options;
    const WorkingFolders& Folders;
    const PauseSettings& Pause;
    const RecordingFlags& Flags;
    int32_t& SongCounter;  ///< all songs ever handed over, of all runs as far as they are known
    std::string RunName;   ///< of this process
    std::vector<std::string> InputFiles;  ///< sound files that are being recorded: never written or deleted
    bool LeavesNotes = true;  ///< a song that an encoder has not finished is given to one by the next run
};

/// What a command has made, and what became of a music file of the same name.
struct MadeMusic {
    std::string MusicFile;
    std::string Older;  ///< number that the older one got; "0" if it was replaced; empty if it is untouched
};

/// Reads what a command has written about its music file; nothing without it.
std::optional<MadeMusic> ReadMadeMusic(Files& files, const std::string& madeFile);

/// What the job asks of others; each may be missing.
struct TransferCallbacks {
    std::function<void(int32_t list, const std::string& entry)> AddToWatchList;
    /// Counts one more in the total of all runs, and returns it; nothing if that cannot be written.
    std::function<std::optional<int32_t>()> CountSong;
    std::function<void()> Unload;  ///< the program is to end
};

/// Interval of tmrEncodeFile in ms for a setting of EncodeDelay.
constexpr int32_t EncodeInterval(int32_t encodeDelayMs) {
    return encodeDelayMs > 100 ? encodeDelayMs : 100;
}

/// Takes a closed temporary song to its final place: names it, makes its folder, renames its temporary
/// files, and starts the command that encodes it. It does not wait for the command and knows nothing of its
/// success; Processes has the result under the name of the job.
class TransferJob {
 public:
    TransferJob(TransferState state, Files& files, Processes& processes, Log& log, SongNotes& notes,
                TransferCallbacks callbacks);
    TransferJob(const TransferJob&) = delete;
    TransferJob& operator=(const TransferJob&) = delete;

    /// Runs TransferSong when the timer fires, after disabling it.
    void Attach(TimerControl& tmrEncodeFile);

    /// The job, for the song in `SongMedia`. Failing file operations are passed over. An encoder or a quality
    /// that does not exist is told in a log line "ERROR", and the song stays where it is under its final
    /// name. While an earlier song of the same name has no music file yet, the files of this one get " (2)".
    void TransferSong();

    /// The same for a song that an earlier run has left. `seconds` is its length.
    void TransferLeftSong(const LeftSong& song, int32_t seconds);

    /// Its encoder is through. The note of a song that has its music file goes; that of another one stays
    /// where notes are left.
    void NoteEnd(const TransferredSong& song, bool isMade);

    /// Raised at the end of each job, before the program is asked to end.
    Event<const TransferredSong&> Transferred;

 private:
    /// One song on its way.
    struct Passage {
        MediaState Media;  ///< `SongMedia` is the song
        SongNames Names;
        SongNote Note;
        std::string Source;  ///< name of the temporary files that its command is given
    };

    Passage Begin(const MediaState& media, EndOfSong endOfSongDetection) const;
    void HandOn(Passage& passage);
    void MakeSubFolder(const SongNames& names);
    std::string TakeNames(Passage& passage);
    std::string ClaimName(const Passage& passage);
    bool MakesRoom(const std::string& base, const Passage& passage);
    void DeleteEarlier(const std::string& name);
    bool IsInput(const std::string& path) const;
    void RaiseSongCounter(SongNote& note);
    TransferredSong StartCommand(Passage& passage, const std::string& name);
    EncodeRequest RequestFor(const Passage& passage, const EncoderRow& row, const std::string& name) const;
    void WriteSongLine(const Passage& passage, const TransferredSong& song);

    TransferState State;
    Files& Disk;
    Processes& Programs;
    Log& Journal;
    SongNotes& Notes;
    TransferCallbacks Callbacks;
};

}  // namespace Corvetape
