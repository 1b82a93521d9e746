// Songs that end by everything that is known at once: what the user gets of each of the things that happen.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "audio/cut_prior.h"
#include "scenario/automatic_story.h"

namespace Corvetape::Test {
namespace {

using testing::Contains;
using testing::ElementsAre;

TEST(Automatic, LateTitlesAndGapsGiveEverySongWhole) {
    WorldOptions options = Automatic(Songs(6, 40, 1.2));
    options.TitleDelay = [](size_t) { return 5.0; };
    World world(std::move(options));
    ASSERT_TRUE(world.StartRecording());
    RunTo(world, 320);
    world.Finish();
    ExpectAll(world, WithAGap);
    EXPECT_EQ(MusicComparedWithRadio(world), "");
}

TEST(Automatic, GapsOfAFifthOfASecondAreEnough) {
    WorldOptions options = Automatic(Songs(6, 40, 0.2));
    options.TitleDelay = [](size_t song) { return song % 2 == 0 ? 2.0 : 1.2; };
    World world(std::move(options));
    ASSERT_TRUE(world.StartRecording());
    RunTo(world, 310);
    world.Finish();
    ExpectAll(world, WithAGap);
}

TEST(Automatic, SongsWithoutGapsAreCutWhereTheSoundChanges) {
    WorldOptions options = Automatic(Songs(8, 40, 0));
    options.TitleDelay = [](size_t song) { return 2.0 + 0.1 * static_cast<double>(song % 4); };
    World world(std::move(options));
    ASSERT_TRUE(world.StartRecording());
    RunTo(world, 380);
    world.Finish();
    ExpectAll(world, WithoutAGap);
}

TEST(Automatic, TheBeginOfASongAfterSilenceIsNoEvidenceOfTheNextOne) {
    constexpr double begin = 5;
    for (const double heard : {8.7, 9.0, 10.0, 12.0}) {
        SCOPED_TRACE(heard);
        // The next song differs less from it than it does from silence.
        ScriptSong one;
        one.Seconds = heard;
        one.Media = {"Radio", "Band", "Song 1", "", ""};
        ScriptSong two = one;
        two.Seconds = 40;
        two.PeakRight /= 2;
        two.Media.Song = "Song 2";
        RadioScript radio;
        radio.Silence(begin).Song(std::move(one)).Song(std::move(two)).SilenceForever();
        World world(Automatic(std::move(radio)));
        ASSERT_TRUE(world.StartRecording());
        RunTo(world, 80);
        world.Finish();
        const auto kept = KeptSongs(world);
        ASSERT_EQ(kept.size(), 1U);
        ExpectSong(world, kept[0], "Song 2", begin + heard, begin + heard + 40, WithoutAGap);
    }
}

TEST(Automatic, SilenceOfThreeSecondsIsInNoSong) {
    World world(Automatic(Songs(3, 40, 6)));
    ASSERT_TRUE(world.StartRecording());
    RunTo(world, 200);
    world.Finish();
    ExpectAll(world, WithAGap);
}

TEST(Automatic, TheLastSongOfAPlayerIsKeptThoughASilenceEndsTheRecording) {
    PlayerWorld world(Songs(1, 40, 0), {{"NoStationData", "QuitAfterSilence", "3"},
                                        {ProviderOfRadio, "QuitAfterSilence", "3"}});
    world.Record();
    world.Plays(3.1, "Song 1", 3);
    world.Quits(43.2);
    RunTo(world.Place, 300);
    EXPECT_THAT(world.Place.Logged("ERROR"), Contains(Text("707", {"3"}))) << "the silence has ended it";
    world.Place.Finish();
    const HeardSong song = ExpectOnlySong(world.Place, "Song 1", 3, 43, WithAGap);
    EXPECT_EQ(song.Song.Trust.End, Certainty::Sure);
}

TEST(Automatic, APauseOfThePlayerIsLeftOutAndTheSongGoesOn) {
    RadioScript radio = Songs(2, 30, 8);
    PlayerWorld world(std::move(radio));
    world.Record();
    world.Plays(3.1, "One", 3);
    world.Pauses(33.3);
    world.Plays(41.2, "One", 11);
    world.Quits(71.3);
    world.End(90);
    const HeardSong song = ExpectOnlySong(world.Place, "One", 3, 71, WithAGap, 8);
    EXPECT_EQ(song.Song.Trust.PausesCut, 1);
    EXPECT_THAT(world.Place.Logged("INFO"), Contains(Text("61851", {"Band - One"})));
}

TEST(Automatic, ALongPauseOfThePlayerLosesNothingOfItsSong) {
    PlayerWorld world(Songs(2, 30, 90));
    world.Record();
    world.Plays(3.1, "One", 3);
    world.Pauses(33.3);
    world.Plays(123.2, "One", 93);
    world.Quits(153.3);
    world.End(170);
    ExpectOnlySong(world.Place, "One", 3, 153, WithAGap, 90);
}

TEST(Automatic, ASongSkippedEarlyIsShortAndItsNeighboursAreClean) {
    RadioScript radio;
    radio.Pause(3);
    uint64_t seed = 0;
    for (const double seconds : {40.0, 10.0, 40.0}) {
        ScriptSong song;
        song.Seconds = seconds;
        song.Seed = ++seed;
        song.Sound = seed == 2 ? SongSound::Chord : SongSound::Noise;
        song.PeakLeft = song.PeakRight = static_cast<int16_t>(6000 * seed);
        radio.Song(std::move(song));
    }
    radio.SilenceForever();
    PlayerWorld world(std::move(radio));
    world.Record();
    world.Plays(3.1, "One", 3);
    world.Plays(43.1, "Two", 43);
    world.Plays(53.1, "Three", 53);
    world.Quits(93.2);
    world.End(110);
    const auto kept = KeptSongs(world.Place);
    ASSERT_EQ(kept.size(), 2U);
    ExpectSong(world.Place, kept[0], "One", 3, 43, WithoutAGap);
    ExpectSong(world.Place, kept[1], "Three", 53, 93, WithoutAGap);
    const auto isShort = [](const HeardSong& song) { return song.Song.Fate == SongFate::Short; };
    const auto skipped = std::ranges::find_if(world.Place.Closed, isShort);
    ASSERT_NE(skipped, world.Place.Closed.end());
    EXPECT_EQ(skipped->Song.Media.Song, "Two");
}

TEST(Automatic, TheSameTitleWithANewTrackIsASongOfItsOwn) {
    PlayerWorld world(Songs(2, 40, 0), {{"Options", "SameName", "2"}});
    world.Record();
    world.Plays(3.1, "One", 3, "1");
    world.Plays(43.1, "One", 43, "2");
    world.Quits(83.2);
    world.End(100);
    const auto kept = KeptSongs(world.Place);
    ASSERT_EQ(kept.size(), 2U);
    ExpectSong(world.Place, kept[0], "One", 3, 43, WithoutAGap);
    ExpectSong(world.Place, kept[1], "One", 43, 83, WithoutAGap);
}

/// From second 3 on, 20 s each, without a gap.
RadioScript TheSameSongTwice() {
    RadioScript radio;
    radio.Pause(3);
    ScriptSong song;
    song.Seconds = 20;
    song.Sound = SongSound::Chord;
    radio.Song(song).Song(song).SilenceForever();
    return radio;
}

TEST(Automatic, TheSameSongTwiceWithoutAGapIsCutWhereThePlayerBeganAnew) {
    PlayerWorld world(TheSameSongTwice(), {{"Options", "SameName", "2"}});
    world.Record();
    world.Plays(3.1, "One", 3, "1");
    // The player names the new track at once, and says only later where it is.
    world.Plays(23.2, "One", std::nullopt, "2");
    world.Plays(24.3, "One", 23, "2");
    world.Quits(43.2);
    world.End(60);
    const auto kept = KeptSongs(world.Place);
    ASSERT_EQ(kept.size(), 2U);
    ExpectSong(world.Place, kept[0], "One", 3, 23, WithoutAGap);
    ExpectSong(world.Place, kept[1], "One", 23, 43, WithoutAGap);
    EXPECT_EQ(kept[0].Song.Trust.Begin, Certainty::Sure);
}

TEST(Automatic, BuffersThatPileUpMoveNoCut) {
    PlayerWorld world(TheSameSongTwice(), {{"Options", "SameName", "2"}});
    world.Record();
    world.Plays(3.1, "One", 3, "1");
    RunTo(world.Place, 21.9);
    world.Place.Computer.WaveIn.Hold(RadioName);  // the machine is busy for a while
    world.Plays(23.1, "One", 23, "2");
    RunTo(world.Place, 23.8);
    world.Place.Computer.WaveIn.Release(RadioName);
    world.Quits(43.2);
    world.End(60);
    const auto kept = KeptSongs(world.Place);
    ASSERT_EQ(kept.size(), 2U);
    ExpectSong(world.Place, kept[0], "One", 3, 23, WithoutAGap);
    ExpectSong(world.Place, kept[1], "One", 23, 43, WithoutAGap);
}

TEST(Automatic, ASongThatGoesOnAtAnotherRateHasItsNameInBothFiles) {
    WorldOptions options = Automatic(Songs(1, 60, 0));
    options.TitleDelay = [](size_t) { return 17.0; };
    World world(std::move(options));
    ASSERT_TRUE(world.StartRecording());
    RunTo(world, 15);
    world.Form().chk48kHz.Press();
    world.Form().cmbInputDevices.Select(0);
    RunTo(world, 80);  // the title has come before anything was written at the new rate
    world.Finish();
    EXPECT_THAT(KeptTitles(world), ElementsAre("Song 1", "Song 1"));
}

TEST(Automatic, ASecondPlayerMixesBothSongsAndRenamesNone) {
    PlayerWorld world(Songs(2, 40, 0));
    world.Record();
    world.Plays(3.1, "One", 3);
    world.Plays(30.1, "Other", 30, "9", "vlc");
    world.Quits(43.2);
    world.Quits(83.2, "vlc");
    world.End(100);
    const auto kept = KeptSongs(world.Place);
    ASSERT_EQ(kept.size(), 2U);
    EXPECT_EQ(kept[0].Song.Media.Song, "One");
    EXPECT_TRUE(kept[0].Song.Trust.Mixed);
    EXPECT_FALSE(kept[0].Song.Whole);
    EXPECT_EQ(kept[1].Song.Media.Song, "Other");
    EXPECT_TRUE(kept[1].Song.Trust.Mixed);
    EXPECT_FALSE(kept[1].Song.Whole);
}

TEST(Automatic, ADropoutEndsNoSongAndIsReported) {
    RadioScript radio;
    ScriptSong song;
    song.Seconds = 25;
    song.Media = {"Radio", "Band", "One", "", ""};
    radio.Pause(3).Song(song).Silence(0.11).Song(song).SilenceForever();
    World world(Automatic(std::move(radio)));
    ASSERT_TRUE(world.StartRecording());
    RunTo(world, 80);
    world.Finish();
    const HeardSong kept = ExpectOnlySong(world, "One", 3, 53.11, WithAGap);
    EXPECT_EQ(kept.Song.Trust.Dropouts, 1);
    EXPECT_THAT(world.Logged("INFO"), Contains(Text("61850", {"Band - One"})));
}

TEST(Automatic, AFileWithoutTagsIsNamedByItsFile) {
    PlayerWorld world(Songs(1, 40, 0));
    world.Record();
    RunTo(world.Place, 3.1);
    PlayerReport& report = world.Reports["mpv"];
    report.Address = "file:///music/Old%20Tape%203.flac";
    world.Plays(3.1, "Old Tape 3.flac", 3);
    report.Artist.clear();
    world.Place.Players.Say(report);
    world.Quits(43.2);
    world.End(60);
    EXPECT_THAT(KeptTitles(world.Place), ElementsAre("Old Tape 3"));
}

TEST(Automatic, AStationThatStaysInAllTitlesIsNoPartOfThem) {
    RadioScript radio = Songs(3, 40, 1);
    for (RadioScript::Item& item : radio.Items) {
        if (item.Song.Media.Song.empty()) continue;
        item.Song.Media = {"", "", item.Song.Media.Song + " | Radio Nowhere", "", ""};
    }
    World world(Automatic(std::move(radio)));
    ASSERT_TRUE(world.StartRecording());
    RunTo(world, 150);
    world.Finish();
    EXPECT_THAT(KeptTitles(world), ElementsAre("Song 1", "Song 2", "Song 3"));
}

TEST(Automatic, WhatAllTitlesOfAnAlbumEndWithStaysPartOfThem) {
    for (const bool file : {true, false}) {
        PlayerWorld world(Songs(3, 30, 1));
        world.Record();
        PlayerReport& report = world.Reports["mpv"];
        if (file) report.Address = "file:///music/album";
        if (!file) report.Album = "All of it";
        world.Plays(3.1, "One - Live | Remastered", 3);
        world.Plays(34.1, "Two - Live | Remastered", 34);
        world.Plays(65.1, "Three - Live | Remastered", 65);
        world.Quits(95.2);
        world.End(110);
        EXPECT_THAT(KeptTitles(world.Place), ElementsAre("One - Live | Remastered", "Two - Live | Remastered",
                                                         "Three - Live | Remastered"));
    }
}

TEST(Automatic, WithoutTitlesSongsEndBySilenceAndAreNumberedByTime) {
    WorldOptions options = Automatic(Songs(3, 70, 1.2));
    options.TellsTitles = false;
    World world(std::move(options));
    ASSERT_TRUE(world.StartRecording());
    RunTo(world, 240);
    world.Finish();
    const auto kept = KeptSongs(world);
    ASSERT_EQ(kept.size(), 3U);
    for (const HeardSong& song : kept) {
        EXPECT_EQ(song.Song.Media.Song, "");
        EXPECT_NEAR(static_cast<double>(song.Song.Frames) / 44100, 70, WithAGap);
    }
}

TEST(Automatic, AFileWhoseTagsAndLengthComeLaterThanItsNameIsOneSong) {
    PlayerWorld world(Songs(2, 9, 8));
    world.Record();
    world.Reports["mpv"].Address = "file:///music/Track%2001.flac";
    Streams(world, 3.1, "Track 01.flac");
    world.Plays(4.1, "One", 3, "Track 01.flac");
    world.Pauses(12.3);
    world.Plays(20.2, "One", 11, "Track 01.flac");
    world.Quits(29.3);
    world.End(45);
    ExpectOnlySong(world.Place, "One", 3, 29, WithAGap, 8);
}

TEST(Automatic, AStreamWhoseLengthGrowsIsCutAtItsTitles) {
    PlayerWorld world(Songs(3, 40, 0));
    world.Record();
    PlayerReport& report = world.Reports["mpv"];
    report.Address = "http://127.0.0.1:8000/";
    for (int second = 4; second <= 123; ++second) {
        const int song = (second - 4) / 40 + 1;
        world.Plays(second, "Song " + std::to_string(song), 3, "/0");
        report.LengthMs = 1000LL * second;  // what has arrived, and not the minute of a track
        world.Place.Players.Say(report);
    }
    world.Quits(123.2);
    world.End(140);
    const auto kept = KeptSongs(world.Place);
    ASSERT_EQ(kept.size(), 3U);
    for (size_t i = 0; i < kept.size(); ++i) {
        const double begin = 3 + 40.0 * static_cast<double>(i);
        ExpectSong(world.Place, kept[i], "Song " + std::to_string(i + 1), begin, begin + 40, WithoutAGap);
    }
}

/// Also one that is gone within the seconds in which two changes are taken for one.
TEST(Automatic, AnAdvertisementInTheTitleCutsNothing) {
    for (const double length : {3.0, 7.0}) {
        SCOPED_TRACE(length);
        PlayerWorld world(Songs(1, 80, 0));
        world.Record();
        Streams(world, 3.1, "One");
        Streams(world, 30, "Buy this");
        Streams(world, 30 + length, "One");
        world.Quits(83.2);
        world.End(100);
        ExpectOnlySong(world.Place, "One", 3, 83, WithAGap);
    }
}

TEST(Automatic, TheFirstTitleDoesNotNameWhatPlayedLongBefore) {
    PlayerWorld world(Songs(2, 60, 0));
    world.Record();
    Streams(world, 63.1, "One");
    world.Quits(123.2);
    world.End(140);
    const auto kept = KeptSongs(world.Place);
    ASSERT_EQ(kept.size(), 2U);
    ExpectSong(world.Place, kept[0], "", 3, 63, WithoutAGap);
    ExpectSong(world.Place, kept[1], "One", 63, 123, WithoutAGap);
}

TEST(Automatic, AnAdvertisementInTheTitleDoesNotUseUpTheLastSong) {
    PlayerWorld world(Songs(1, 80, 0));
    world.Record();
    Streams(world, 3.1, "One");
    RunTo(world.Place, 20);
    world.Place.Form().chkStopRecording[0].Value(1);
    Streams(world, 30, "Buy this");
    Streams(world, 37, "One");
    RunTo(world.Place, 70);
    EXPECT_EQ(world.Place.Form().chkStartStop[0].Value(), 1) << "the last song still plays";
    world.Quits(83.2);
    world.End(100);
    EXPECT_THAT(KeptTitles(world.Place), ElementsAre("One"));
}

TEST(Automatic, WhatIsLearnedOfASourceIsKeptForTheNextRunUntilItIsForgotten) {
    WorldOptions options = Automatic(Songs(3, 40, 1.2));
    options.TitleDelay = [](size_t) { return 3.0; };
    World world(std::move(options));
    ASSERT_TRUE(world.StartRecording());
    RunTo(world, 150);
    const std::string file = std::string(LogFolder) + "/cuts/" + RadioName + ".cuts";
    ASSERT_TRUE(world.Disk().Exists(file));
    const auto learned = CutPrior::FromText(*world.Disk().Content(file));
    ASSERT_TRUE(learned.has_value());
    EXPECT_GE(learned->Songs(), 2U);
    world.Form().cmdForgetCuts.Press();
    EXPECT_FALSE(world.Disk().Exists(file));
    world.Finish();
}

TEST(Automatic, ARecordingThatIsSwitchedToAnotherModeLosesNothing) {
    World world(Automatic(Songs(3, 40, 2)));
    ASSERT_TRUE(world.StartRecording());
    RunTo(world, 60);
    world.Form().optEndOfSong[0].Press();
    RunTo(world, 100);
    world.Form().optEndOfSong[3].Press();
    RunTo(world, 170);
    world.Finish();
    EXPECT_EQ(MusicComparedWithRadio(world), "");
    EXPECT_EQ(KeptSongs(world).size(), 3U);
}

}  // namespace
}  // namespace Corvetape::Test
