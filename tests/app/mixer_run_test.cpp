// The mixer as the whole program uses it: snapshot, restore, sources, searches in the middle of a recording.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/desktop_notes.h"
#include "forms/dlg_provider.h"

namespace Corvetape::Test {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr const char* RescueFile = "/home/user/.config/Corvet/mixer-before-search.ini";

int32_t& VolumeOf(World& world, size_t card) {
    return world.Computer.Mixer.Cards[card].Destinations[0].Line.Controls[0].Value();
}

/// A radio that plays songs with their titles, on an input with a mixer; a second input is silent.
WorldOptions Playing(std::vector<IniLine> settings = {}) {
    WorldOptions options;
    options.Radio = RadioScript();
    for (int number = 1; number <= 20; ++number) {
        ScriptSong song;
        song.Seed = static_cast<uint64_t>(number);
        song.Media = {"Station", "Artist", "Song " + std::to_string(number), "", ""};
        options.Radio.Song(song);
    }
    settings.push_back({ProviderOfRadio, "EndOfSongDetection", "1"});
    options.Settings = std::move(settings);
    return options;
}

class MixerRun : public testing::Test {
 protected:
    /// Makes a world with the inputs and their cards, whose newer stack has one device for each input.
    void Make(WorldOptions options) {
        options.Settings.push_back({"Mixer", "InputDeviceNames", std::string(RadioName) + ";Quiet;"});
        world.emplace(std::move(options));
        world->Computer.System.VersionRecord = {2, 6, 0, 0};
        world->Computer.WaveIn.AddRadio("Quiet", RadioScript().SilenceForever(), WaveInKind::Input);
        world->Computer.Mixer.AddInput(RadioName, 30000);
        world->Computer.Mixer.AddInput("Quiet", 20000);
        world->Made();
    }

