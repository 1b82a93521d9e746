#pragma once

namespace Corvetape {

/// Flags of the program's run, set by switches and by the assistant.
struct LifecycleFlags {
    bool UpdateStart = false;      ///< started to update: a second instance is allowed
    bool DontAsk = false;          ///< unattended: boxes stay away, their log lines are written all the same
    bool WizardRequested = false;  ///< the assistant is to be opened, or is open
};

}  // namespace Corvetape
