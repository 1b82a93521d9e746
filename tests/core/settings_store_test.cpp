#include "core/settings/settings_store.h"

#include <gtest/gtest.h>

#include "core/controls/control_array.h"
#include "core/controls/form.h"
#include "core/fakes.h"
#include "core/settings/registry.h"
#include "core/text/placeholders.h"

namespace Corvetape {
namespace {

constexpr const char* IniFile = "/home/eva/.config/Corvet/Corvet.ini";
constexpr const char* SeedFile = "/opt/corvetape/Corvet.ini";
constexpr const char* FixFile = "/opt/corvetape/CorvetFix.ini";
constexpr SystemVersion NT = {2, 6, 1, 7600};
constexpr SystemVersion Older = {1, 4, 10, 1998};

using Names = std::vector<std::string>;

class SettingsStoreTest : public testing::Test {
 protected:
    void Load() {
        Store.LoadSettings(
            {Values, Working, Media}, [&] { Steps.push_back("lists"); },
            [&](const SettingRow& row, const std::string& value) {
                Steps.push_back(std::string(row.Key) + "=" + value);
                if (Handler) Handler(row, value);
            });
    }
    size_t StepOf(std::string_view step) const {
        return static_cast<size_t>(std::ranges::find(Steps, step) - Steps.begin());
    }

