// What a change of title decides: under which names songs are kept, and which song the buttons mean.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "scenario/story.h"

namespace Corvetape::Test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

/// A radio cut by its titles, told without delay: song k, from 1 on, begins at second 3 + 42 (k - 1).
WorldOptions ByTitles(std::vector<IniLine> more = {}) {
    WorldOptions options;
    options.Radio = EvenRadio(4, 40);
    options.Settings = {{ProviderOfRadio, "EndOfSongDetection", "1"},
                        {ProviderOfRadio, "IgnoreShortSongs", "5"}};
    options.Settings.insert(options.Settings.end(), more.begin(), more.end());
    return options;
}

/// To the moment at which the title of the second song is shown and the first song's cut is pending.
void RunIntoTheWindow(World& world) {
    RunTo(world, 3 + 42 + 1.7);
    ASSERT_EQ(world.Values().Media.CurrentMedia.Song, "Song 2");
    ASSERT_TRUE(world.Values().Cut.CutPending);
}

void PlayOut(World& world) {
    RunTo(world, 190);
    world.Finish();
}

/// The delay of the transfer in ms, and the part of the cut's window after the change.
class DelaysAndWindows : public testing::TestWithParam<std::pair<const char*, const char*>> {};

TEST_P(DelaysAndWindows, LeaveEachSongItsOwnName) {
    World world(ByTitles({{"DoNotChange", "EncodeDelay", GetParam().first},
                          {ProviderOfRadio, "IgnoreShortSongs", "9"},  // what is ahead of the first title
                          {ProviderOfRadio, "EndOfSongThreshold1", GetParam().second}}));
    ASSERT_TRUE(world.StartRecording());
    PlayOut(world);
    EXPECT_THAT(KeptTitles(world), ElementsAre("Song 1", "Song 2", "Song 3", "Song 4"));
    EXPECT_EQ(MusicComparedWithRadio(world), "");
}

TEST_P(DelaysAndWindows, DropTheExcludedSongAndNoOther) {
    World world(ByTitles({{"DoNotChange", "EncodeDelay", GetParam().first},
                          {ProviderOfRadio, "IgnoreShortSongs", "9"},  // what is ahead of the first title
                          {ProviderOfRadio, "EndOfSongThreshold1", GetParam().second}}));
    world.Disk().Put(LogFolder + std::string("/Exclude.txt"), "Band 2 - Song 2\r\n");
    ASSERT_TRUE(world.StartRecording());
    PlayOut(world);
    EXPECT_THAT(KeptTitles(world), ElementsAre("Song 1", "Song 3", "Song 4"));
    EXPECT_THAT(world.Logged("INFO"), Contains(Text("860", {"Band 2 - Song 2"})).Times(1));
}

INSTANTIATE_TEST_SUITE_P(All, DelaysAndWindows,
                         testing::Values(std::pair("0", "3000"), std::pair("1000", "3000"),
                                         std::pair("3000", "5000"), std::pair("5000", "3000")));

TEST(TitleChange, ALateAlbumAndCoverReachTheSongOfTheirTitle) {
    for (const double late : {2.0, 4.0, 7.0, 12.0}) {
        WorldOptions options = ByTitles();
        for (RadioScript::Item& item : options.Radio.Items) {
            item.Song.Media.Cover = "http://covers/" + item.Song.Media.Song;
        }
        options.AlbumDelay = late;
        options.CoverDelay = late + 1;
        World world(std::move(options));
        ASSERT_TRUE(world.StartRecording());
        PlayOut(world);
        ASSERT_THAT(KeptTitles(world), ElementsAre("Song 1", "Song 2", "Song 3", "Song 4"));
        for (const TransferredSong& song : world.Transferred) {
            EXPECT_EQ(song.Media.Album, "Album " + song.Media.Song.substr(5)) << late;
            EXPECT_EQ(song.Media.Cover, "http://covers/" + song.Media.Song) << late;
        }
    }
}

TEST(TitleChange, ASongThatIsOverBeforeItsTakeOverHasItsOwnNameToo) {
    WorldOptions options = ByTitles({{"DoNotChange", "EncodeDelay", "6000"}});
    options.Radio = {};
    uint64_t number = 0;
    options.Radio.Pause(3);
    AddSongs(options.Radio, number, 1, 40);
    AddSongs(options.Radio, number, 2, 8);
    AddSongs(options.Radio, number, 1, 40);
    options.Radio.Stamped().SilenceForever();
    World world(std::move(options));
    ASSERT_TRUE(world.StartRecording());
    RunTo(world, 120);
    world.Finish();
    EXPECT_THAT(KeptTitles(world), ElementsAre("Song 1", "Song 2", "Song 3", "Song 4"));
    std::vector<std::string> transferred;
    for (const TransferredSong& song : world.Transferred) transferred.push_back(song.Media.Song);
    EXPECT_THAT(transferred, ElementsAre("Song 1", "Song 2", "Song 3", "Song 4"));
}

TEST(PendingCut, SkipMeansTheSongWhoseTitleIsShown) {
    World world(ByTitles());
    ASSERT_TRUE(world.StartRecording());
    RunIntoTheWindow(world);
    ASSERT_TRUE(world.Form().cmdSkipThisRecording.Enabled());
    world.Form().cmdSkipThisRecording.Press();
    PlayOut(world);
    EXPECT_THAT(KeptTitles(world), ElementsAre("Song 1", "Song 3", "Song 4"));
}

