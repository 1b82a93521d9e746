#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/virtual/sim_random.h"
#include "platform/wave_in.h"
#include "support/work_folder.h"

namespace Corvetape::Bench {

inline constexpr uint32_t JoinedRate = 44100;

/// How two songs follow one another. Seconds; a fade has equal power, a gap is noise of -70 dBFS.
struct JoinKind {
    const char* Name;
    double Fade = 0;
    double Gap = 0;
};

/// The first and the last part of real songs, decoded by ffmpeg into a folder.
class MusicShelf {
 public:
    /// Takes all Ogg and MP3 files below `folder` in the order of their names. Those that cannot be decoded
    /// or are shorter than 39 s are left out.
    MusicShelf(const std::string& folder, const WorkFolder& work);

    size_t Size() const { return Songs.size(); }

    /// Up to 45 s from the first sound of a song on.
    std::vector<Frame> Beginning(size_t song) const;

    /// Up to 45 s that end with the last sound of a song.
    std::vector<Frame> Ending(size_t song) const;

 private:
    struct Song {
        std::string Begin;
        std::string End;
    };

    std::vector<Song> Songs;
};

/// Two songs to be joined.
struct JoinedSongs {
    std::span<const Frame> Old;  ///< its end is where it is cut off
    std::span<const Frame> New;
    JoinKind Kind;
    double Join = 0;    ///< seconds: the middle of the fade or the gap
    double Length = 0;  ///< seconds
};

/// The sound of it. Nothing if one of the songs is too short.
std::optional<std::vector<Frame>> Joined(const JoinedSongs& songs, SimRandom& random);

}  // namespace Corvetape::Bench
