#include "media/provider_wmp.h"

#include <variant>

#include "media/text_decoding.h"

namespace Corvetape {

clsProviderWMP::clsProviderWMP(ProviderHost& host, const RegistryBranches& registry,
                               const PlayerBridge& bridge)
    : Host(host), Registry(registry), Bridge(bridge) {
    ClearMedia(Host.Media.CurrentMedia);
    ClearMedia(Host.Media.SongMedia);
    Host.Media.MixerSectionName = "Mixer";
    ReArmRecording(Host);
    if (!Bridge.PlayerPresent()) return;
    Host.Media.ProviderName = MediaPlayerName;
    Host.Media.MixerSectionName = std::string("Mixer") + MediaPlayerName;
    Host.Adoption.Adopt(MediaPlayerName);
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
    if (!ReadMediaRegistry() && !Bridge.PlayerPresent()) Host.Media.ProviderName.clear();
}

void clsProviderWMP::GetSongData() {
    static_cast<void>(ReadMediaRegistry());
}

}  // namespace Corvetape
