#pragma once

#include <map>

#include "platform/folders.h"

namespace Corvetape {

/// The folders of this user as the desktop's conventions name them.
///
/// With a home folder given, every folder is below it and neither the user's own folders nor the
/// variables that name them are looked at: config, cache, share, Documents, Music, Videos, Pictures.
class LinuxFolders : public Folders {
 public:
    /// Folders of the user who runs the program.
    LinuxFolders();

    /// Every folder below `home`, which is created if missing.
    explicit LinuxFolders(const std::string& home);

    /// AppData is the user's configuration folder; CommonAppData is /usr/local/share; the others come from
    /// user-dirs.dirs, or have their usual English names in the user's home.
    std::string ShellFolderPath(ShellFolder folder) override;

    std::string ProgramFolder() override;

    /// "Temp" and "Tmp", if nobody has set them, are the user's cache folder: temporary songs are large,
    /// and the system's temporary folder may be in memory. "UserProfile" is the user's home.
    std::optional<std::string> Environment(const std::string& name) override;

    /// Sets the variable that Environment would find by the name.
    bool SetEnvironment(const std::string& name, const std::string& value) override;

    /// Looks at absolute folders of the search path only. A name with a folder is taken as it is.
    std::optional<std::string> FindProgram(const std::string& name) override;

 private:
    std::string UserFolder(ShellFolder folder) const;
    std::string CacheFolder() const;

    std::string Home;
    bool OwnHome;                              // all below a given folder
    std::map<std::string, std::string> Fixed;  // variables that the given folder decides, in lower case
};

}  // namespace Corvetape
