#pragma once

#include "core/controls/event.h"
#include "core/controls/messages.h"
#include "forms/frm_cover_buttons.h"
#include "forms/frm_main.h"
#include "forms/frm_quick_buttons.h"

namespace Corvetape {

/// What the buttons of the recording show in the main window and on both bars: a start button says "Stop"
/// and shows the other picture while the current song is recorded, a skip button follows the main window's.
class RecordingLook {
 public:
    /// All of it outlives this object.
    RecordingLook(frmMain& form, frmQuickButtons& quick, frmCoverButtons& cover,
                  const clsLocalizeControls& texts);

    /// Brings the start buttons into line with chkStartStop(0). A caption without a text in the language file
    /// stays as it is.
    void ShowRecording();

 private:
    void ShowSkip();
    void ShowCaption(CommandButton& button);

    frmMain& Form;
    frmQuickButtons& Quick;
    frmCoverButtons& Cover;
    const clsLocalizeControls& Texts;
    Connection SkipChanged;
};

}  // namespace Corvetape
