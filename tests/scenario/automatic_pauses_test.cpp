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

TEST(AutomaticPauses, AStreamThatPausesIsOneSong) {
    PlayerWorld world(Songs(2, 30, 8));
    world.Record();
    Streams(world, 3.1, "One");
    world.Pauses(33.3);
    Streams(world, 41.2, "One");
    world.Quits(71.3);
    world.End(90);
    ExpectOnlySong(world.Place, "One", 3, 71, WithAGap, 8);
}

TEST(AutomaticPauses, ARestBeforeAPauseIsOfTheSong) {
    PlayerWorld world(Pieces({{28, 0.3}, {1.7, 8}, {30, 0}}));
    world.Record();
    world.Plays(3.1, "One", 3);
    world.Pauses(33.3);
    world.Plays(41.2, "One", 11);
    world.Quits(71.1);
    world.End(90);
    const HeardSong song = ExpectOnlySong(world.Place, "One", 3, 71, WithAGap, 8);
    EXPECT_EQ(song.Song.Trust.PausesCut, 1);
}

TEST(AutomaticPauses, AnotherSoundInAPauseIsInNoSong) {
    PlayerWorld world(Pieces({{30, 4}, {0.5, 6}, {30, 0}}));
    world.Record();
    world.Plays(3.1, "One", 3);
    world.Pauses(33.3);
    world.Plays(43.6, "One", 13.5);
    world.Quits(73.6);
    world.End(90);
    ExpectOnlySong(world.Place, "One", 3, 73.5, WithAGap, 10.5);
}

TEST(AutomaticPauses, ARestBeforeTheLastChordIsOfTheSong) {
    PlayerWorld world(Pieces({{28, 0.6}, {1.4, 0}}));
    world.Record();
    world.Plays(3.1, "One", 3);
    world.Quits(33.2);
    world.End(50);
    ExpectOnlySong(world.Place, "One", 3, 33, WithAGap);
}

constexpr uint64_t Megabyte = 1024 * 1024;
constexpr const char* TempDisk = "/home/user/.cache";

/// Recording has ended by itself, and the user wants it again at this second.
void RecordAgain(PlayerWorld& world, double second) {
    RunTo(world.Place, second);
    ASSERT_FALSE(world.Place.Values().Flags.RecordingEnabled);
    world.Place.Disk().SetFreeSpace(TempDisk, 10'000 * Megabyte);
    for (int press = 0; press < 2 && !world.Place.Values().Flags.RecordingEnabled; ++press) {
        world.Place.Form().chkStartStop[0].Press();
        RunTo(world.Place, second + 0.5 + press);
    }
}

TEST(AutomaticPauses, AnotherSongAfterTheDiskWasFullHasItsOwnFile) {
    PlayerWorld world(Songs(3, 60, 0));
    world.Place.Disk().Mount(TempDisk, 10'000 * Megabyte);
    world.Record();
    Streams(world, 3.1, "One");
    RunTo(world.Place, 35);
    world.Place.Disk().SetFreeSpace(TempDisk, 0);
    Streams(world, 63.1, "Two");
    Streams(world, 123.1, "Three");
    RecordAgain(world, 150);
    world.Quits(183.2);
    world.End(200);
    const auto kept = KeptSongs(world.Place);
    ASSERT_EQ(kept.size(), 2U);
    EXPECT_EQ(kept[0].Song.Media.Song, "One");
    EXPECT_LT(static_cast<double>(kept[0].RadioEnd) / 44100, 35.5);
    ExpectSong(world.Place, kept[1], "Three", 150, 183, 2);
    EXPECT_FALSE(kept[1].Song.Whole) << "its beginning is missing";
}

/// More waits in the ring where nobody names titles. That does not shorten the time for making room.
TEST(AutomaticPauses, ADiskThatIsFullForAWhileCostsASongWithoutTitlesNothing) {
    PlayerWorld world(Songs(1, 200, 0));
    world.Place.Disk().Mount(TempDisk, 10'000 * Megabyte);
    world.Record();
    RunTo(world.Place, 100);
    world.Place.Disk().SetFreeSpace(TempDisk, 0);
    RecordAgain(world, 180);
    world.End(220);
    ExpectOnlySong(world.Place, "", 3, 203, WithAGap);
    EXPECT_EQ(MusicComparedWithRadio(world.Place), "");
}

/// The disk fills up shortly before a song ends, so that its end waits for room and the next ones are missed.
TEST(AutomaticPauses, WhatIsHeardLongAfterTheDiskWasFullWaitsForNothing) {
    PlayerWorld world(Songs(5, 40, 0));
    world.Place.Disk().Mount(TempDisk, 10'000 * Megabyte);
    world.Record();
    Streams(world, 3.1, "One");
    RunTo(world.Place, 41);
    world.Place.Disk().SetFreeSpace(TempDisk, 0);
    Streams(world, 43.1, "Two");
    Streams(world, 83.1, "Three");
    Streams(world, 123.1, "Four");
    Streams(world, 163.1, "Five");
    RecordAgain(world, 180);
    world.Quits(203.2);
    world.End(220);
    const auto kept = KeptSongs(world.Place);
    ASSERT_EQ(kept.size(), 2U);
    EXPECT_EQ(kept[0].Song.Media.Song, "One");
    ExpectSong(world.Place, kept[1], "Five", 180, 203, 2);
}

/// The next song, whose beginning is not found at once, is waiting in part when the last one ends.
TEST(AutomaticPauses, WhatIsHeardAfterTheLastSongOfANearlyFullDiskWaitsForNothing) {
    RadioScript radio = Songs(2, 60, 0);
    for (RadioScript::Item& item : radio.Items) item.Song.Sound = SongSound::Noise;
    PlayerWorld world(std::move(radio));
    world.Place.Disk().Mount(TempDisk, 10'000 * Megabyte);
    world.Record();
    Streams(world, 3.1, "One");
    RunTo(world.Place, 50);
    world.Place.Disk().SetFreeSpace(TempDisk, 50 * Megabyte);
    Streams(world, 63.1, "Two");
    RecordAgain(world, 100);
    world.Quits(123.2);
    world.End(140);
    const auto kept = KeptSongs(world.Place);
    ASSERT_EQ(kept.size(), 2U);
    ExpectSong(world.Place, kept[1], "Two", 100, 123, 2);
}

}  // namespace
}  // namespace Corvetape::Test
