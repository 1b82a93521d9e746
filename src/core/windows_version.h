#pragma once

#include <string>
#include <string_view>

#include "platform/system_info.h"

namespace Corvetape {

/// Platform 2 of the version record.
bool IsWindowsNT(const SystemVersion& version);

/// Major version 6 of it.
bool IsWindowsVista(const SystemVersion& version);

/// Two letters for the system, major version, minor version and the low 16 bits of the build, joined by
/// `separator`. The letters are empty for an unknown version, the whole text for an unknown platform.
std::string WindowsTag(const SystemVersion& version, std::string_view separator);

}  // namespace Corvetape
