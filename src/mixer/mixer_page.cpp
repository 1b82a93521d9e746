#include "mixer/mixer_page.h"

#include "core/windows_version.h"

namespace Corvetape {

MixerPage::MixerPage(MixerPageParts parts, const SystemVersion& version)
    : Parts(parts), OffersSettings(IsWindowsVista(version)) {
    frmMain& form = Parts.Form;
    form.cmdAutoInput.Click.Connect([this] { AutoInputClicked(); });
    form.cmdAGC.Click.Connect([this] { AutoGainClicked(); });
    form.cmdOpenMixer.Click.Connect([this] { Parts.Settings.Open(); });
    form.cmdSaveMixerSettings.Click.Connect([this] { Parts.Mixers.MixerAction(MixerMode::Save); });
    form.cmdResetMixerSettings.Click.Connect([this] {
        Parts.Mixers.MixerAction(MixerMode::Restore);
        Parts.Mixers.MixerAction(MixerMode::Forget);
    });
}

void MixerPage::End() {
    Parts.Guard.End();
    Parts.Input.End();
}

void MixerPage::AutoInputClicked() {
    if (Parts.Guard.Running()) return;  // somebody has pressed it from elsewhere than the window
    const Held running = Parts.Guard.Run();
    if (OffersSettings) Parts.Settings.Offer();
    Parts.Form.Enabled(false);
    if (Parts.Input.Run()) Parts.Form.Enabled(true);
}

void MixerPage::AutoGainClicked() {
    if (Parts.Guard.Running()) return;
    const Held running = Parts.Guard.Run();
    Parts.Form.Enabled(false);
    Parts.Gain.Run();
    Parts.Form.Enabled(true);
}

}  // namespace Corvetape
