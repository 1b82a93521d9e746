#pragma once

#include "core/settings/settings_store.h"
#include "forms/frm_main.h"
#include "media/provider.h"
#include "media/provider_choice.h"

namespace Corvetape {

/// Switches the media data on and off, by chkStationDataEnable.
class SourceSwitch {
 public:
    /// Attaches itself to the control. All of them outlive it.
    SourceSwitch(frmMain& form, ProviderHost& host, ProviderChoice& choice, SettingsStore& store);

    /// What a click does. Media data come in, or not, as the box says, and with them the recording goes on or
    /// off.
    void Apply();

 private:
    frmMain& Form;
    ProviderHost& Host;
    ProviderChoice& Choice;
    SettingsStore& Store;
};

}  // namespace Corvetape
