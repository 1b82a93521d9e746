#pragma once

#include <memory>

#include "core/settings/registry.h"
#include "core/settings/settings_store.h"
#include "media/browser_notices.h"
#include "media/provider_choice.h"
#include "platform/machine.h"

namespace Corvetape {

class PlayerBridge;

/// Makes browser providers, where this run asks browsers or windows.
class BrowserSources : public ProviderMaker {
 public:
    /// All of them, and the machine's parts, outlive it.
    BrowserSources(ProviderHost& host, const SettingsStore& store, Reporter& say, const Machine& machine)
        : Host(host), Store(store), Notices(say), Computer(machine) {}

    std::unique_ptr<clsProvider> Make() override;

 private:
    ProviderHost& Host;
    const SettingsStore& Store;
    BrowserNotices Notices;
    Machine Computer;
};

/// Makes providers that ask the media player, where this run listens to players.
class PlayerSources : public ProviderMaker {
 public:
    /// All of them outlive it. `bridge` may be missing.
    PlayerSources(ProviderHost& host, const RegistryBranches& registry, const PlayerBridge* bridge)
        : Host(host), Registry(registry), Bridge(bridge) {}

    std::unique_ptr<clsProvider> Make() override;

 private:
    ProviderHost& Host;
    const RegistryBranches& Registry;
    const PlayerBridge* Bridge;
};

}  // namespace Corvetape
