#include "recording/radio_restart.h"

namespace Corvetape {

bool RadioRestart::RestartIfDue(int32_t silentSeconds) {
    // A hand-edited interval of 0 would divide by zero; every second is then due.
    const int32_t interval = Parts.Options.InfoAfterSilence;
    const bool due = interval <= 0 || silentSeconds % interval == 0;
    const bool wanted = Parts.Flags.RecordNextSong || Parts.Flags.RecordCurrentSong;
    if (!due || !wanted || !Parts.Options.RestartRadioIfSilent || Parts.Lifecycle.WizardRequested ||
        !Parts.Media.StationDataEnabled) {
        return false;
    }
    Parts.Providers.RestartRadio();
    return true;
}

}  // namespace Corvetape
