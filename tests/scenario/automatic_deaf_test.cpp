// Songs by everything that is known while the input stands still: titles go on, and nothing of it is heard.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "scenario/automatic_story.h"

namespace Corvetape::Test {
namespace {

using testing::ElementsAre;

/// Song 1 from second 3 to 43, song 2 to 83, song 3 to 123.
WorldOptions ThreeSongs() {
    return Automatic(Songs(3, 40, 0));
}

/// Runs to a second at which the input stops to give sound.
void RunToSilentInput(World& world, int second) {
    RunTo(world, second);
    world.Computer.WaveIn.Stop(RadioName);
}

/// The input gives sound again from a second on, for as long as the three songs need.
void HearTheRest(World& world, int second) {
    RunTo(world, second);
    world.Computer.WaveIn.Restart(RadioName);
    RunTo(world, 130);
    world.Finish();
}

void ExpectHeard(const HeardSong& heard, const std::string& title, double seconds) {
    EXPECT_EQ(heard.Song.Media.Song, title);
    EXPECT_NEAR(static_cast<double>(heard.Song.Frames) / 44100, seconds, WithAGap);
}

TEST(AutomaticDeaf, ATitleThatChangesWhileNothingIsHeardLeavesAllThatWasHeardToTheSongBefore) {
    World world(ThreeSongs());
    ASSERT_TRUE(world.StartRecording());
    RunToSilentInput(world, 23);
    HearTheRest(world, 60);
    const auto kept = KeptSongs(world);
    ASSERT_EQ(kept.size(), 3U);
    ExpectHeard(kept[0], "Song 1", 20);
    ExpectSong(world, kept[1], "Song 2", 60, 83, WithoutAGap);
    ExpectSong(world, kept[2], "Song 3", 83, 123, WithoutAGap);
    EXPECT_EQ(kept[0].Song.Trust.End, Certainty::Unsure);
    EXPECT_EQ(kept[1].Song.Trust.Begin, Certainty::Unsure);
}

TEST(AutomaticDeaf, TheEndOfTheProgramKeepsTheSongThatWasWantedWhenItsInputStopped) {
    World world(ThreeSongs());
    ASSERT_TRUE(world.Start());
    RunTo(world, 4);
    world.Form().cmdQuickRecord.Press();  // this song only
    RunToSilentInput(world, 23);
    RunTo(world, 60);
    ASSERT_EQ(world.Form().chkStartStop[0].Value(), 0) << "another title is shown, whose song nobody wants";
    world.Finish();
    ExpectOnlySong(world, "Song 1", 3, 23, WithAGap);
}

TEST(AutomaticDeaf, SongsOfWhichNothingIsHeardUseUpNoWish) {
    World world(ThreeSongs());
    ASSERT_TRUE(world.Start());
    RunToSilentInput(world, 23);
    RunTo(world, 30);
    world.Form().chkStartStop[1].Value(1);  // from the next song on
    HearTheRest(world, 100);
    EXPECT_THAT(KeptTitles(world), ElementsAre("Song 3"));
}

TEST(AutomaticDeaf, AnotherModeThatHearsNothingDoesNotRenameWhatWasHeard) {
    World world(ThreeSongs());
    ASSERT_TRUE(world.StartRecording());
    RunToSilentInput(world, 33);
    RunTo(world, 36);
    world.Form().optEndOfSong[0].Press();
    RunTo(world, 50);
    world.Form().optEndOfSong[3].Press();
    HearTheRest(world, 60);
    const auto kept = KeptSongs(world);
    ASSERT_EQ(kept.size(), 3U);
    ExpectHeard(kept[0], "Song 1", 30);
    ExpectSong(world, kept[1], "Song 2", 60, 83, WithoutAGap);
}

TEST(AutomaticDeaf, WhatIsKeptBesideASongThatEndedWithItsInputIsWhatWasHeardNext) {
    World world(ThreeSongs());
    ASSERT_TRUE(world.StartRecording());
    RunToSilentInput(world, 33);
    RunTo(world, 36);
    world.Form().cmbInputDevices.Select(0);
    HearTheRest(world, 60);
    const auto kept = KeptSongs(world);
    ASSERT_EQ(kept.size(), 3U);
    const std::string& path = kept[0].Song.TempPath;
    const std::string name = path.substr(path.rfind('/') + 1);
    const auto after = FramesOfWav(world.Disk(), std::string(SongTempFolder) + "/margins/" +
                                                     name.substr(0, name.rfind('.')) + ".after.wav");
    const auto next = FramesOfWav(world.Disk(), world.Transferred[1].MusicFile);
    ASSERT_TRUE(after && next);
    ASSERT_GE(next->size(), after->size());
    EXPECT_EQ(Comparison(std::span(*next).first(after->size()), *after), "equal");
}

TEST(AutomaticDeaf, AnInputThatIsOpenedAnewDoesNotForgetWhoseSoundItHas) {
    World world(ThreeSongs());
    ASSERT_TRUE(world.StartRecording());
    RunTo(world, 42.8);
    world.Form().cmbInputDevices.Select(0);
    RunTo(world, 130);
    world.Finish();
    EXPECT_THAT(KeptTitles(world), ElementsAre("Song 1", "Song 2", "Song 3"));
}

}  // namespace
}  // namespace Corvetape::Test
