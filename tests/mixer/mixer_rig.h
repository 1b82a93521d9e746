#pragma once

#include <map>
#include <string>
#include <vector>

#include "core/controls/messages.h"
#include "core/log.h"
#include "core/settings/registry.h"
#include "core/settings/settings_store.h"
#include "core/text/placeholders.h"
#include "mixer/mod_mixer.h"
#include "sim/sim_machine.h"

namespace Corvetape::Test {

/// A machine with made-up cards, a settings file, and the mixer logic on them.
class MixerRig {
 public:
    MixerRig() {
        const std::string& path = Store.Ini().Path();
        Computer.Files.MakeFolders(path.substr(0, path.rfind('/')));
    }

    /// The keys and values of a section as they stand in the file, in their order.
    std::vector<std::string> Section(const std::string& name) {
        Profile file(Computer.Files, Store.Ini().Path());
        std::vector<std::string> lines;
        for (const std::string& key : file.Keys(name)) {
            lines.push_back(key + "=" + file.ReadText(name, key, ""));
        }
        return lines;
    }

    void Write(const std::string& section, const std::string& key, const std::string& value) {
        Store.WriteSetting(section, key, value);
    }

    SimMachine Computer;
    SimMixer& Cards = Computer.Mixer;
    RegistryBranches Registry{Computer.Files, "/home/user/user.reg", "/home/user/machine.reg"};
    Placeholders Expansion{Computer.Clock, Computer.Folders, Registry};
    SettingsStore Store{Computer.Files, Computer.Folders, Registry, Expansion, Computer.System.Version()};
    MediaState Media;
    modMixer Mixers{Cards, Store, Media};
};

/// A card with a line-in that a selector chooses among others: two sources with a volume each.
inline SimCard CardWithSelector(const std::string& waveInId) {
    SimDestination recording;
    recording.Line = {"Recording", 100, {MixerSelector({11, 12}, 1), MixerMute(1)}};
    recording.Sources = {{"Microphone", 11, {MixerVolume(1000)}}, {"Line", 12, {MixerVolume(2000)}}};
    return {"card of " + waveInId, waveInId, {recording}};
}

}  // namespace Corvetape::Test
