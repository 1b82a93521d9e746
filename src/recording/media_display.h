#pragma once

#include "audio/recording_flags.h"
#include "core/media_state.h"
#include "core/reporter.h"
#include "forms/frm_cover_buttons.h"
#include "forms/frm_main.h"
#include "forms/frm_quick_buttons.h"
#include "platform/desktop.h"

namespace Corvetape {

/// Where the piece that plays is shown, and what is known of it. All of it outlives the display.
struct MediaDisplayParts {
    frmMain& Form;
    frmQuickButtons& PlainBar;
    frmCoverButtons& CoverBar;
    const MediaState& Media;
    const RecordingFlags& Flags;
    Desktop& Screen;
};

/// What is shown of the piece that plays: texts and caption of the window, texts of the bars, tip and state
/// of the tray icon.
class MediaDisplay {
 public:
    /// `say` outlives it.
    MediaDisplay(MediaDisplayParts parts, const Reporter& say) : Parts(parts), Say(say) {}

    // Each once a second.
    void ShowProvider();
    void ShowMedia();
    void ShowState();

 private:
    void ShowNoMedia();
    void ShowMediaTexts();

    MediaDisplayParts Parts;
    const Reporter& Say;
    TrayState Shown = TrayState::Idle;
};

}  // namespace Corvetape
