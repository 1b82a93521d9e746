#pragma once

#include <optional>
#include <string>

#include "audio/closed_song.h"

namespace Corvetape {

/// "kept", "short", "unwanted" or "aborted".
std::string FateText(SongFate fate);

/// "sure", "likely" or "unsure"; empty where nobody has asked.
std::string CertaintyText(Certainty certainty);

/// One JSON object for a closed song, without a line end. `file` is the music file made of it, empty if
/// there is none.
std::string SongAsJson(const ClosedSong& song, const std::string& file);

/// What to call a song where its name is needed: artist and title, or the name of its temporary file.
std::string SongName(const STATIONANDSONGDATA& media);

/// One line for people: what became of the song, its length, its name, and what was wrong with it if
/// anything was.
std::string SongAsLine(const ClosedSong& song);

/// "m:ss" or "h:mm:ss".
std::string LengthText(uint64_t seconds);

}  // namespace Corvetape
