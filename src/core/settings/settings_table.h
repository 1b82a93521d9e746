#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "core/settings/settings.h"

namespace Corvetape {

enum class SettingType {
    Bool,          ///< 0 or 1
    Int,           ///< 32 bits
    Text,          ///< at most 254 characters
    PosText,       ///< "left;top;width;height", at most 99 characters
    Number32Text,  ///< a number that is read as a text; one that is no number changes nothing
};

/// When the control of a setting takes its value.
enum class SettingControl {
    None,   ///< there is none: the key is for hand editing, or is written by the program itself
    Load,   ///< when the settings are loaded, as a click would set it
    Last,   ///< when the settings are loaded, after all the others, since those change it too
    Later,  ///< by the step that fills or shows the control
};

/// An entry of Settings::MusicFileTemplate.
struct MusicFileTemplateMember {
    size_t Index = 0;
};

using SettingMember =
    std::variant<bool Settings::*, int32_t Settings::*, std::string Settings::*, MusicFileTemplateMember>;

/// One key of the user's settings file.
struct SettingRow {
    std::string_view Section;
    std::string_view Key;
    std::string_view Default;  ///< as it would stand in the file
    SettingType Type;
    SettingMember Member;
    SettingControl When = SettingControl::None;
    std::string_view ControlName = {};
    int32_t ControlIndex = -1;  ///< -1 for a single control; optEncoder: the value is the index

    /// Characters that are read of a text.
    constexpr size_t Limit() const { return Type == SettingType::PosText ? 99 : 254; }
};

/// All keys that have one value for the whole program, in the order in which they are loaded.
std::span<const SettingRow> SettingsTable();

/// The row of a key, ignoring case; null if there is none.
const SettingRow* FindSetting(std::string_view section, std::string_view key);

/// One key of a provider's own section, or of its mixer section.
struct ProviderSettingRow {
    std::string_view Key;
    int32_t Default;  ///< EndOfSilenceAmplitude: 1.2 times SilenceAmplitude instead, rounded
    bool InMixerSection = false;
};

/// The keys that are kept per provider, in the order in which they are loaded.
std::span<const ProviderSettingRow> ProviderSettingsTable();

/// Puts the text of a setting into its member. False, and no change, if the text does not fit the type.
bool StoreSetting(Settings& settings, const SettingRow& row, const std::string& value);

/// The text of a setting as its member stands.
std::string SettingText(const Settings& settings, const SettingRow& row);

}  // namespace Corvetape
