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

}  // namespace

void OpenSoundSettings(Processes& processes, Dialogs& boxes, const clsLocalizeControls& texts) {
    const bool opened = std::ranges::any_of(SettingsPrograms, [&](const SettingsProgram& each) {
        return processes.ShellOpen(each.Name, each.Parameters, "") > LastFailure;
    });
    if (!opened) boxes.ShowMessage(texts.FormatMsg(Message::NoSoundSettings.Key), DialogIcon::Exclamation);
}

}  // namespace Corvetape
