#pragma once

#include <string>

#include "post/transfer/song_passage.h"

namespace Corvetape {

class Files;

/// The names of the temporary files of closed songs: each song has one that no other has, of this run or
/// another one. Failing file operations are passed over.
class TempNames {
 public:
    /// All of them outlive it.
    TempNames(const TransferPlace& place, Files& files, SongNotes& notes)
        : Place(place), Disk(files), Notes(notes) {}

    /// Renames the files of a song with song data to FinalName, or that with a number. Sets the source of the
    /// passage. The name of the song without folder and extension, as it is called from here on.
    std::string Take(SongPassage& passage);

    /// True for a sound file that is being recorded.
    bool IsInput(const std::string& path) const;

 private:
    std::string Claim(SongPassage& passage);
    bool MakesRoom(const std::string& base, SongPassage& passage);
    void DeleteEarlier(const std::string& name);

    const TransferPlace& Place;
    Files& Disk;
    SongNotes& Notes;
};

}  // namespace Corvetape
