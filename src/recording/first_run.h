#pragma once

#include "audio/signal_state.h"
#include "core/lifecycle_flags.h"
#include "core/program_requests.h"
#include "core/settings/settings.h"
#include "forms/frm_main.h"
#include "mixer/input_list.h"
#include "platform/machine.h"

namespace Corvetape {

/// What the first seconds work on. All of it outlives them.
struct FirstRunParts {
    frmMain& Form;
    LifecycleFlags& Lifecycle;
    SignalState& Signal;
    const Settings& Options;
    const WorkingFolders& Folders;
    InputList& Inputs;
};

/// What follows the start of the program in its second second, when the window is there: the input is opened,
/// and a new user is shown the first page.
class FirstRun {
 public:
    /// The machine's parts outlive it.
    FirstRun(FirstRunParts parts, const Machine& machine, ProgramRequests& requests)
        : Parts(parts), Computer(machine), Requests(requests) {}

    /// Once a second. False if there is no input at all, so that the program has to end.
    bool Tick();

 private:
    void OpenPages();

    FirstRunParts Parts;
    Machine Computer;
    ProgramRequests& Requests;
};

}  // namespace Corvetape
