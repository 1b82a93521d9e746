// The media players and the web as the program asks them, and settings that hold for every source.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/desktop_notes.h"
#include "scenario/story.h"

namespace Corvetape::Test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr const char* CoverAddress = "http://127.0.0.1/cover.jpg";

PlayerReport Piece(const std::string& title, const std::string& cover = "") {
    return {"player", true, "Pop", "Ann", title, "Album", cover};
}

/// A radio without titles of its own, on a machine with a player and a web.
WorldOptions Silent(std::vector<IniLine> settings = {}, std::vector<SettingOverride> overrides = {}) {
    WorldOptions options = Starting("", std::move(settings));
    options.Radio = NumberedRadio({30, 30, 30});
    options.TellsTitles = false;
    options.Connect = [overrides](World& world, Machine& machine, RunOptions& run) {
        machine.Players = &world.Players;
        machine.Web = &world.Web;
        run.Overrides = overrides;
    };
    return options;
}

TEST(PlayersOfTheProgram, AreTheSourceFromTheNextTickOn) {
    World world(Silent());
    ASSERT_TRUE(world.Start());
    EXPECT_EQ(world.Values().Media.ProviderName, NoStationData);
    world.Players.Say(Piece("One"));
    world.RunFor(1.5);
    EXPECT_EQ(world.Values().Media.ProviderName, MediaPlayerName);
    EXPECT_EQ(world.Form().txtSong.Text(), "One");
    EXPECT_EQ(world.Form().txtArtist.Text(), "Ann");
    EXPECT_EQ(world.Form().txtAlbum.Text(), "Album");
    EXPECT_EQ(world.Form().txtStation.Text(), "Pop");
}

TEST(PlayersOfTheProgram, GiveWayWhenTheLastHasEnded) {
    World world(Silent());
    ASSERT_TRUE(world.Start());
    world.Players.Say(Piece("One"));
    world.RunFor(3);
    world.Players.Quit("player");
    world.RunFor(2);
    EXPECT_EQ(world.Values().Media.ProviderName, NoStationData);
    EXPECT_EQ(world.Form().txtSong.Text(), "");
}

TEST(PlayersOfTheProgram, ReachNothingBehindTheEndOfTheProgram) {
    World world(Silent());
    ASSERT_TRUE(world.Start());
    world.Players.Say(Piece("One"));
    world.Recorder.reset();
    world.Players.Say(Piece("Two"));
    world.RunFor(1);  // nobody is there who could be reached
    EXPECT_THAT(world.Web.Asked, IsEmpty());
}

TEST(CoversOfTheProgram, AreFetchedOnceAndStoredBesideTheirSong) {
    World world(
        Silent({{MediaPlayerName, "LengthOfPause", "500"}, {MediaPlayerName, "IgnoreShortSongs", "5"}}));
    world.Web.Bodies[CoverAddress] = std::string(5000, 'c');
    ASSERT_TRUE(world.StartRecording());
    world.Players.Say(Piece("One", CoverAddress));
    world.RunFor(45);
    EXPECT_THAT(world.Web.Asked, ElementsAre(CoverAddress));
    ASSERT_THAT(world.Transferred, SizeIs(1));
    EXPECT_EQ(world.Transferred[0].Media.Cover, CoverAddress);
    EXPECT_EQ(world.Disk().Content(std::string(SongTempFolder) + "/Ann - One.jpg"), std::string(5000, 'c'));
}

TEST(CoversOfTheProgram, ThatAreMissingCostTheSongNothing) {
    World world(
        Silent({{MediaPlayerName, "LengthOfPause", "500"}, {MediaPlayerName, "IgnoreShortSongs", "5"}}));
    ASSERT_TRUE(world.StartRecording());
    world.Players.Say(Piece("One", CoverAddress));
    world.RunFor(45);
    ASSERT_THAT(world.Transferred, SizeIs(1));
    EXPECT_FALSE(world.Disk().Exists(std::string(SongTempFolder) + "/Ann - One.jpg"));
    EXPECT_TRUE(world.Disk().Exists(world.Transferred[0].MusicFile));
}

