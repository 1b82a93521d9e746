// The whole program on a simulated machine on which a media player runs.
#include <gtest/gtest.h>

#include <optional>

#include "app/program.h"
#include "core/settings/profile.h"
#include "media/provider_wmp.h"
#include "sim/radio_script.h"
#include "sim/sim_machine.h"
#include "support/scripted_players.h"

namespace Corvetape {
namespace {

class PlayerRun : public testing::Test {
 protected:
    void SetUp() override {
        Computer.Files.Put("/home/user/.config/Corvet/Corvet.ini",
                           "[General]\nLanguage=english\n[Options]\nNoStartupInfo=1\n[Mixer]\n"
                           "InputDevice=0\nInputDeviceNames=Radio;\n");
        Computer.WaveIn.AddRadio("Radio", RadioScript().SilenceForever());
        RunOptions run;
        run.CommandLine = "-dontask";
        Machine machine = Computer.Get();
        machine.Players = &Players;
        Recorder.emplace(machine, std::move(run), ProgramEvents{});
        ASSERT_TRUE(Recorder->Load());
        RunFor(4);
    }

    void Say(const std::string& title, bool playing = true) {
        PlayerReport report;
        report.Player = "a";
        report.Playing = playing;
        report.Artist = "Ann";
        report.Title = title;
        Players.Changed(report);
    }
    void RunFor(double seconds) {
        Computer.Loop.RunFor(std::chrono::milliseconds(static_cast<int64_t>(seconds * 1000)));
    }
    State& Now() { return Recorder->Values(); }

    SimMachine Computer;
    ScriptedPlayers Players;
    std::optional<Program> Recorder;
};

TEST_F(PlayerRun, ATitleThatChangesIsAChangeOfSongAtTheNextPoll) {
    Say("One");
    RunFor(2);
    ASSERT_EQ(Now().Media.ProviderName, MediaPlayerName);
    Now().Form.optEndOfSong[1].Press();
    RunFor(15);
    ASSERT_FALSE(Now().Cut.CutPending);
    Say("Two");
    RunFor(0.8);  // what a player says settles, then the poll comes
    EXPECT_EQ(Now().Media.CurrentMedia.Song, "Two");
    EXPECT_EQ(Now().Media.PreviousMedia.Song, "One");
    EXPECT_TRUE(Now().Cut.CutPending);
}

TEST_F(PlayerRun, TheButtonAsksThePlayerAnewAndWaitsForItsAnswer) {
    Say("One");
    RunFor(2);
    ASSERT_EQ(Now().Media.ProviderName, MediaPlayerName);
    ASSERT_EQ(Players.Asked, 1);
    bool pressable = true;
    const auto answer = Computer.Loop.NewTimer([&] {
        pressable = Now().Form.cmdGetStationID.Enabled();
        Say("Missed");
    });
    answer->Start(std::chrono::milliseconds(100), TimerPrecision::Coarse);
    Now().Form.cmdGetStationID.Press();
    answer->Stop();
    EXPECT_FALSE(pressable);
    EXPECT_EQ(Players.Asked, 2);
    EXPECT_EQ(Now().Media.CurrentMedia.Song, "Missed");
    EXPECT_TRUE(Now().Form.cmdGetStationID.Enabled());
}

TEST_F(PlayerRun, WithMediaDataOffTheButtonAsksNoPlayer) {
    Say("One");
    RunFor(2);
    Now().Form.chkStationDataEnable.Value(0);
    Now().Form.cmdGetStationID.Press();
    EXPECT_EQ(Players.Asked, 1);
}

TEST_F(PlayerRun, APlayerThatEndsGivesWayToTheNullProviderAndComesBack) {
    Say("One", false);
    RunFor(2);
    ASSERT_EQ(Now().Media.ProviderName, MediaPlayerName);
    Players.Gone("a");
    RunFor(12);
    EXPECT_EQ(Now().Media.ProviderName, NoStationData);
    Say("Two");
    RunFor(12);  // an old song is asked for every ten seconds
    EXPECT_EQ(Now().Media.ProviderName, MediaPlayerName);
    EXPECT_EQ(Now().Media.CurrentMedia.Song, "Two");
}

}  // namespace
}  // namespace Corvetape
