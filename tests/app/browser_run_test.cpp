// The whole program on a simulated machine that has browsers and windows.
#include <gtest/gtest.h>

#include <optional>

#include "app/program.h"
#include "media/provider_wmp.h"
#include "platform/virtual/source_players.h"
#include "sim/radio_script.h"
#include "sim/sim_documents.h"
#include "sim/sim_machine.h"
#include "sim/sim_windows.h"

namespace Corvetape {
namespace {

constexpr const char* PageProfile =
    "[- Page]\nName=Page Radio\nWindow&Doc=;;*;http://radio/\nTitle=-1;;\nRestart=0;play();\n";
constexpr const char* WindowProfile = "[- Window]\nName=Window Radio\nWindow&Doc=Player;*\nTitle=-3;;\n";

class BrowserRun : public testing::Test {
 protected:
    void Start(const std::string& profiles, const std::string& settings = "") {
        Computer.Files.Put("/opt/corvetape/MSIE.ini", profiles);
        Computer.Files.Put("/home/user/.config/Corvet/Corvet.ini",
                           "[General]\nLanguage=english\n[Options]\nNoStartupInfo=1\n[Mixer]\nInputDevice="
                           "0\nInputDeviceNames=Radio;\n" +
                               settings);
        Computer.WaveIn.AddRadio("Radio", RadioScript().SilenceForever());
        RunOptions run;
        run.CommandLine = "-dontask";
        ProgramEvents events;
        events.Logged = [this](const std::string& kind, const std::string&) { Infos += kind == "INFO"; };
        Machine machine = Computer.Get();
        machine.Documents = &Browser;
        machine.Windows = &Desktop;
        machine.Players = &Player;
        Recorder.emplace(machine, std::move(run), events);
        ASSERT_TRUE(Recorder->Load());
    }
    void RunFor(int seconds) { Computer.Loop.RunFor(std::chrono::seconds(seconds)); }
    const MediaState& Media() const { return Recorder->Values().Media; }

    SimMachine Computer;
    SimDocuments Browser;
    SimWindows Desktop;
    SourcePlayers Player{Computer.Loop, "player", [] { return SourceMedia{}; }};
    int Infos = 0;
    std::optional<Program> Recorder;
};

TEST_F(BrowserRun, TheBrowserIsTheFirstChoice) {
    Browser.Add("http://radio/", "A Song");
    Start(PageProfile);
    RunFor(5);
    EXPECT_EQ(Media().ProviderName, "Page Radio");
    EXPECT_EQ(Media().CurrentMedia.Song, "A Song");
}

TEST_F(BrowserRun, AClosedPageGivesWayToTheNextSourceWithinTwoSeconds) {
    SimPage& page = Browser.Add("http://radio/", "A Song");
    Start(PageProfile);
    RunFor(5);
    Recorder->Values().Form.optEndOfSong[1].Value(true);
    RunFor(20);
    ASSERT_EQ(Recorder->Values().Pause.EndOfSongDetection, EndOfSong::MediaData);
    ASSERT_EQ(Media().ProviderName, "Page Radio");
    Browser.Close(page);
    RunFor(2);
    EXPECT_EQ(Media().ProviderName, MediaPlayerName);
}

TEST_F(BrowserRun, ASilentPageIsAskedToPlayAgainForARecording) {
    SimPage& page = Browser.Add("http://radio/", "A Song");
    page.Top->Values["play()"] = "";
    Start(PageProfile);
    Recorder->Values().Form.chkRestartRadioIfSilent.Value(1);
    RunFor(90);
    EXPECT_TRUE(page.Top->Ran.empty());  // nothing is recorded
    Recorder->Values().Form.chkStartStop[0].Value(1);
    RunFor(120);
    EXPECT_EQ(page.Top->Ran, (std::vector<std::string>{"play()", "play()"}));
    EXPECT_EQ(Recorder->Values().Form.chkStartStop[1].Value(), 1);  // with the next song
}

TEST_F(BrowserRun, ThePortsAreThoseOfTheSettings) {
    Start(PageProfile, "[Browser]\nDevToolsPorts=9333;9444\n");
    RunFor(3);
    EXPECT_EQ(Browser.Ports, (std::vector<uint16_t>{9333, 9444}));
}

TEST_F(BrowserRun, WithoutASettingThePortIsTheUsualOne) {
    Start(PageProfile);
    RunFor(3);
    EXPECT_EQ(Browser.Ports, std::vector<uint16_t>{9222});
}

TEST_F(BrowserRun, ADesktopThatShowsNoWindowsIsReportedOnce) {
    Desktop.Shown = false;
    Start(WindowProfile);
    const int before = Infos;
    Recorder->Values().Media.ProviderName.clear();
    RunFor(3);
    Recorder->Values().Media.ProviderName.clear();  // the choice runs again
    RunFor(3);
    EXPECT_EQ(Infos - before, 1);
}

}  // namespace
}  // namespace Corvetape