    std::optional<World> world;
};

TEST_F(MixerRun, PutsTheMixerBackAtItsEndWhereTheUserWantsThat) {
    for (const auto& [wanted, volume] : {std::pair("1", 30000), std::pair("0", 111)}) {
        Make(Starting("", {{"Mixer", "AutoUpdate", wanted}}));
        ASSERT_TRUE(world->Start());
        VolumeOf(*world, 0) = 111;
        world->Finish();
        EXPECT_EQ(VolumeOf(*world, 0), volume) << wanted;
    }
}

TEST_F(MixerRun, BringsTheMixerOfASourceBackWhenTheSourceComes) {
    const std::string section = std::string("Mixer") + ProviderOfRadio;
    std::vector<IniLine> settings = {{"Mixer", "AutoUpdate", "1"}, {section, "C000000", "12345"}};
    Make(Playing(settings));
    ASSERT_TRUE(world->Start());
    world->RunFor(3);
    EXPECT_EQ(world->Values().Media.MixerSectionName, section);
    EXPECT_EQ(VolumeOf(*world, 0), 12345);
    EXPECT_EQ(VolumeOf(*world, 1), 20000);
    world->Finish();
    EXPECT_EQ(VolumeOf(*world, 0), 30000);
}

TEST_F(MixerRun, SettingsThatAreTakenOverBringTheMixerOfTheOtherSourceAndKeepItForTheNewOne) {
    Make(Playing({{"MixerOther", "C000000", "4321"}}));
    world->Question.Answer = [](dlgProvider& dialog) { dialog.cmdOK.Press(); };
    world->Made();
    ASSERT_TRUE(world->Start());
    world->RunFor(3);
    const std::string section = std::string("Mixer") + ProviderOfRadio;
    EXPECT_EQ(world->Values().Media.MixerSectionName, section);
    EXPECT_EQ(VolumeOf(*world, 0), 4321);
    EXPECT_EQ(world->Stored(section, "C000000"), "4321");
    EXPECT_EQ(world->Stored(section, "C010000"), "20000");
    EXPECT_EQ(world->Stored(section, "LevelMultiplier"), "100");
}

TEST_F(MixerRun, LeavesTheMixerAloneWhereTheUserDoesNotWantIt) {
    Make(Playing({{std::string("Mixer") + ProviderOfRadio, "C000000", "12345"}}));
    ASSERT_TRUE(world->Start());
    world->RunFor(3);
    world->Finish();
    EXPECT_THAT(world->Computer.Mixer.Sets, IsEmpty());
}

TEST_F(MixerRun, WithoutASourceItIsSetOnceAndNotEverySecond) {
    Make(Starting("", {{"Mixer", "AutoUpdate", "1"}, {"Mixer", "C000000", "777"}}));
    world->Setup.TellsTitles = false;
    world->Made();
    ASSERT_TRUE(world->Start());
    world->RunFor(2);
    EXPECT_EQ(VolumeOf(*world, 0), 777);
    VolumeOf(*world, 0) = 555;
    world->RunFor(5);
    EXPECT_EQ(VolumeOf(*world, 0), 555);
}

TEST_F(MixerRun, GainThatWasSavedWithTheMixerIsThereAtTheNextStart) {
    Make(Playing());
    ASSERT_TRUE(world->Start());
    world->RunFor(12);
    world->Computer.Dialogs.YesNoAnswers = {true, true};
    world->Form().cmdAGC.Press();
    const int32_t gain = world->Form().vscMultiplier.Value();
    ASSERT_GT(gain, 100);
    EXPECT_EQ(world->Stored(std::string("Mixer") + ProviderOfRadio, "C000000"), "65535");
    world->Finish();
    world->Made();
    ASSERT_TRUE(world->Start());
    world->RunFor(3);
    EXPECT_EQ(world->Values().Pause.LevelMultiplier, gain);
}

TEST_F(MixerRun, ASearchEndsTheSongThatIsKeptAndRecordingGoesOnWithTheNextOne) {
    Make(Playing({{ProviderOfRadio, "IgnoreShortSongs", "0"}}));
    ASSERT_TRUE(world->StartRecording());
    world->RunFor(20);
    ASSERT_TRUE(world->Values().Flags.RecordCurrentSong);
    world->Computer.Dialogs.YesNoAnswers = {false, true, true, false};
    world->Form().cmdAutoInput.Press();
    EXPECT_THAT(world->Logged("INFO"), Contains(HasSubstr("ends here, because the inputs are searched")));
    ASSERT_THAT(world->Closed, Not(IsEmpty()));
    EXPECT_EQ(world->Closed[0].Song.Fate, SongFate::Kept);
    const double seconds = static_cast<double>(world->Closed[0].Song.Frames) / 44100;
    EXPECT_NEAR(seconds, 20, 1.5);  // all that was heard, what waited in the ring included
    EXPECT_FALSE(world->Values().Flags.RecordCurrentSong);
    EXPECT_TRUE(world->Values().Flags.RecordNextSong);
    EXPECT_EQ(world->Form().chkStartStop[1].Value(), 1);
    world->RunFor(120);
    EXPECT_TRUE(world->Values().Flags.RecordCurrentSong);
    world->Finish();
    for (size_t i = 1; i < world->Closed.size(); ++i) {
        const HeardSong& heard = world->Closed[i];
        const bool kept = heard.Song.Fate == SongFate::Kept;
        EXPECT_TRUE(!kept || heard.RadioBegin >= 55U * 44100U) << heard.RadioBegin;
    }
}

TEST_F(MixerRun, NothingIsKeptOfWhatASearchHears) {
    Make(Playing());
    ASSERT_TRUE(world->StartRecording());
    world->RunFor(10);
    world->Computer.Dialogs.WhileOpen = [this](const ShownBox& box) {
        if (!box.Text.starts_with("There is sound on")) return;
        EXPECT_FALSE(world->Values().Flags.RecordCurrentSong);
        EXPECT_FALSE(world->Values().Flags.RecordNextSong);
    };
    world->Computer.Dialogs.YesNoAnswers = {false, true, true, false};
    world->Form().cmdAutoInput.Press();
    EXPECT_EQ(world->Boxes().size(), 4U);
}

TEST_F(MixerRun, ASearchWithoutARecordingStartsNone) {
    Make(Playing());
    ASSERT_TRUE(world->Start());
    world->RunFor(10);
    world->Computer.Dialogs.YesNoAnswers = {false, true, true, false};
    world->Form().cmdAutoInput.Press();
    EXPECT_FALSE(world->Values().Flags.RecordNextSong);
    EXPECT_EQ(world->Form().chkStartStop[1].Value(), 0);
    EXPECT_THAT(world->Logged("INFO"), Not(Contains(HasSubstr("ends here"))));
}

TEST_F(MixerRun, AProgramThatIsClosedInTheMiddleOfASearchPutsTheInputsBack) {
    Make(Playing());
    ASSERT_TRUE(world->Start());
    world->RunFor(3);
    const PauseSettings before = world->Values().Pause;
    world->Computer.Dialogs.WhileOpen = [this](const ShownBox& box) {
        if (box.Text.starts_with("There is sound on")) world->Recorder->Unload();
    };
    world->Computer.Dialogs.YesNoAnswers = {false, true, true};
    world->Form().cmdAutoInput.Press();
    EXPECT_FALSE(world->Recorder->Running());
    EXPECT_EQ(VolumeOf(*world, 0), 30000);
    EXPECT_EQ(VolumeOf(*world, 1), 20000);
    EXPECT_EQ(world->Values().Pause.SilenceAmplitude, before.SilenceAmplitude);
    EXPECT_EQ(world->Values().Pause.PauseBuffers, before.PauseBuffers);
    EXPECT_FALSE(world->Recorder->InputOpen());
    EXPECT_FALSE(world->Disk().Exists(RescueFile));
}

TEST_F(MixerRun, TheStartAfterACrashInASearchPutsTheInputsBackAndSaysSo) {
    Make(Playing());
    ASSERT_TRUE(world->Start());
    world->RunFor(3);
    std::string left;
    world->Computer.Dialogs.WhileOpen = [&](const ShownBox& box) {
        if (box.Text.starts_with("There is sound on")) left = *world->Disk().Content(RescueFile);
    };
    world->Computer.Dialogs.YesNoAnswers = {false, true, true, false};
    world->Form().cmdAutoInput.Press();
    ASSERT_EQ(VolumeOf(*world, 0), 65535);
    world->Disk().Put(RescueFile, left);  // as a process leaves it that is gone at the question
    world->Computer.Dialogs.WhileOpen = nullptr;
    world->Made();
    ASSERT_TRUE(world->Load());
    EXPECT_EQ(VolumeOf(*world, 0), 30000);
    EXPECT_EQ(VolumeOf(*world, 1), 20000);
    EXPECT_THAT(world->Logged("INFO"), Contains(HasSubstr("a search had been broken off")));
    EXPECT_FALSE(world->Disk().Exists(RescueFile));
}

TEST_F(MixerRun, ASecondProgramLeavesTheSearchOfTheFirstOneAlone) {
    const auto place = std::make_shared<InstancePlace>();
    SimDesktop first(place);
    ASSERT_TRUE(first.ClaimInstance());
    WorldOptions options = Starting("-update");
    options.Machine.Place = place;
    Make(std::move(options));
    world->Disk().Put(RescueFile, "[%81%uiet]\nC000000=5\n");
    ASSERT_TRUE(world->Load());
    EXPECT_EQ(VolumeOf(*world, 1), 20000);
    EXPECT_TRUE(world->Disk().Exists(RescueFile));
}

TEST_F(MixerRun, CaptureGoesOnWhileTheGainIsSearched) {
    Make(Playing());
    ASSERT_TRUE(world->StartRecording());
    world->RunFor(12);
    const uint64_t frames = world->Values().Signal.FramesReceived;
    world->Computer.Dialogs.YesNoAnswers = {true, false};
    const double began = world->Now();
    world->Form().cmdAGC.Press();
    const auto heard = static_cast<double>(world->Values().Signal.FramesReceived - frames) / 44100;
    EXPECT_NEAR(heard, world->Now() - began, 0.06);
    EXPECT_EQ(world->Values().Signal.FramesLost, 0U);
}

}  // namespace
}  // namespace Corvetape::Test
