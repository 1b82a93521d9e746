#include "core/settings/settings_table.h"

#include <gtest/gtest.h>

#include <set>

namespace Corvetape {
namespace {

struct Expected {
    const char* Section;
    const char* Key;
    const char* Default;
    SettingType Type;
    const char* Control;
    int32_t Index = -1;
};

using enum SettingType;

const std::vector<Expected>& ExpectedTable() {
    static const std::vector<Expected> table = {
        {"Providers", "Enable", "1", Bool, "chkStationDataEnable"},
        {"Form", "Pos", "", PosText, ""},
        {"Form", "State", "0", Int, ""},
        {"QuickButtons", "Pos", "", PosText, ""},
        {"QuickButtons", "Visible", "1", Bool, ""},
        {"QuickButtons", "OldView", "0", Bool, ""},
        {"URLs", "Current", "0", Int, "cmbURL"},
        {"General", "LogToFile", "1", Bool, ""},
        {"General", "Language", "", Text, ""},
        {"Record", "Interval", "100", Int, ""},
        {"Record", "StopAfter", "60", Int, "txtRecordingPeriod"},
        {"Mixer", "AutoUpdate", "0", Bool, "chkMixerAutoUpdate"},
        {"Mixer", "InputDevice", "1", Int, "cmbInputDevices"},
        {"Mixer", "SPDIF48kHz", "0", Bool, "chk48kHz"},
        {"Mixer", "InputDeviceNames", "", Text, ""},
        {"Options", "TempPath", "%Temp%", Text, "txtPath", 0},
        {"Options", "MusicPath", "%MyMusic%", Text, "txtPath", 1},
        {"Options", "LogFilePath", "%AppData%/Corvet", Text, "txtPath", 2},
        {"Options", "UseMusicSubfolder", "1", Bool, "chkUseMusicSubfolder"},
        {"Options", "MusicFolderTemplate", "%Genre%", Text, "txtMusicFolderTemplate"},
        {"Options", "MusicFileTemplate1", "yymmddhhnnss", Text, "txtMusicFileTemplate", 0},
        {"Options", "MusicFileTemplate2", "%Artist% - %Title%", Text, "txtMusicFileTemplate", 1},
        {"Options", "Normalize", "0", Bool, "chkNormalize"},
        {"Options", "EncodeOffline", "0", Bool, "chkEncodeOffline"},
        {"Options", "NoStartupInfo", "0", Bool, "chkNoStartupInfo"},
        {"Options", "InfoAfterSilence", "60", Int, ""},
        {"Options", "RestartRadioIfSilent", "0", Bool, "chkRestartRadioIfSilent"},
        {"Options", "StoreCoverImage", "1", Bool, "chkStoreCoverImage"},
        {"Options", "AutoExclude", "0", Bool, "chkAutoExclude"},
        {"Options", "DisableSoundScheme", "0", Bool, "chkDisableSoundScheme"},
        {"Options", "DelayUnload", "0", Bool, "chkDelayUnload"},
        {"Options", "QuitAfterRecording", "0", Bool, "chkQuitAfterRecording"},
        {"Options", "DelTemp", "0", Bool, "chkDelTemp"},
        {"Options", "DelTempFolder", "0", Bool, "chkDelTempFolder"},
        {"Options", "SameName", "1", Int, ""},
        {"Options", "Encoder", "0", Int, "optEncoder"},
        {"Options", "MP3Quality", "5", Int, "cmbMP3"},
        {"Options", "OggVorbisQuality", "5", Int, "cmbOgg"},
        {"Options", "WMA44Quality", "2", Int, "cmbWMA44"},
        {"Options", "WMA48Quality", "2", Int, "cmbWMA48"},
        {"Options", "LowTempSpace", "300", Number32Text, "txtLowTempSpace"},
        {"Options", "LowMusicSpace", "300", Number32Text, "txtLowMusicSpace"},
        {"Options", "StartApp", "0", Bool, "chkStartApp"},
        {"Options", "StartAppName", "", Text, "txtStartApp"},
        {"Options", "StartAppParams", "", Text, "txtStartAppCommandLine"},
        {"Options", "StopApp", "0", Bool, "chkStopApp"},
        {"Options", "StopAppName", "", Text, "txtStopApp"},
        {"Options", "StopAppParams", "", Text, "txtStopAppCommandLine"},
        {"DoNotChange", "RecordingBuffers", "30", Int, ""},
        {"DoNotChange", "PollRecordingBuffers", "0", Int, "lstBufferFlag"},
        {"DoNotChange", "EncodeDelay", "5000", Int, "lstEncodeDelay"},
        {"DoNotChange", "AudioBuffers", "400", Int, ""},
    };
    return table;
}

TEST(SettingsTable, HasEveryKeyWithDefaultTypeAndControlInItsOrder) {
    const auto table = SettingsTable();
    ASSERT_EQ(table.size(), ExpectedTable().size());
    for (size_t i = 0; i < table.size(); ++i) {
        const Expected& expected = ExpectedTable()[i];
        EXPECT_EQ(table[i].Section, expected.Section) << i;
        EXPECT_EQ(table[i].Key, expected.Key) << i;
        EXPECT_EQ(table[i].Default, expected.Default) << expected.Key;
        EXPECT_EQ(table[i].Type, expected.Type) << expected.Key;
        EXPECT_EQ(table[i].ControlName, expected.Control) << expected.Key;
        EXPECT_EQ(table[i].ControlIndex, expected.Index) << expected.Key;
        EXPECT_EQ(table[i].When == SettingControl::None, table[i].ControlName.empty()) << expected.Key;
    }
}

TEST(SettingsTable, TextsAreReadTo254CharactersAndPositionsTo99) {
    for (const SettingRow& row : SettingsTable()) {
        EXPECT_EQ(row.Limit(), row.Key == "Pos" ? size_t{99} : size_t{254}) << row.Key;
    }
}

TEST(SettingsTable, EveryRowHasAMemberOfItsOwn) {
    std::set<std::string> changed;
    for (const SettingRow& row : SettingsTable()) {
        Settings settings;
        ASSERT_TRUE(StoreSetting(settings, row, "7")) << row.Key;
        EXPECT_EQ(SettingText(settings, row), row.Type == Bool ? "1" : "7") << row.Key;
        for (const SettingRow& other : SettingsTable()) {
            if (&other == &row || other.Type == Bool) continue;
            EXPECT_NE(SettingText(settings, other), "7") << row.Key << " also sets " << other.Key;
        }
    }
}

TEST(SettingsTable, TheStructBeginsWithTheNumbersAndFlagsOfTheTable) {
    const Settings settings;
    for (const SettingRow& row : SettingsTable()) {
        if (row.Type == Text || row.Type == PosText) continue;
        EXPECT_EQ(SettingText(settings, row), row.Default) << row.Key;
    }
}

TEST(SettingsTable, ATextThatIsNoNumberChangesNothing) {
    Settings settings;
    settings.LowTempSpace = 500;
    EXPECT_FALSE(StoreSetting(settings, *FindSetting("Options", "LowTempSpace"), "many"));
    EXPECT_EQ(settings.LowTempSpace, 500);
    EXPECT_TRUE(StoreSetting(settings, *FindSetting("Options", "LowTempSpace"), "700.6"));
    EXPECT_EQ(settings.LowTempSpace, 701);
}

TEST(SettingsTable, AFlagIsSetByAnyNumberButZero) {
    Settings settings;
    const SettingRow& row = *FindSetting("Options", "Normalize");
    StoreSetting(settings, row, "-1");
    EXPECT_TRUE(settings.Normalize);
    EXPECT_EQ(SettingText(settings, row), "1");
    StoreSetting(settings, row, "0");
    EXPECT_FALSE(settings.Normalize);
}

TEST(SettingsTable, ARowIsFoundIgnoringCase) {
    ASSERT_NE(FindSetting("options", "LOWTEMPSPACE"), nullptr);
    EXPECT_EQ(FindSetting("options", "LOWTEMPSPACE")->Key, "LowTempSpace");
    EXPECT_EQ(FindSetting("Form", "Pos")->Section, "Form");
    EXPECT_EQ(FindSetting("QuickButtons", "Pos")->Section, "QuickButtons");
    EXPECT_EQ(FindSetting("Options", "NoSuchKey"), nullptr);
    EXPECT_EQ(FindSetting("Encode", "MP3"), nullptr);
}

TEST(ProviderSettingsTable, HasEveryKeyWithItsDefault) {
    const std::vector<std::pair<std::string_view, int32_t>> expected = {{"LengthOfPause", 50},
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
                                                                        {"LevelMultiplier", 100}};
    const auto table = ProviderSettingsTable();
    ASSERT_EQ(table.size(), expected.size());
    for (size_t i = 0; i < table.size(); ++i) {
        EXPECT_EQ(table[i].Key, expected[i].first);
        EXPECT_EQ(table[i].Default, expected[i].second) << table[i].Key;
        EXPECT_EQ(table[i].InMixerSection, table[i].Key == "LevelMultiplier") << table[i].Key;
    }
}

}  // namespace
}  // namespace Corvetape
