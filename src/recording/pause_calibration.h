#pragma once

#include "audio/pause_settings.h"
#include "core/controls/messages.h"
#include "forms/frm_main.h"
#include "platform/dialogs.h"

namespace Corvetape {

/// Sets the levels of the pause recognition by what the level statistic shows, by cmdAutoPauseParams.
class PauseCalibration {
 public:
    /// Attaches itself to the control. All of them outlive it.
    PauseCalibration(frmMain& form, PauseSettings& pause, Dialogs& boxes, const clsLocalizeControls& texts);

 private:
    void OptimizePauseRecognition();

    frmMain& Form;
    PauseSettings& Pause;
    Dialogs& Boxes;
    const clsLocalizeControls& Texts;
};

}  // namespace Corvetape
