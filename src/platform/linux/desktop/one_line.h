#pragma once

#include <string>
#include <string_view>

namespace Corvetape {

/// A text as one line for a terminal: each run of control characters, line ends among them, becomes one
/// blank, at the ends nothing. Titles come from strangers and must not steer a terminal.
std::string OneLine(std::string_view text);

}  // namespace Corvetape
