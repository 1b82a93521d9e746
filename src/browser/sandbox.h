#pragma once

#include <QStringList>
#include <optional>

namespace Corvetape {

/// What the browser is started with.
struct BrowserArguments {
    int Socket = -1;
    bool WithoutSandbox = false;
};

/// `words` without the program's name. Nothing if the socket is missing or a word is not known.
std::optional<BrowserArguments> ReadBrowserArguments(const QStringList& words);

/// True if pages run in a sandbox here: not for root, whom the engine gives none, and not where the
/// environment switches it off.
bool SandboxWorks();

/// Switches the engine's sandbox off. To be called before the application is made.
void SwitchSandboxOff();

}  // namespace Corvetape
