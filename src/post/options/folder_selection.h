#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include "core/settings/settings.h"

namespace Corvetape {

class clsLocalizeControls;
class Dialogs;
class Files;
class SettingsStore;
struct frmMain;

/// Where a chosen folder goes in memory. The parts outlive it.
struct FolderTargets {
    Settings& Values;
    WorkingFolders& Folders;
};

/// Lets the user choose the three working folders with cmdGetDir: 0 temporary, 1 music, 2 log. The folder of
/// the temporary songs follows at the next start.
class FolderSelection {
 public:
    /// All of them must outlive it. Connects to the controls.
    FolderSelection(frmMain& form, FolderTargets targets, SettingsStore& store, Files& files,
                    Dialogs& dialogs, const clsLocalizeControls& messages);
    FolderSelection(const FolderSelection&) = delete;
    FolderSelection& operator=(const FolderSelection&) = delete;

    /// Another folder of the logs was chosen; the one before.
    std::function<void(const std::string& before)> LogFolderChanged;

    /// Asks until the folder that is set exists. frmMain is disabled meanwhile.
    void GetDir(size_t index);

 private:
    void Ask(size_t index);
    bool IsRefused(size_t index, const std::string& folder);
    void Take(size_t index, const std::string& folder);

    frmMain& Form;
    FolderTargets Targets;
    SettingsStore& Store;
    Files& Disk;
    Dialogs& Boxes;
    const clsLocalizeControls& Messages;
};

}  // namespace Corvetape
