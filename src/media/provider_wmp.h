#pragma once

#include <functional>
#include <string>

#include "core/settings/registry.h"
#include "media/provider.h"

namespace Corvetape {

/// Name of the media player as a source, and of its settings.
inline constexpr const char* MediaPlayerName = "Windows Media Player";

/// Reads what the media player has written beside its key (see PlayerBridge). A player that runs is enough
/// for it to become the provider, even while it plays nothing; it gives up when none runs and none plays.
class clsProviderWMP : public clsProvider {
 public:
    /// Both references outlive it. `playerPresent` stands for the player's window.
    clsProviderWMP(ProviderHost& host, const RegistryBranches& registry, std::function<bool()> playerPresent);

    void GetStationData() override;
    void GetSongData() override;

    /// A silent player is not restarted.
    bool RestartRadio() override { return false; }

 private:
    bool ReadMediaRegistry();
    std::string Read(const char* name) const;

    ProviderHost& Host;
    const RegistryBranches& Registry;
    std::function<bool()> PlayerPresent;
};

}  // namespace Corvetape
