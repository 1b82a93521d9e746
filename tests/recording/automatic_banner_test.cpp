// Titles that are taken back, and silences at cuts.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

#include "recording/automatic_rig.h"

namespace Corvetape::Test {
namespace {

using testing::ElementsAre;

TEST(AutomaticEnd, ABannerThatGoesAgainCutsNothing) {
    AutomaticRig rig;
    rig.Say("One");
    rig.Play(1000);
    rig.Say("Buy this");
    rig.Play(150);
    rig.Say("One");
    rig.Play(2000);
    rig.Finish();
    EXPECT_TRUE(rig.Songs.empty());
    EXPECT_THAT(rig.Present.Pieces, ElementsAre(SlotRun{0, 3150}));
    EXPECT_EQ(rig.Present.Title, "One");
    EXPECT_EQ(rig.Undone, 2U);
}

/// Also where it is gone so soon that both changes of title are taken for one.
TEST(AutomaticEnd, WhatTheSongSoundsLikeUnderABannerDoesNotMatter) {
    struct Shown {
        int64_t Slots;
        float Evidence;
    };
    const auto rows = std::to_array<Shown>({{50, 0.5F}, {50, 3.5F}, {60, 6}, {90, 6}, {150, 6}});
    for (const auto& [shown, evidence] : rows) {
        SCOPED_TRACE(shown);
        AutomaticRig rig;
        rig.Say("One");
        rig.Play(1000);
        rig.Finder.Places = {{980, 980, 0.9F, evidence}};
        rig.Say("Buy this");
        rig.Play(shown);
        rig.Say("One");
        rig.Play(2000);
        rig.Finder.Places = {{3000 + shown, 3000 + shown}};
        rig.Say("Two");
        rig.Play(1000);
        rig.Finish();
        ASSERT_EQ(rig.Songs.size(), 1U);
        EXPECT_EQ(rig.Songs[0].Title, "One");
        EXPECT_THAT(rig.Songs[0].Pieces, ElementsAre(SlotRun{0, 3000 + shown}));
        EXPECT_FALSE(rig.Songs[0].Trust.AgainstEvidence);
        EXPECT_EQ(rig.Undone, shown < AutomaticEnd::OneChange ? 1U : 2U);
        EXPECT_EQ(rig.Present.Title, "Two");
    }
}

TEST(AutomaticEnd, ATrackThatIsPlayedAgainAfterAnotherIsNoBanner) {
    AutomaticRig rig;
    rig.Track("1", "One");
    rig.Play(1000);
    rig.Finder.Places = {{1000, 1000}, {1150, 1150}};
    rig.Track("2", "Two");
    rig.Play(150);
    rig.Track("3", "One");
    rig.Play(1000);
    rig.Finish();
    ASSERT_EQ(rig.Songs.size(), 2U);
    EXPECT_THAT(rig.Songs[0].Pieces, ElementsAre(SlotRun{0, 1000}));
    EXPECT_EQ(rig.Songs[1].Title, "Two");
    EXPECT_EQ(rig.Present.Title, "One");
}

TEST(AutomaticEnd, ASilenceThatBeganBeforeWhatWasSearchedIsInNoSong) {
    AutomaticRig rig;
    rig.Say("One");
    rig.Play(1000);
    rig.Play(40, 0);
    rig.Play(20);
    rig.Finder.Places = {{1020, 1040}};  // the gap, as far as it was looked for
    rig.Say("Two");
    rig.Play(1000);
    rig.Finish();
    ASSERT_EQ(rig.Songs.size(), 1U);
    EXPECT_THAT(rig.Songs[0].Pieces, ElementsAre(SlotRun{0, 1000}));
    EXPECT_THAT(rig.Present.Pieces, ElementsAre(SlotRun{1040, 2060}));
}

TEST(AutomaticEnd, ASilenceAtACutIsInNoSongAlsoWhereNoGapWasLookedFor) {
    for (const int64_t edge : {int64_t{1000}, int64_t{1020}}) {
        AutomaticRig rig;
        rig.Say("One");
        rig.Play(1000);
        rig.Play(20, 0);
        rig.Play(60);
        rig.Finder.Places = {{edge, edge, 0.6F, 8}};
        rig.Say("Two");
        rig.Play(1000);
        rig.Finish();
        ASSERT_EQ(rig.Songs.size(), 1U);
        EXPECT_THAT(rig.Songs[0].Pieces, ElementsAre(SlotRun{0, 1000}));
        EXPECT_THAT(rig.Present.Pieces, ElementsAre(SlotRun{1020, 2080}));
    }
}

}  // namespace
}  // namespace Corvetape::Test
