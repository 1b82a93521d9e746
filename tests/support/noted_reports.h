#pragma once

#include <string>
#include <vector>

#include "core/controls/messages.h"
#include "core/lifecycle_flags.h"
#include "core/log.h"
#include "core/reporter.h"
#include "forms/frm_main.h"
#include "sim/sim_machine.h"

namespace Corvetape::Test {

/// A reporter with texts of its own, and notes of what it wrote into the log. What it shows is in the status
/// line of a form, and its boxes are those of the machine.
class NotedReports {
 public:
    /// `texts` are lines of a language file.
    NotedReports(SimMachine& machine, frmMain& form, const std::string& texts = "")
        : Texts(machine.Files, machine.Folders.Program, machine.Dialogs),
          Journal(machine.Files, machine.Clock, Options, Folders),
          Say(Journal, Texts, machine.Dialogs, Lifecycle, form.lblStatus[1]) {
        Options.LogToFile = false;
        machine.Files.Put(machine.Folders.Program + "/noted.lang", texts);
        Texts.Load("noted");
        Journal.Listener = [this](const std::string& kind, const std::string& text) {
            Lines.push_back(kind + " " + text);
        };
    }

    Settings Options;
    WorkingFolders Folders;
    LifecycleFlags Lifecycle;
    clsLocalizeControls Texts;
    Log Journal;
    Reporter Say;
    std::vector<std::string> Lines;  ///< of the log, each with its kind
};

}  // namespace Corvetape::Test