TEST(PendingCut, RecordSwitchedOffMeansTheSongWhoseTitleIsShown) {
    World world(ByTitles());
    ASSERT_TRUE(world.StartRecording());
    RunIntoTheWindow(world);
    world.Form().cmdStartStop.Press();
    PlayOut(world);
    EXPECT_THAT(KeptTitles(world), ElementsAre("Song 1"));
}

TEST(PendingCut, RecordSwitchedOnLeavesTheSongThatHasEndedUnwanted) {
    World world(ByTitles());
    ASSERT_TRUE(world.Start());
    RunIntoTheWindow(world);
    world.Form().cmdStartStop.Press();
    PlayOut(world);
    EXPECT_THAT(KeptTitles(world), ElementsAre("Song 2", "Song 3", "Song 4"));
}

TEST(PendingCut, QuickRecordsTheSongWhoseTitleIsShown) {
    World world(ByTitles());
    ASSERT_TRUE(world.Start());
    RunIntoTheWindow(world);
    world.Form().cmdQuickRecord.Press();
    PlayOut(world);
    EXPECT_THAT(KeptTitles(world), ElementsAre("Song 2"));
}

TEST(PendingCut, TheLastSongIsOverAtItsTitleAndQuickRecordsTheNextOneToo) {
    World world(ByTitles());
    ASSERT_TRUE(world.Start());
    RunTo(world, 20);
    world.Form().cmdQuickRecord.Press();
    RunIntoTheWindow(world);
    EXPECT_EQ(world.Form().chkStartStop[0].Value(), 0);
    EXPECT_EQ(world.Form().chkStopRecording[0].Value(), 0);
    world.Form().cmdQuickRecord.Press();
    PlayOut(world);
    EXPECT_THAT(KeptTitles(world), ElementsAre("Song 1", "Song 2"));
}

TEST(PendingCut, OfASongThatWasNotWantedLeavesNothingOfIt) {
    World world(ByTitles());
    ASSERT_TRUE(world.Start());
    RunIntoTheWindow(world);
    PlayOut(world);
    EXPECT_THAT(KeptTitles(world), IsEmpty());
}

TEST(PendingCut, OfAWantedSongOutlivesAChangeToCutsByTime) {
    World world(ByTitles({{ProviderOfRadio, "EndOfSongTimer", "600"}}));
    ASSERT_TRUE(world.StartRecording());
    RunIntoTheWindow(world);
    world.Form().cmdStartStop.Press();  // the second song is not wanted
    world.Form().optEndOfSong[2].Press();
    world.RunFor(0.5);
    world.Form().cmdStartStop.Press();  // what begins now is
    RunTo(world, 100);
    world.Finish();
    ASSERT_THAT(KeptSongs(world), testing::SizeIs(2));
    EXPECT_EQ(KeptTitles(world)[0], "Song 1");
    const ScriptedSong& first = world.Truth()->Songs()[0];
    EXPECT_LE(KeptSongs(world)[0].RadioBegin, first.Begin);
    EXPECT_GE(KeptSongs(world)[0].RadioEnd + 2205, first.End);
    EXPECT_EQ(MusicComparedWithRadio(world), "");
}

TEST(RecordingThatIsOff, AClickMeansTheSongWhoseTitleIsShown) {
    World world(ByTitles());
    ASSERT_TRUE(world.Start());
    RunTo(world, 50);
    world.Values().Flags.RecordingEnabled = false;  // such as by a full disk
    RunTo(world, 92);
    ASSERT_EQ(world.Values().Media.CurrentMedia.Song, "Song 3");
    world.Form().cmdQuickRecord.Press();
    ASSERT_TRUE(world.Values().Flags.RecordingEnabled);
    PlayOut(world);
    EXPECT_THAT(KeptTitles(world), ElementsAre("Song 3"));
    EXPECT_EQ(MusicComparedWithRadio(world), "");
}

TEST(StandingInput, TitlesOfWhichNothingIsHeardNameNoSong) {
    World world(ByTitles());
    ASSERT_TRUE(world.Start());
    RunTo(world, 44);
    world.Computer.WaveIn.Vanish(RadioName);
    RunTo(world, 60);
    ASSERT_EQ(world.Values().Media.CurrentMedia.Song, "Song 2");
    world.Form().cmdStartStop.Press();
    RunTo(world, 100);
    ASSERT_EQ(world.Values().Media.CurrentMedia.Song, "Song 3");
    world.Computer.WaveIn.Return(RadioName);
    PlayOut(world);
    EXPECT_THAT(KeptTitles(world), ElementsAre("Song 3", "Song 4"));
    EXPECT_EQ(MusicComparedWithRadio(world), "");
}

TEST(StandingInput, ASongWhoseCutWaitedKeepsItsNameAndItsWish) {
    World world(ByTitles());
    ASSERT_TRUE(world.StartRecording());
    RunTo(world, 44);
    world.Computer.WaveIn.Vanish(RadioName);
    RunTo(world, 60);
    world.Form().cmdStartStop.Press();  // off while the second title is shown
    RunTo(world, 100);
    world.Computer.WaveIn.Return(RadioName);
    PlayOut(world);
    EXPECT_THAT(KeptTitles(world), ElementsAre("Song 1"));
    EXPECT_EQ(MusicComparedWithRadio(world), "");
}

}  // namespace
}  // namespace Corvetape::Test
