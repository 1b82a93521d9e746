#pragma once

#include "core/control_array.h"
#include "forms/audio_page.h"
#include "forms/encoder_page.h"
#include "forms/log_page.h"
#include "forms/option_pages.h"
#include "forms/pause_page.h"
#include "forms/recording_page.h"
#include "forms/watch_page.h"

namespace Corvetape {

/// The main window as a value: its tab pages, its status line and its timers. It has no logic of its own;
/// handlers live with their subject.
struct frmMain : Form,
                 RecordingPage,
                 AudioPage,
                 PausePage,
                 EncoderPage,
                 Options1Page,
                 Options2Page,
                 FoldersPage,
                 LogPage,
                 WatchPage {
    frmMain();

    TabStrip tbsMain;
    ControlArray<Label, 4> lblStatus;  ///< 1 and 3 form the status line
    Label lblVersion;
    CheckBox chkQuickButtons;

    TimerControl tmr1Second;       ///< 500 ms; acts once per whole clock second
    TimerControl tmrGetMediaData;  ///< 500 ms, with end of song by media data
    TimerControl tmrEncodeFile;    ///< armed by the close of a kept song
    TimerControl tmrVU;            ///< 200 ms, while the level display is seen
    TimerControl tmrMsgBox;        ///< 1000 ms, for one message
};

}  // namespace Corvetape
