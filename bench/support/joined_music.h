#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "platform/wave_in.h"
#include "support/work_folder.h"

namespace Corvetape::Bench {

inline constexpr uint32_t JoinedRate = 44100;

/// Somebody speaks where two songs meet.
enum class Talk : uint8_t { None, Between, Over };

/// Where songs are cut off: somewhere before their end, or where they end by themselves.
enum class SongCut : uint8_t { Early, AtItsEnd };

/// How two songs follow one another. Seconds; a fade has equal power, a gap is noise of -70 dBFS.
struct JoinKind {
    const char* Name;
    double Fade = 0;
    double Gap = 0;
    Talk Spoken = Talk::None;
    SongCut Cut = SongCut::Early;
};

/// The frames of a file that holds nothing else; none if it cannot be read.
std::vector<Frame> ReadFrames(const std::string& path);

/// The first and the last part of real songs, decoded by ffmpeg into a folder.
class MusicShelf {
 public:
    /// Takes all Ogg, Opus and MP3 files below the folders, which colons separate, in the order of their
    /// names. Those that cannot be decoded or are shorter than 39 s are left out.
    MusicShelf(const std::string& folders, const WorkFolder& work);

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

}  // namespace Corvetape::Bench
