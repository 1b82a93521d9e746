#include "mixer/sound_settings.h"

#include <algorithm>
#include <array>

#include "core/controls/message_texts.h"

namespace Corvetape {

namespace {

/// A program with sound settings, and how it is asked for the inputs.
struct SettingsProgram {
    const char* Name;
    const char* Parameters;
};

/// In the order of preference: those that show every input with its level come first.
constexpr auto SettingsPrograms = std::to_array<SettingsProgram>({
    {"pavucontrol", "--tab=4"},
    {"pavucontrol-qt", "--tab 4"},
    {"gnome-control-center", "sound"},
    {"systemsettings", "kcm_pulseaudio"},
    {"systemsettings5", "kcm_pulseaudio"},
    {"kcmshell5", "kcm_pulseaudio"},
    {"cinnamon-settings", "sound"},
    {"mate-volume-control", ""},
    {"unity-control-center", "sound"},
});

/// What ShellOpen gives from here on means that the program runs.
constexpr int32_t LastFailure = 32;

constexpr float AssistantStepMs = 200;
constexpr const char* AssistantName = "frmWizard";

}  // namespace

void SoundSettings::Open() {
    const bool opened = std::ranges::any_of(SettingsPrograms, [&](const SettingsProgram& each) {
        return Parts.Processes.ShellOpen(each.Name, each.Parameters, "") > LastFailure;
    });
    if (opened) return;
    Parts.Dialogs.ShowMessage(Parts.Texts.FormatMsg(Message::NoSoundSettings.Key), DialogIcon::Exclamation);
}

void SoundSettings::Offer() {
    if (!Parts.Dialogs.AskNoYes(Parts.Texts.FormatMsg(Message::OpenSoundSettings.Key),
                                DialogIcon::Information))
        return;
    bool& requested = Parts.Lifecycle.WizardRequested;
    requested = true;
    SetUrl.Raise("vista.htm");
    Parts.Form.Enabled(false);
    Open();
    // Closing the assistant clears the flag. Where none opens, the next question is what waits for the user.
    while (requested && Parts.Opened.Find(AssistantName) != nullptr) {
        if (!Parts.Guard.For(AssistantStepMs)) return;
    }
    requested = false;
}

}  // namespace Corvetape
