// The user's settings file under a running program: what controls write survives its end at any moment.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/desktop_notes.h"

namespace Corvetape::Test {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

/// A control, pressed as a user does, and what it stores.
struct Press {
    const char* Section;
    const char* Key;
    const char* Value;
    void (*Do)(frmMain&);
};

constexpr Press Presses[] = {
    {"Record", "StopAfter", "90", [](frmMain& f) { f.txtRecordingPeriod.SetValueText("90"); }},
    {"Providers", "Enable", "0", [](frmMain& f) { f.chkStationDataEnable.Press(); }},
    {"Mixer", "AutoUpdate", "1", [](frmMain& f) { f.chkMixerAutoUpdate.Press(); }},
    {"Mixer", "SPDIF48kHz", "1", [](frmMain& f) { f.chk48kHz.Press(); }},
    {"Options", "UseMusicSubfolder", "0", [](frmMain& f) { f.chkUseMusicSubfolder.Press(); }},
    {"Options", "MusicFolderTemplate", "%Artist%",
     [](frmMain& f) { f.txtMusicFolderTemplate.SetValueText("%Artist%"); }},
    {"Options", "MusicFileTemplate1", "yyyymmdd",
     [](frmMain& f) { f.txtMusicFileTemplate[0].SetValueText("yyyymmdd"); }},
    {"Options", "MusicFileTemplate2", "%Title%",
     [](frmMain& f) { f.txtMusicFileTemplate[1].SetValueText("%Title%"); }},
    {"Options", "Normalize", "1", [](frmMain& f) { f.chkNormalize.Press(); }},
    {"Options", "EncodeOffline", "1", [](frmMain& f) { f.chkEncodeOffline.Press(); }},
    {"Options", "RestartRadioIfSilent", "1", [](frmMain& f) { f.chkRestartRadioIfSilent.Press(); }},
    {"Options", "StoreCoverImage", "0", [](frmMain& f) { f.chkStoreCoverImage.Press(); }},
    {"Options", "NotifySongs", "1", [](frmMain& f) { f.chkNotifySongs.Press(); }},
    {"Options", "NoStartupInfo", "0", [](frmMain& f) { f.chkNoStartupInfo.Press(); }},
    {"Options", "AutoExclude", "1", [](frmMain& f) { f.chkAutoExclude.Press(); }},
    {"Options", "DisableSoundScheme", "1", [](frmMain& f) { f.chkDisableSoundScheme.Press(); }},
    {"Options", "DelayUnload", "1", [](frmMain& f) { f.chkDelayUnload.Press(); }},
    {"Options", "QuitAfterRecording", "1", [](frmMain& f) { f.chkQuitAfterRecording.Press(); }},
    {"Options", "DelTemp", "1", [](frmMain& f) { f.chkDelTempFolder.Press(); }},  // it sets the other too
    {"Options", "DelTempFolder", "1", [](frmMain& f) { f.chkDelTempFolder.Press(); }},
    {"Options", "MP3Quality", "3", [](frmMain& f) { f.cmbMP3.ListIndex(3); }},
    {"Options", "OggVorbisQuality", "7", [](frmMain& f) { f.cmbOgg.ListIndex(7); }},
    {"Options", "WMA44Quality", "0", [](frmMain& f) { f.cmbWMA44.ListIndex(0); }},
    {"Options", "WMA48Quality", "4", [](frmMain& f) { f.cmbWMA48.ListIndex(4); }},
    {"Options", "Encoder", "5", [](frmMain& f) { f.optEncoder[5].Value(true); }},
    {"Options", "LowTempSpace", "4000", [](frmMain& f) { f.txtLowTempSpace.SetValueText("4000"); }},
    {"Options", "LowMusicSpace", "100", [](frmMain& f) { f.txtLowMusicSpace.SetValueText("100"); }},
    {"Options", "StartApp", "1", [](frmMain& f) { f.chkStartApp.Press(); }},
    {"Options", "StartAppName", "/bin/radio", [](frmMain& f) { f.txtStartApp.SetValueText("/bin/radio"); }},
    {"Options", "StartAppParams", "-x", [](frmMain& f) { f.txtStartAppCommandLine.SetValueText("-x"); }},
    {"Options", "StopAppName", "/bin/lamp", [](frmMain& f) { f.txtStopApp.SetValueText("/bin/lamp"); }},
    {"Options", "StopAppParams", "'a b'", [](frmMain& f) { f.txtStopAppCommandLine.SetValueText("'a b'"); }},
    {"Options", "StopApp", "1", [](frmMain& f) { f.chkStopApp.Press(); }},
    {"DoNotChange", "EncodeDelay", "28000", [](frmMain& f) { f.lstEncodeDelay.ListIndex(2); }},
    {"DoNotChange", "PollRecordingBuffers", "2", [](frmMain& f) { f.lstBufferFlag.ListIndex(1); }},
    {ProviderOfRadio, "LengthOfPause", "250", [](frmMain& f) { f.txtLengthOfPause.SetValueText("250"); }},
    {ProviderOfRadio, "SilenceAmplitude", "-1", [](frmMain& f) { f.txtSilenceAmplitude.SetValueText("-1"); }},
    {ProviderOfRadio, "DetectSilenceByPeak", "0", [](frmMain& f) { f.chkDetectSilenceByPeak.Press(); }},
    {ProviderOfRadio, "EndOfSongDetection", "2", [](frmMain& f) { f.optEndOfSong[2].Press(); }},
    {ProviderOfRadio, "EndOfSongThreshold0", "1500",
     [](frmMain& f) { f.sldEndOfSongThreshold(0).Value(-3); }},
    {ProviderOfRadio, "QuitAfterSilence", "10", [](frmMain& f) { f.txtQuitAfterSilence.SetValueText("10"); }},
    {"MixerWindows Media Player", "LevelMultiplier", "150", [](frmMain& f) { f.vscMultiplier.Value(150); }},
};

/// Lets `look` see the disk ahead of each of its operations: where the program may be killed.
void AheadOfEachOperation(World& world, const std::function<void()>& look) {
    FileFault fault;
    fault.Error = 0;
    fault.Delay = std::chrono::milliseconds(1);
    world.Disk().AddFault(fault);
    world.Disk().DelayWith([look](std::chrono::milliseconds) { look(); });
}

const char* const HandWritten = "[Elsewhere]\r\n; my own remark\r\nKey = \"a value\"\r\nnot a line\r\n";

class StoredByControls : public testing::TestWithParam<Press> {};

TEST_P(StoredByControls, SurvivesTheKillOfTheProgramAtAnyMoment) {
    const Press& press = GetParam();
    World world;
    world.Disk().Put(IniFile, *world.Disk().Content(IniFile) + HandWritten);
    ASSERT_TRUE(world.Start());
    ASSERT_NE(world.Stored(press.Section, press.Key), press.Value);

    size_t looks = 0;
    size_t broken = 0;
    AheadOfEachOperation(world, [&] {
        ++looks;
        const std::string file = world.Disk().Content(IniFile).value_or("no file");
        if (file.find(HandWritten) == std::string::npos) ++broken;
    });
    press.Do(world.Form());
    world.Disk().ClearFaults();
    EXPECT_GT(looks, 0U);
    EXPECT_EQ(broken, 0U);

    // Killed right after the press: nothing else is written any more.
    const SimDiskImage left = world.Disk().Snapshot();
    World next;
    next.Disk().Restore(left);
    EXPECT_EQ(next.Stored(press.Section, press.Key), press.Value);
    ASSERT_TRUE(next.Load());
    next.Finish();
    EXPECT_EQ(next.Stored(press.Section, press.Key), press.Value);  // the start and the end keep it
    EXPECT_THAT(next.Disk().Content(IniFile).value_or(""), HasSubstr(HandWritten));
}

INSTANTIATE_TEST_SUITE_P(Each, StoredByControls, testing::ValuesIn(Presses),
                         [](const auto& each) { return std::string(each.param.Key); });

TEST(SettingsFile, ThatCannotBeWrittenShowsNoBoxAndTheValueHoldsForThisRun) {
    World world;
    ASSERT_TRUE(world.Start());
    FileFault fault;
    fault.Pattern = IniFile;
    fault.Operation = FileOperation::Replace;
    world.Disk().AddFault(fault);
    const auto before = world.Disk().Content(IniFile);
    world.Form().chkNormalize.Press();
    world.RunFor(5);
    world.Finish();
    EXPECT_TRUE(world.Values().Options.Normalize);
    EXPECT_EQ(world.Disk().Content(IniFile), before);
    EXPECT_THAT(world.Boxes(), IsEmpty());
    EXPECT_EQ(world.Logged("ERROR").size(), 1U);
}

TEST(SettingsFile, Of32768BytesIsReplacedByTheSeedAtTheNextStart) {
    for (const auto& [size, replaced] :
         {std::pair(32767, false), std::pair(32768, true), std::pair(40000, true)}) {
        World world;
        std::string file = *world.Disk().Content(IniFile) + "[Options]\r\n;";
        file.resize(static_cast<size_t>(size), 'x');
        world.Disk().Put(IniFile, file);
        world.Disk().Put("/opt/corvetape/Corvet.ini", "[General]\r\nLanguage=english\r\n");
        ASSERT_TRUE(world.Load());
        const std::string now = world.Disk().Content(IniFile).value_or("");
        EXPECT_EQ(now.size() < 1000, replaced) << size;
    }
}

TEST(SettingsFile, ThatIsEmptyIsReplacedByTheSeed) {
    World world;
    world.Disk().Put(IniFile, "");
    world.Disk().Put("/opt/corvetape/Corvet.ini", "[Options]\r\nLowTempSpace=555\r\n");
    ASSERT_TRUE(world.Load());
    EXPECT_EQ(world.Values().Options.LowTempSpace, 555);
}

TEST(SettingsFile, ThatSomebodyEditsMeanwhileKeepsHisLines) {
    World world;
    ASSERT_TRUE(world.Start());
    world.Disk().Put(IniFile, *world.Disk().Content(IniFile) + "[Late]\r\nEdit=1\r\n");
    world.Form().chkNormalize.Press();
    EXPECT_EQ(world.Stored("Late", "Edit"), "1");
    EXPECT_EQ(world.Stored("Options", "Normalize"), "1");
}

TEST(SettingsFile, ThatSomebodyEditsIsReadAgainWhenItsSourceIsChosenAgain) {
    World world(Starting("", {{ProviderOfRadio, "LengthOfPause", "500"}}));
    ASSERT_TRUE(world.Start());
    ASSERT_EQ(world.Values().Pause.PauseBuffers, 10);
    std::string text = *world.Disk().Content(IniFile);
    const std::string line = "LengthOfPause=500";
    text.replace(text.find(line), line.size(), "LengthOfPause=750");
    world.Disk().Put(IniFile, text);
    world.RunFor(3);
    EXPECT_EQ(world.Values().Pause.PauseBuffers, 10) << "the source has not changed";
    world.Form().chkStationDataEnable.Press();
    world.RunFor(3);
    world.Form().chkStationDataEnable.Press();
    world.RunFor(3);
    EXPECT_EQ(world.Values().Pause.PauseBuffers, 15);
}

TEST(SettingsFile, GetsNoSectionOfAProviderBeforeSomethingIsChanged) {
    World world;
    ASSERT_TRUE(world.Start());
    world.RunFor(10);
    const Profile file(world.Computer.Files, IniFile);
    EXPECT_FALSE(file.HasKey(ProviderOfRadio, "LengthOfPause"));
    world.Form().txtLengthOfPause.SetValueText("100");
    const Profile changed(world.Computer.Files, IniFile);
    EXPECT_TRUE(changed.HasKey(ProviderOfRadio, "LengthOfPause"));
    EXPECT_FALSE(changed.HasKey(ProviderOfRadio, "SilenceAmplitude"));
}

TEST(Overrides, HoldForThisRunAndAreNotWritten) {
    World world;
    RunOptions run;
    run.Overrides = {{"Options", "LowTempSpace", "444"}, {"Options", "Normalize", "1"}};
    world.Recorder.reset();
    Program program(world.Computer.Get(), run);
    ASSERT_TRUE(program.Load());
    EXPECT_EQ(program.Values().Options.LowTempSpace, 444);
    EXPECT_EQ(program.Values().Form.txtLowTempSpace.Text(), "444");
    program.Values().Form.chkNormalize.Press();
    program.Unload();
    EXPECT_EQ(world.Stored("Options", "LowTempSpace"), "-");
    EXPECT_EQ(world.Stored("Options", "Normalize"), "-");
}

TEST(FilesThatCannotBeWritten, AreReportedOnce) {
    World world;
    world.Disk().AddFault({.Pattern = IniFile, .Operation = FileOperation::Replace});
    world.Disk().AddFault({.Pattern = std::string(LogFolder) + "/*.log", .Operation = FileOperation::Append});
    ASSERT_TRUE(world.Start());
    for (int i = 1; i <= 3; ++i) {
        world.Form().txtRecordingPeriod.SetValueText(std::to_string(i));
        world.RunFor(3);
    }
    const std::vector<std::string> expected = {
        std::string("The log could not be written into the folder \"") + LogFolder +
            "\" (error 5: Input/output error).",
        std::string("The settings could not be written into the file \"") + IniFile +
            "\" (error 5: Input/output error). Changes to them hold until Corvetape ends."};
    std::vector<std::string> reported = world.Logged("ERROR");
    std::ranges::sort(reported);
    EXPECT_EQ(reported, expected);
}

TEST(FilesThatCannotBeWritten, AreNoneOnAHealthyDisk) {
    World world;
    ASSERT_TRUE(world.Start());
    world.Form().txtRecordingPeriod.SetValueText("7");
    world.RunFor(3);
    EXPECT_TRUE(world.Logged("ERROR").empty());
}

}  // namespace
}  // namespace Corvetape::Test
