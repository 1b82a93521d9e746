#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace Corvetape {

/// Numbers of the shell folders that the program asks for.
enum class ShellFolder : int32_t {
    MyDocuments = 5,
    MyMusic = 13,
    MyVideo = 14,
    AppData = 26,
    CommonAppData = 35,
    MyPictures = 39,
};

class Folders {
 public:
    virtual ~Folders() = default;

    /// Path of a shell folder without a trailing separator; empty if there is none. It is created if
    /// missing, as far as the system allows.
    virtual std::string ShellFolderPath(ShellFolder folder) = 0;

    /// The folder that the program and its data files are in.
    virtual std::string ProgramFolder() = 0;

    /// An environment variable of this process. The name is compared exactly, then ignoring case; "Temp",
    /// "Tmp" and "UserProfile" have values on every machine.
    virtual std::optional<std::string> Environment(const std::string& name) = 0;

    /// Sets a variable for this process and those that it starts.
    virtual bool SetEnvironment(const std::string& name, const std::string& value) = 0;

    /// Where the named program would be started from by name, searched in the order of the search path.
    virtual std::optional<std::string> FindProgram(const std::string& name) = 0;

    /// Text between two folders of the search path.
    virtual char SearchPathSeparator() const { return ':'; }
};

}  // namespace Corvetape
