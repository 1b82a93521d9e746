#pragma once

#include <string>

#include "core/settings/registry.h"
#include "media/player_bridge.h"
#include "media/provider.h"

namespace Corvetape {

/// Name of the media player as a source, and of its settings.
inline constexpr const char* MediaPlayerName = "Windows Media Player";

/// Reads what the media player has written beside its key (see PlayerBridge). A player that runs is enough
/// for it to become the provider, even while it plays nothing; it gives up when none runs and none plays.
class clsProviderWMP : public clsProvider {
 public:
    /// All of them outlive it.
    clsProviderWMP(ProviderHost& host, const RegistryBranches& registry, const PlayerBridge& bridge);

    void GetStationData() override;
    void GetSongData() override;

    /// A silent player is not restarted.
    bool RestartRadio() override { return false; }

 private:
    bool ReadMediaRegistry();
    std::string Read(const char* name) const;

    ProviderHost& Host;
    const RegistryBranches& Registry;
    const PlayerBridge& Bridge;
};

}  // namespace Corvetape
