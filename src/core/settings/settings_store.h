#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/media_state.h"
#include "core/settings/profile.h"
#include "core/settings/settings.h"
#include "core/settings/settings_table.h"
#include "platform/system_info.h"

namespace Corvetape {

class Files;
class Folders;
class Form;
class Placeholders;
class RegistryBranches;

/// What loading fills.
struct SettingsTargets {
    Settings& Values;
    WorkingFolders& Folders;
    MediaState& Media;  ///< KnownProviders and StationDataEnabled
};

/// Sets the control of a row, so that its handlers run as after a click.
using ApplySetting = std::function<void(const SettingRow&, const std::string& value)>;

/// The user's settings file, the data file that comes with the program, and the dates kept in the registry.
/// A key has exactly one home; a key that is missing there takes its default.
class SettingsStore {
 public:
    /// All of them must outlive it. Forms the paths; reads and writes nothing. `version` decides where the
    /// settings file lies: in the user's folder, or beside the program on systems without users.
    SettingsStore(Files& files, Folders& folders, RegistryBranches& registry,
                  const Placeholders& placeholders, const SystemVersion& version);

    /// Reads everything, once, before anything else happens. Its steps:
    /// 1. the settings file is chosen: its folder is made, and a missing, empty or too large file
    ///    (32768 bytes and more) is replaced by the seed file beside the program, if there is one;
    /// 2. stations, encoder templates and quality lists are read into `targets`;
    /// 3. `listsLoaded` runs, for the lists on the screen that later values are indices into;
    /// 4. the rows of the table follow in their order, each with `apply` if its control is set by loading;
    ///    what the handlers of the controls write by WriteSetting is kept until the last of them has run, as
    ///    the quality lists each change the encoder, which is set after them;
    /// 5. the three working folders are expanded, and `apply` runs for each with the full path as value: the
    ///    place to show it, shortened to what fits, with the whole path as tool tip;
    /// 6. `apply` runs for lstEncodeDelay and lstBufferFlag with the list index as value;
    /// 7. the dates of the update check and the known providers are read.
    /// A failing step leaves what it would have set as it was, and the next one goes on.
    void LoadSettings(SettingsTargets targets, const std::function<void()>& listsLoaded,
                      const ApplySetting& apply);

    /// Writes a key of the settings file at once. A failure is seen by FirstFailure only.
    void WriteSetting(std::string_view section, std::string_view key, std::string_view value);
    void WriteSetting(std::string_view section, std::string_view key, int32_t value);

    /// Puts these keys in the place of all that a section holds, in one write. A failure is seen by
    /// FirstFailure.
    void ReplaceSection(std::string_view section,
                        std::span<const std::pair<std::string, std::string>> entries);

    /// How writing the file failed the first time; good as long as it has not.
    const FileResult& FirstFailure() const { return Failure; }

    /// Reads a key of a provider's section as it stands in the file now.
    int32_t ReadProviderInt(std::string_view section, std::string_view key, int32_t fallback) const;
    std::string ReadProviderText(std::string_view section, std::string_view key,
                                 std::string_view fallback = {}, size_t limit = 254) const;

    /// For writes of whole mixer sections and for values that hold for one run only.
    Profile& Ini() { return IniProfile; }
    const Profile& Ini() const { return IniProfile; }
    Profile& FixIni() { return FixProfile; }
    const Profile& FixIni() const { return FixProfile; }

    /// Path of the seed file.
    const std::string& SeedFile() const { return SeedPath; }

 private:
    void ChooseIniFile();
    void LoadStations(Settings& values) const;
    void LoadEncoders(Settings& values) const;
    void LoadTable(Settings& values, const ApplySetting& apply);
    void LoadFolders(SettingsTargets& targets, const ApplySetting& apply) const;
    void ShowLists(const Settings& values, const ApplySetting& apply) const;
    std::string ReadSetting(const SettingRow& row) const;
    void LoadKnownProviders(MediaState& media) const;

    Files& Disk;
    Folders& Places;
    RegistryBranches& Registry;
    const Placeholders& Expansion;
    std::string SeedPath;
    Profile IniProfile;
    Profile FixProfile;

    struct PendingWrite {
        std::string Section;
        std::string Key;
        std::string Value;
    };
    PendingWrite* FindPending(std::string_view section, std::string_view key);
    void Keep(const FileResult& written);

    FileResult Failure;  ///< the first one
    bool Loading = false;
    std::vector<PendingWrite> Pending;  ///< only while loading
};

/// Applies a setting to the control of its name in `form`; nothing if there is none.
void ApplySettingToForm(Form& form, const SettingRow& row, const std::string& value);

/// Fills cmbURL and the quality lists of `form`, as far as it has them, and sets vscMultiplier to 100.
void ShowListsInForm(Form& form, const Settings& settings);

}  // namespace Corvetape
