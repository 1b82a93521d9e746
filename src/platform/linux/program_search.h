#pragma once

#include <optional>
#include <string>

namespace Corvetape {

/// Where a program of this name would be started from. Only absolute folders of the search path count: a
/// file that happens to lie in the present folder is not meant. A name with a folder is taken as it is.
std::optional<std::string> SearchProgram(const std::string& name);

}  // namespace Corvetape
