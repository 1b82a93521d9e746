#pragma once

#include <QStringList>
#include <optional>
#include <string>

#include "desktop/press.h"

namespace Corvetape {

/// What a start of the desktop program asks for.
struct DesktopArguments {
    std::string CommandLine;  ///< as the documented switches are read from it
    std::string Home;   ///< folder for settings and music instead of the user's own; empty: the user's own
    bool Demo = false;  ///< record from the demo radio
    std::optional<RemoteButton> Press;  ///< of the program that runs already
};

/// `words` as they were given, without the program's name. What is not known stays in the command line, where
/// switches may stand anywhere.
DesktopArguments ReadDesktopArguments(const QStringList& words);

}  // namespace Corvetape
