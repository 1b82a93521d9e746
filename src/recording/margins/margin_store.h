#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "audio/closed_song.h"
#include "core/settings/settings.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/wave_in.h"
#include "post/transfer/encoder_results.h"
#include "post/transfer/transfer_job.h"
#include "recording/margins/kept_margins.h"

namespace Corvetape {

/// Keeps the margins of songs on the disk: `KeepMargins` hours long, and less where the disk gets short.
///
/// Deletes nothing but the files of margins, each by its name, and those of no song that is still to be
/// encoded. What cannot be written is not kept; the song itself is not touched by that.
class MarginStore {
 public:
    /// All of them outlive it. `runName` is that of this process.
    MarginStore(Files& disk, const Clock& clock, const Settings& settings, const WorkingFolders& folders,
                std::string runName);

    /// Keeps a closed song with what was heard before it. Returns the name of its files; empty if it was not
    /// kept, as the user wants none or the disk refuses it.
    std::string Keep(const ClosedSong& song, std::span<const Frame> before);

    /// Adds what was heard after the song of these files.
    void AddAfter(const std::string& base, uint32_t framesPerSecond, std::span<const Frame> after);

    /// The transfer has dealt with a song: notes what it is called now, and how its music file is made.
    void SongTransferred(const TransferredSong& song);

    /// The encoder of this name has given its music file that name. An older song that had it is cut again
    /// under the number that it got.
    void MusicMade(const std::string& job, const MadeMusic& music);

    /// All that is kept, the oldest first.
    std::vector<KeptMargins> List() const;

    /// Brings a note up to date. False if the disk refuses it.
    FileResult Write(const KeptMargins& margins);

    /// The song has no music file yet, and will be given to an encoder.
    bool IsWaiting(const KeptMargins& margins) const;

    /// Seconds until margins go by their age; 0 for those that are due.
    int64_t SecondsLeft(const KeptMargins& margins) const;

    /// Deletes what is older than the setting wants. Looks at the disk twice an hour at most.
    void DropOld();

    /// Deletes the oldest margins, as the disk gets short. False if there are none to delete.
    bool DropOldest();

    /// Deletes the margins of this run, as with all of its temporary files.
    void DropOfThisRun();

 private:
    std::string ClaimName(KeptMargins& margins);
    void TakeNameFromOthers(const std::string& base, const MadeMusic& music);
    std::optional<KeptMargins> Newest(std::string KeptMargins::*field, const std::string& value) const;
    std::string File(const std::string& base, const char* ending) const;
    void Drop(const std::string& base);
    int64_t Now() const;

    Files& Disk;
    const Clock& Time;
    const Settings& Options;
    const WorkingFolders& Folders;
    std::string RunName;
    std::deque<std::string> ByAge;    ///< of DropOldest: those that it has not come to yet
    std::optional<int64_t> LastLook;  ///< of DropOld, in nanoseconds of the monotonic clock
};

}  // namespace Corvetape
