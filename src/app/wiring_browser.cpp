#include "app/wiring_browser.h"

#include <memory>
#include <utility>

#include "app/program_parts.h"
#include "media/devtools_ports.h"
#include "media/provider_msie.h"
#include "platform/documents.h"
#include "platform/folders.h"

namespace Corvetape {

namespace {

void ListenToPorts(ProgramParts& parts, Documents& documents) {
    const std::string ports = parts.Store.Ini().ReadText("Browser", "DevToolsPorts", UsualDevToolsPort);
    documents.UsePorts(DevToolsPorts(ports));
}

}  // namespace

void AddBrowserFactory(ProgramParts& parts, std::vector<ProviderFactory>& factories) {
    const RunOptions& options = parts.Owner.Options;
    if (options.Documents == nullptr && options.Windows == nullptr) return;
    const auto told = std::make_shared<bool>(false);
    const auto limitTold = std::make_shared<bool>(false);
    factories.push_back([&parts, told, limitTold]() -> std::unique_ptr<clsProvider> {
        BrowserSources sources{
            parts.Host.Files,
            ProfilePath(parts.Host.Files, parts.Store.Ini().Path(), parts.Host.Folders.ProgramFolder()),
            parts.Owner.Options.Documents, parts.Owner.Options.Windows};
        if (sources.Documents) ListenToPorts(parts, *sources.Documents);
        sources.WindowsWanted = [&parts, told] {
            if (*told || parts.Owner.Options.Windows == nullptr) return;
            *told = true;
            parts.Journal.WriteLog({"INFO", parts.Messages.FormatMsg("865")});
        };
        sources.ProfilesUnread = [&parts, limitTold, path = sources.ProfilePath](size_t unread) {
            if (std::exchange(*limitTold, true)) return;
            parts.Journal.WriteLog(
                {"ERROR", parts.Messages.FormatMsg("879", {path, std::to_string(unread)})});
        };
        return std::make_unique<clsProviderMSIE>(parts.MediaHost, std::move(sources));
    });
}

}  // namespace Corvetape
