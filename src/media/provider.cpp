#include "media/provider.h"

namespace Corvetape {

void ReArmRecording(ProviderHost& host) {
    host.Signal.PauseRecognition = PauseRecognitionRunning;
    host.Flags.ArmForSource();
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
