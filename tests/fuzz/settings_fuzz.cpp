// The settings file, the data file beside the program and the file of the registry, as the program loads
// them. Fields: section, key, value, registry, data file, settings file.
#include <string>
#include <variant>
#include <vector>

#include "core/settings/registry.h"
#include "core/settings/settings_store.h"
#include "core/text/placeholders.h"
#include "core/text/text.h"
#include "forms/frm_main.h"
#include "fuzz/support/fuzz.h"
#include "sim/sim_machine.h"

namespace Corvetape {

namespace {

using Fuzz::Require;

constexpr const char* RegistryFile = "/home/user/user.reg";

/// A program that has loaded its settings.
struct Loaded {
    explicit Loaded(SimMachine& machine)
        : Registry(machine.Files, RegistryFile, "/home/user/machine.reg"),
          Expansion(machine.Clock, machine.Folders, Registry),
          Store(machine.Files, machine.Folders, Registry, Expansion, machine.System.Version()) {}

    /// Without a window the values are loaded all the same.
    void Load(frmMain* form) {
        const auto apply = [form](const SettingRow& row, const std::string& value) {
            if (form != nullptr) ApplySettingToForm(*form, row, value);
        };
        const auto lists = [this, form] {
            if (form != nullptr) ShowListsInForm(*form, Values);
        };
        Store.LoadSettings({Values, Folders, Media}, lists, apply);
    }

    std::vector<std::string> Texts() const {
        std::vector<std::string> texts;
        for (const SettingRow& row : SettingsTable()) texts.push_back(SettingText(Values, row));
        return texts;
    }

    RegistryBranches Registry;
    Placeholders Expansion;
    SettingsStore Store;
    Settings Values;
    WorkingFolders Folders;
    MediaState Media;
};

void CheckValues(const Loaded& loaded, bool isUtf8) {
    for (const SettingRow& row : SettingsTable()) {
        const std::string text = SettingText(loaded.Values, row);
        Require(text.size() <= row.Limit(), "a text has its limit");
        Require(!isUtf8 || Fuzz::IsUtf8(text), "no character of a text is cut in two");
    }
    for (const std::string& path : loaded.Folders.Paths) {
        Require(!path.empty() && NormalizePath(path) == path,
                "a working folder has a path as the system writes it");
    }
    Require(loaded.Values.StationNames.size() == loaded.Values.StationUrls.size(),
            "a station has an address");
    for (const std::string& name : loaded.Media.KnownProviders) {
        Require(!name.empty(), "a known provider has a name");
    }
}

/// What is loaded and written back is loaded again.
void CheckRoundTrip(SimMachine& machine, Loaded& loaded) {
    for (const SettingRow& row : SettingsTable()) {
        loaded.Store.WriteSetting(row.Section, row.Key, SettingText(loaded.Values, row));
    }
    Loaded again(machine);
    again.Load(nullptr);
    Require(again.Texts() == loaded.Texts(), "settings that were written are loaded as they were");
    Require(again.Folders.Paths == loaded.Folders.Paths, "folders are the same after each start");
}

void CheckRegistry(RegistryBranches& registry, const std::string& section, const std::string& key,
                   const std::string& value) {
    if (key.empty() || key == "*" || EqualIgnoringCase(key, "(Standard)")) return;
    for (const RegistryValue& each :
         {RegistryValue(value), RegistryValue(static_cast<int32_t>(value.size()))}) {
        if (!registry.WriteUserValue(section, key, each)) continue;
        const RegistryValue read = registry.ReadUserValue(section, key);
        Require(read.index() == each.index(), "a value keeps its kind");
        const bool oneLine = value.find_first_of(std::string_view("\r\n\0", 3)) == std::string::npos;
        Require(!oneLine || read == each, "a value is read as it was written");
        Require(registry.WriteUserValue(section, key) &&
                    std::holds_alternative<std::monostate>(registry.ReadUserValue(section, key)),
                "a deleted value is gone");
    }
}

}  // namespace

void FuzzOne(Fuzz::Input input) {
    const std::string section(input.Field());
    const std::string key(input.Field());
    const std::string value(input.Field());
    SimMachine machine;
    Loaded loaded(machine);
    machine.Files.Put(RegistryFile, input.Field());
    machine.Files.Put(loaded.Store.FixIni().Path(), input.Field());
    const std::string file(input.Rest());
    machine.Files.Put(loaded.Store.Ini().Path(), file);
    frmMain form;
    loaded.Load(&form);
    CheckValues(loaded, Fuzz::IsUtf8(file));
    CheckRoundTrip(machine, loaded);
    CheckRegistry(loaded.Registry, section, key, value);
}

}  // namespace Corvetape
