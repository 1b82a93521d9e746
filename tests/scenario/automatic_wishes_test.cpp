// What is wished for a song holds for that song, with songs that end by everything that is known.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "scenario/automatic_story.h"

namespace Corvetape::Test {
namespace {

using testing::ElementsAre;

constexpr uint64_t Megabyte = uint64_t{1} << 20U;
constexpr uint64_t Room = 10'000 * Megabyte;
constexpr const char* Disk = "/home/user/.cache";

/// Three songs of 30 s with 5 s of silence after each, from the third second on, and nobody says titles.
class UntitledSongs : public testing::Test {
 protected:
    UntitledSongs() : Place(Options()) {}

    static WorldOptions Options() {
        WorldOptions options = Automatic(Songs(3, 30, 5));
        options.TellsTitles = false;
        return options;
    }

    World Place;
};

TEST_F(UntitledSongs, RecordingThatIsToEndWithASongGoesOnForTheNextOneThatIsWanted) {
    ASSERT_TRUE(Place.Start());
    RunTo(Place, 10);
    Place.Form().chkStartStop[1].Press();
    Place.Values().Flags.DisableAtEndOfSong = true;
    RunTo(Place, 110);
    Place.Finish();
    const auto kept = KeptSongs(Place);
    ASSERT_EQ(kept.size(), 2U);
    EXPECT_NEAR(static_cast<double>(kept[0].RadioBegin) / 44100, 38, WithAGap);
}

TEST_F(UntitledSongs, RecordingThatIsToEndWithTheLastSongEndsWithIt) {
    ASSERT_TRUE(Place.Start());
    RunTo(Place, 10);
    Place.Form().cmdQuickRecord.Press();
    Place.Values().Flags.DisableAtEndOfSong = true;
    RunTo(Place, 45);
    EXPECT_EQ(KeptSongs(Place).size(), 1U);
    EXPECT_FALSE(Place.Values().Flags.RecordingEnabled);
    EXPECT_EQ(Place.Closed.size(), 1U);
}

/// A player plays three streams of 40 s, one after the other, and the disk is full for a while.
class FullDisk : public testing::Test {
 protected:
    FullDisk() : Player(Songs(3, 40, 0)), Place(Player.Place) { Place.Disk().Mount(Disk, Room); }

    void Fill(double second) {
        RunTo(Place, second);
        Place.Disk().SetFreeSpace(Disk, 0);
    }
    void MakeRoom(double second) {
        RunTo(Place, second);
        ASSERT_FALSE(Place.Values().Flags.RecordingEnabled);
        Place.Disk().SetFreeSpace(Disk, Room);
    }
    void PlayOn() {
        Player.Quits(123.2);
        Player.End(140);
    }

    PlayerWorld Player;
    World& Place;
};

TEST_F(FullDisk, WhatIsWishedThenIsMeantForTheSongWhoseTitleIsShown) {
    Player.Record();
    Streams(Player, 3.1, "One");
    Fill(35);
    Streams(Player, 43.1, "Two");
    Streams(Player, 83.1, "Three");
    MakeRoom(90);
    Place.Form().chkStartStop[0].Press();  // nothing more is wanted
    RunTo(Place, 91);
    Place.Form().cmdQuickRecord.Press();  // but this song
    RunTo(Place, 95);
    EXPECT_TRUE(Place.Values().Flags.RecordCurrentSong) << "the song before has not used that up";
    PlayOn();
    EXPECT_THAT(KeptTitles(Place), ElementsAre("One", "Three"));
}

TEST_F(FullDisk, WhatWasWishedBeforeIsPassedOnByTheSongsThatHaveEndedMeanwhile) {
    ASSERT_TRUE(Place.Start());
    Streams(Player, 3.1, "One");
    RunTo(Place, 10);
    Place.Form().cmdQuickRecord.Press();
    Fill(35);
    Streams(Player, 43.1, "Two");
    MakeRoom(60);
    Place.Values().Flags.ResumeForUser();
    Streams(Player, 83.1, "Three");
    PlayOn();
    EXPECT_THAT(KeptTitles(Place), ElementsAre("One"));
}

TEST_F(FullDisk, ASongWhoseLastSoundItRefusedKeepsItsNameAlsoIfTheInputIsOpenedAnew) {
    Player.Record();
    Streams(Player, 3.1, "One");
    Fill(41);
    Streams(Player, 43.1, "Two");
    MakeRoom(56);
    ASSERT_TRUE(Place.Values().Ring.Unread() > 0) << "the end of the first song waits";
    Place.Form().cmbInputDevices.Select(0);
    RunTo(Place, 58);
    Place.Form().chkStartStop[0].Value(1);
    PlayOn();
    EXPECT_THAT(KeptTitles(Place), ElementsAre("One", "Two"));
    EXPECT_LT(static_cast<double>(KeptSongs(Place)[0].RadioEnd) / 44100, 43.5);
}

}  // namespace
}  // namespace Corvetape::Test
