#include "core/settings/settings_store.h"

#include <algorithm>
#include <utility>

#include "core/common_folder.h"
#include "core/controls/control_array.h"
#include "core/controls/form.h"
#include "core/settings/encoder_settings.h"
#include "core/settings/registry.h"
#include "core/text/numbers.h"
#include "core/text/placeholders.h"
#include "core/text/text.h"
#include "core/version.h"
#include "core/windows_version.h"
#include "platform/files.h"
#include "platform/folders.h"

namespace Corvetape {

namespace {

constexpr size_t ListBuffer = 32767;
constexpr size_t TextLimit = 254;
constexpr size_t QualityLimit = 1023;
constexpr std::string_view MixerPrefix = "Mixer";

/// The largest length of a settings file. Lengths are counted in a signed 16-bit number; a longer file counts
/// as having none.
constexpr uint64_t LargestIniFile = 32767;

std::string Join(const std::string& folder, std::string_view name) {
    std::string path = folder;
    if (!path.ends_with('/')) path += '/';
    return path.append(name);
}

std::string IniPath(Folders& folders, const SystemVersion& version, const std::string& seed) {
    if (!IsWindowsNT(version)) return seed;
    return Join(folders.ShellFolderPath(ShellFolder::AppData), ProgramShortName) + "/" + ProgramShortName +
           ".ini";
}

std::string ParentFolder(const std::string& path) {
    return path.substr(0, path.rfind('/'));
}

/// An empty text has no entries, not one that is empty.
std::vector<std::string> SplitList(const std::string& text) {
    return text.empty() ? std::vector<std::string>() : Split(text, ';');
}

QualityList ReadQualityList(const Profile& fix, std::string_view section) {
    return {SplitList(fix.ReadText(section, "EncQuality", "", QualityLimit)),
            SplitList(fix.ReadText(section, "EncParams", "", QualityLimit))};
}

void FillList(Form& form, std::string_view name, const std::vector<std::string>& texts) {
    auto* const list = dynamic_cast<ListBox*>(form.Find(name));
    if (list == nullptr) return;
    list->Clear();
    for (const std::string& text : texts) list->AddItem(text);
}

/// An index beyond the options selects none.
void SelectOption(Form& form, std::string_view name, const std::string& index) {
    for (Control* control : form.Controls()) {
        if (!EqualIgnoringCase(control->Name(), name)) continue;
        if (auto* const option = dynamic_cast<OptionButton*>(control)) {
            option->Value(std::to_string(option->Index()) == index);
        }
    }
}

}  // namespace

SettingsStore::SettingsStore(Files& files, Folders& folders, RegistryBranches& registry,
                             const Placeholders& placeholders, const SystemVersion& version)
    : Disk(files),
      Places(folders),
      Registry(registry),
      Expansion(placeholders),
      SeedPath(Join(folders.ProgramFolder(), ProgramShortName) + ".ini"),
      IniProfile(files, IniPath(folders, version, SeedPath)),
      FixProfile(files, Join(folders.ProgramFolder(), ProgramShortName) + "Fix.ini") {}

void SettingsStore::LoadSettings(SettingsTargets targets, const std::function<void()>& listsLoaded,
                                 const ApplySetting& apply) {
    ChooseIniFile();
    Loading = true;
    LoadStations(targets.Values);
    LoadEncoders(targets.Values);
    if (listsLoaded) listsLoaded();
    const ApplySetting nothing = [](const SettingRow&, const std::string&) {};
    LoadTable(targets.Values, apply ? apply : nothing);
    targets.Media.StationDataEnabled = targets.Values.ProvidersEnable;
    LoadFolders(targets, apply ? apply : nothing);
    ShowLists(targets.Values, apply ? apply : nothing);
    Loading = false;
    for (const PendingWrite& each : std::exchange(Pending, {})) {
        WriteSetting(each.Section, each.Key, each.Value);
    }
    targets.Values.LastUpdateCheck = NumberOf(Registry.ReadUserValue("Flags", "LastUpdateCheck", 0));
    targets.Values.NextUpdateCheck = NumberOf(Registry.ReadUserValue("Flags", "NextUpdateCheck", 0));
    LoadKnownProviders(targets.Media);
}

void SettingsStore::ChooseIniFile() {
    const std::string& path = IniProfile.Path();
    if (path == SeedPath) return;
    const uint64_t size = Disk.FileSize(path).value_or(0);
    const uint64_t length = size <= LargestIniFile ? size : 0;
    Disk.MakeFolder(ParentFolder(path));  // usually there already; without it no setting can be kept
    if (length != 0) return;
    if (const auto seed = Disk.ReadAll(SeedPath, Profile::SizeLimit)) Disk.ReplaceAtomically(path, *seed);
    IniProfile.Reload();
    // Whoever begins today gets the way of ending songs that loses fewest. An older file goes on as it was.
    constexpr const char* key = "EndOfSongDetection";
    constexpr int32_t automatic = 3;
    constexpr int32_t missing = -1;
    if (IniProfile.ReadInt(AnySourceSection, key, missing) == missing) {
        WriteSetting(AnySourceSection, key, automatic);
    }
}

void SettingsStore::LoadStations(Settings& values) const {
    values.StationNames.clear();
    values.StationUrls.clear();
    for (const std::string& name : FixProfile.Keys("URLs", ListBuffer)) {
        values.StationNames.push_back(name);
        values.StationUrls.push_back(FixProfile.ReadText("URLs", name, "", TextLimit));
    }
}

void SettingsStore::LoadEncoders(Settings& values) const {
    values.NormalizeCommand = FixProfile.ReadText("Encode", "Normalize", "", TextLimit);
    for (size_t i = 0; i < EncoderSettingsTable.size(); ++i) {
        const EncoderSettings& row = EncoderSettingsTable[i];
        values.EncoderCommand[i] = FixProfile.ReadText("Encode", row.TemplateKey, "", TextLimit);
        if (row.Qualities != nullptr) values.*row.Qualities = ReadQualityList(FixProfile, row.Section);
    }
}

std::string SettingsStore::ReadSetting(const SettingRow& row) const {
    if (row.Type != SettingType::Bool && row.Type != SettingType::Int) {
        return IniProfile.ReadText(row.Section, row.Key, row.Default, row.Limit());
    }
    const int32_t fallback = RoundToInt32(LeadingNumber(row.Default));
    const int32_t value = IniProfile.ReadInt(row.Section, row.Key, fallback);
    return std::to_string(row.Type == SettingType::Bool ? int32_t{value != 0} : value);
}

void SettingsStore::LoadTable(Settings& values, const ApplySetting& apply) {
    // All values are read before the first handler runs, because handlers change further settings.
    std::vector<std::string> texts;
    for (const SettingRow& row : SettingsTable()) {
        texts.push_back(ReadSetting(row));
        if (!StoreSetting(values, row, texts.back())) texts.back() = SettingText(values, row);
    }
    for (const SettingControl turn : {SettingControl::Load, SettingControl::Last}) {
        for (size_t i = 0; i < texts.size(); ++i) {
            const SettingRow& row = SettingsTable()[i];
            if (row.When != turn) continue;
            apply(row, texts[i]);
            if (turn == SettingControl::Load) continue;
            StoreSetting(values, row, texts[i]);  // also where no control could take it
            if (FindPending(row.Section, row.Key) != nullptr) WriteSetting(row.Section, row.Key, texts[i]);
        }
    }
}

void SettingsStore::LoadFolders(SettingsTargets& targets, const ApplySetting& apply) const {
    constexpr std::array<std::string_view, 3> keys = {"TempPath", "MusicPath", "LogFilePath"};
    WorkingFolders& folders = targets.Folders;
    for (size_t i = 0; i < keys.size(); ++i) {
        const SettingRow& row = *FindSetting("Options", keys[i]);
        std::string path = Expansion.ExpandPlaceholders(SettingText(targets.Values, row));
        // An empty folder would put the files into the root of the disk.
        if (path.empty()) path = Expansion.ExpandPlaceholders(row.Default);
        if (i == 1 && EqualIgnoringCase(path, "%mymusic%")) {
            path = Places.ShellFolderPath(ShellFolder::MyDocuments);
        }
        folders.Paths[i] = NormalizePath(path);
    }
    folders.SongTempFolder = Join(folders.Paths[0], ProgramShortName);
    folders.CommonDataFolder = CommonDataFolder(Places);
    folders.ProgramFolder = Places.ProgramFolder();
    for (size_t i = 0; i < keys.size(); ++i) apply(*FindSetting("Options", keys[i]), folders.Paths[i]);
}

void SettingsStore::ShowLists(const Settings& values, const ApplySetting& apply) const {
    apply(*FindSetting("DoNotChange", "EncodeDelay"), std::to_string(30 - values.EncodeDelay / 1000));
    const int64_t bufferFlag = int64_t{3} - values.PollRecordingBuffers;
    apply(*FindSetting("DoNotChange", "PollRecordingBuffers"), std::to_string(bufferFlag));
}

void SettingsStore::LoadKnownProviders(MediaState& media) const {
    media.KnownProviders.clear();
    for (const std::string& section : IniProfile.Sections()) {
        const bool mixer = section.size() > MixerPrefix.size() &&
                           EqualIgnoringCase(section.substr(0, MixerPrefix.size()), MixerPrefix);
        if (!mixer) continue;
        const std::string name = section.substr(MixerPrefix.size());
        const auto same = [&](const std::string& known) { return EqualIgnoringCase(known, name); };
        if (std::ranges::none_of(media.KnownProviders, same)) media.KnownProviders.push_back(name);
    }
}

void SettingsStore::WriteSetting(std::string_view section, std::string_view key, std::string_view value) {
    if (!Loading) {
        Keep(IniProfile.Write(section, key, value));
        return;
    }
    if (PendingWrite* const pending = FindPending(section, key)) {
        pending->Value = value;
    } else {
        Pending.push_back({std::string(section), std::string(key), std::string(value)});
    }
}

SettingsStore::PendingWrite* SettingsStore::FindPending(std::string_view section, std::string_view key) {
    const auto same = [&](const PendingWrite& each) {
        return EqualIgnoringCase(each.Section, section) && EqualIgnoringCase(each.Key, key);
    };
    const auto found = std::ranges::find_if(Pending, same);
    return found == Pending.end() ? nullptr : &*found;
}

void SettingsStore::WriteSetting(std::string_view section, std::string_view key, int32_t value) {
    WriteSetting(section, key, std::to_string(value));
}

void SettingsStore::ReplaceSection(std::string_view section,
                                   std::span<const std::pair<std::string, std::string>> entries) {
    Keep(IniProfile.ReplaceSection(section, entries));
}

void SettingsStore::Keep(const FileResult& written) {
    if (Failure) Failure = written;
}

int32_t SettingsStore::ReadProviderInt(std::string_view section, std::string_view key,
                                       int32_t fallback) const {
    return IniProfile.ReadInt(section, key, fallback);
}

std::string SettingsStore::ReadProviderText(std::string_view section, std::string_view key,
                                            std::string_view fallback, size_t limit) const {
    return IniProfile.ReadText(section, key, fallback, limit);
}

void ApplySettingToForm(Form& form, const SettingRow& row, const std::string& value) {
    if (row.ControlName == "optEncoder") {
        SelectOption(form, row.ControlName, value);
        return;
    }
    Control* const control = form.Find(row.ControlName, row.ControlIndex);
    if (control == nullptr) return;
    if (row.ControlName == "txtPath") control->ToolTip(value);
    if (auto* const box = dynamic_cast<TextBox*>(control)) {
        box->Text(value);  // the user did not type it: it is not validated
    } else {
        control->SetValueText(value);
    }
}

void ShowListsInForm(Form& form, const Settings& settings) {
    if (Control* const multiplier = form.Find("vscMultiplier")) multiplier->SetValueText("100");
    FillList(form, "cmbURL", settings.StationNames);
    for (const EncoderSettings& row : EncoderSettingsTable) {
        if (row.Qualities == nullptr) continue;
        FillList(form, FindSetting("Options", row.QualityKey)->ControlName,
                 (settings.*row.Qualities).EncQuality);
    }
}

}  // namespace Corvetape
