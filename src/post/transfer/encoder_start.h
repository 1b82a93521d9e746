#pragma once

#include <string>

#include "post/transfer/encode_job.h"
#include "post/transfer/song_passage.h"
#include "post/transfer/temp_names.h"

namespace Corvetape {

class Files;
class Processes;

/// Starts the command that encodes a song. It does not wait for the command and knows nothing of its success;
/// Processes has the result under the name of the job.
class EncoderStart {
 public:
    /// All of them outlive it.
    EncoderStart(const TransferPlace& place, Files& files, Processes& processes, SongNotes& notes,
                 const TempNames& names)
        : Place(place), Disk(files), Programs(processes), Notes(notes), Names(names) {}

    /// Starts the command for the song whose temporary files are called `name`. An encoder or a quality that
    /// does not exist is a problem of the result.
    TransferredSong Start(SongPassage& passage, const std::string& name);

 private:
    std::string ProblemOf(const EncoderRow* row) const;
    EncodeRequest RequestFor(const SongPassage& passage, const EncoderRow& row,
                             const std::string& name) const;

    const TransferPlace& Place;
    Files& Disk;
    Processes& Programs;
    SongNotes& Notes;
    const TempNames& Names;
};

}  // namespace Corvetape
