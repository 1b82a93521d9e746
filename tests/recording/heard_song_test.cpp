// Since when the song that plays is heard, and whether from its beginning.
#include "recording/heard_song.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>

#include "media/provider_wmp.h"
#include "sim/sim_machine.h"
#include "sim/sim_players.h"

namespace Corvetape::Test {
namespace {

constexpr int32_t Loud = 9000;
constexpr int32_t Quiet = 20;

/// Seconds of sound and silence, each followed by a tick.
class HeardSongTest : public testing::Test {
 protected:
    HeardSongTest() {
        Pause.SilenceAmplitude = 100;
        Machine.Loop.RunFor(std::chrono::minutes(10));  // a clock that has run for longer than pieces last
        Media.ProviderName = MediaPlayerName;
    }
    void Buffers(int32_t level, int count) {
        for (int i = 0; i < count; ++i) {
            Signal.History.Append(level);
            Signal.SilentBufferCount = level > Pause.SilenceAmplitude ? 0 : Signal.SilentBufferCount + 1;
        }
    }
    void Second() {
        Machine.Loop.RunFor(std::chrono::seconds(1));
        Song.Tick();
    }
    void Seconds(int32_t level, int count) {
        for (int i = 0; i < count; ++i) {
            Buffers(level, 20);
            Second();
        }
    }
    /// A player says that its piece is at this position now.
    void PlayerIsAt(int64_t positionMs) {
        PlayerReport report;
        report.Player = "player";
        report.Playing = true;
        report.Title = "Song";
        report.Status = PlayerStatus::Playing;
        report.BeganAtMs = Machine.Clock.MonotonicNanoseconds() / 1'000'000 - positionMs;
        Bridge.Say(report);
        Machine.Loop.RunFor(std::chrono::milliseconds(300));
    }

    SimMachine Machine;
    SignalState Signal;
    PauseSettings Pause;
    CutState Cut;
    MediaState Media;
    SimPlayers Bridge{Machine.Loop};
    RegistryBranches Registry{Machine.Files, "/home/user/user.reg", "/home/user/machine.reg"};
    PlayerBridge Players{Bridge, Registry, Machine.Loop};
    HeardSong Song{{Signal, Pause, Cut, Media, &Players, Machine.Clock}};
};

TEST_F(HeardSongTest, AfterSilenceTheFirstSongIsHeardFromItsBeginningAndIsAsOldAsItsSound) {
    Seconds(Quiet, 30);
    EXPECT_EQ(Song.Seconds(), 0);
    Seconds(Loud, 5);
    EXPECT_TRUE(Song.FromItsBeginning());
    EXPECT_EQ(Song.Seconds(), 4);
}

TEST_F(HeardSongTest, ARestInTheMusicIsNoBeginning) {
    Buffers(Quiet, 9);
    Buffers(Loud, 11);
    Second();
    EXPECT_FALSE(Song.FromItsBeginning());
}

TEST_F(HeardSongTest, HalfASecondOfSilenceIsABeginning) {
    Buffers(Quiet, 10);
    Buffers(Loud, 10);
    Second();
    EXPECT_TRUE(Song.FromItsBeginning());
}

TEST_F(HeardSongTest, WhatSoundedAlreadyHadBegunUntilTheNextSong) {
    Seconds(Loud, 40);
    EXPECT_FALSE(Song.FromItsBeginning());
    EXPECT_EQ(Song.Seconds(), 39);
    Cut.NoteBoundary();
    Seconds(Loud, 3);
    EXPECT_TRUE(Song.FromItsBeginning());
    EXPECT_EQ(Song.Seconds(), 2);
}

TEST_F(HeardSongTest, SilenceWithinTheFirstSongIsNoBeginning) {
    Seconds(Loud, 5);
    Seconds(Quiet, 2);
    Seconds(Loud, 5);
    EXPECT_FALSE(Song.FromItsBeginning());
    EXPECT_EQ(Song.Seconds(), 11);
}

TEST_F(HeardSongTest, TheFirstTitleOfASourceIsNoBeginning) {
    Seconds(Loud, 5);
    Cut.NoteFirstTitle();
    Seconds(Loud, 5);
    EXPECT_FALSE(Song.FromItsBeginning());
    EXPECT_EQ(Song.Seconds(), 9);
}

TEST_F(HeardSongTest, ASongThatComesAfterASilenceIsAsOldAsItsSound) {
    Seconds(Loud, 20);
    Buffers(Quiet, 3);
    Cut.NoteBoundary();
    Buffers(Quiet, 17);
    Second();
    Seconds(Quiet, 10);
    EXPECT_EQ(Song.Seconds(), 0);
    Seconds(Loud, 8);
    EXPECT_EQ(Song.Seconds(), 7);
}

TEST_F(HeardSongTest, APlayerWhosePieceBeganWithTheRecordingSaysSo) {
    PlayerIsAt(0);
    Seconds(Loud, 2);
    EXPECT_TRUE(Song.FromItsBeginning());
}

TEST_F(HeardSongTest, APieceThatIsLetGoOnAfterSilenceHadBegun) {
    Seconds(Quiet, 20);
    Seconds(Loud, 1);
    EXPECT_TRUE(Song.FromItsBeginning());
    PlayerIsAt(90'000);
    Seconds(Loud, 1);
    EXPECT_FALSE(Song.FromItsBeginning());
}

TEST_F(HeardSongTest, WhatAPlayerSaysOfAnotherSourceOrTooLateDoesNotCount) {
    Media.ProviderName = "Radio";
    PlayerIsAt(0);
    Seconds(Loud, 5);
    EXPECT_FALSE(Song.FromItsBeginning());
    Seconds(Loud, 10);
    Media.ProviderName = MediaPlayerName;
    PlayerIsAt(0);  // jumped back to the beginning
    Seconds(Loud, 2);
    EXPECT_FALSE(Song.FromItsBeginning());
}

}  // namespace
}  // namespace Corvetape::Test
