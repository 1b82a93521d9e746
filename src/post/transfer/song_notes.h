#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "audio/closed_song.h"
#include "core/media_state.h"
#include "core/settings/settings.h"
#include "platform/files.h"
#include "platform/system_info.h"

namespace Corvetape {

/// What is noted beside a temporary song, so that a later run knows what to do with it if this one ends
/// before it does.
struct SongNote {
    std::string Run;           ///< name of the run that writes the song
    bool Wanted = false;       ///< its close would have kept it
    STATIONANDSONGDATA Media;  ///< what its close would have handed on; no title where names do not count
    bool Closed = false;       ///< its file ends where its header says

    Certainty Begin = Certainty::None;  ///< how sure its cuts are, once they are known
    Certainty End = Certainty::None;

    // Once it was handed on.
    int32_t HandedOn = 0;     ///< how often it was given to an encoder
    int32_t Number = 0;       ///< its place among all songs
    std::string Encoder;      ///< name of its encoder's process; empty if none was started
    std::string Work;         ///< what its encoder calls files in the making
    std::string MusicFolder;  ///< where its encoder makes the music file
};

/// A song is given to an encoder twice at most: by its own run, and by one that finds it without music.
inline constexpr int32_t MostHandOvers = 2;

/// The text of a note: one section of a settings file. Control characters become blanks, and each value is
/// cut to 1000 bytes.
std::string SongNoteText(const SongNote& note);

/// Reads a note; nothing if the file cannot be read or is no note.
std::optional<SongNote> ReadSongNote(Files& files, const std::string& path);

/// Keeps the notes beside the temporary songs: of the one that is being written, and of each closed one until
/// its music file is there. A note that cannot be written is left out: the song itself is not touched by
/// that.
///
/// The note of a closed song is also its claim to the name that its temporary files have.
class SongNotes {
 public:
    /// Both outlive it.
    SongNotes(Files& files, const WorkingFolders& folders) : Disk(files), Folders(folders) {}

    /// Writes the note of a song if it says something new. `baseName` is the name of its file without folder
    /// and extension; nothing happens without one.
    void Write(const std::string& baseName, const SongNote& note);

    /// What came of a claim.
    enum class Claimed {
        Yes,
        Taken,   ///< another song has this name, of this run or another one
        Failed,  ///< the disk refuses notes
    };

    /// Takes a name for the files of one song by writing its note there.
    Claimed Claim(const std::string& baseName, const SongNote& note);

    /// Writes the note of a closed song.
    void Store(const std::string& baseName, const SongNote& note);

    /// The song has been dealt with.
    void Remove(const std::string& baseName);

 private:
    std::string PathOf(const std::string& baseName) const;

    Files& Disk;
    const WorkingFolders& Folders;
    std::string LastName;
    std::string LastText;
};

/// A temporary song that an earlier run has left.
struct LeftSong {
    std::string BaseName;  ///< of its file, without folder and extension
    SongNote Note;
};

/// The names of all songs in the folder for temporary songs that have a note, in their order. Songs without a
/// note were left there on purpose.
std::vector<std::string> ListNotedSongs(Files& files, const std::string& songTempFolder);

/// A song that has a note, if neither its run nor its encoder is alive and it was not given up. Nothing if
/// the note cannot be read: it may say that the song is wanted.
std::optional<LeftSong> ReadLeftSong(Files& files, const std::string& songTempFolder,
                                     const std::string& baseName, SystemInfo& runs);

/// What is to become of a song that was left.
enum class LeftSongFate {
    Transfer,
    Delete,
    Leave,   ///< for a later start: its disk fails now
    IsMade,  ///< its music is there, or the song itself is gone: only its note is left
};

struct LeftSongDecision {
    LeftSongFate Fate = LeftSongFate::Delete;
    int32_t Seconds = 0;  ///< of sound in the file
};

/// Repairs the header of a song and decides what becomes of it: kept if it was wanted, however short it is,
/// as nobody knows how long it would have become. One that was closed already goes to an encoder as its close
/// has made it, unless its music is there. A file that is no song, or that holds less than a second of sound,
/// is deleted. A wanted song that cannot be read or repaired is left.
LeftSongDecision DecideLeftSong(Files& files, const std::string& songTempFolder, const LeftSong& song);

/// Where an encoder writes the path of the music that it has made.
std::string MadeFileOf(const std::string& songTempFolder, const std::string& work);

/// Deletes what the encoder of a song that was left has not finished.
void DeleteHalfMade(Files& files, const std::string& songTempFolder, const SongNote& note);

/// Deletes all files of a song that was left, its note among them.
void DeleteLeftSong(Files& files, const std::string& songTempFolder, const LeftSong& song);

}  // namespace Corvetape
