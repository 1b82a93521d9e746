#pragma once

#include <map>
#include <optional>
#include <string>

#include "platform/folders.h"
#include "sim/sim_files.h"

namespace Corvetape {

/// The folders and the surroundings of a made-up user, whose home is /home/user. All of it can be changed
/// before and while it is used. Programs are found on the simulated disk.
class SimFolders : public Folders {
 public:
    explicit SimFolders(SimFiles& files);

    std::string ShellFolderPath(ShellFolder folder) override;
    std::string ProgramFolder() override { return Program; }
    std::optional<std::string> Environment(const std::string& name) override;
    bool SetEnvironment(const std::string& name, const std::string& value) override;
    std::optional<std::string> FindProgram(const std::string& name) override;

    std::map<ShellFolder, std::string> ShellFolders;  ///< one that is missing here does not exist
    std::string Program = "/opt/corvetape";
    std::map<std::string, std::string> Variables;
    bool RefuseVariables = false;  ///< SetEnvironment fails

 private:
    std::map<std::string, std::string>::iterator FindVariable(const std::string& name);

    SimFiles& Disk;
};

}  // namespace Corvetape
