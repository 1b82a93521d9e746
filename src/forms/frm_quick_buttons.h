#pragma once

#include "core/controls/form.h"
#include "core/controls/form_parts.h"

namespace Corvetape {

/// The plain floating bar: the commands of the recording page in a small window.
struct frmQuickButtons : Form {
    frmQuickButtons();

    Panel picButtons;  ///< its size is that of the window
    CommandButton cmdSwitchDesign;
    CommandButton cmdMinMax;
    CommandButton cmdQuickRecord;
    CommandButton cmdSkipThisRecording;
    CommandButton cmdStartStop;  ///< its tag plus the value of chkStartStop(0) is the key of its caption
    Picture picStart;
    Picture picStop;
    Picture picSkip;
    Picture Picture1;  ///< artwork
};

}  // namespace Corvetape