TEST(CoversOfTheProgram, AreNotAskedForWithoutAWeb) {
    WorldOptions options = Silent();
    options.Connect = [](World& world, Machine& machine, RunOptions&) { machine.Players = &world.Players; };
    World world(std::move(options));
    ASSERT_TRUE(world.Start());
    world.Players.Say(Piece("One", CoverAddress));
    world.RunFor(5);
    EXPECT_EQ(world.Values().Media.CurrentMedia.Cover, CoverAddress);
    EXPECT_THAT(world.Web.Asked, IsEmpty());
}

TEST(CoversOfTheProgram, AreAskedForByTheButtonToo) {
    World world(Silent());
    ASSERT_TRUE(world.Start());
    world.Players.Say(Piece("One"));
    world.RunFor(30);  // an old song is polled every ten seconds only
    ASSERT_EQ(world.Values().Media.ProviderName, MediaPlayerName);
    const auto answer = world.Computer.Loop.NewTimer([&] { world.Players.Say(Piece("One", CoverAddress)); });
    answer->Start(std::chrono::milliseconds(100), TimerPrecision::Coarse);
    world.Form().cmdGetStationID.Press();
    answer->Stop();
    EXPECT_THAT(world.Web.Asked, ElementsAre(CoverAddress));
}

TEST(SettingsOfEverySource, HoldForWhicheverIsThePresentOne) {
    World world(Silent({{"NoStationData", "LengthOfPause", "300"}, {"Page", "LengthOfPause", "400"}},
                       {{"Source", "LengthOfPause", "750"}, {"source", "LevelMultiplier", "250"}}));
    ASSERT_TRUE(world.Start());
    EXPECT_EQ(world.Values().Media.ProviderName, NoStationData);
    EXPECT_EQ(world.Form().txtLengthOfPause.Text(), "750");
    EXPECT_EQ(world.Form().lblMultiplier.Caption(), "250%");
    world.Players.Say(Piece("One"));
    world.RunFor(2);
    ASSERT_EQ(world.Values().Media.ProviderName, MediaPlayerName);
    EXPECT_EQ(world.Form().txtLengthOfPause.Text(), "750");
    EXPECT_EQ(world.Form().lblMultiplier.Caption(), "250%");
    EXPECT_EQ(world.Stored("NoStationData", "LengthOfPause"), "300");
    EXPECT_EQ(world.Stored(MediaPlayerName, "LengthOfPause"), "-");
}

TEST(SettingsOfEverySource, HoldForTheStationOfAProfile) {
    WorldOptions options = Silent({{"My Station", "LengthOfPause", "400"}});
    options.Connect = [](World& world, Machine& machine, RunOptions& run) {
        machine.Documents = &world.Browser;
        run.Overrides = {{"Source", "LengthOfPause", "750"}};
    };
    World world(std::move(options));
    world.Disk().Put(world.Computer.Folders.Program + "/MSIE.ini",
                     "[- 1]\nName=My Station\nWindow&Doc=;;*;*\nTitle=-1;;\n");
    world.Browser.Add("http://radio/", "A Song");
    ASSERT_TRUE(world.Start());
    world.RunFor(2);
    ASSERT_EQ(world.Values().Media.ProviderName, "My Station");
    EXPECT_EQ(world.Form().txtLengthOfPause.Text(), "750");
}

TEST(SettingsOfEverySource, ComeAfterThoseOfASourceThatIsNamed) {
    World world(
        Silent({}, {{"windows media player", "LengthOfPause", "600"}, {"Source", "LengthOfPause", "750"}}));
    ASSERT_TRUE(world.Start());
    world.Players.Say(Piece("One"));
    world.RunFor(2);
    EXPECT_EQ(world.Form().txtLengthOfPause.Text(), "600");
}

TEST(SettingsOfEverySource, AreNotPutBackOverWhatWasChangedInTheRun) {
    World world(Silent({}, {{"Source", "LengthOfPause", "750"}}));
    ASSERT_TRUE(world.Start());
    world.Form().txtLengthOfPause.SetValueText("900");
    world.Players.Say(Piece("One"));
    world.RunFor(2);
    ASSERT_EQ(world.Form().txtLengthOfPause.Text(), "750");
    world.Players.Quit("player");
    world.RunFor(2);
    ASSERT_EQ(world.Values().Media.ProviderName, NoStationData);
    EXPECT_EQ(world.Form().txtLengthOfPause.Text(), "900");
}

}  // namespace
}  // namespace Corvetape::Test
