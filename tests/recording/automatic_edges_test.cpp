// What is said and learned of cuts, and how far a waiting change lets the song be written.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "recording/automatic_rig.h"

namespace Corvetape::Test {
namespace {

using testing::ElementsAre;

TEST(AutomaticEnd, TheEndsOfTalkAreCutsByTheTitle) {
    AutomaticRig rig;
    rig.Say("One");
    rig.Play(1000);
    rig.Finder.Places = {{980, 980, 0.6F, 5}};
    rig.Finder.Spoken = SlotRun{900, 980};
    rig.Say("Two");
    rig.Play(SlotsAfterChange + 40);
    ASSERT_EQ(rig.Songs.size(), 2U);
    const auto& end = rig.Songs[0].Trust.EndCut;
    ASSERT_TRUE(end.has_value());
    EXPECT_EQ(end->Edge, -100);
    EXPECT_FALSE(end->Exact);
    const auto& begin = rig.End.Trust().BeginCut;
    ASSERT_TRUE(begin.has_value());
    EXPECT_EQ(begin->Edge, -20);
    EXPECT_FALSE(begin->Exact);
}

TEST(AutomaticEnd, AnUnsureCutAwayFromWhereThePlayerSaysStaysUnsure) {
    for (const int64_t away : {int64_t{10}, int64_t{11}}) {
        AutomaticRig rig;
        rig.Track("1", "One");
        rig.Play(1000);
        rig.Finder.Places = {{1000 + away, 1000 + away, 0.2F, 5}};
        rig.Track("2", "Two");
        rig.Play(1000);
        ASSERT_EQ(rig.Songs.size(), 1U);
        EXPECT_EQ(rig.Songs[0].Trust.End, away == 10 ? Certainty::Likely : Certainty::Unsure);
    }
}

TEST(AutomaticEnd, NothingMoreIsWrittenWhileAChangeWaits) {
    AutomaticRig rig;
    rig.Say("One");
    rig.Play(1000);
    rig.Say("Two");
    rig.Play(SlotsAfterChange + AutomaticEnd::WaitForEvidence - 20);
    ASSERT_TRUE(rig.Songs.empty());
    EXPECT_LE(rig.Read, 1000 - AutomaticEnd::KeptBack);
}

TEST(AutomaticEnd, AChangeThatWaitsIsForgottenWithItsSource) {
    AutomaticRig rig;
    rig.Say("One");
    rig.Play(1000);
    rig.Say("Two");
    rig.Play(20);
    ASSERT_TRUE(rig.End.ChangePending());
    rig.End.ForgetSource();
    EXPECT_FALSE(rig.End.ChangePending());
    EXPECT_EQ(rig.End.Media().Song, "");
}

TEST(AutomaticEnd, APauseOfATenthOfASecondIsOne) {
    AutomaticRig rig;
    rig.Track("1", "One");
    rig.Play(1000);
    rig.Play(2, 0);
    rig.Status(PlayerStatus::Paused);
    rig.Play(1, 0);
    rig.Status(PlayerStatus::Playing);
    rig.Play(500);
    EXPECT_EQ(rig.End.Trust().PausesCut, 1);
}

}  // namespace
}  // namespace Corvetape::Test
