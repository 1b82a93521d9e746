#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "core/settings/settings.h"
#include "platform/files.h"
#include "platform/processes.h"
#include "recording/automatic/learned_cuts.h"
#include "recording/margins/kept_margins.h"
#include "recording/margins/margin_store.h"

namespace Corvetape {

/// By how much the cuts of a song are to move from where they are now, in seconds: above 0 later, below 0
/// earlier.
struct RecutWish {
    double Begin = 0;
    double End = 0;
};

/// How far the cuts of a song can move from where they are now, in seconds.
struct RecutRoom {
    double BeginEarliest = 0;  ///< 0 or below
    double EndLatest = 0;      ///< 0 or above
    double Length = 0;         ///< of the song as it is now
};

/// What a recut works on. All of it outlives it.
struct RecutParts {
    Corvetape::Files& Files;
    Corvetape::Processes& Processes;
    const Corvetape::Settings& Settings;
    const WorkingFolders& Folders;
    MarginStore& Store;
    LearnedCuts& Learned;
    std::string RunName;
};

/// Cuts one song again from its margins, to the sample: writes the new recording, has it encoded as the song
/// was, and puts the result in the place of the music file as a whole. Until then the old one stays as it is,
/// and for good if anything fails. The source of the song learns what was corrected.
class SongRecut {
 public:
    explicit SongRecut(RecutParts parts) : Parts(std::move(parts)) {}

    /// What can be done with these margins; nothing if they are not complete.
    std::optional<RecutRoom> RoomOf(const KeptMargins& margins) const;

    /// Begins. Returns why not, in English; empty if it has begun. A song that stays as it was recorded needs
    /// no encoder, and is through at once: JobName is empty then.
    std::string Begin(const KeptMargins& margins, const RecutWish& wish);

    /// The name of the encoder's process; empty while none runs.
    const std::string& JobName() const { return Job; }

    /// The encoder has ended. Returns what went wrong, in English; empty if the music file is there.
    std::string End(const JobResult& result);

    /// The music file that was written last.
    const std::string& MusicFile() const { return Song.MusicFile; }

 private:
    /// Frames of the margins, counted from the first one that was kept.
    struct Range {
        uint64_t Begin = 0;
        uint64_t End = 0;
    };

    std::string Plan(const RecutWish& wish);
    FileResult WriteRecording() const;
    std::string StartEncoder();
    std::string Place(const std::string& made);
    std::string FreeName(const std::string& wanted) const;
    void Learn() const;
    void TidyUp();

    RecutParts Parts;
    KeptMargins Song;
    MarginLengths Lengths;
    Range Wanted;
    int64_t BeginShift = 0;  ///< frames, from where the cut is now
    int64_t EndShift = 0;
    std::string Work;  ///< of the files in the making, without their extensions
    std::string Made;  ///< that the encoder makes
    std::string Job;
};

}  // namespace Corvetape
