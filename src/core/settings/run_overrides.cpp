#include "core/settings/run_overrides.h"

#include <algorithm>
#include <utility>

#include "core/settings/settings.h"
#include "core/settings/settings_store.h"
#include "core/text/text.h"

namespace Corvetape {

RunOverrides::RunOverrides(SettingsStore& store, std::vector<SettingOverride> overrides)
    : Store(store), Overrides(std::move(overrides)) {
    for (const SettingOverride& each : Overrides) {
        if (EqualIgnoringCase(each.Section, AnySourceSection)) continue;
        Profile& profile = each.InDataFile ? Store.FixIni() : Store.Ini();
        profile.Override(each.Section, each.Key, each.Value);
    }
}

void RunOverrides::ApplyTo(const std::string& source, const std::string& mixerSection) {
    if (!Sources.insert(source).second) return;
    for (const SettingOverride& each : Overrides) {
        if (!EqualIgnoringCase(each.Section, AnySourceSection)) continue;
        const bool gain = EqualIgnoringCase(each.Key, "LevelMultiplier");
        const std::string& section = gain ? mixerSection : source;
        const auto own = [&](const SettingOverride& other) {
            return EqualIgnoringCase(other.Section, section) && EqualIgnoringCase(other.Key, each.Key);
        };
        if (std::ranges::none_of(Overrides, own)) Store.Ini().Override(section, each.Key, each.Value);
    }
}

}  // namespace Corvetape
