#pragma once

#include "core/controls/control_array.h"
#include "forms/about_page.h"
#include "forms/audio_page.h"
#include "forms/encoder_page.h"
#include "forms/log_page.h"
#include "forms/option_pages.h"
#include "forms/pause_page.h"
#include "forms/recording_page.h"
#include "forms/tray_menu.h"
#include "forms/watch_page.h"

namespace Corvetape {

/// The main window as a value: its tab pages, its status line and its timers. It shows the panel of the
/// selected tab and has no other logic of its own; handlers live with their subject.
struct frmMain : Form,
                 RecordingPage,
                 AudioPage,
                 PausePage,
                 EncoderPage,
                 Options1Page,
                 Options2Page,
                 FoldersPage,
                 LogPage,
                 WatchPage,
                 AboutPage,
                 TrayMenu {
    frmMain();

    TabStrip tbsMain;

    /// The panels of the tabs. A panel belongs to the tab of its tag; its index has no meaning.
    SparseControlArray<Panel, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11> picOptions;
    ControlArray<Label, 4> lblStatus;  ///< 1 and 3 form the status line
    Label lblGetWidth;                 ///< never seen: the widest text of lblStatus(3), to measure it
    CheckBox chkQuickButtons;          ///< 0 shows the floating bar, 1 hides it

    TimerControl tmr1Second;       ///< 500 ms; acts once per whole clock second
    TimerControl tmrGetMediaData;  ///< 500 ms, with end of song by media data
    TimerControl tmrEncodeFile;    ///< armed by the close of a kept song
    TimerControl tmrVU;            ///< 200 ms, while the level display is seen
    TimerControl tmrMsgBox;        ///< 1000 ms, for one message

 private:
    void AddTabs();
    void AddMethods();
    void ShowSelectedPanel();
};

}  // namespace Corvetape
