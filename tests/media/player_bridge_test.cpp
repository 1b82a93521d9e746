#include "media/player_bridge.h"

#include <gtest/gtest.h>

#include "media/noted_settings.h"
#include "media/provider_wmp.h"
#include "platform/virtual/source_players.h"
#include "sim/sim_machine.h"
#include "support/scripted_players.h"

namespace Corvetape {
namespace {

PlayerReport Report(const std::string& player, bool playing, const std::string& title,
                    const std::string& artist = "Ann") {
    PlayerReport report;
    report.Player = player;
    report.Playing = playing;
    report.Genre = "Pop";
    report.Artist = artist;
    report.Title = title;
    report.Album = "Album";
    report.Cover = "file:///c.jpg";
    return report;
}

class PlayerBridgeTest : public testing::Test {
 protected:
    std::string Value(const char* name) {
        return TextOf(Registry.ReadRegistryValue(RegistryRoot::CurrentUser, PlayerKeyPath, name));
    }

    void Say(const PlayerReport& report) {
        Radio.Changed(report);
        Machine.Loop.RunFor(std::chrono::milliseconds(PlayerSettleMs));
    }

    SimMachine Machine;
    RegistryBranches Registry{Machine.Files, "/home/user/user.reg", "/home/user/machine.reg"};
    ScriptedPlayers Radio;
    PlayerBridge Bridge{Radio, Registry, Machine.Loop};
};

TEST_F(PlayerBridgeTest, KeepsTheFiveValuesAndTheCoverCurrent) {
    Say(Report("mpv", true, "One"));
    EXPECT_EQ(Value("Status"), "Playing");
    EXPECT_EQ(Value("Genre"), "Pop");
    EXPECT_EQ(Value("Artist"), "Ann");
    EXPECT_EQ(Value("Title"), "One");
    EXPECT_EQ(Value("Album"), "Album");
    EXPECT_EQ(Value("Cover"), "file:///c.jpg");
}

TEST(PlayerNameInWords, HasNeitherTheAddressOnTheBusNorTheNumberOfOneOfSeveral) {
    EXPECT_EQ(PlayerNameInWords("org.mpris.MediaPlayer2.mpv"), "mpv");
    EXPECT_EQ(PlayerNameInWords("org.mpris.MediaPlayer2.chromium.instance4711"), "chromium");
    EXPECT_EQ(PlayerNameInWords("Demo radio"), "Demo radio");
    EXPECT_EQ(PlayerNameInWords(""), "");
}

TEST(PlayersThatKnowAtOnce, AreThereBeforeAnyTimePasses) {
    SimMachine machine;
    RegistryBranches registry{machine.Files, "/home/user/user.reg", "/home/user/machine.reg"};
    SourcePlayers tape(machine.Loop, "tape", [] { return SourceMedia{"Station", "Ann", "One", "", ""}; });
    const PlayerBridge bridge(tape, registry, machine.Loop);
    EXPECT_TRUE(bridge.PlayerPresent());
    const auto value = [&](const char* name) {
        return TextOf(registry.ReadRegistryValue(RegistryRoot::CurrentUser, PlayerKeyPath, name));
    };
    EXPECT_EQ(value("Title"), "One");
    EXPECT_EQ(value("Status"), "Playing");
}

TEST_F(PlayerBridgeTest, NothingOfItReachesTheDisk) {
    Say(Report("mpv", true, "One"));
    EXPECT_FALSE(Machine.Files.FileSize("/home/user/user.reg"));
}

TEST_F(PlayerBridgeTest, WaitsUntilTheFieldsOfAPieceAreComplete) {
    Radio.Changed(Report("mpv", true, "One", ""));
    Machine.Loop.RunFor(std::chrono::milliseconds(PlayerSettleMs - 1));
    EXPECT_EQ(Value("Title"), "");
    Radio.Changed(Report("mpv", true, "One", "Bob"));
    Machine.Loop.RunFor(std::chrono::milliseconds(1));
    EXPECT_EQ(Value("Title"), "One");
    EXPECT_EQ(Value("Artist"), "Bob");
}

TEST_F(PlayerBridgeTest, APlayerThatNeverStopsTalkingIsStillHeard) {
    for (int i = 0; i < 20; ++i) {
        Radio.Changed(Report("mpv", true, "Piece " + std::to_string(i)));
        Machine.Loop.RunFor(std::chrono::milliseconds(PlayerSettleMs / 2));
    }
    EXPECT_NE(Value("Title"), "");
}

TEST_F(PlayerBridgeTest, OfSeveralPlayersTheOneThatPlaysCounts) {
    Say(Report("a", false, "Paused"));
    Say(Report("b", true, "Played"));
    EXPECT_EQ(Value("Title"), "Played");
    Say(Report("b", false, "Played"));
    EXPECT_EQ(Value("Status"), "Stopped");
    EXPECT_EQ(Value("Title"), "");
}

TEST_F(PlayerBridgeTest, OfSeveralThatPlayTheOneThatBeganLastCounts) {
    Say(Report("a", true, "First"));
    Say(Report("b", true, "Second"));
    EXPECT_EQ(Value("Title"), "Second");
    Say(Report("a", true, "First, next piece"));
    EXPECT_EQ(Value("Title"), "Second");
    Say(Report("a", false, ""));
    Say(Report("a", true, "First again"));
    EXPECT_EQ(Value("Title"), "First again");
    Radio.Gone("a");
    Machine.Loop.RunFor(std::chrono::milliseconds(PlayerSettleMs));
    EXPECT_EQ(Value("Title"), "Second");
}

TEST_F(PlayerBridgeTest, IsPresentWhileAnyPlayerRuns) {
    EXPECT_FALSE(Bridge.PlayerPresent());
    Say(Report("a", false, ""));
    EXPECT_TRUE(Bridge.PlayerPresent());
    Radio.Gone("a");
    EXPECT_FALSE(Bridge.PlayerPresent());
}

TEST_F(PlayerBridgeTest, AskedAnewItKeepsWhatPlaysAndForgetsWhatHasEndedUnheard) {
    Say(Report("a", true, "One"));
    Say(Report("b", true, "Two"));
    Bridge.ListenAnew();
    EXPECT_EQ(Radio.Asked, 2);
    EXPECT_TRUE(Bridge.PlayerPresent());
    Radio.Changed(Report("a", true, "One"));
    EXPECT_EQ(Value("Title"), "Two");
    Machine.Loop.RunFor(std::chrono::milliseconds(PlayerSettleMs));
    EXPECT_EQ(Value("Title"), "One");
    Bridge.ListenAnew();
    Machine.Loop.RunFor(std::chrono::milliseconds(PlayerSettleMs));
    EXPECT_FALSE(Bridge.PlayerPresent());
    EXPECT_EQ(Value("Status"), "Stopped");
}

TEST_F(PlayerBridgeTest, AskedAnewThePlayerThatBeganLastStillCounts) {
    Say(Report("a", true, "First"));
    Say(Report("b", true, "Second"));
    Bridge.ListenAnew();
    Radio.Changed(Report("b", true, "Second"));
    Say(Report("a", true, "First"));
    EXPECT_EQ(Value("Title"), "Second");
}

TEST_F(PlayerBridgeTest, AskedAnewThePlayersHaveTheirWholeTimeToAnswer) {
    Say(Report("a", true, "One"));
    Radio.Changed(Report("a", true, "Two"));
    Machine.Loop.RunFor(std::chrono::milliseconds(PlayerSettleMs - 50));
    Bridge.ListenAnew();
    Machine.Loop.RunFor(std::chrono::milliseconds(PlayerSettleMs - 50));
    EXPECT_TRUE(Bridge.PlayerPresent());
}

TEST_F(PlayerBridgeTest, AHugeFieldIsCut) {
    Say(Report("a", true, std::string(1'000'000, 'x')));
    EXPECT_EQ(Value("Title").size(), 4096u);
}

TEST(WithSplitTitle, TakesTheArtistOutOfATitleWithoutOne) {
    EXPECT_EQ(WithSplitTitle(Report("a", true, "Ann - One - Live", "")).Artist, "Ann");
    EXPECT_EQ(WithSplitTitle(Report("a", true, "Ann - One - Live", "")).Title, "One - Live");
    EXPECT_EQ(WithSplitTitle(Report("a", true, "Ann - One", "Bob")).Title, "Ann - One");
    EXPECT_EQ(WithSplitTitle(Report("a", true, "One", "")).Title, "One");
    EXPECT_EQ(WithSplitTitle(Report("a", true, " - One", "")).Title, " - One");
    EXPECT_EQ(WithSplitTitle(Report("a", true, "A-B", "")).Title, "A-B");
}

class MediaPlayerTest : public PlayerBridgeTest, protected Test::ProviderBench {
 protected:
    clsProviderWMP Make() { return clsProviderWMP(Host, Registry, Bridge); }
};

TEST_F(MediaPlayerTest, ARunningPlayerIsEnoughToBecomeTheProvider) {
    Say(Report("a", false, ""));
    Media.CurrentMedia.Song = "Old";
    Make();
    EXPECT_EQ(Media.ProviderName, "Windows Media Player");
    EXPECT_EQ(Media.MixerSectionName, "MixerWindows Media Player");
    EXPECT_EQ(Settings.Loaded, std::vector<std::string>{"Windows Media Player"});
    EXPECT_EQ(Media.CurrentMedia.Song, "");
    EXPECT_TRUE(Flags.RecordingEnabled);
    EXPECT_EQ(Signal.PauseRecognition, PauseRecognitionRunning);
}

TEST_F(MediaPlayerTest, WithoutAPlayerTheNameStaysAsItWas) {
    Media.ProviderName = NoStationData;
    Media.MixerSectionName = "MixerPage";
    Make();
    EXPECT_EQ(Media.ProviderName, NoStationData);
    EXPECT_EQ(Media.MixerSectionName, "Mixer");
    EXPECT_TRUE(Settings.Loaded.empty());
    EXPECT_TRUE(Flags.RecordingEnabled);
}

TEST_F(MediaPlayerTest, ReadsWhatPlaysWithTheGenreAsTheStation) {
    Say(Report("a", true, "One"));
    clsProviderWMP provider = Make();
    provider.GetStationData();
    EXPECT_EQ(Media.CurrentMedia.StationName, "Pop");
    EXPECT_EQ(Media.CurrentMedia.Artist, "Ann");
    EXPECT_EQ(Media.CurrentMedia.Song, "One");
    EXPECT_EQ(Media.CurrentMedia.Album, "Album");
    EXPECT_EQ(Media.CurrentMedia.Cover, "file:///c.jpg");
    EXPECT_EQ(Media.CurrentMedia.StationDescr, "");
}

TEST_F(MediaPlayerTest, TakesNoMarksAndNoMoreThanAThousandCharactersOfAField) {
    PlayerReport report = Report("a", true, "One");
    report.Genre = report.Artist = report.Title = report.Album = "\u202E" + std::string(3000, 'x');
    Say(report);
    clsProviderWMP provider = Make();
    provider.GetStationData();
    const STATIONANDSONGDATA& now = Media.CurrentMedia;
    for (const std::string& field : {now.StationName, now.Artist, now.Song, now.Album}) {
        EXPECT_EQ(field, std::string(1000, 'x'));
    }
}

TEST_F(MediaPlayerTest, AnyOtherStatusLeavesTheFieldsEmpty) {
    Say(Report("a", true, "One"));
    clsProviderWMP provider = Make();
    for (const char* status : {"playing", "PLAYING", "Paused", ""}) {
        ASSERT_TRUE(Registry.WriteRegistryValue(RegistryRoot::CurrentUser, PlayerKeyPath, "Status",
                                                std::string(status)));
        STATIONANDSONGDATA& now = Media.CurrentMedia;
        now.StationName = now.StationDescr = now.Artist = now.Song = now.Album = now.Cover = "Old";
        provider.GetSongData();
        EXPECT_EQ(now, STATIONANDSONGDATA{}) << status;
    }
}

TEST_F(MediaPlayerTest, GivesUpWhenNoPlayerRunsAndNonePlays) {
    Say(Report("a", true, "One"));
    clsProviderWMP provider = Make();
    Radio.Gone("a");
    provider.GetStationData();  // the values still say that it plays
    EXPECT_EQ(Media.ProviderName, MediaPlayerName);
    Machine.Loop.RunFor(std::chrono::milliseconds(PlayerSettleMs));
    provider.GetStationData();
    EXPECT_EQ(Media.ProviderName, "");
}

TEST_F(MediaPlayerTest, TextsOfAnyKindAreTextAndWhatIsMissingIsEmpty) {
    Say(Report("a", true, "One"));
    clsProviderWMP provider = Make();
    for (const char* value : {"Genre", "Artist", "Album"}) {
        static_cast<void>(Registry.WriteRegistryValue(RegistryRoot::CurrentUser, PlayerKeyPath, value));
    }
    provider.GetStationData();
    EXPECT_EQ(Media.CurrentMedia.Song, "One");
    EXPECT_EQ(Media.CurrentMedia.StationName + Media.CurrentMedia.Artist + Media.CurrentMedia.Album, "");
    EXPECT_EQ(Media.ProviderName, MediaPlayerName);
}

TEST_F(MediaPlayerTest, ASilentPlayerStaysTheProviderAndIsNotRestarted) {
    Say(Report("a", false, ""));
    clsProviderWMP provider = Make();
    provider.GetStationData();
    EXPECT_EQ(Media.ProviderName, MediaPlayerName);
    EXPECT_FALSE(provider.RestartRadio());
}

TEST_F(PlayerBridgeTest, TheFirstOfTwoPlayersGoesOnCountingIfThatIsAskedFor) {
    Bridge.FirstCounts(true);
    Say(Report("one", true, "One"));
    EXPECT_FALSE(Bridge.OthersPlay());
    Say(Report("two", true, "Two"));
    EXPECT_EQ(Value("Title"), "One");
    EXPECT_TRUE(Bridge.OthersPlay());
    EXPECT_EQ(Bridge.Present().Title, "One");
    Say(Report("one", false, "One"));
    EXPECT_EQ(Value("Title"), "Two");
    EXPECT_FALSE(Bridge.OthersPlay());
}

TEST_F(PlayerBridgeTest, APlayerThatPausesIsStillKnown) {
    Say(Report("one", true, "One"));
    PlayerReport paused = Report("one", false, "One");
    paused.Status = PlayerStatus::Paused;
    Say(paused);
    EXPECT_EQ(Bridge.Present().Status, PlayerStatus::Paused);
    EXPECT_EQ(Bridge.Present().Player, "one");
    Radio.Gone("one");
    Machine.Loop.RunFor(std::chrono::milliseconds(PlayerSettleMs));
    EXPECT_EQ(Bridge.Present(), PlayerReport{});
}

}  // namespace
}  // namespace Corvetape
