#pragma once

#include "core/controls/held.h"
#include "core/mouse_pointer.h"
#include "mixer/mixer_rescue.h"
#include "mixer/mixer_wait.h"
#include "platform/desktop.h"

namespace Corvetape {

/// What surrounds the dialogue of a search: one at a time, with the pointer of a wait, over at once when the
/// program ends, and with inputs that are then set again as they were.
class SearchGuard {
 public:
    /// All of them outlive it.
    SearchGuard(Desktop& desktop, MixerRescue& rescue, MixerWait& wait)
        : Screen(desktop), Rescue(rescue), Waits(wait) {}

    bool Running() const { return Searching; }

    /// A dialogue is under way for as long as the result lives.
    [[nodiscard]] Held Run() { return Held(Searching); }
    [[nodiscard]] clsMousePointer Busy() { return clsMousePointer(Screen); }

    /// A search is about to change the inputs.
    void KeepInputs() { Rescue.Keep(); }

    /// What the search has set stays.
    void AcceptInputs() { Rescue.Forget(); }

    /// False if the program has ended meanwhile: nothing more is to be done or shown.
    bool For(float milliseconds) { return Waits.For(milliseconds); }
    bool Ended() const { return Waits.Ended(); }

    /// The program ends.
    void End() {
        Waits.End();
        if (Searching) Rescue.PutBack();
    }

 private:
    Desktop& Screen;
    MixerRescue& Rescue;
    MixerWait& Waits;
    bool Searching = false;
};

}  // namespace Corvetape
