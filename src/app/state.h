#pragma once

#include <vector>

#include "audio/audio_ring.h"
#include "audio/cut_state.h"
#include "audio/pause_settings.h"
#include "audio/recording_flags.h"
#include "audio/signal_state.h"
#include "core/controls/open_forms.h"
#include "core/deferred_messages.h"
#include "core/lifecycle_flags.h"
#include "core/media_state.h"
#include "core/settings/settings.h"
#include "forms/frm_cover_buttons.h"
#include "forms/frm_main.h"
#include "forms/frm_quick_buttons.h"

namespace Corvetape {

/// Everything that the running program remembers, by owner. Made once for each program; whoever needs a
/// part is handed that part.
struct State {
    frmMain Form;
    frmQuickButtons PlainBar;
    frmCoverButtons CoverBar;
    OpenForms Opened;                  ///< the forms that pages can reach
    std::vector<Connection> KeptOpen;  ///< those of Opened that are open as long as the program runs
    Settings Options;
    WorkingFolders Folders;
    LifecycleFlags Lifecycle;
    RecordingFlags Flags;
    CutState Cut;
    SignalState Signal;
    PauseSettings Pause;
    MediaState Media;
    AudioRing Ring;
    DeferredMessages Messages;
};

}  // namespace Corvetape
