#pragma once

#include <string>

#include "audio/pause_settings.h"
#include "core/media_state.h"
#include "core/settings/settings.h"

namespace Corvetape {

/// Where the files of a closed song go.
struct SongNames {
    bool HasSongData = false;  ///< the song is known, so it is called by its media data
    std::string FinalName;     ///< without folder and extension
    std::string WholeName;     ///< FinalName without the number of a part, as lists of songs hold it
    std::string SubFolder;     ///< empty, or a slash and the folder below MusicPath
    std::string SourceBase;    ///< temporary files without their extension
    std::string TargetBase;    ///< music file without its extension
};

/// True if `SongMedia` names a song. Pieces cut after a fixed time are no songs.
bool HasSongData(const MediaState& media, EndOfSong endOfSongDetection);

/// Names the song in `SongMedia` by the templates of the settings.
///
/// Whatever the media data hold, FinalName is one part of a path and SubFolder leads nowhere but below
/// MusicPath. An empty template makes an empty FinalName: the song is then called ".wav". A song that goes
/// over several files gets " (n)" after its name, so that no part replaces another.
SongNames NameSong(const MediaState& media, const Settings& settings, const WorkingFolders& folders,
                   EndOfSong endOfSongDetection);

/// A text from media data as a tag can hold it: at most 2048 bytes, cut between two characters, without NUL
/// characters, and with the replacement character for every byte that is not UTF-8.
std::string TagText(const std::string& text);

}  // namespace Corvetape
