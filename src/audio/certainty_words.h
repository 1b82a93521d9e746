#pragma once

#include <string_view>

#include "audio/closed_song.h"

namespace Corvetape {

/// "sure", "likely" or "unsure"; empty where nobody has asked. Files and programs read these words, so they
/// are the same in every language.
std::string_view WordOf(Certainty certainty);

/// The other way round; None for any other word.
Certainty CertaintyFrom(std::string_view word);

}  // namespace Corvetape
