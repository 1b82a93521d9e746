#include "core/text/artist_and_title.h"

namespace Corvetape {

std::string ArtistAndTitle(const STATIONANDSONGDATA& media) {
    return media.Artist.empty() ? media.Song : media.Artist + " - " + media.Song;
}

}  // namespace Corvetape
