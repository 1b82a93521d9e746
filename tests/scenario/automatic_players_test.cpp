// Songs that end by everything that is known, as players of every kind report them.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "recording/automatic/learned_cuts.h"
#include "scenario/automatic_story.h"

namespace Corvetape::Test {
namespace {

/// A page plays songs, all of which its browser calls by one name. It says a little later where each began.
void PlaysPage(PlayerWorld& world, int song, int64_t lengthMs, int64_t beganAtMs) {
    const double begin = 3 + 40.0 * (song - 1);
    PlayerReport& report = world.Reports["page"];
    world.Plays(begin + 0.2, "Song " + std::to_string(song), std::nullopt, "/track/1", "page");
    report.LengthMs = lengthMs;
    world.Place.Players.Say(report);
    RunTo(world.Place, begin + 1.3);
    report.BeganAtMs = beganAtMs;
    world.Place.Players.Say(report);
}

void ExpectThreeSongsOfForty(PlayerWorld& world) {
    const auto kept = KeptSongs(world.Place);
    ASSERT_EQ(kept.size(), 3U);
    for (size_t i = 0; i < kept.size(); ++i) {
        const double begin = 3 + 40.0 * static_cast<double>(i);
        ExpectSong(world.Place, kept[i], "Song " + std::to_string(i + 1), begin, begin + 40, WithoutAGap);
        EXPECT_FALSE(kept[i].Song.Trust.Sought);
    }
}

TEST(Automatic, ARadioInABrowserIsCutAtItsTitles) {
    PlayerWorld world(Songs(3, 40, 0));
    world.Record();
    constexpr int64_t noEnd = std::numeric_limits<int64_t>::max() / 1000;
    for (const int song : {1, 2, 3}) PlaysPage(world, song, noEnd, 2900);
    world.Quits(123.2, "page");
    world.End(140);
    ExpectThreeSongsOfForty(world);
}

TEST(Automatic, SongsOfAPageWhoseTrackIsAlwaysTheSameKeepTheirNames) {
    PlayerWorld world(Songs(3, 40, 0));
    world.Record();
    for (const int song : {1, 2, 3}) PlaysPage(world, song, 40'000, 3000 + 40'000LL * (song - 1));
    world.Quits(123.2, "page");
    world.End(140);
    ExpectThreeSongsOfForty(world);
}

TEST(Automatic, AFileOfAServerWhoseTagsComeLaterThanItsNameIsOneSong) {
    PlayerWorld world(Songs(1, 40, 0));
    world.Record();
    world.Reports["mpv"].Address = "http://127.0.0.1/Track%2001.mp3";
    world.Plays(3.1, "Track 01.mp3", 3, "/1");
    world.Plays(4.1, "One", 3, "/1");
    world.Quits(43.2);
    world.End(60);
    ExpectOnlySong(world.Place, "One", 3, 43, WithAGap);
}

TEST(Automatic, AStationIsLearnedByItsHostAndNotByItsPlayer) {
    PlayerWorld world(Songs(3, 40, 1));
    world.Record();
    PlayerReport& report = world.Reports["mpv"];
    for (const int song : {1, 2, 3}) {
        const std::string host = song < 3 ? "one.example:8000" : "other.example";
        report.Address = "http://user:secret@" + host + "/live.mp3";
        Streams(world, 3.1 + 41.0 * (song - 1), "Song " + std::to_string(song));
    }
    world.Quits(125.2);
    world.End(140);
    std::vector<std::string> names;
    for (const FileEntry& entry :
         world.Place.Disk().List(FolderOfLearnedCuts(world.Place.Computer.Folders))) {
        names.push_back(entry.Name);
    }
    EXPECT_THAT(names, testing::UnorderedElementsAre("mpv one.example_8000.cuts", "mpv other.example.cuts"));
}

TEST(Automatic, TheAddressOfAStreamIsNoTitle) {
    for (const std::string shown : {"http://one.example/live.mp3", "live.mp3", ""}) {
        SCOPED_TRACE(shown);
        PlayerWorld world(Songs(2, 40, 1));
        world.Record();
        PlayerReport& report = world.Reports["mpv"];
        report.Address = "http://one.example/live.mp3";
        // Its length grows with what it has of the stream, which shows that it is one.
        for (int second = 0; second < 82; ++second) {
            const std::string title = second < 6 ? shown : second < 47 ? "Song 1" : "Song 2";
            world.Plays(3.1 + second, title, 3, "/1");
            report.LengthMs = 5000 + 1000 * second;
            if (title.empty() || title == shown) report.Artist.clear();
            world.Place.Players.Say(report);
        }
        world.Quits(84.2);
        world.End(100);
        const auto kept = KeptSongs(world.Place);
        ASSERT_EQ(kept.size(), 2U);
        ExpectSong(world.Place, kept[0], "Song 1", 3, 43, WithAGap);
        ExpectSong(world.Place, kept[1], "Song 2", 44, 84, WithAGap);
    }
}

TEST(Automatic, AnUntaggedFileOfAnotherMachineHasItsName) {
    PlayerWorld world(Songs(2, 40, 1));
    world.Record();
    PlayerReport& report = world.Reports["mpv"];
    for (const int song : {1, 2}) {
        const std::string name = "Tape " + std::to_string(song);
        report.Address = "http://one.example/" + name + ".mp3";
        const double begin = 3 + 41 * (song - 1);
        world.Plays(begin + 0.1, name + ".mp3", begin, "/" + name);
        report.Artist.clear();
        world.Place.Players.Say(report);
    }
    world.Quits(84.2);
    world.End(100);
    const auto kept = KeptSongs(world.Place);
    ASSERT_EQ(kept.size(), 2U);
    ExpectSong(world.Place, kept[0], "Tape 1", 3, 43, WithAGap);
    ExpectSong(world.Place, kept[1], "Tape 2", 44, 84, WithAGap);
}

TEST(Automatic, TheSecondFileOfASongIsNotWhole) {
    World world(Automatic(Songs(3, 40, 2)));
    ASSERT_TRUE(world.StartRecording());
    RunTo(world, 65);
    world.Form().chk48kHz.Press();
    world.Form().cmbInputDevices.Select(0);
    RunTo(world, 140);
    world.Finish();
    const auto kept = KeptSongs(world);
    ASSERT_EQ(kept.size(), 4U);
    EXPECT_TRUE(kept[0].Song.Whole) << "one file, with a gap on either side";
    EXPECT_TRUE(kept[3].Song.Whole) << "as the first";
    EXPECT_FALSE(kept[1].Song.Whole) << "the rest is in the next file";
    EXPECT_EQ(kept[2].Song.Media.Song, "Song 2");
    EXPECT_EQ(kept[2].Song.Trust.Begin, Certainty::Sure) << "that of the song";
    EXPECT_FALSE(kept[2].Song.Whole);
}

TEST(Automatic, AnotherWayToEndSongsGoesBackToThePlayerThatBeganLast) {
    PlayerWorld world(Songs(2, 40, 2));
    world.Record();
    world.Plays(3.1, "First", 3);
    RunTo(world.Place, 20);
    world.Place.Form().optEndOfSong[0].Press();
    world.Plays(50, "Second", 45, "", "vlc");
    world.End(100);
    const std::vector<std::string> titles = KeptTitles(world.Place);
    ASSERT_FALSE(titles.empty());
    EXPECT_EQ(titles.back(), "Second");
}

}  // namespace
}  // namespace Corvetape::Test
