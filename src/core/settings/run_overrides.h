#pragma once

#include <set>
#include <string>
#include <vector>

namespace Corvetape {

class SettingsStore;

/// A setting that holds for this run only. It is neither read from nor written to its file.
struct SettingOverride {
    std::string Section;  ///< or AnySourceSection
    std::string Key;
    std::string Value;
    bool InDataFile = false;
};

/// The overrides of a run on their way into the settings.
class RunOverrides {
 public:
    /// Applies those of named sections. `store` outlives it.
    RunOverrides(SettingsStore& store, std::vector<SettingOverride> overrides);

    /// The settings of a source are about to be read: applies those for any source to it, the first time.
    /// Its gain is in the section `mixerSection`.
    void ApplyTo(const std::string& source, const std::string& mixerSection);

 private:
    SettingsStore& Store;
    std::vector<SettingOverride> Overrides;
    std::set<std::string> Sources;  ///< those that have theirs
};

}  // namespace Corvetape
