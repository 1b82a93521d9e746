#include "media/source_makers.h"

#include <string>

#include "media/devtools_ports.h"
#include "media/player_bridge.h"
#include "media/provider_msie.h"
#include "media/provider_wmp.h"
#include "platform/documents.h"
#include "platform/folders.h"

namespace Corvetape {

std::unique_ptr<clsProvider> BrowserSources::Make() {
    if (Computer.Documents == nullptr && Computer.Windows == nullptr) return nullptr;
    if (Computer.Documents != nullptr) {
        const std::string ports = Store.Ini().ReadText("Browser", "DevToolsPorts", UsualDevToolsPort);
        Computer.Documents->UsePorts(DevToolsPorts(ports));
    }
    const std::string path =
        ProfilePath(Computer.Files, Store.Ini().Path(), Computer.Folders.ProgramFolder());
    return std::make_unique<clsProviderMSIE>(
        Host, BrowserPlaces{Computer.Files, path, Computer.Documents, Computer.Windows}, Notices);
}

std::unique_ptr<clsProvider> PlayerSources::Make() {
    if (Bridge == nullptr) return nullptr;
    auto provider = std::make_unique<clsProviderWMP>(Host, Registry, *Bridge);
    if (Bridge->IsTheInput()) provider->GetStationData();
    return provider;
}

}  // namespace Corvetape
