#pragma once

#include "core/controls/control_array.h"
#include "core/controls/form.h"
#include "core/controls/form_parts.h"

namespace Corvetape {

/// The assistant: pages of help and of step-by-step set-up.
struct frmWizard : Form {
    frmWizard();

    Panel picTop;                            ///< the tool bar
    ControlArray<CommandButton, 2> cmdMove;  ///< 0 back, 1 forward
    ControlArray<Picture, 4> imgMove;  ///< their pictures: back disabled, enabled, forward disabled, enabled
    CommandButton cmdOnOffline;        ///< without function
    CommandButton cmdWizard;
    CommandButton cmdPrint;
    Panel picTopRight;
    TextBox txtSearch;
    CommandButton cmdSearch;
    BrowserView objWebBrowser1;  ///< the page on show
    BrowserView objWebBrowser2;  ///< never seen: fetches the online list
    Control objScriptControl;    ///< never seen: runs the scripts of updates
    TimerControl tmrUnload;      ///< closes the window after an update reply
};

}  // namespace Corvetape
