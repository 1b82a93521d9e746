#pragma once

#include <functional>
#include <string>
#include <vector>

#include "core/media_state.h"
#include "core/settings.h"
#include "platform/files.h"

namespace Corvetape {

/// What is noted beside a temporary song, so that a later run knows what to do with it if this one ends
/// before it does.
struct SongNote {
    std::string Run;           ///< name of the run that writes the song
    bool Wanted = false;       ///< its close would have kept it
    int32_t LeastSeconds = 0;  ///< songs of at most so many seconds are discarded
    STATIONANDSONGDATA Media;  ///< what its close would have handed on; no title where names do not count
};

/// The text of a note: one section of a settings file. Control characters become blanks, and each value is
/// cut to 1000 bytes.
std::string SongNoteText(const SongNote& note);

/// Keeps the note of the song that is being written up to date, and that of the closed one until it was
/// transferred. A note that cannot be written is left out: the song itself is not touched by that.
class SongNotes {
 public:
    /// Both outlive it.
    SongNotes(Files& files, const WorkingFolders& folders) : Disk(files), Folders(folders) {}

    /// Writes the note of a song if it says something new. `baseName` is the name of its file without folder
    /// and extension; nothing happens without one.
    void Write(const std::string& baseName, const SongNote& note);

    /// The song has been dealt with.
    void Remove(const std::string& baseName);

 private:
    Files& Disk;
    const WorkingFolders& Folders;
    std::string LastName;
    std::string LastText;
};

/// A temporary song that an earlier run has left behind.
struct LeftSong {
    std::string BaseName;  ///< of its file, without folder and extension
    SongNote Note;
};

/// The songs in the folder for temporary songs whose notes are of runs that `isAlive` denies, in the order of
/// their names. Songs without a note are none of them: they were left there on purpose.
std::vector<LeftSong> FindLeftSongs(Files& files, const std::string& songTempFolder,
                                    const std::function<bool(const std::string& run)>& isAlive);

/// What is to become of a song that was left behind.
enum class LeftSongFate {
    Transfer,
    Delete,
    Leave,  ///< for a later start: its disk fails now
};

struct LeftSongDecision {
    LeftSongFate Fate = LeftSongFate::Delete;
    int32_t Seconds = 0;  ///< of sound in the file
};

/// Repairs the header of a song and decides as its close would have done: kept if it was wanted and is longer
/// than the least length. A file that is no song, or that holds no sound, is deleted. A wanted song that
/// cannot be read or repaired is left.
LeftSongDecision DecideLeftSong(Files& files, const std::string& songTempFolder, const LeftSong& song);

/// Deletes all files of a song that was left behind, its note among them.
void DeleteLeftSong(Files& files, const std::string& songTempFolder, const LeftSong& song);

}  // namespace Corvetape
