#pragma once

#include <cstdint>

#include "audio/signal_state.h"
#include "core/reporter.h"
#include "core/settings/settings.h"
#include "forms/frm_main.h"

namespace Corvetape {

/// Shows how many buffers had to wait, and reports a computer that was too busy to fetch them in time.
class BufferWatch {
 public:
    /// All of them outlive it. `maxBuffersUsed` is the mark of the capture, which is cleared here.
    BufferWatch(frmMain& form, const Settings& options, const SignalState& signal, int32_t& maxBuffersUsed,
                Reporter& say)
        : Form(form), Options(options), Signal(signal), MaxBuffersUsed(maxBuffersUsed), Say(say) {}

    /// Once a second.
    void Tick();

 private:
    frmMain& Form;
    const Settings& Options;
    const SignalState& Signal;
    int32_t& MaxBuffersUsed;
    Reporter& Say;
    uint64_t LostWhenReported = 0;  ///< frames
};

}  // namespace Corvetape
