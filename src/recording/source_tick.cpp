#include "recording/source_tick.h"

namespace Corvetape {

void SourceTick::FindProvider() {
    if (Media.StationDataEnabled && Providers.Wanted()) Providers.Choose();
}

void SourceTick::PollOutsideMediaMode(int32_t songAge) {
    const EndOfSong mode = Pause.EndOfSongDetection;
    const bool byTimer = mode == EndOfSong::MediaData || mode == EndOfSong::Automatic;
    if (!Media.StationDataEnabled || byTimer) return;
    if (songAge < 10 || songAge % 10 == 0) Providers.Refresh();
}

}  // namespace Corvetape
