#pragma once

#include <cstdint>
#include <string>

#include "app/program.h"

namespace Corvetape {

/// The state of a recording in one line of at most 79 characters: level, age of the song, silence, and what
/// is kept.
std::string LiveStateText(const Program& program, int32_t keptSongs);

/// A bar for the share of `part` in 1 with its figure, for a work of known length.
std::string ProgressText(double part);

}  // namespace Corvetape