    MemoryFiles Disk;
    StandingClock Time;
    TableFolders Places;
    RegistryBranches Registry{Disk, "/u.reg", "/m.reg"};
    Placeholders Expansion{Time, Places, Registry};
    SettingsStore Store{Disk, Places, Registry, Expansion, NT};
    Settings Values;
    WorkingFolders Working;
    MediaState Media;
    Names Steps;
    ApplySetting Handler;
};

TEST_F(SettingsStoreTest, TheFilesAreInTheUsersFolderAndBesideTheProgram) {
    EXPECT_EQ(Store.Ini().Path(), IniFile);
    EXPECT_EQ(Store.FixIni().Path(), FixFile);
    EXPECT_EQ(Store.SeedFile(), SeedFile);
}

TEST_F(SettingsStoreTest, OnTheOlderFamilyTheSeedFileIsTheSettingsFile) {
    SettingsStore store(Disk, Places, Registry, Expansion, Older);
    EXPECT_EQ(store.Ini().Path(), SeedFile);
    Disk.Contents[SeedFile] = "[General]\nLanguage=german\n" + std::string(40000, ';');
    store.LoadSettings({Values, Working, Media}, nullptr, nullptr);
    EXPECT_EQ(Values.Language, "german");
    EXPECT_FALSE(Disk.Contents.contains(IniFile));
    EXPECT_EQ(Disk.Contents[SeedFile].size(), size_t{40026});
    EXPECT_EQ(Disk.Replacements, 0);
}

TEST_F(SettingsStoreTest, TheFirstStartCopiesTheSeedFileAndReadsIt) {
    Disk.Contents[SeedFile] = "[General]\nLanguage=german\n";
    Load();
    EXPECT_EQ(Values.Language, "german");
    EXPECT_EQ(Disk.Contents[IniFile].substr(0, 26), "[General]\nLanguage=german\n");
    EXPECT_TRUE(Disk.Folders.contains("/home/eva/.config/Corvet"));
}

TEST_F(SettingsStoreTest, WhatWasReadBeforeTheSeedFileCameIsForgotten) {
    Disk.Contents[SeedFile] = "[General]\nLanguage=german\n";
    EXPECT_EQ(Store.Ini().ReadText("General", "Language", "none"), "none");
    Load();
    EXPECT_EQ(Values.Language, "german");
}

TEST_F(SettingsStoreTest, TheFirstStartWritesThatSongsEndByEverythingThatIsKnown) {
    Load();
    EXPECT_EQ(Store.ReadProviderInt("Source", "EndOfSongDetection", 0), 3);
    EXPECT_NE(Disk.Contents[IniFile].find("EndOfSongDetection=3"), std::string::npos);
}

TEST_F(SettingsStoreTest, AFileThatIsThereAlreadyGoesOnAsItWas) {
    Disk.Contents[IniFile] = "[General]\nLanguage=german\n";
    Load();
    EXPECT_EQ(Store.ReadProviderInt("Source", "EndOfSongDetection", 0), 0);
    EXPECT_EQ(Disk.Contents[IniFile], "[General]\nLanguage=german\n");
}

TEST_F(SettingsStoreTest, ASeedFileMayNameAnotherWayForSongsToEnd) {
    Disk.Contents[SeedFile] = "[Source]\nEndOfSongDetection=1\n";
    Load();
    EXPECT_EQ(Store.ReadProviderInt("Source", "EndOfSongDetection", 0), 1);
}

TEST_F(SettingsStoreTest, WithoutASeedFileTheDefaultsHold) {
    Load();
    EXPECT_EQ(Values.Language, "");
    EXPECT_EQ(Values.StopAfter, 60);
}

TEST_F(SettingsStoreTest, AnEmptyFileIsOverwrittenByTheSeedFile) {
    Disk.Contents[SeedFile] = "[General]\nLanguage=german\n";
    Disk.Contents[IniFile] = "";
    Load();
    EXPECT_EQ(Values.Language, "german");
}

TEST_F(SettingsStoreTest, AFileOf32767BytesStaysAndOneOf32768IsReplaced) {
    Disk.Contents[SeedFile] = "[General]\nLanguage=german\n";
    std::string content = "[General]\nLanguage=english\n;";
    content.resize(32767, 'x');
    Disk.Contents[IniFile] = content;
    Load();
    EXPECT_EQ(Values.Language, "english");
    content.resize(32768, 'x');
    Disk.Contents[IniFile] = content;
    Store.Ini().Reload();
    Load();
    EXPECT_EQ(Values.Language, "german");
    content.resize(40000, 'x');
    Disk.Contents[IniFile] = content;
    Store.Ini().Reload();
    Load();
    EXPECT_EQ(Values.Language, "german");
}

TEST_F(SettingsStoreTest, ATooLargeFileWithoutASeedFileStays) {
    Disk.Contents[IniFile] = "[General]\nLanguage=english\n;" + std::string(40000, 'x');
    Load();
    EXPECT_EQ(Values.Language, "english");
}

TEST_F(SettingsStoreTest, AFailedCopyOfTheSeedFileIsIgnored) {
    Disk.Contents[SeedFile] = "[General]\nLanguage=german\n";
    Disk.WritesFail = true;
    Load();
    EXPECT_EQ(Values.Language, "");
    EXPECT_EQ(Values.MusicFileTemplate[0], "yymmddhhnnss");
}

TEST_F(SettingsStoreTest, MissingKeysTakeTheirDefaults) {
    Load();
    for (const SettingRow& row : SettingsTable()) EXPECT_EQ(SettingText(Values, row), row.Default) << row.Key;
}

TEST_F(SettingsStoreTest, EveryKeyIsReadFromTheUsersFile) {
    for (const SettingRow& row : SettingsTable()) {
        const bool flag = row.Type == SettingType::Bool;
        const std::string other = flag ? (row.Default == "1" ? "0" : "1") : "17";
        Disk.Contents[IniFile] =
            "[" + std::string(row.Section) + "]\n" + std::string(row.Key) + "=" + other + "\n";
        Store.Ini().Reload();
        Load();
        EXPECT_EQ(SettingText(Values, row), other) << row.Key;
    }
}

TEST_F(SettingsStoreTest, TextsAreCutAtTheirLimit) {
    Disk.Contents[IniFile] =
        "[Form]\nPos=" + std::string(300, '1') + "\n[General]\nLanguage=" + std::string(300, 'x') + "\n";
    Load();
    EXPECT_EQ(Values.FormPos.size(), size_t{99});
    EXPECT_EQ(Values.Language.size(), size_t{254});
}

TEST_F(SettingsStoreTest, AFolderInAnotherScriptIsReadAsFarAsOneInLatin) {
    std::string folder = "/";
    for (int i = 0; i < 253; ++i) folder += "\xD0\xBC";
    Disk.Contents[IniFile] = "[Options]\nMusicPath=" + folder + "\n";
    Load();
    EXPECT_EQ(Working.Paths[1], folder);
}

TEST_F(SettingsStoreTest, ANumberWithJunkAfterItIsRead) {
    Disk.Contents[IniFile] = "[Record]\nStopAfter=45 minutes\n[Options]\nLowTempSpace=junk\nDelTemp=2\n";
    Load();
    EXPECT_EQ(Values.StopAfter, 45);
    EXPECT_EQ(Values.LowTempSpace, 300);
    EXPECT_TRUE(Values.DelTemp);
    EXPECT_LT(StepOf("DelTemp=1"), Steps.size());
}

TEST_F(SettingsStoreTest, TheTwoFilesAreNotMerged) {
    Disk.Contents[FixFile] = "[General]\nLanguage=german\n[URLs]\nRadio=http://r\nCurrent=7\n";
    Disk.Contents[IniFile] = "[Encode]\nMP3=mine\n[URLs]\nOther=http://o\nCurrent=1\n";
    Load();
    EXPECT_EQ(Values.Language, "");
    EXPECT_EQ(Values.EncoderCommand[1], "");
    EXPECT_EQ(Values.StationNames, (Names{"Radio", "Current"}));
    EXPECT_EQ(Values.CurrentUrlIndex, 1);
}

TEST_F(SettingsStoreTest, StationsComeInTheOrderOfTheFileWithoutNamelessOnes) {
    Disk.Contents[FixFile] = "[URLs]\nZ=http://z\n=http://nameless\nA=" + std::string(300, 'a') + "\nM=\n";
    Load();
    EXPECT_EQ(Values.StationNames, (Names{"Z", "A", "M"}));
    EXPECT_EQ(Values.StationUrls, (Names{"http://z", std::string(254, 'a'), ""}));
}

TEST_F(SettingsStoreTest, StationsBeyondTheListingBufferAreLost) {
    std::string content = "[URLs]\n";
    for (int i = 10000; i < 19999; ++i) content += std::to_string(i) + "=x\n";
    Disk.Contents[FixFile] = content;
    Load();
    EXPECT_EQ(Values.StationNames.size(), size_t{5461});
}

TEST_F(SettingsStoreTest, EncoderCommandsStandAtTheirIndices) {
    Disk.Contents[FixFile] =
        "[Encode]\nNormalize=n\nWAV44=w4\nWAV48=w8\nWMA44=m4\nWMA48=m8\nMP3=" + std::string(300, 'p') +
        "\nOggVorbis=o\n";
    Load();
    EXPECT_EQ(Values.NormalizeCommand, "n");
    EXPECT_EQ(Values.EncoderCommand[0], "w4");
    EXPECT_EQ(Values.EncoderCommand[1], std::string(254, 'p'));
    EXPECT_EQ(Values.EncoderCommand[2], "o");
    EXPECT_EQ(Values.EncoderCommand[3], "m4");
    EXPECT_EQ(Values.EncoderCommand[4], "m8");
    EXPECT_EQ(Values.EncoderCommand[5], "w8");
}

TEST_F(SettingsStoreTest, QualityListsAreSplitAtSemicolons) {
    Disk.Contents[FixFile] =
        "[MP3]\nEncQuality=low;high\nEncParams=-b 64;-b 320\n[OggVorbis]\nEncQuality=q\n"
        "[WMA44]\nEncParams=" +
        std::string(1200, 'x') + "\n";
    Load();
    EXPECT_EQ(Values.MP3.EncQuality, (Names{"low", "high"}));
    EXPECT_EQ(Values.MP3.EncParams, (Names{"-b 64", "-b 320"}));
    EXPECT_EQ(Values.OggVorbis.EncQuality, Names{"q"});
    EXPECT_TRUE(Values.OggVorbis.EncParams.empty());
    EXPECT_EQ(Values.WMA44.EncParams, Names{std::string(1023, 'x')});
    EXPECT_TRUE(Values.WMA48.EncQuality.empty());
}

TEST_F(SettingsStoreTest, TheListsAreShownBeforeTheFirstValueIsApplied) {
    Load();
    EXPECT_EQ(Steps.front(), "lists");
}

TEST_F(SettingsStoreTest, ControlsTakeTheirValuesInTheOrderOfTheTable) {
    Load();
    Names expected = {"lists"};
    for (const SettingRow& row : SettingsTable()) {
        if (row.When == SettingControl::Load)
            expected.push_back(std::string(row.Key) + "=" + std::string(row.Default));
    }
    for (const char* last :
         {"Encoder=0", "TempPath=/tmp/eva", "MusicPath=/home/eva/Music",
          "LogFilePath=/home/eva/.config/Corvet", "EncodeDelay=25", "PollRecordingBuffers=3"}) {
        expected.push_back(last);
    }
    EXPECT_EQ(Steps, expected);
}

TEST_F(SettingsStoreTest, TheEncoderIsRestoredAfterTheQualityListsAndWins) {
    Disk.Contents[IniFile] = "[Options]\nEncoder=1\n";
    // Choosing a quality chooses its encoder.
    Handler = [&](const SettingRow& row, const std::string& value) {
        const int32_t chosen = row.ControlName == "cmbWMA48"     ? 4
                               : row.ControlName == "optEncoder" ? std::stoi(value)
                                                                 : -1;
        if (chosen < 0) return;
        Values.Encoder = chosen;
        Store.WriteSetting("Options", "Encoder", chosen);
        EXPECT_EQ(Disk.Contents[IniFile], "[Options]\nEncoder=1\n");
    };
    Load();
    EXPECT_EQ(Values.Encoder, 1);
    EXPECT_EQ(Disk.Contents[IniFile], "[Options]\nEncoder=1\n");
}

TEST_F(SettingsStoreTest, WhatHandlersWriteWhileLoadingIsInTheFileAfterwards) {
    Handler = [&](const SettingRow& row, const std::string&) {
        if (row.Key == "DelTempFolder") Store.WriteSetting("Options", "DelTemp", "1");
    };
    Load();
    EXPECT_EQ(Profile(Disk, IniFile).ReadText("Options", "DelTemp", ""), "1");
}

TEST_F(SettingsStoreTest, HandlersSeeAllValuesAsTheyStandInTheFile) {
    Disk.Contents[IniFile] = "[DoNotChange]\nAudioBuffers=777\n";
    int32_t seen = 0;
    Handler = [&](const SettingRow& row, const std::string&) {
        if (row.Key == "Current") seen = Values.AudioBuffers;
    };
    Load();
    EXPECT_EQ(seen, 777);
}

TEST_F(SettingsStoreTest, AnUnknownEncoderIsKeptAsItIs) {
    Disk.Contents[IniFile] = "[Options]\nEncoder=9\n";
    Handler = [&](const SettingRow& row, const std::string&) {
        if (row.ControlName == "cmbWMA48") Values.Encoder = 4;
    };
    Load();
    EXPECT_EQ(Values.Encoder, 9);
}

TEST_F(SettingsStoreTest, FoldersAreExpandedAndTheirSettingsStay) {
    Disk.Contents[IniFile] = "[Options]\nTempPath=%Temp%\\%year%\\\nMusicPath=%MYMUSIC%/radio\n";
    Load();
    EXPECT_EQ(Working.Paths[0], "/tmp/eva/2009");
    EXPECT_EQ(Working.Paths[1], "/home/eva/Music/radio");
    EXPECT_EQ(Working.Paths[2], "/home/eva/.config/Corvet");
    EXPECT_EQ(Working.SongTempFolder, "/tmp/eva/2009/Corvet");
    EXPECT_EQ(Working.CommonDataFolder, "/var/lib/Corvet");
    EXPECT_EQ(Working.ProgramFolder, "/opt/corvetape");
    EXPECT_EQ(Values.TempPath, "%Temp%\\%year%\\");
}

TEST_F(SettingsStoreTest, WithoutAMusicFolderTheMusicGoesToTheDocuments) {
    Places.Paths.erase(ShellFolder::MyMusic);
    Load();
    EXPECT_EQ(Working.Paths[1], "/home/eva/Documents");
    Disk.Contents[IniFile] = "[Options]\nMusicPath=%MYMUSIC%\n";
    Store.Ini().Reload();
    Load();
    EXPECT_EQ(Working.Paths[1], "/home/eva/Documents");
    Disk.Contents[IniFile] = "[Options]\nMusicPath=%MyMusic%/x\n";
    Store.Ini().Reload();
    Load();
    EXPECT_EQ(Working.Paths[1], "%MyMusic%/x");
}

TEST_F(SettingsStoreTest, AnEmptyFolderTakesItsDefault) {
    Disk.Contents[IniFile] = "[Options]\nTempPath=\nMusicPath=  \n";
    Load();
    EXPECT_EQ(Working.Paths[0], "/tmp/eva");
    EXPECT_EQ(Working.Paths[1], "/home/eva/Music");
}

TEST_F(SettingsStoreTest, TheListOfDelaysShows30MinusTheWholeSeconds) {
    for (const auto& [delay, index] : std::vector<std::pair<const char*, const char*>>{
             {"0", "30"}, {"999", "30"}, {"5999", "25"}, {"28000", "2"}, {"30000", "0"}}) {
        Disk.Contents[IniFile] = std::string("[DoNotChange]\nEncodeDelay=") + delay + "\n";
        Store.Ini().Reload();
        Steps.clear();
        Load();
        EXPECT_LT(StepOf(std::string("EncodeDelay=") + index), Steps.size()) << delay;
    }
}

TEST_F(SettingsStoreTest, TheListOfMethodsShows3MinusTheMethod) {
    Disk.Contents[IniFile] = "[DoNotChange]\nPollRecordingBuffers=2\n";
    Load();
    EXPECT_LT(StepOf("PollRecordingBuffers=1"), Steps.size());
}

TEST_F(SettingsStoreTest, TheDatesOfTheUpdateCheckComeFromTheRegistry) {
    Registry.WriteUserValue("Flags", "LastUpdateCheck", std::string("40178.25"));
    Registry.WriteUserValue("Flags", "NextUpdateCheck", 40200);
    Load();
    EXPECT_EQ(Values.LastUpdateCheck, 40178.25);
    EXPECT_EQ(Values.NextUpdateCheck, 40200.0);
}

TEST_F(SettingsStoreTest, EverySectionThatBeginsWithMixerIsAKnownProvider) {
    Disk.Contents[IniFile] = "[MixerRadio Z]\nx=1\n[Mixer]\nx=1\n[Radio]\nx=1\n[MixerA]\n[mixerb]\n";
    Media.KnownProviders = {"old"};
    Load();
    EXPECT_EQ(Media.KnownProviders, (Names{"Radio Z", "A", "b"}));
}

TEST_F(SettingsStoreTest, MediaDataAreOnAsTheSettingSays) {
    Disk.Contents[IniFile] = "[Providers]\nEnable=0\n";
    Load();
    EXPECT_FALSE(Media.StationDataEnabled);
    EXPECT_EQ(StepOf("Enable=0"), Steps.size());
}

TEST_F(SettingsStoreTest, AMissingDataFileLeavesEmptyListsWithoutAMessage) {
    Load();
    EXPECT_TRUE(Values.StationNames.empty());
    EXPECT_EQ(Values.EncoderCommand[0], "");
    EXPECT_TRUE(Values.MP3.EncQuality.empty());
}

TEST_F(SettingsStoreTest, AWrittenSettingIsInTheFileAtOnce) {
    Store.WriteSetting("Options", "LowTempSpace", 500);
    EXPECT_EQ(Disk.Contents[IniFile], "[Options]\nLowTempSpace=500\n");
    Store.WriteSetting("Options", "StartAppName", "\"/bin/a b\"");
    EXPECT_EQ(Profile(Disk, IniFile).ReadText("Options", "StartAppName", ""), "\"/bin/a b\"");
}

TEST_F(SettingsStoreTest, AFileThatCannotBeWrittenIsNotReported) {
    Disk.WritesFail = true;
    Store.WriteSetting("Options", "LowTempSpace", 500);
    EXPECT_TRUE(Disk.Contents.empty());
}

TEST_F(SettingsStoreTest, ProviderSectionsAreReadAsTheyStandNow) {
    EXPECT_EQ(Store.ReadProviderInt("Radio", "LengthOfPause", 50), 50);
    Store.WriteSetting("Radio", "LengthOfPause", 200);
    EXPECT_EQ(Store.ReadProviderInt("Radio", "LengthOfPause", 50), 200);
    EXPECT_EQ(Store.ReadProviderText("Radio", "LengthOfPause"), "200");
    EXPECT_EQ(Store.ReadProviderText("Radio", "None", "d"), "d");
}

TEST_F(SettingsStoreTest, AnOverriddenSettingIsLoadedAndNeverReachesTheFile) {
    const std::string content = "[Source]\nEndOfSongDetection=0\n[Options]\nEncoder=2\n";
    Disk.Contents[SeedFile] = content;
    Store.Ini().Override("Options", "Encoder", "1");
    Load();
    EXPECT_EQ(Values.Encoder, 1);
    Store.WriteSetting("Options", "Encoder", "3");
    EXPECT_EQ(Disk.Contents[IniFile], content);
}

struct OptionForm : Form {
    OptionForm() : Form("frmTest", "") {}
    CheckBox chkDelTemp{*this, "chkDelTemp"};
    TextBox txtStartApp{*this, "txtStartApp"};
    ControlArray<TextBox, 3> txtPath{*this, "txtPath"};
    OptionArray<6> optEncoder{*this, "optEncoder"};
    ComboBox cmbMP3{*this, "cmbMP3"};
    ComboBox cmbURL{*this, "cmbURL"};
    ScrollBar vscMultiplier{*this, "vscMultiplier", -1, 100, 1000};
};

TEST(ApplySettingToForm, SettingACheckBoxRunsItsHandlerAsAClickDoes) {
    OptionForm form;
    int clicks = 0;
    form.chkDelTemp.Click.Connect([&] { ++clicks; });
    ApplySettingToForm(form, *FindSetting("Options", "DelTemp"), "1");
    EXPECT_EQ(form.chkDelTemp.Value(), 1);
    EXPECT_EQ(clicks, 1);
}

TEST(ApplySettingToForm, ATextIsSetWithoutBeingValidated) {
    OptionForm form;
    form.txtStartApp.Validate = [] { return true; };
    ApplySettingToForm(form, *FindSetting("Options", "StartAppName"), "/bin/x");
    EXPECT_EQ(form.txtStartApp.Text(), "/bin/x");
}

TEST(ApplySettingToForm, AFolderIsToolTipAndText) {
    OptionForm form;
    ApplySettingToForm(form, *FindSetting("Options", "MusicPath"), "/m");
    EXPECT_EQ(form.txtPath[1].ToolTip(), "/m");
    EXPECT_EQ(form.txtPath[1].Text(), "/m");
    EXPECT_EQ(form.txtPath[0].Text(), "");
}

TEST(ApplySettingToForm, TheEncoderSelectsItsOption) {
    OptionForm form;
    form.optEncoder[4].Value(true);
    ApplySettingToForm(form, *FindSetting("Options", "Encoder"), "2");
    EXPECT_EQ(form.optEncoder.Selected(), 2);
}

TEST(ApplySettingToForm, AnUnknownEncoderSelectsNone) {
    OptionForm form;
    form.optEncoder[4].Value(true);
    ApplySettingToForm(form, *FindSetting("Options", "Encoder"), "9");
    EXPECT_EQ(form.optEncoder.Selected(), -1);
}

TEST(ApplySettingToForm, AQualityBeyondTheListSelectsNothing) {
    OptionForm form;
    form.cmbMP3.AddItem("low");
    ApplySettingToForm(form, *FindSetting("Options", "MP3Quality"), "5");
    EXPECT_EQ(form.cmbMP3.ListIndex(), -1);
    ApplySettingToForm(form, *FindSetting("Options", "MP3Quality"), "0");
    EXPECT_EQ(form.cmbMP3.ListIndex(), 0);
}

TEST(ApplySettingToForm, AMissingControlIsPassedOver) {
    Form form("frmEmpty", "");
    ApplySettingToForm(form, *FindSetting("Options", "DelTemp"), "1");
    ApplySettingToForm(form, *FindSetting("Options", "Encoder"), "1");
    EXPECT_TRUE(form.Controls().empty());
}

TEST(ShowListsInForm, FillsTheListsThatTheFormHasAndSetsTheMultiplier) {
    OptionForm form;
    form.vscMultiplier.Value(500);
    form.cmbURL.AddItem("old");
    Settings settings;
    settings.StationNames = {"Radio A", "Radio B"};
    settings.MP3.EncQuality = {"low", "high"};
    ShowListsInForm(form, settings);
    EXPECT_EQ(form.vscMultiplier.Value(), 100);
    ASSERT_EQ(form.cmbURL.Items().size(), size_t{2});
    EXPECT_EQ(form.cmbURL.Items()[1].Text, "Radio B");
    EXPECT_EQ(form.cmbMP3.Items()[0].Text, "low");
}

}  // namespace
}  // namespace Corvetape
