#pragma once

#include <string>

namespace Corvetape {

class Folders;
class Placeholders;

/// The folder for all users that external tools may be in.
std::string CommonDataFolder(Folders& folders);

/// Where the two branches of the registry are kept.
std::string UserRegistryFile(Folders& folders);
std::string MachineRegistryFile(Folders& folders);

/// Puts `commonDataFolder` at the end of the search path of this process and of those that it starts, unless
/// the path holds that text already, ignoring case. Failures are ignored.
void ExtendSearchPath(Folders& folders, const Placeholders& placeholders,
                      const std::string& commonDataFolder);

}  // namespace Corvetape
