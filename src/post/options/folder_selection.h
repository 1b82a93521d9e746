#pragma once

#include <cstddef>
#include <string>

#include "core/settings/settings.h"
#include "platform/machine.h"

namespace Corvetape {

class clsLocalizeControls;
class SettingsStore;
class WatchPages;
struct frmMain;

/// Where a chosen folder goes in memory. The parts outlive it.
struct FolderTargets {
    Settings& Values;
    WorkingFolders& Folders;
};

/// Lets the user choose the three working folders with cmdGetDir, or by typing: 0 temporary, 1 music, 2 log.
/// The watch lists follow to the folder of the log at once, the temporary songs at the next start.
class FolderSelection {
 public:
    /// All of them must outlive it. Connects to the controls.
    FolderSelection(frmMain& form, FolderTargets targets, SettingsStore& store, const Machine& machine,
                    const clsLocalizeControls& messages, WatchPages& lists);
    FolderSelection(const FolderSelection&) = delete;
    FolderSelection& operator=(const FolderSelection&) = delete;

    /// Asks until the folder that is set exists. frmMain is disabled meanwhile.
    void GetDir(size_t index);

 private:
    void Ask(size_t index);
    bool TypedRefused(size_t index);
    bool IsRefused(size_t index, const std::string& folder);
    void Take(size_t index, const std::string& folder);

    frmMain& Form;
    FolderTargets Targets;
    SettingsStore& Store;
    Files& Disk;
    Dialogs& Boxes;
    const clsLocalizeControls& Messages;
    WatchPages& Lists;
};

}  // namespace Corvetape
