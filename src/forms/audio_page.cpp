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
      fraVUMeter(form, "fraVUMeter"),
      picVUMeter(form, "picVUMeter"),
      vscMultiplier(form, "vscMultiplier", -1, 100, 1000),
      lblMultiplier(form, "lblMultiplier"),
      fraHistogram(form, "fraHistogram"),
      picHistogram(form, "picHistogram"),
      lblHistogram(form, "lblHistogram"),
      lblHistogramMin(form, "lblHistogramMin"),
      lblHistogramMax(form, "lblHistogramMax"),
      lblMaxBuffersUsed(form, "lblMaxBuffersUsed"),
      lblMaxBuffers(form, "lblMaxBuffers") {
    vscMultiplier.Step(10);
    cmbInputDevices.Wording("1040", "Record from this input device (soundcard)");
    chk48kHz.Wording("1041", "Use optical input at 48 kHz");
    cmdAutoInput.Wording("1042", "Automatic input search");
    cmdAGC.Wording("1043", "Automatic gain control");
    cmdOpenMixer.Wording("1044", "Open mixer settings");
    cmdSaveMixerSettings.Wording("1045", "Save mixer settings");
    cmdResetMixerSettings.Wording("1046", "Reset mixer settings");
    chkMixerAutoUpdate.Wording("1047", "Use saved mixer settings at start of Corvetape");
    fraVUMeter.Wording("1048", "Rec. level");
    vscMultiplier.TextKey("1049");
    fraHistogram.Wording("1050", "Recording level statistic for 10 seconds");
    lblHistogram[0].Wording("1051", "Minimum:");
    lblHistogram[1].Wording("1052", "Maximum:");
    lblMaxBuffersUsed.Wording("1053", "Max. # of recording buffers \xC3\xA1 50 msec used:");
}

}  // namespace Corvetape
