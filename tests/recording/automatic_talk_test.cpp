// Somebody speaks between two songs.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "recording/automatic_rig.h"

namespace Corvetape::Test {
namespace {

using testing::ElementsAre;

TEST(AutomaticEnd, TalkBetweenTwoSongsIsAPieceOfItsOwn) {
    AutomaticRig rig;
    rig.Say("One");
    rig.Play(1000);
    rig.Finder.Places = {{980, 980, 0.6F, 5}};
    rig.Finder.Spoken = SlotRun{900, 980};
    rig.Say("Two");
    rig.Play(SlotsAfterChange + 40);
    ASSERT_EQ(rig.Songs.size(), 2U);
    EXPECT_EQ(rig.Songs[0].Title, "One");
    EXPECT_THAT(rig.Songs[0].Pieces, ElementsAre(SlotRun{0, 900}));
    EXPECT_TRUE(rig.Songs[0].Passed);
    EXPECT_FALSE(rig.Songs[0].Between);
    EXPECT_EQ(rig.Songs[1].Title, "");
    EXPECT_THAT(rig.Songs[1].Pieces, ElementsAre(SlotRun{900, 980}));
    EXPECT_TRUE(rig.Songs[1].Between) << "what was wished for the next song is not for the talk";
    rig.Finish();
    EXPECT_EQ(rig.Present.Title, "Two");
    EXPECT_THAT(rig.Present.Pieces, ElementsAre(SlotRun{980, rig.Now}));
}

TEST(AutomaticEnd, NobodySpeaksBetweenTheTracksOfAPlayer) {
    AutomaticRig rig;
    rig.Track("1", "One");
    rig.Play(1000);
    rig.Finder.Places = {{1000, 1000, 0.9F, 5}};
    rig.Finder.Spoken = SlotRun{900, 980};
    rig.Track("2", "Two");
    rig.Play(SlotsAfterChange + 40);
    ASSERT_EQ(rig.Songs.size(), 1U);
    EXPECT_THAT(rig.Songs[0].Pieces, ElementsAre(SlotRun{0, 1000}));
}

}  // namespace
}  // namespace Corvetape::Test
