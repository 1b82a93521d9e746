#include "media/provider.h"

namespace Corvetape {

void ReArmRecording(ProviderHost& host) {
    host.Signal.PauseRecognition = PauseRecognitionRunning;
    // A recording that has ended for good stays off, however often a source is looked for.
    const bool wanted = host.Flags.RecordCurrentSong || host.Flags.RecordNextSong;
    if (wanted || !host.Flags.DisableAtEndOfSong) host.Flags.RecordingEnabled = true;
}

void ClearMedia(STATIONANDSONGDATA& media) {
    media = STATIONANDSONGDATA{};
}

clsProviderNull::clsProviderNull(ProviderHost& host) {
    ClearMedia(host.Media.CurrentMedia);
    ClearMedia(host.Media.SongMedia);
    host.Media.ProviderName = NoStationData;
    host.Media.MixerSectionName = "Mixer";
    ReArmRecording(host);
    host.Adoption.Load(host.Media.ProviderName);
}

}  // namespace Corvetape
