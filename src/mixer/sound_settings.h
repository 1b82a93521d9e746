#pragma once

#include <string>

#include "core/controls/event.h"
#include "core/controls/messages.h"
#include "core/controls/open_forms.h"
#include "core/lifecycle_flags.h"
#include "forms/frm_main.h"
#include "mixer/search_guard.h"
#include "platform/dialogs.h"
#include "platform/processes.h"

namespace Corvetape {

/// What the sound settings are opened and explained with. All of it outlives them.
struct SoundSettingsParts {
    frmMain& Form;
    LifecycleFlags& Lifecycle;
    const OpenForms& Opened;  ///< the assistant is among them while it is open
    SearchGuard& Guard;
    Corvetape::Processes& Processes;
    Corvetape::Dialogs& Dialogs;
    const clsLocalizeControls& Texts;
};

/// The sound settings of the desktop, in which inputs are switched on.
class SoundSettings {
 public:
    explicit SoundSettings(SoundSettingsParts parts) : Parts(parts) {}
    SoundSettings(const SoundSettings&) = delete;
    SoundSettings& operator=(const SoundSettings&) = delete;

    /// Opens them at the page of the inputs: the first program for them that is there. A box says so if there
    /// is none.
    void Open();

    /// Asks whether they are to be opened. If so, the assistant explains them, and the window is disabled
    /// until it is closed.
    void Offer();

    /// The assistant is to open the page of this name.
    Event<const std::string&> SetUrl;

 private:
    SoundSettingsParts Parts;
};

}  // namespace Corvetape
