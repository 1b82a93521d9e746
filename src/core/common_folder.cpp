#include "core/common_folder.h"

#include "core/text/placeholders.h"
#include "core/text/text.h"
#include "core/version.h"
#include "platform/folders.h"

namespace Corvetape {

namespace {

constexpr const char* RegistryFileName = "/registry.ini";

}  // namespace

std::string CommonDataFolder(Folders& folders) {
    return folders.ShellFolderPath(ShellFolder::CommonAppData) + "/" + ProgramShortName;
}

std::string UserRegistryFile(Folders& folders) {
    return folders.ShellFolderPath(ShellFolder::AppData) + "/" + ProgramShortName + RegistryFileName;
}

std::string MachineRegistryFile(Folders& folders) {
    return CommonDataFolder(folders) + RegistryFileName;
}

void ExtendSearchPath(Folders& folders, const Placeholders& placeholders,
                      const std::string& commonDataFolder) {
    const std::string path = placeholders.ExpandPlaceholders("%Path%");
    if (FindIgnoringCase(path, commonDataFolder) != std::string::npos) return;
    const bool missing = EqualIgnoringCase(path, "%Path%");
    const std::string extended =
        missing ? commonDataFolder : path + folders.SearchPathSeparator() + commonDataFolder;
    folders.SetEnvironment("PATH", extended);  // without it tools are still found beside the program
}

}  // namespace Corvetape
