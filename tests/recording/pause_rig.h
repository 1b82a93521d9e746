#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/settings/registry.h"
#include "core/text/placeholders.h"
#include "recording/pause_calibration.h"
#include "recording/pause_control.h"
#include "sim/sim_machine.h"
#include "support/signal_chain.h"

namespace Corvetape::Test {

/// The pause settings over a real settings file on a simulated disk. The provider is "Radio".
class PauseRig {
 public:
    explicit PauseRig(const std::string& settings = "") {
        const std::string& path = Store.Ini().Path();
        Computer.Files.MakeFolders(path.substr(0, path.rfind('/')));
        if (!settings.empty()) Computer.Files.Put(path, settings);
        Computer.Files.Put(Computer.Folders.Program + "/english.lang",
                           "701=no number\n702=not whole\n703=not from %1 to %2\n704=not a multiple of %1\n"
                           "825=too loud\n826=now %1 and %2 by %3\n827=peak\n828=mean\n");
        Messages.Load("english");
        Media.ProviderName = "Radio";
        Media.MixerSectionName = "MixerRadio";
    }

    /// Types a text and leaves the box. True if the box lets go of the focus.
    bool Type(TextBox& box, const std::string& text) {
        Computer.Dialogs.Boxes.clear();
        box.Text(text);
        return !box.RunValidate();
    }

    std::string Stored(const std::string& section, const std::string& key) const {
        return Store.ReadProviderText(section, key, "-");
    }
    std::string Stored(const std::string& key) const { return Stored("Radio", key); }

    std::optional<std::string> SettingsFile() const { return Computer.Files.Content(Store.Ini().Path()); }

    /// The texts of the boxes since the last typing.
    std::vector<std::string> Told() const {
        std::vector<std::string> texts;
        for (const ShownBox& box : Computer.Dialogs.Boxes) texts.push_back(box.Text);
        return texts;
    }

    SimMachine Computer;
    RegistryBranches Registry{Computer.Files, "/home/user/user.reg", "/home/user/machine.reg"};
    Placeholders Expansion{Computer.Clock, Computer.Folders, Registry};
    SettingsStore Store{Computer.Files, Computer.Folders, Registry, Expansion, Computer.System.Version()};
    clsLocalizeControls Messages{Computer.Files, Computer.Folders.Program, Computer.Dialogs};
    frmMain Form;
    PauseSettings Pause;
    SignalState Signal;
    MediaState Media;
    SignalChain Chain{Computer, Signal, Pause, Media};
    RunOverrides Overrides{Store, {}};
    SongEndMode Mode{Form, Pause, Chain.Device};
    PauseControl Control{{Form, Pause, Signal, Media, Store, Computer.Dialogs, Messages, Overrides}, Mode};
    PauseCalibration Calibration{Form, Pause, Computer.Dialogs, Messages};
};

}  // namespace Corvetape::Test
