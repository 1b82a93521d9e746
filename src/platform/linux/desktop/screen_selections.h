#pragma once

#include <string>

namespace Corvetape {

/// True if a program has the selection `name` of the screen that this session uses, "_S" and its number left
/// out: by such a selection a program says that it does a job of which there is one on each screen. False
/// without an X display.
bool IsScreenSelectionOwned(const std::string& name);

}  // namespace Corvetape
