#pragma once

#include "audio/recording_flags.h"
#include "core/controls/messages.h"
#include "core/settings/settings_store.h"
#include "forms/frm_main.h"
#include "platform/dialogs.h"

namespace Corvetape {

/// The recording for a number of minutes, by txtRecordingPeriod and chkStopRecording(1).
class Countdown {
 public:
    /// Attaches itself to the controls. All of them outlive it.
    Countdown(frmMain& form, RecordingFlags& flags, Settings& settings, SettingsStore& store, Dialogs& boxes,
              const clsLocalizeControls& texts);

    /// Once a second: while a song is kept its second counts. With the last one the recording ends with its
    /// song, as if chkStopRecording(0) had been clicked.
    void Tick();

 private:
    void Switched();
    bool PeriodRefused();

    frmMain& Form;
    RecordingFlags& Flags;
    Settings& Options;
    SettingsStore& Store;
    Dialogs& Boxes;
    const clsLocalizeControls& Texts;
};

}  // namespace Corvetape
