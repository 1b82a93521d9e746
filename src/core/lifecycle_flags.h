#pragma once

#include <cstdint>

namespace Corvetape {

/// Flags of the program's run, set by switches and by the assistant, and its age.
struct LifecycleFlags {
    bool UpdateStart = false;      ///< started to update: a second instance is allowed
    bool DontAsk = false;          ///< unattended: boxes stay away, their log lines are written all the same
    bool WizardRequested = false;  ///< the assistant is to be opened, or is open
    int32_t Ticks = 0;             ///< runs of the tick each second, since the start
};

}  // namespace Corvetape
