#include "media/provider_wmp.h"

#include <utility>
#include <variant>

#include "media/player_bridge.h"
#include "media/text_decoding.h"

namespace Corvetape {

clsProviderWMP::clsProviderWMP(ProviderHost& host, const RegistryBranches& registry,
                               std::function<bool()> playerPresent)
    : Host(host), Registry(registry), PlayerPresent(std::move(playerPresent)) {
    ClearMedia(Host.Media.CurrentMedia);
    // A song that waits for its hand-over keeps its record: there is only this one.
    if (!Host.HandOverPending()) ClearMedia(Host.Media.SongMedia);
    Host.Media.MixerSectionName = "Mixer";
    ReArmRecording(Host);
    if (!PlayerPresent()) return;
    Host.Media.ProviderName = MediaPlayerName;
    Host.Media.MixerSectionName = std::string("Mixer") + MediaPlayerName;
    Host.AdoptSettings(MediaPlayerName);
}

std::string clsProviderWMP::Read(const char* name) const {
    const RegistryValue value = Registry.ReadRegistryValue(RegistryRoot::CurrentUser, PlayerKeyPath, name);
    const auto* text = std::get_if<std::string>(&value);
    return text == nullptr ? std::string() : *text;
}

bool clsProviderWMP::ReadMediaRegistry() {
    STATIONANDSONGDATA& media = Host.Media.CurrentMedia;
    media.StationName.clear();
    media.StationDescr.clear();
    media.Artist.clear();
    media.Song.clear();
    media.Album.clear();
    media.Cover.clear();
    if (Read("Status") != "Playing") return false;
    media.StationName = MediaText(Read("Genre"));
    media.Artist = MediaText(Read("Artist"));
    media.Song = MediaText(Read("Title"));
    media.Album = MediaText(Read("Album"));
    media.Cover = Read("Cover");
    return true;
}

void clsProviderWMP::GetStationData() {
    if (!ReadMediaRegistry() && !PlayerPresent()) Host.Media.ProviderName.clear();
}

void clsProviderWMP::GetSongData() {
    static_cast<void>(ReadMediaRegistry());
}

}  // namespace Corvetape
