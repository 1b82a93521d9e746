#include "cli/setting_argument.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <filesystem>
#include <system_error>

#include "core/settings/settings_table.h"
#include "core/text/text.h"

namespace Corvetape {

namespace {

struct DataKey {
    std::string_view Section;
    std::string_view Key;
};

constexpr std::array DataKeys = {
    DataKey{"Encode", "Normalize"},     DataKey{"Encode", "WAV44"},        DataKey{"Encode", "WAV48"},
    DataKey{"Encode", "WMA44"},         DataKey{"Encode", "WMA48"},        DataKey{"Encode", "MP3"},
    DataKey{"Encode", "OggVorbis"},     DataKey{"MP3", "EncQuality"},      DataKey{"MP3", "EncParams"},
    DataKey{"OggVorbis", "EncQuality"}, DataKey{"OggVorbis", "EncParams"}, DataKey{"WMA44", "EncQuality"},
    DataKey{"WMA44", "EncParams"},      DataKey{"WMA48", "EncQuality"},    DataKey{"WMA48", "EncParams"},
};

bool IsWholeNumber(std::string_view text) {
    int32_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size();
}

bool NeedsNumber(const SettingRow& row) {
    return row.Type != SettingType::Text && row.Type != SettingType::PosText;
}

/// The one key of the settings file that is no row of a table.
bool IsPortsKey(const SettingArgument& argument) {
    return EqualIgnoringCase(argument.Section, "Browser") && EqualIgnoringCase(argument.Key, "DevToolsPorts");
}

/// A folder as somebody types it: from the present folder or from his home on. Encoders run elsewhere.
std::string WholePath(const std::string& folder) {
    constexpr std::string_view wholeBegins = "/\\%";  // a placeholder stands for a whole path, too
    if (folder.empty() || wholeBegins.find(folder[0]) != std::string_view::npos) return folder;
    if (folder == "~" || folder.starts_with("~/")) return "%UserProfile%" + folder.substr(1);
    std::error_code failed;  // without a present folder the path stays as it is, and is refused
    const std::filesystem::path here = std::filesystem::current_path(failed);
    return failed ? folder : (here / folder).lexically_normal().string();
}

}  // namespace

std::variant<SettingArgument, std::string> ReadSettingArgument(std::string_view text) {
    const std::string shown(text);
    const size_t equal = text.find('=');
    const size_t point = equal == std::string_view::npos ? equal : text.substr(0, equal).rfind('.');
    if (point == std::string_view::npos || point == 0 || point + 1 == equal) {
        return "'" + shown + "' is not of the form SECTION.KEY=VALUE";
    }
    SettingArgument argument{std::string(text.substr(0, point)),
                             std::string(text.substr(point + 1, equal - point - 1)),
                             std::string(text.substr(equal + 1))};

    const auto isKey = [&](const auto& row) { return EqualIgnoringCase(row.Key, argument.Key); };
    bool number = false;
    if (const SettingRow* row = FindSetting(argument.Section, argument.Key)) {
        number = NeedsNumber(*row);
        if (row->ControlName == "txtPath") argument.Value = WholePath(argument.Value);
    } else if (std::ranges::any_of(DataKeys, [&](const DataKey& data) {
                   return isKey(data) && EqualIgnoringCase(data.Section, argument.Section);
               })) {
        argument.InDataFile = true;
    } else if (std::ranges::any_of(ProviderSettingsTable(), isKey)) {
        number = true;
    } else if (!IsPortsKey(argument)) {
        return "there is no setting " + argument.Section + "." + argument.Key;
    }
    if (number && !IsWholeNumber(argument.Value)) {
        return argument.Section + "." + argument.Key + " takes a whole number, not '" + argument.Value + "'";
    }
    return argument;
}

}  // namespace Corvetape
