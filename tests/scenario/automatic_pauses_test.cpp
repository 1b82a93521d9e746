// Pauses of players and what happens round them, with songs that end by everything that is known.

#include <gtest/gtest.h>

#include "scenario/automatic_story.h"

namespace Corvetape::Test {
namespace {

/// Sounds of so many seconds from the third second on, each followed by so many seconds of silence.
struct Sounding {
    double Seconds = 0;
    double Silence = 0;
};

RadioScript Pieces(const std::vector<Sounding>& pieces) {
    RadioScript radio;
    radio.Pause(3);
    uint64_t seed = 0;
    for (const Sounding& piece : pieces) {
        ScriptSong song;
        song.Seconds = piece.Seconds;
        song.Seed = ++seed;
        radio.Song(std::move(song)).Silence(piece.Silence);
    }
    return radio.SilenceForever();
}

/// Expects one song, of so many seconds.
void ExpectOne(World& world, const std::string& title, double seconds) {
    const auto kept = KeptSongs(world);
    ASSERT_EQ(kept.size(), 1U);
    EXPECT_EQ(kept[0].Song.Media.Song, title);
    EXPECT_NEAR(static_cast<double>(kept[0].Song.Frames) / 44100, seconds, WithAGap);
}

TEST(AutomaticPauses, AStreamThatPausesIsOneSong) {
    PlayerWorld world(Songs(2, 30, 8));
    world.Record();
    Streams(world, 3.1, "One");
    world.Pauses(33.3);
    Streams(world, 41.2, "One");
    world.Quits(71.3);
    world.End(90);
    ExpectOne(world.Place, "One", 60);
}

TEST(AutomaticPauses, ARestBeforeAPauseIsOfTheSong) {
    PlayerWorld world(Pieces({{28, 0.3}, {1.7, 8}, {30, 0}}));
    world.Record();
    world.Plays(3.1, "One", 3);
    world.Pauses(33.3);
    world.Plays(41.2, "One", 11);
    world.Quits(71.1);
    world.End(90);
    ExpectOne(world.Place, "One", 60);
    EXPECT_EQ(KeptSongs(world.Place)[0].Song.Trust.PausesCut, 1);
}

TEST(AutomaticPauses, AnotherSoundInAPauseIsInNoSong) {
    PlayerWorld world(Pieces({{30, 4}, {0.5, 6}, {30, 0}}));
    world.Record();
    world.Plays(3.1, "One", 3);
    world.Pauses(33.3);
    world.Plays(43.6, "One", 13.5);
    world.Quits(73.6);
    world.End(90);
    ExpectOne(world.Place, "One", 60);
}

TEST(AutomaticPauses, ARestBeforeTheLastChordIsOfTheSong) {
    PlayerWorld world(Pieces({{28, 0.6}, {1.4, 0}}));
    world.Record();
    world.Plays(3.1, "One", 3);
    world.Quits(33.2);
    world.End(50);
    ExpectOne(world.Place, "One", 30);
}

TEST(AutomaticPauses, AnotherSongAfterTheDiskWasFullHasItsOwnFile) {
    constexpr uint64_t megabyte = 1024 * 1024;
    constexpr const char* disk = "/home/user/.cache";
    PlayerWorld world(Songs(3, 40, 0));
    world.Place.Disk().Mount(disk, 10'000 * megabyte);
    world.Record();
    Streams(world, 3.1, "One");
    RunTo(world.Place, 35);
    world.Place.Disk().SetFreeSpace(disk, 0);
    Streams(world, 43.1, "Two");
    Streams(world, 83.1, "Three");
    RunTo(world.Place, 100);
    ASSERT_FALSE(world.Place.Values().Flags.RecordingEnabled);
    world.Place.Disk().SetFreeSpace(disk, 10'000 * megabyte);
    for (int press = 0; press < 2 && !world.Place.Values().Flags.RecordingEnabled; ++press) {
        world.Place.Form().chkStartStop[0].Press();
        RunTo(world.Place, 100.5 + press);
    }
    world.Quits(123.2);
    world.End(140);
    const auto kept = KeptSongs(world.Place);
    ASSERT_EQ(kept.size(), 2U);
    EXPECT_EQ(kept[0].Song.Media.Song, "One");
    EXPECT_LT(static_cast<double>(kept[0].RadioEnd) / 44100, 35.5);
    EXPECT_GT(static_cast<double>(kept[1].RadioBegin) / 44100, 83);
    ExpectSong(world.Place, kept[1], "Three", 98, 123, 3);
    EXPECT_FALSE(kept[1].Song.Whole) << "its beginning is missing";
}

}  // namespace
}  // namespace Corvetape::Test
