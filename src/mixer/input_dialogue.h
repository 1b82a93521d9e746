#pragma once

#include <string>

#include "core/controls/event.h"
#include "core/controls/messages.h"
#include "forms/frm_main.h"
#include "mixer/gain_dialogue.h"
#include "mixer/input_list.h"
#include "mixer/input_search.h"
#include "mixer/search_guard.h"
#include "platform/dialogs.h"
#include "platform/system_info.h"

namespace Corvetape {

/// What the dialogue works with. All of it outlives it.
struct InputDialogueParts {
    frmMain& Form;
    InputList& Inputs;
    InputSearch& Search;
    GainDialogue& Gain;  ///< offered when an input was found
    SearchGuard& Guard;
    Corvetape::Dialogs& Dialogs;
    const clsLocalizeControls& Texts;
};

/// Asks for the search for the input, runs it, and shows what it has found.
class InputDialogue {
 public:
    /// `version` is that of the machine.
    InputDialogue(InputDialogueParts parts, const SystemVersion& version);
    InputDialogue(const InputDialogue&) = delete;
    InputDialogue& operator=(const InputDialogue&) = delete;

    /// False if the window is to stay disabled: without any input there is nothing to do in it.
    bool Run();

    /// The program ends. A search that is under way gives up.
    void End() { Parts.Search.End(); }

    /// Inputs are about to be opened that nobody wants to record from, and: the chosen one is open again.
    Event<> SearchBegins;
    Event<> SearchEnds;

 private:
    void Search();
    void ReportFound(const std::string& name);

    InputDialogueParts Parts;
    bool OneDeviceEach;  ///< each input is a device of its own
};

}  // namespace Corvetape
