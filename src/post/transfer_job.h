#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "audio/recording_flags.h"
#include "core/event.h"
#include "post/song_names.h"

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
    std::string WorkFile;   ///< what the paths of its command's own temporary files begin with, as JobName
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
    int32_t& SongCounter;  ///< all songs ever handed over
};

/// What the job asks of others; each may be missing.
struct TransferCallbacks {
    std::function<void(int32_t list, const std::string& entry)> AddToWatchList;
    std::function<void(int32_t songCounter)> StoreSongCounter;  ///< the counter was raised to this
    std::function<void()> Unload;                               ///< the program is to end
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
    TransferJob(TransferState state, Files& files, Processes& processes, Log& log,
                TransferCallbacks callbacks);
    TransferJob(const TransferJob&) = delete;
    TransferJob& operator=(const TransferJob&) = delete;

    /// Runs TransferSong when the timer fires, after disabling it.
    void Attach(TimerControl& tmrEncodeFile);

    /// The job, for the song in `SongMedia`. Failing file operations are passed over. An encoder or a quality
    /// that does not exist is told in a log line "ERROR", and the song stays where it is under its final
    /// name.
    void TransferSong();

    /// Raised at the end of each job, before the program is asked to end.
    Event<const TransferredSong&> Transferred;

 private:
    void MakeSubFolder(const SongNames& names);
    std::string TakeNames(const SongNames& names);
    void RaiseSongCounter();
    TransferredSong StartCommand(const SongNames& names);
    void WriteSongLine(const TransferredSong& song);

    TransferState State;
    Files& Disk;
    Processes& Programs;
    Log& Journal;
    TransferCallbacks Callbacks;
};

}  // namespace Corvetape
