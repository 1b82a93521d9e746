#pragma once

#include "core/controls/messages.h"
#include "platform/dialogs.h"
#include "platform/processes.h"

namespace Corvetape {

/// Opens the sound settings of the desktop at the page of the inputs: the first program for them that is
/// there. A box says so if there is none.
void OpenSoundSettings(Processes& processes, Dialogs& boxes, const clsLocalizeControls& texts);

}  // namespace Corvetape
