#include "media/provider.h"

#include <utility>

namespace Corvetape {

void ReArmRecording(ProviderHost& host) {
    host.Signal.PauseRecognition = PauseRecognitionRunning;
    host.Flags.RecordingEnabled = true;
}

void ClearMedia(STATIONANDSONGDATA& media) {
    media = STATIONANDSONGDATA{};
}

clsProviderNull::clsProviderNull(ProviderHost& host) {
    ClearMedia(host.Media.CurrentMedia);
    // A song that waits for its hand-over keeps its record: there is only this one.
    if (!host.HandOverPending()) ClearMedia(host.Media.SongMedia);
    host.Media.ProviderName = NoStationData;
    host.Media.MixerSectionName = "Mixer";
    ReArmRecording(host);
    host.LoadProviderSettings(host.Media.ProviderName);
    host.ApplyMixerSection();
}

clsProviderFeed::clsProviderFeed(ProviderHost& host, const std::string& name,
                                 std::function<SourceMedia()> read, std::function<bool()> restart)
    : Host(host), Read(std::move(read)), Restart(std::move(restart)) {
    ClearMedia(Host.Media.CurrentMedia);
    Host.Media.ProviderName = name;
    Host.Media.MixerSectionName = "Mixer" + name;
    ReArmRecording(Host);
    Host.AdoptSettings(name);
    GetStationData();
}

void clsProviderFeed::GetStationData() {
    Host.Media.CurrentMedia.StationName = Read().StationName;
    GetSongData();
}

void clsProviderFeed::GetSongData() {
    const SourceMedia media = Read();
    STATIONANDSONGDATA& current = Host.Media.CurrentMedia;
    current.Artist = media.Artist;
    current.Song = media.Song;
    current.Album = media.Album;
    current.Cover = media.Cover;
}

}  // namespace Corvetape
