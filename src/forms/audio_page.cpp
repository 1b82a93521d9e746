#include "forms/audio_page.h"

namespace Corvetape {

AudioPage::AudioPage(Form& form)
    : cmbInputDevices(form, "cmbInputDevices"),
      chk48kHz(form, "chk48kHz"),
      cmdAutoInput(form, "cmdAutoInput"),
      cmdAGC(form, "cmdAGC"),
      cmdOpenMixer(form, "cmdOpenMixer"),
      cmdSaveMixerSettings(form, "cmdSaveMixerSettings"),
      cmdResetMixerSettings(form, "cmdResetMixerSettings"),
      chkMixerAutoUpdate(form, "chkMixerAutoUpdate"),
      vscMultiplier(form, "vscMultiplier", -1, 100, 1000),
      lblMultiplier(form, "lblMultiplier"),
      lblHistogramMin(form, "lblHistogramMin"),
      lblHistogramMax(form, "lblHistogramMax"),
      lblMaxBuffers(form, "lblMaxBuffers") {
    vscMultiplier.Step(10);
    cmbInputDevices.Caption("Record from this input device (soundcard)");
    chk48kHz.Caption("Use optical input at 48 kHz");
    cmdAutoInput.Caption("Automatic input search");
    cmdAGC.Caption("Automatic gain control");
    cmdOpenMixer.Caption("Open mixer settings");
    cmdSaveMixerSettings.Caption("Save mixer settings");
    cmdResetMixerSettings.Caption("Reset mixer settings");
    chkMixerAutoUpdate.Caption("Use saved mixer settings at start of Corvetape");
}

}  // namespace Corvetape
