#pragma once

#include <string>

#include "core/media_state.h"

namespace Corvetape {

/// "Artist - Title" for people to read; the title alone where no artist is known.
std::string ArtistAndTitle(const STATIONANDSONGDATA& media);

}  // namespace Corvetape
