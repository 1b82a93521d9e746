#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/files.h"
#include "recording/margins/song_recut.h"

namespace Corvetape {

/// A song that can be cut again, as a list shows it.
struct RecutEntry {
    KeptMargins Margins;
    std::optional<RecutRoom> Room;  ///< nothing if what was kept is not complete
    int64_t SecondsLeft = 0;        ///< until it goes by its age
};

/// What a song is called: by its music file, else by its media data or its recording.
std::string NameOf(const KeptMargins& margins);

/// The songs that `wanted` means: the path of the music file, its name with or without extension, "artist -
/// title", or the title. What is written exactly so comes first, then the same ignoring case.
std::vector<KeptMargins> FindSongs(Files& disk, const std::vector<KeptMargins>& all,
                                   const std::string& wanted);

/// Two lines for people, with a line end: how sure it is, and how far its cuts can be moved.
std::string RecutLines(const RecutEntry& entry);

/// Seconds as they are typed: "+1.5", "-0.25", "3". Nothing for anything else.
std::optional<double> SecondsToMove(const std::string& text);

}  // namespace Corvetape
