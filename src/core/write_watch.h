#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#include "core/log.h"
#include "core/reporter.h"
#include "core/settings/settings_store.h"

namespace Corvetape {

/// Settings and log lines are written as things happen, in the middle of whatever it is; that they are lost
/// is reported afterwards, once each.
class WriteWatch {
 public:
    /// All of them outlive it.
    WriteWatch(const SettingsStore& store, const Log& log, const WorkingFolders& folders, Reporter& say)
        : Store(store), Journal(log), Folders(folders), Say(say) {}

    /// Called every second.
    void Look();

 private:
    void Report(std::string_view key, std::initializer_list<std::string> arguments);

    const SettingsStore& Store;
    const Log& Journal;
    const WorkingFolders& Folders;
    Reporter& Say;
    bool SettingsReported = false;
    bool LogReported = false;
};

}  // namespace Corvetape
