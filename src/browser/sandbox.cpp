#include "browser/sandbox.h"

#include <unistd.h>

#include "platform/browser_protocol.h"

namespace Corvetape {

namespace {

constexpr const char* Off = "QTWEBENGINE_DISABLE_SANDBOX";
constexpr const char* Flags = "QTWEBENGINE_CHROMIUM_FLAGS";

}  // namespace

std::optional<BrowserArguments> ReadBrowserArguments(const QStringList& words) {
    BrowserArguments arguments;
    bool known = true;
    for (qsizetype i = 0; i < words.size(); ++i) {
        if (words[i] == BrowserProtocol::SocketArgument && i + 1 < words.size()) {
            arguments.Socket = words[++i].toInt(&known);
        } else if (words[i] == BrowserProtocol::WithoutSandboxArgument) {
            arguments.WithoutSandbox = true;
        } else {
            return std::nullopt;
        }
    }
    if (!known || arguments.Socket < 0) return std::nullopt;
    return arguments;
}

bool SandboxWorks() {
    return geteuid() != 0 && qgetenv(Off).isEmpty() && !qgetenv(Flags).contains("no-sandbox");
}

void SwitchSandboxOff() {
    qputenv(Off, "1");
}

}  // namespace Corvetape
