#include "recording/automatic/automatic_end.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "recording/automatic_rig.h"

namespace Corvetape::Test {
namespace {

using testing::ElementsAre;

TEST(AutomaticEnd, TheFirstTitleNamesWhatPlaysAndCutsNothing) {
    AutomaticRig rig;
    rig.Play(100);
    rig.Say("One");
    rig.Play(1000);
    EXPECT_TRUE(rig.Songs.empty());
    EXPECT_EQ(rig.End.Media().Song, "One");
    EXPECT_EQ(rig.Changes, 0);
}

TEST(AutomaticEnd, ALateTitleCutsInTheGapBeforeIt) {
    AutomaticRig rig;
    rig.Say("One");
    rig.Play(1000);
    rig.Silence(24);
    rig.Finder.Places = {{1000, 1024}};
    rig.Play(100);
    rig.Say("Two");
    rig.Play(400);
    rig.Finish();
    ASSERT_EQ(rig.Songs.size(), 1U);
    EXPECT_EQ(rig.Songs[0].Title, "One");
    EXPECT_THAT(rig.Songs[0].Pieces, ElementsAre(SlotRun{0, 1000}));
    EXPECT_TRUE(rig.Songs[0].Passed);
    EXPECT_EQ(rig.Songs[0].Trust.End, Certainty::Sure);
    EXPECT_THAT(rig.Present.Pieces, ElementsAre(SlotRun{1024, 1524}));
    EXPECT_EQ(rig.Present.Title, "Two");
    EXPECT_EQ(rig.Finder.Taught, 1);
}

TEST(AutomaticEnd, WithoutAGapTheEvidenceIsWaitedForAndCutsBothSongsAtOnePlace) {
    AutomaticRig rig;
    rig.Say("One");
    rig.Play(1000);
    rig.Finder.Places = {{980, 980, 0.8F, 5}};
    rig.Say("Two");
    rig.Play(SlotsAfterChange - 20);
    EXPECT_TRUE(rig.Songs.empty());
    rig.Play(60);
    ASSERT_EQ(rig.Songs.size(), 1U);
    EXPECT_THAT(rig.Songs[0].Pieces, ElementsAre(SlotRun{0, 980}));
    EXPECT_EQ(rig.Songs[0].Trust.End, Certainty::Likely);
    EXPECT_EQ(rig.Finder.Searches, 1) << "before all of the sound is there, only a gap is looked for";
    rig.Finish();
    EXPECT_THAT(rig.Present.Pieces, ElementsAre(SlotRun{980, rig.Now}));
}

TEST(AutomaticEnd, ASilenceOfThreeSecondsEndsTheSongWhereItBegins) {
    AutomaticRig rig;
    rig.Say("One");
    rig.Play(1005);
    rig.Silence(59);
    rig.Play(500);
    EXPECT_TRUE(rig.Songs.empty()) << "shorter by a slot";
    rig.Silence(80);
    ASSERT_EQ(rig.Songs.size(), 1U);
    EXPECT_THAT(rig.Songs[0].Pieces, ElementsAre(SlotRun{0, 1564}));
    EXPECT_FALSE(rig.Songs[0].Passed);
    rig.Silence(1000);
    rig.Play(500);
    rig.Silence(100);
    ASSERT_EQ(rig.Songs.size(), 2U);
    EXPECT_THAT(rig.Songs[1].Pieces, ElementsAre(SlotRun{2644, 3144}));
}

TEST(AutomaticEnd, ATitleThatComesAfterALongSilenceNamesWhatHasBegunThere) {
    AutomaticRig rig;
    rig.Say("One");
    rig.Play(1000);
    rig.Silence(100);
    rig.Play(90);
    rig.Say("Two");
    rig.Play(600);
    rig.Silence(100);
    ASSERT_EQ(rig.Songs.size(), 2U);
    EXPECT_EQ(rig.Songs[0].Title, "One");
    EXPECT_EQ(rig.Songs[1].Title, "Two");
    EXPECT_THAT(rig.Songs[1].Pieces, ElementsAre(SlotRun{1100, 1790}));
    // The source has learned how late its titles are.
    EXPECT_THAT(rig.Finder.Gaps, ElementsAre(EdgeRange{-170, -90}));
}

TEST(AutomaticEnd, ATitleThatComesBeforeALongSilenceBelongsToTheSongAfterIt) {
    AutomaticRig rig;
    rig.Say("One");
    rig.Play(1000);
    rig.Say("Two");
    rig.Play(20);
    rig.Silence(100);
    rig.Play(600);
    rig.Silence(100);
    ASSERT_EQ(rig.Songs.size(), 2U);
    EXPECT_EQ(rig.Songs[0].Title, "One");
    EXPECT_THAT(rig.Songs[0].Pieces, ElementsAre(SlotRun{0, 1020}));
    EXPECT_EQ(rig.Songs[1].Title, "Two");
    EXPECT_THAT(rig.Songs[1].Pieces, ElementsAre(SlotRun{1120, 1720}));
}

TEST(AutomaticEnd, TheEndOfThePlayerEndsTheLastSongWithItsName) {
    AutomaticRig rig;
    rig.Track("1", "One");
    rig.Play(1000);
    rig.Silence(3);
    rig.Said.Media.Song.clear();
    rig.Said.Source.clear();
    rig.Said.TrackId.clear();
    rig.Began.reset();
    rig.Said.Position.reset();
    rig.Status(PlayerStatus::Unknown);
    rig.Silence(37);
    ASSERT_EQ(rig.Songs.size(), 1U) << "needs no long silence";
    EXPECT_EQ(rig.Songs[0].Title, "One");
    EXPECT_THAT(rig.Songs[0].Pieces, ElementsAre(SlotRun{0, 1000}));
    rig.Silence(6000);
    EXPECT_EQ(rig.Songs.size(), 1U);
    rig.Play(500);
    rig.Silence(80);
    ASSERT_EQ(rig.Songs.size(), 2U);
    EXPECT_EQ(rig.Songs[1].Title, "") << "nobody has said what this is";
}

TEST(AutomaticEnd, ATrackIsCutWhereThePlayerSaysThatItBegan) {
    AutomaticRig rig;
    rig.Track("1", "One");
    rig.Play(1000);
    rig.Finder.Places = {{1001, 1001, 0.3F, 1}};
    rig.Play(12);
    rig.Track("2", "Two", 12);
    rig.Play(400);
    ASSERT_EQ(rig.Songs.size(), 1U);
    EXPECT_THAT(rig.Songs[0].Pieces, ElementsAre(SlotRun{0, 1001})) << "no further evidence is asked for";
}

TEST(AutomaticEnd, APlayerThatReportsThePositionLaterIsRightAllTheSame) {
    AutomaticRig rig;
    rig.Track("1", "One");
    rig.Play(1000);
    rig.Finder.Places = {{1000, 1000, 0.3F, 1}};
    rig.Play(8);
    rig.Said.TrackId = "2";  // its title is the same, and nothing in the sound shows that it begins
    rig.Began.reset();
    rig.Said.Position.reset();
    rig.LookNow();
    rig.Play(22);
    rig.Began = 1000;
    rig.Play(400);
    ASSERT_EQ(rig.Songs.size(), 1U);
    EXPECT_THAT(rig.Songs[0].Pieces, ElementsAre(SlotRun{0, 1000}));
    EXPECT_FALSE(rig.Songs[0].Trust.AgainstEvidence);
}

TEST(AutomaticEnd, ATrackEndsByItsLengthIfNobodySaysWhereTheNextOneBegan) {
    AutomaticRig rig;
    rig.Said.Length = 990;
    rig.Track("1", "One");
    rig.Play(1000);
    rig.Finder.Places = {{991, 991, 0.3F, 1}};
    rig.Said.TrackId = "2";
    rig.Began.reset();
    rig.Said.Position.reset();
    rig.LookNow();
    rig.Play(400);
    ASSERT_EQ(rig.Songs.size(), 1U);
    EXPECT_THAT(rig.Songs[0].Pieces, ElementsAre(SlotRun{0, 991}));
}

TEST(AutomaticEnd, ATrackThatIsNamedAfterItsTitleIsTheSameSong) {
    AutomaticRig rig;
    rig.Track("1", "One");
    rig.Play(1000);
    rig.Finder.Places = {{1000, 1000}};
    rig.Said.TrackId.clear();
    rig.Began.reset();
    rig.Said.Position.reset();
    rig.Say("Two");
    rig.Play(20);
    rig.Track("2", "Two", 20);
    rig.Play(400);
    rig.Finish();
    ASSERT_EQ(rig.Songs.size(), 1U);
    EXPECT_THAT(rig.Present.Pieces, ElementsAre(SlotRun{1000, 1420}));
}

TEST(AutomaticEnd, ASongThatIsSkippedEarlyLeavesItsNeighboursClean) {
    AutomaticRig rig;
    rig.Track("1", "One");
    rig.Play(1000);
    rig.Finder.Places = {{1000, 1000}, {1200, 1200}};
    rig.Track("2", "Two");
    rig.Play(200);
    rig.Track("3", "Three");
    rig.Play(1000);
    rig.Finish();
    ASSERT_EQ(rig.Songs.size(), 2U);
    EXPECT_THAT(rig.Songs[0].Pieces, ElementsAre(SlotRun{0, 1000}));
    EXPECT_THAT(rig.Songs[1].Pieces, ElementsAre(SlotRun{1000, 1200}));
    EXPECT_THAT(rig.Present.Pieces, ElementsAre(SlotRun{1200, 2200}));
}

TEST(AutomaticEnd, TwoChangesWithinFiveSecondsAreOne) {
    AutomaticRig rig;
    rig.Say("One");
    rig.Play(1000);
    rig.Finder.Places = {{1000, 1000}};
    rig.Say("Tw");
    rig.Play(90);
    rig.Say("Two");
    rig.Play(1000);
    rig.Finish();
    ASSERT_EQ(rig.Songs.size(), 1U);
    EXPECT_EQ(rig.Songs[0].Title, "One");
    EXPECT_EQ(rig.Present.Title, "Two");
    EXPECT_THAT(rig.Present.Pieces, ElementsAre(SlotRun{1000, 2090}));
}

TEST(AutomaticEnd, WhatIsSkippedWithinFiveSecondsIsInNeitherSong) {
    AutomaticRig rig;
    rig.Track("1", "One");
    rig.Play(1000);
    rig.Finder.Places = {{1000, 1000}, {1060, 1060}};
    rig.Track("2", "Two");
    rig.Play(60);
    rig.Finder.Places = {{1000, 1000}};
    rig.Track("3", "Three");
    rig.Finder.Places = {{1060, 1060}, {1000, 1000}};
    rig.Play(1000);
    rig.Finish();
    ASSERT_EQ(rig.Songs.size(), 1U);
    EXPECT_EQ(rig.Present.Title, "Three");
    EXPECT_GE(rig.Present.Pieces.front().Begin, 1060);
}

TEST(AutomaticEnd, AChangeWithoutEvidenceWaitsTenSecondsAndThenFollowsTheTitles) {
    AutomaticRig rig;
    rig.Say("One");
    rig.Play(1000);
    rig.Say("Two");
    rig.Play(SlotsAfterChange + AutomaticEnd::WaitForEvidence - 20);
    EXPECT_TRUE(rig.Songs.empty());
    rig.Play(60);
    ASSERT_EQ(rig.Songs.size(), 1U);
    EXPECT_THAT(rig.Songs[0].Pieces, ElementsAre(SlotRun{0, 993})) << "the quietest moment";
    EXPECT_EQ(rig.Songs[0].Trust.End, Certainty::Unsure);
    EXPECT_TRUE(rig.Songs[0].Trust.AgainstEvidence);
    EXPECT_EQ(rig.Finder.Taught, 0);
}

TEST(AutomaticEnd, BetterEvidenceThatComesWhileItWaitsIsTaken) {
    AutomaticRig rig;
    rig.Say("One");
    rig.Play(1000);
    rig.Say("Two");
    rig.Play(SlotsAfterChange + 20);
    rig.Finder.Places = {{1080, 1080, 0.9F, 6}};
    rig.Play(200);
    ASSERT_EQ(rig.Songs.size(), 1U);
    EXPECT_THAT(rig.Songs[0].Pieces, ElementsAre(SlotRun{0, 1080}));
    EXPECT_FALSE(rig.Songs[0].Trust.AgainstEvidence);
}

TEST(AutomaticEnd, ATitleThatVanishesAndComesBackIsANewSongOnlyWithEvidence) {
    for (const bool evidence : {false, true}) {
        AutomaticRig rig;
        rig.Say("One");
        rig.Play(1000);
        if (evidence) rig.Finder.Places = {{1000, 1000, 0.9F, 5}};
        rig.Say("");
        rig.Play(20);
        rig.Say("One");
        rig.Play(1000);
        EXPECT_EQ(rig.Songs.size(), evidence ? 1U : 0U);
        EXPECT_EQ(rig.Undone, evidence ? 0U : 1U);
    }
}

TEST(AutomaticEnd, TheSameTitleWithANewTrackIsANewSong) {
    AutomaticRig rig;
    rig.Track("1", "One");
    rig.Play(1000);
    rig.Finder.Places = {{1000, 1000}};
    rig.Track("2", "One");
    rig.Play(1000);
    ASSERT_EQ(rig.Songs.size(), 1U);
    EXPECT_THAT(rig.Songs[0].Pieces, ElementsAre(SlotRun{0, 1000}));
}

TEST(AutomaticEnd, ATrackThatBeginsAgainIsANewSong) {
    AutomaticRig rig;
    rig.Track("1", "One");
    rig.Play(1000);
    rig.Finder.Places = {{1000, 1000}};
    rig.Began = rig.Now;
    rig.Play(1000);
    ASSERT_EQ(rig.Songs.size(), 1U);
    EXPECT_THAT(rig.Songs[0].Pieces, ElementsAre(SlotRun{0, 1000}));
}

TEST(AutomaticEnd, AJumpWithinATrackEndsNothingAndIsNoted) {
    AutomaticRig rig;
    rig.Track("1", "One");
    rig.Play(1000);
    *rig.Began -= 600;
    rig.Play(1000);
    EXPECT_TRUE(rig.Songs.empty());
    rig.Silence(100);
    ASSERT_EQ(rig.Songs.size(), 1U);
    EXPECT_TRUE(rig.Songs[0].Trust.Sought);
}

TEST(AutomaticEnd, ACorrectedTitleOfATrackRenamesIt) {
    AutomaticRig rig;
    rig.Track("1", "Onee");
    rig.Play(1000);
    rig.Say("One");
    rig.Play(1000);
    rig.Silence(100);
    ASSERT_EQ(rig.Songs.size(), 1U);
    EXPECT_EQ(rig.Songs[0].Title, "One");
}

TEST(AutomaticEnd, ASecondPlayerMarksBothSongsAsMixedAndRenamesNone) {
    AutomaticRig rig;
    rig.Track("1", "One");
    rig.Play(1000);
    rig.Said.Others = true;
    rig.Play(500);
    rig.Finder.Places = {{1500, 1500}};
    rig.Said.Others = false;
    rig.Said.Source = "other";
    rig.Said.TrackId = "9";
    rig.Said.Media.Song = "Nine";
    rig.Began = rig.Now - 500;
    rig.LookNow();
    rig.Play(500);
    rig.Silence(100);
    ASSERT_EQ(rig.Songs.size(), 2U);
    EXPECT_EQ(rig.Songs[0].Title, "One");
    EXPECT_TRUE(rig.Songs[0].Trust.Mixed);
    EXPECT_EQ(rig.Songs[1].Title, "Nine");
    EXPECT_TRUE(rig.Songs[1].Trust.Mixed);
}

TEST(AutomaticEnd, ADropoutIsCountedAndEndsNothing) {
    AutomaticRig rig;
    rig.Say("One");
    rig.Play(1000);
    rig.Silence(2);
    rig.Play(500);
    rig.Silence(100);
    ASSERT_EQ(rig.Songs.size(), 1U);
    EXPECT_EQ(rig.Songs[0].Trust.Dropouts, 1);
    EXPECT_THAT(rig.Songs[0].Pieces, ElementsAre(SlotRun{0, 1502}));
}

TEST(AutomaticEnd, AnUnsureFadeGoesToBothSongsAsLongAsItIsMoreLikelyThanNot) {
    for (const float confidence : {0.49F, 0.51F, 0.69F, 0.7F}) {
        AutomaticRig rig;
        rig.Say("One");
        rig.Play(1000);
        rig.Finder.Places = {{960, 960, confidence, 5, 60}};
        rig.Say("Two");
        rig.Play(SlotsAfterChange + 40);
        ASSERT_EQ(rig.Songs.size(), 1U);
        EXPECT_EQ(rig.Songs[0].Trust.End, confidence < 0.7F ? Certainty::Unsure : Certainty::Likely);
        EXPECT_EQ(rig.Songs[0].Pieces.back().End, confidence < 0.5F ? 960 : 990);
    }
}

TEST(AutomaticEnd, FadesGoToTheSongsThatTheSettingNames) {
    const auto run = [](FadeShare share) {
        AutomaticRig rig;
        rig.End.ShareFades(share);
        rig.Say("One");
        rig.Play(1000);
        rig.Finder.Places = {{960, 960, 0.9F, 8, 60}};
        rig.Say("Two");
        rig.Play(400);
        rig.Finish();
        return std::pair(rig.Songs.at(0).Pieces.back().End, rig.Present.Pieces.front().Begin);
    };
    EXPECT_EQ(run(FadeShare::Both), std::pair(int64_t{990}, int64_t{930}));
    EXPECT_EQ(run(FadeShare::Old), std::pair(int64_t{990}, int64_t{990}));
    EXPECT_EQ(run(FadeShare::New), std::pair(int64_t{930}, int64_t{930}));
}

TEST(AutomaticEnd, NothingIsWrittenThatALateTitleMayStillCut) {
    AutomaticRig rig;
    rig.Say("One");
    rig.Play(1000);
    EXPECT_LE(rig.Read, rig.Now + FirstEdge);
    EXPECT_GT(rig.Read, 0);
}

TEST(AutomaticEnd, TheEndOfAllSoundWritesTheRestWithoutItsSilence) {
    AutomaticRig rig;
    rig.Say("One");
    rig.Play(1000);
    rig.Silence(65);
    rig.Finish();
    // Whatever way it went, the silence is in no song.
    const auto& pieces = rig.Songs.empty() ? rig.Present.Pieces : rig.Songs[0].Pieces;
    EXPECT_THAT(pieces, ElementsAre(SlotRun{0, 1000}));
    EXPECT_EQ(rig.Read, rig.Now);
}

TEST(AutomaticEnd, WhatWasHeardWhileNothingIsRecordedIsForgotten) {
    AutomaticRig rig;
    rig.Say("One");
    rig.Play(1000);
    rig.End.Forget(false);
    rig.Read = rig.End.Read();
    rig.Present = {};
    rig.Play(500);
    rig.Silence(100);
    ASSERT_EQ(rig.Songs.size(), 1U);
    EXPECT_EQ(rig.Songs[0].Title, "One");
    EXPECT_THAT(rig.Songs[0].Pieces, ElementsAre(SlotRun{1000, 1500}));
}

}  // namespace
}  // namespace Corvetape::Test
