#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/media_state.h"
#include "core/settings/settings.h"
#include "post/transfer/song_names.h"
#include "post/transfer/song_notes.h"

namespace Corvetape {

/// In place of the number that an older song of the same name gets: it was replaced.
inline constexpr int32_t OlderIsReplaced = 0;

/// Where songs are transferred from and to, by which rules. The references outlive it.
struct TransferPlace {
    const Settings& Options;
    const WorkingFolders& Folders;
    std::string RunName;                  ///< of this process
    std::vector<std::string> InputFiles;  ///< sound files that are being recorded: never written or deleted
    bool LeavesNotes = true;  ///< a song that an encoder has not finished is given to one by the next run
};

/// One closed song on its way to its music file.
struct SongPassage {
    STATIONANDSONGDATA Song;
    SongNames Names;
    SongNote Note;
    std::string Source;                     ///< name of the temporary files that its command is given
    std::optional<int32_t> OlderSong = {};  ///< see TransferredSong
};

/// A song that the transfer job has dealt with.
struct TransferredSong {
    std::string MusicFile;  ///< that its command makes; empty if no command was started
    std::string TempFile;   ///< the temporary song as it is called now
    std::string JobName;    ///< of the started command, for its result; empty if none was started
    std::string MadeFile;   ///< where its command says what it has made, see ReadMadeMusic
    std::string JobLabel;   ///< kind of its log line; "TEMP" for a song that stays as it is
    std::string Problem;    ///< why no command was started although one was wanted, in English
    /// What became of an older temporary song of its name, see MadeMusic::Older.
    std::optional<int32_t> OlderSong;
    STATIONANDSONGDATA Media;
};

}  // namespace Corvetape
