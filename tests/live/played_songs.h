#pragma once

#include <span>
#include <string>
#include <vector>

#include "live/icy_server.h"
#include "platform/wave_in.h"

namespace Corvetape {

/// A song that a test plays, and what is heard after it. Each of its moments sounds another way, so that a
/// recording of it says which part of it was kept.
struct PlayedSong {
    int Number = 1;           ///< of its title, and of its noise
    double Seconds = 9;       ///< up to PositionSeconds
    double SilenceAfter = 0;  ///< seconds of nothing at all
    double TalkAfter = 0;     ///< seconds of somebody who speaks
    double TitleLate = 0;     ///< seconds from its first sound to its title
};

/// What is missing of a song in a recording, and what of others is in there, in seconds to 20 ms. The edges
/// alone: what its player has lost or repeated in its middle on a busy machine is not in it.
struct PlayedEdges {
    double MissingAtBegin = 0;
    double MissingAtEnd = 0;
    double ForeignAtBegin = 0;
    double ForeignAtEnd = 0;
};

/// Longest song whose moments differ.
inline constexpr double PositionSeconds = 12;

/// All of it, one after the other, at 44.1 kHz.
std::vector<Frame> SoundOf(std::span<const PlayedSong> songs);

/// The edges of a song in a WAV file of 16-bit stereo at 44.1 kHz. Without any of it the whole song is
/// missing.
PlayedEdges EdgesOf(const std::string& waveFile, const PlayedSong& song);

/// "Band N - Song N".
std::string NameOf(const PlayedSong& song);

/// A file with this song and its tags. `folder` is for it.
std::string TaggedFileOf(const PlayedSong& song, const std::string& folder);

/// Writes a WAV file in the place of what is there.
void WriteWave(const std::string& path, const std::vector<Frame>& sound);

/// What a station sends that plays these songs, as one stream without a seam. `folder` is for its files.
std::vector<IcySong> StreamOf(std::span<const PlayedSong> songs, const std::string& folder);

}  // namespace Corvetape
