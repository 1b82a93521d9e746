#pragma once

#include <string>
#include <string_view>

#include "audio/pause_settings.h"
#include "audio/recording_flags.h"
#include "core/controls/messages.h"
#include "core/lifecycle_flags.h"
#include "core/log.h"
#include "core/media_state.h"
#include "core/reporter.h"
#include "core/settings/profile.h"
#include "core/settings/registry.h"
#include "core/settings/settings.h"
#include "core/settings/settings_store.h"
#include "core/text/placeholders.h"
#include "forms/frm_main.h"
#include "sim/sim_machine.h"

namespace Corvetape::Testing {

/// A simulated machine with the state that the rooms above the platform share, and no logic attached.
struct PostBench {
    PostBench();

    /// A key as the settings file holds it now; "(none)" if it does not.
    std::string Stored(std::string_view section, std::string_view key);
    std::string StoredOption(std::string_view key) { return Stored("Options", key); }

    /// Lines of today's log without their times.
    std::string LogLines();

    /// Loads the settings into the form, as the start of the program does.
    void LoadSettings();

    /// The message of a key in the language of the bench.
    static std::string Text(std::string_view key) { return "text " + std::string(key); }

    SimMachine Sim;
    RegistryBranches Registry;
    Placeholders Expansion;
    SettingsStore Store;
    Settings Options;
    WorkingFolders Folders;
    MediaState Media;
    PauseSettings Pause;
    RecordingFlags Flags;
    LifecycleFlags Lifecycle;
    Log Journal;
    clsLocalizeControls Messages;
    frmMain Form;
    Reporter Say;
};

}  // namespace Corvetape::Testing
