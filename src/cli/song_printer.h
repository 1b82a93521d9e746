#pragma once

#include <cstdint>
#include <cstdio>
#include <deque>
#include <string>

#include "audio/closed_song.h"
#include "platform/processes.h"
#include "post/transfer/transfer_job.h"

namespace Corvetape {

enum class SongFormat { Lines, Json };

/// Prints what becomes of the songs: a line for each as it closes, or a JSON object for each as soon as its
/// music file is there, in the order of closing.
class SongPrinter {
 public:
    /// Neither is owned. `songs` takes the songs, `errors` what an encoder refused.
    SongPrinter(SongFormat format, std::FILE* songs, std::FILE* errors);

    /// Where encoders write what they have to say; named where one refuses a song.
    void NameEncodeLog(const std::string& path) { EncodeLog = path; }

    void Closed(const ClosedSong& song);
    void Transferred(const TransferredSong& song);
    /// An encoder has given its music file this name.
    void MusicMade(const std::string& job, const std::string& musicFile);
    void JobEnded(const JobResult& result);

    /// Something has gone wrong, as a line of the log: an object of its own among the songs. Nothing is
    /// printed among lines, whose reader sees the error output.
    void Failed(const std::string& text);

    /// Prints what still waits; after it nothing comes any more.
    void Finish();

    int32_t KeptSongs() const { return Kept; }

    /// Songs that could not be made into a music file.
    int32_t RefusedSongs() const { return Refused; }

 private:
    struct Entry {
        ClosedSong Song;
        std::string JobName;
        std::string MusicFile;
        std::string TempFile;
        bool Done = false;
    };
    void PrintReady();
    void Refuse(const STATIONANDSONGDATA& media, const std::string& why, const std::string& tempFile);

    SongFormat Format;
    std::FILE* Songs;
    std::FILE* Errors;
    std::string EncodeLog;
    std::deque<Entry> Waiting;
    std::deque<Entry> OfEarlierRuns;  ///< handed on by this run without having been closed in it
    int32_t Kept = 0;
    int32_t Refused = 0;
};

}  // namespace Corvetape
