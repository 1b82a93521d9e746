#include "core/settings/settings_table.h"

#include <algorithm>
#include <iterator>
#include <optional>

#include "core/text/numbers.h"
#include "core/text/text.h"

namespace Corvetape {

namespace {

using enum SettingType;
using enum SettingControl;

constexpr SettingRow Table[] = {
    {"Providers", "Enable", "1", Bool, &Settings::ProvidersEnable, Later, "chkStationDataEnable"},
    {"Form", "Pos", "", PosText, &Settings::FormPos},
    {"Form", "State", "0", Int, &Settings::FormState},
    {"Form", "MaximizeButton", "0", Bool, &Settings::MaximizeButton, Load, "chkMaximizeButton"},
    {"QuickButtons", "Pos", "", PosText, &Settings::QuickButtonsPos},
    {"QuickButtons", "Visible", "1", Bool, &Settings::QuickButtonsVisible},
    {"QuickButtons", "OldView", "0", Bool, &Settings::OldView},
    {"URLs", "Current", "0", Int, &Settings::CurrentUrlIndex, Load, "cmbURL"},
    {"General", "LogToFile", "1", Bool, &Settings::LogToFile},
    {"General", "Language", "", Text, &Settings::Language},
    {"Record", "Interval", "100", Int, &Settings::Interval},
    {"Record", "StopAfter", "60", Int, &Settings::StopAfter, Load, "txtRecordingPeriod"},
    {"Mixer", "AutoUpdate", "0", Bool, &Settings::AutoUpdate, Load, "chkMixerAutoUpdate"},
    {"Mixer", "InputDevice", "1", Int, &Settings::InputDevice, Later, "cmbInputDevices"},
    {"Mixer", "SPDIF48kHz", "0", Bool, &Settings::SPDIF48kHz, Load, "chk48kHz"},
    {"Mixer", "InputDeviceNames", "", Text, &Settings::InputDeviceNames},
    {"Mixer", "KeepRejectedInputs", "1", Bool, &Settings::KeepRejectedInputs},
    {"Options", "TempPath", "%Temp%", Text, &Settings::TempPath, Later, "txtPath", 0},
    {"Options", "MusicPath", "%MyMusic%", Text, &Settings::MusicPath, Later, "txtPath", 1},
    {"Options", "LogFilePath", "%AppData%/Corvet", Text, &Settings::LogFilePath, Later, "txtPath", 2},
    {"Options", "UseMusicSubfolder", "1", Bool, &Settings::UseMusicSubfolder, Load, "chkUseMusicSubfolder"},
    {"Options", "MusicFolderTemplate", "%Genre%", Text, &Settings::MusicFolderTemplate, Load,
     "txtMusicFolderTemplate"},
    {"Options", "MusicFileTemplate1", "yymmddhhnnss", Text, MusicFileTemplateMember{0}, Load,
     "txtMusicFileTemplate", 0},
    {"Options", "MusicFileTemplate2", "%Artist% - %Title%", Text, MusicFileTemplateMember{1}, Load,
     "txtMusicFileTemplate", 1},
    {"Options", "Normalize", "0", Bool, &Settings::Normalize, Load, "chkNormalize"},
    {"Options", "EncodeOffline", "0", Bool, &Settings::EncodeOffline, Load, "chkEncodeOffline"},
    {"Options", "NoStartupInfo", "0", Bool, &Settings::NoStartupInfo, Load, "chkNoStartupInfo"},
    {"Options", "InfoAfterSilence", "60", Int, &Settings::InfoAfterSilence},
    {"Options", "RestartRadioIfSilent", "0", Bool, &Settings::RestartRadioIfSilent, Load,
     "chkRestartRadioIfSilent"},
    {"Options", "StoreCoverImage", "1", Bool, &Settings::StoreCoverImage, Load, "chkStoreCoverImage"},
    {"Options", "NotifySongs", "0", Bool, &Settings::NotifySongs, Load, "chkNotifySongs"},
    {"Options", "AutoExclude", "0", Bool, &Settings::AutoExclude, Load, "chkAutoExclude"},
    {"Options", "DisableSoundScheme", "0", Bool, &Settings::DisableSoundScheme, Load,
     "chkDisableSoundScheme"},
    {"Options", "DelayUnload", "0", Bool, &Settings::DelayUnload, Load, "chkDelayUnload"},
    {"Options", "QuitAfterRecording", "0", Bool, &Settings::QuitAfterRecording, Load,
     "chkQuitAfterRecording"},
    {"Options", "DelTemp", "0", Bool, &Settings::DelTemp, Load, "chkDelTemp"},
    {"Options", "DelTempFolder", "0", Bool, &Settings::DelTempFolder, Load, "chkDelTempFolder"},
    {"Options", "SameName", "1", Int, &Settings::SameName},
    {"Options", "LearnCuts", "1", Bool, &Settings::LearnCuts},
    {"Options", "FadeGoesTo", "2", Int, &Settings::FadeGoesTo},
    {"Options", "KeepMargins", "24", Int, &Settings::KeepMargins},
    {"Options", "Encoder", "0", Int, &Settings::Encoder, Last, "optEncoder"},
    {"Options", "MP3Quality", "5", Int, &Settings::MP3Quality, Load, "cmbMP3"},
    {"Options", "OggVorbisQuality", "5", Int, &Settings::OggVorbisQuality, Load, "cmbOgg"},
    {"Options", "WMA44Quality", "2", Int, &Settings::WMA44Quality, Load, "cmbWMA44"},
    {"Options", "WMA48Quality", "2", Int, &Settings::WMA48Quality, Load, "cmbWMA48"},
    {"Options", "LowTempSpace", "300", Number32Text, &Settings::LowTempSpace, Load, "txtLowTempSpace"},
    {"Options", "LowMusicSpace", "300", Number32Text, &Settings::LowMusicSpace, Load, "txtLowMusicSpace"},
    {"Options", "StartApp", "0", Bool, &Settings::StartApp, Load, "chkStartApp"},
    {"Options", "StartAppName", "", Text, &Settings::StartAppName, Load, "txtStartApp"},
    {"Options", "StartAppParams", "", Text, &Settings::StartAppParams, Load, "txtStartAppCommandLine"},
    {"Options", "StopApp", "0", Bool, &Settings::StopApp, Load, "chkStopApp"},
    {"Options", "StopAppName", "", Text, &Settings::StopAppName, Load, "txtStopApp"},
    {"Options", "StopAppParams", "", Text, &Settings::StopAppParams, Load, "txtStopAppCommandLine"},
    {"DoNotChange", "RecordingBuffers", "30", Int, &Settings::RecordingBuffers},
    {"DoNotChange", "PollRecordingBuffers", "0", Int, &Settings::PollRecordingBuffers, Later,
     "lstBufferFlag"},
    {"DoNotChange", "EncodeDelay", "5000", Int, &Settings::EncodeDelay, Later, "lstEncodeDelay"},
    {"DoNotChange", "AudioBuffers", "400", Int, &Settings::AudioBuffers},
};

constexpr ProviderSettingRow ProviderTable[] = {
    {"LengthOfPause", 50},
    {"IgnorePauseFor", 0},
    {"SilenceAmplitude", 100},
    {"EndOfSilenceAmplitude", 120},
    {"DetectSilenceByPeak", 1},
    {"PauseDetectionTolerance", 3},
    {"PauseDetectionToleranceAds", 1},
    {"AllowedPauseAfterEndOfSong", 0},
    {"IgnoreSilence", 0},
    {"EndOfSongDetection", 0},
    {"DuplicatepartOfSong", 0},
    {"EndOfSongThreshold0", 3000},
    {"EndOfSongThreshold1", 3000},
    {"EndOfSongTimer", 300},
    {"QuitAfterSilence", 5},
    {"IgnoreShortSongs", 35},
    {"LevelMultiplier", 100, true},
};

}  // namespace

std::span<const SettingRow> SettingsTable() {
    return Table;
}

std::span<const ProviderSettingRow> ProviderSettingsTable() {
    return ProviderTable;
}

const SettingRow* FindSetting(std::string_view section, std::string_view key) {
    const auto same = [&](const SettingRow& row) {
        return EqualIgnoringCase(row.Section, section) && EqualIgnoringCase(row.Key, key);
    };
    const auto* const found = std::ranges::find_if(Table, same);
    return found == std::end(Table) ? nullptr : found;
}

bool StoreSetting(Settings& settings, const SettingRow& row, const std::string& value) {
    if (const auto* text = std::get_if<std::string Settings::*>(&row.Member)) {
        settings.*(*text) = value;
        return true;
    }
    if (const auto* entry = std::get_if<MusicFileTemplateMember>(&row.Member)) {
        settings.MusicFileTemplate.at(entry->Index) = value;
        return true;
    }
    const std::optional<int32_t> number = WholeNumberFromText(value);
    if (!number) return false;
    if (const auto* flag = std::get_if<bool Settings::*>(&row.Member)) settings.*(*flag) = *number != 0;
    if (const auto* whole = std::get_if<int32_t Settings::*>(&row.Member)) settings.*(*whole) = *number;
    return true;
}

std::string SettingText(const Settings& settings, const SettingRow& row) {
    if (const auto* text = std::get_if<std::string Settings::*>(&row.Member)) return settings.*(*text);
    if (const auto* flag = std::get_if<bool Settings::*>(&row.Member)) return settings.*(*flag) ? "1" : "0";
    if (const auto* whole = std::get_if<int32_t Settings::*>(&row.Member)) {
        return std::to_string(settings.*(*whole));
    }
    return settings.MusicFileTemplate.at(std::get<MusicFileTemplateMember>(row.Member).Index);
}

}  // namespace Corvetape
