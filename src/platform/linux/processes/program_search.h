#pragma once

#include <optional>
#include <string>

namespace Corvetape {

/// The search path of a process that was started without one.
inline constexpr const char* UsualSearchPath = "/usr/local/bin:/usr/bin:/bin";

/// Where a program of this name would be started from. Only absolute folders of the search path count: a
/// file that happens to be in the present folder is not meant. A name with a folder is taken as it is.
std::optional<std::string> SearchProgram(const std::string& name);

}  // namespace Corvetape
