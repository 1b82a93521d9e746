#include "mixer/mixer_page.h"

#include "core/controls/held.h"
#include "core/controls/message_texts.h"
#include "core/mouse_pointer.h"
#include "core/windows_version.h"
#include "mixer/sound_settings.h"

namespace Corvetape {

namespace {

constexpr float AssistantStepMs = 200;
constexpr const char* AssistantName = "frmWizard";

}  // namespace

MixerPage::MixerPage(MixerPageParts parts, MixerTools tools, const SystemVersion& version)
    : Parts(parts), Tools(tools), OneDeviceEach(IsWindowsVista(version)) {
    frmMain& form = Parts.Form;
    form.cmdAutoInput.Click.Connect([this] { AutoInputClicked(); });
    form.cmdAGC.Click.Connect([this] { AutoGainClicked(); });
    form.cmdOpenMixer.Click.Connect(
        [this] { OpenSoundSettings(Parts.Processes, Parts.Dialogs, Parts.Texts); });
    form.cmdSaveMixerSettings.Click.Connect([this] { Tools.Mixers.MixerAction(MixerMode::Save); });
    form.cmdResetMixerSettings.Click.Connect([this] {
        Tools.Mixers.MixerAction(MixerMode::Restore);
        Tools.Mixers.MixerAction(MixerMode::Forget);
    });
}

void MixerPage::End() {
    Tools.Wait.End();
    Tools.Search.End();
    if (Searching) Tools.Rescue.PutBack();
}

void MixerPage::AutoInputClicked() {
    if (Searching) return;  // somebody has pressed it from elsewhere than the window
    const Held searching(Searching);
    if (OneDeviceEach) OfferSoundSettings();
    Parts.Form.Enabled(false);
    if (AskAndSearch()) Parts.Form.Enabled(true);
}

void MixerPage::OfferSoundSettings() {
    if (!Parts.Dialogs.AskNoYes(Parts.Texts.FormatMsg(Message::OpenSoundSettings.Key),
                                DialogIcon::Information))
        return;
    bool& requested = Parts.Lifecycle.WizardRequested;
    requested = true;
    SetUrl.Raise("vista.htm");
    Parts.Form.Enabled(false);
    OpenSoundSettings(Parts.Processes, Parts.Dialogs, Parts.Texts);
    // Closing the assistant clears the flag. Where none opens, the next question is what waits for the user.
    while (requested && Parts.Opened.Find(AssistantName) != nullptr) {
        if (!Tools.Wait.For(AssistantStepMs)) return;
    }
    requested = false;
}

/// False if the window is to stay disabled: without any input there is nothing to do in it.
bool MixerPage::AskAndSearch() {
    if (Tools.Wait.Ended()) return true;
    if (!Parts.Dialogs.AskOkCancel(Parts.Texts.FormatMsg(Message::InputSearchBegins.Key),
                                   DialogIcon::Question))
        return true;
    if (Tools.Wait.Ended()) return true;
    SearchBegins.Raise();
    if (!Tools.Inputs.FillInputDevices()) {
        SearchEnds.Raise();
        return false;
    }
    if (Tools.Wait.Ended()) return true;  // at the box that reports changed inputs
    const clsMousePointer busy(Parts.Desktop);
    Search();
    return true;
}

void MixerPage::Search() {
    Tools.Rescue.Keep();
    const std::string name =
        OneDeviceEach ? Tools.Search.SearchInputDevice() : Tools.Search.SearchInputLine();
    if (Tools.Wait.Ended()) return;
    Tools.Rescue.Forget();
    if (name.empty()) {
        SearchEnds.Raise();
        Parts.Dialogs.ShowMessage(Parts.Texts.FormatMsg(Message::InputSearchFailed.Key),
                                  DialogIcon::Exclamation);
        return;
    }
    // The number of the device is taken for its place in the list, which leaves none out.
    if (OneDeviceEach) Parts.Form.cmbInputDevices.Select(Tools.Inputs.WaveInDeviceId());
    if (Tools.Wait.Ended()) return;
    SearchEnds.Raise();
    TellFound(name);
}

void MixerPage::TellFound(const std::string& name) {
    const std::string text = Parts.Texts.FormatMsg(Message::InputFound.Key, {name});
    const bool adjust = Parts.Dialogs.AskYesNo(text, DialogIcon::Information);
    if (adjust && !Tools.Wait.Ended()) AskAndFindGain();
}

void MixerPage::AutoGainClicked() {
    if (Searching) return;
    const Held searching(Searching);
    Parts.Form.Enabled(false);
    AskAndFindGain();
    Parts.Form.Enabled(true);
}

void MixerPage::AskAndFindGain() {
    if (!Parts.Dialogs.AskOkCancel(Parts.Texts.FormatMsg(Message::LevelSearchBegins.Key),
                                   DialogIcon::Question))
        return;
    if (Tools.Wait.Ended()) return;
    const clsMousePointer busy(Parts.Desktop);
    const int32_t before = Parts.Pause.LevelMultiplier;
    Tools.Rescue.Keep();
    const bool reached = Tools.Gain.AutoGainLine();
    if (Tools.Wait.Ended()) {
        Parts.Pause.LevelMultiplier = before;
        return;
    }
    Tools.Rescue.Forget();
    Parts.Form.vscMultiplier.Value(Parts.Pause.LevelMultiplier);
    const bool save = Parts.Dialogs.AskYesNo(
        Parts.Texts.FormatMsg(reached ? Message::LevelFound.Key : Message::LevelNotFound.Key),
        reached ? DialogIcon::Information : DialogIcon::Exclamation);
    if (save && !Tools.Wait.Ended()) Tools.Mixers.MixerAction(MixerMode::Save);
}

}  // namespace Corvetape
