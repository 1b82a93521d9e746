#pragma once

#include <string>
#include <string_view>

#include "core/reporter.h"
#include "core/settings/settings.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/processes.h"
#include "post/lists/watch_pages.h"
#include "post/transfer/transfer_job.h"
#include "recording/run_songs.h"

namespace Corvetape {

/// What the actions work on. All of it outlives them.
struct SongActionsParts {
    Corvetape::Files& Files;
    const Corvetape::Clock& Clock;
    const Corvetape::Settings& Settings;
    const WorkingFolders& Folders;
    WatchPages& Lists;
    TransferJob& Transfer;
    Corvetape::Processes& Processes;
    Reporter& Say;
};

/// What the user can do with a song of this run's list.
class SongActions {
 public:
    explicit SongActions(SongActionsParts parts) : Parts(parts) {}

    /// What a player is given: the music file, or the recording while there is none. Empty if both are gone.
    std::string FileToPlay(const RunSong& song) const;

    /// Gives the song to the user's player. What cannot be played is reported in a box.
    void Play(const RunSong& song);

    /// Shows the folder with the song's file.
    void OpenFolder(const RunSong& song);

    /// The song was not kept, or its encoder has failed, and its recording is still there.
    bool CanBeKept(const RunSong& song) const;

    /// Hands the recording of such a song to the encoder. Nothing if it has gone meanwhile.
    void Keep(const RunSong& song);

    /// The entry of a list that means this song alone. Empty for a song without a title, which no list can
    /// know again.
    std::string ListName(const RunSong& song) const;

    /// Puts the song on a list. Nothing without a name for it.
    void PutOnList(const RunSong& song, WatchListKind list);

    /// The lines of the logs of yesterday and today that name the song, each with its line end. Empty if
    /// there are none.
    std::string LogLines(const RunSong& song) const;

 private:
    std::string LinesWith(std::string_view name, const DateTime& day) const;

    SongActionsParts Parts;
};

}  // namespace Corvetape
