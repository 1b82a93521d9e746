// How sure it is that the first song begins where it was heard first.

#include <gtest/gtest.h>

#include "recording/automatic_rig.h"

namespace Corvetape::Test {
namespace {

/// How surely the song begins that plays now, when it has ended in a silence.
Certainty BeginOfLast(AutomaticRig& rig) {
    rig.Play(500);
    rig.Silence(100);
    return rig.Songs.empty() ? Certainty::None : rig.Songs.back().Trust.Begin;
}

TEST(AutomaticBegin, WhatPlaysAlreadyIsHeardFromItsMiddleOn) {
    AutomaticRig rig;
    rig.Say("One");
    EXPECT_EQ(BeginOfLast(rig), Certainty::Unsure);
    EXPECT_EQ(BeginOfLast(rig), Certainty::Sure) << "the next one has begun in a silence";
}

TEST(AutomaticBegin, ARadioThatIsSwitchedOnAfterwardsIsHeardFromTheMiddleOfItsSongOn) {
    AutomaticRig rig;
    rig.Silence(100);
    rig.Say("One");
    EXPECT_EQ(BeginOfLast(rig), Certainty::Unsure);
}

TEST(AutomaticBegin, ATrackThatItsPlayerBeginsAfterSilenceBeginsThereSurely) {
    AutomaticRig rig;
    rig.Silence(100);
    rig.Track("1", "One");
    EXPECT_EQ(BeginOfLast(rig), Certainty::Sure);
}

TEST(AutomaticBegin, APlayerMaySayOnlyLaterWhereItsTrackBegan) {
    AutomaticRig rig;
    rig.Silence(100);
    rig.Said.TrackId = "1";
    rig.Said.Status = PlayerStatus::Playing;
    rig.Said.Source = "player";
    rig.Say("One");
    rig.Play(60);
    ASSERT_EQ(rig.End.Trust().Begin, Certainty::Unsure);
    rig.Began = 100;
    EXPECT_EQ(BeginOfLast(rig), Certainty::Sure);
}

TEST(AutomaticBegin, ATrackThatBeganLongAgoIsHeardFromItsMiddleOn) {
    AutomaticRig rig;
    rig.Silence(100);
    rig.Track("1", "One", 400);
    EXPECT_EQ(BeginOfLast(rig), Certainty::Unsure);
}

TEST(AutomaticBegin, ATrackThatWasHeardOnlySoonAfterItsBeginLacksThat) {
    AutomaticRig rig;
    rig.Track("1", "One", 40);
    EXPECT_EQ(BeginOfLast(rig), Certainty::Unsure);
}

TEST(AutomaticBegin, AnInputThatHadNoTitleBeforeItsFirstSongBeginsItThere) {
    AutomaticRig rig;
    rig.Said.OfInput = true;
    rig.Say("");
    rig.Silence(30);
    rig.Play(10);
    rig.Say("One");
    EXPECT_EQ(BeginOfLast(rig), Certainty::Sure);
}

TEST(AutomaticBegin, AnInputThatHadATitleFromItsBeginningOnMayBeInTheMiddleOfIt) {
    AutomaticRig rig;
    rig.Said.OfInput = true;
    rig.Silence(30);
    rig.Say("One");
    EXPECT_EQ(BeginOfLast(rig), Certainty::Unsure);
}

TEST(AutomaticBegin, APageThatIsOpenedMeanwhileMayBeInTheMiddleOfItsSong) {
    AutomaticRig rig;
    rig.Say("");
    rig.Silence(30);
    rig.Play(10);
    rig.Say("One");
    EXPECT_EQ(BeginOfLast(rig), Certainty::Unsure);
}

TEST(AutomaticBegin, SilenceBeforeATrackIsInNoSongHoweverLongAgoItBegan) {
    AutomaticRig rig;
    rig.Track("1", "One");
    rig.Play(1000);
    rig.Silence(50);
    rig.Finder.Places = {{1020, 1050}};
    rig.Track("2", "Two");
    rig.Play(300);
    ASSERT_EQ(rig.Songs.size(), 1U);
    ASSERT_EQ(rig.Songs[0].Pieces.size(), 1U);
    EXPECT_EQ(rig.Songs[0].Pieces[0].End, 1000);
}

TEST(AutomaticBegin, WhatFollowsASilenceAfterSoundThatNobodyRecordedBeginsThere) {
    AutomaticRig rig;
    rig.Say("One");
    rig.Play(100);
    rig.End.Forget(false);
    rig.Read = rig.Now;
    rig.Silence(20);
    EXPECT_EQ(BeginOfLast(rig), Certainty::Sure);
}

}  // namespace
}  // namespace Corvetape::Test
