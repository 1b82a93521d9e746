// Titles that come, go, and come again.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "recording/automatic_rig.h"

namespace Corvetape::Test {
namespace {

using testing::ElementsAre;

TEST(AutomaticEnd, ABannerThatGoesAgainForAnotherSongIsTheChangeToThat) {
    AutomaticRig rig;
    rig.Say("One");
    rig.Play(1000);
    rig.Finder.Places = {{1000, 1000, 0.6F, 3}};
    rig.Say("Buy this");
    rig.Play(30);
    rig.Say("One");
    rig.Play(30);
    rig.Say("Two");
    rig.Play(1000);
    ASSERT_EQ(rig.Songs.size(), 1U);
    EXPECT_EQ(rig.End.Media().Song, "Two");
}

TEST(AutomaticEnd, ATrackThatIsChosenAgainAtOnceBeginsAnew) {
    AutomaticRig rig;
    rig.Track("1", "One");
    rig.Play(1000);
    rig.Finder.Places = {{1000, 1000}, {1060, 1060}};
    rig.Track("2", "Two");
    rig.Play(60);
    rig.Track("1", "One");
    rig.Play(1000);
    ASSERT_EQ(rig.Songs.size(), 1U);
    EXPECT_THAT(rig.Songs[0].Pieces, ElementsAre(SlotRun{0, 1000}));
}

TEST(AutomaticEnd, TheFirstTitleDoesNotNameWhatWasHeardLongBefore) {
    AutomaticRig rig;
    rig.Play(1000);
    rig.Finder.Places = {{990, 990, 0.9F, 8}};
    rig.Say("One");
    rig.Play(1000);
    rig.Finish();
    EXPECT_EQ(rig.Changes, 1);
    ASSERT_EQ(rig.Songs.size(), 1U);
    EXPECT_EQ(rig.Songs[0].Title, "");
    EXPECT_THAT(rig.Songs[0].Pieces, ElementsAre(SlotRun{0, 990}));
    EXPECT_EQ(rig.Present.Title, "One");
}

TEST(AutomaticEnd, TheFirstTitleAfterALongSilenceNamesWhatFollows) {
    AutomaticRig rig;
    rig.Silence(1000);
    rig.Say("One");
    rig.Play(500);
    rig.Finish();
    EXPECT_EQ(rig.Changes, 0);
    EXPECT_EQ(rig.Present.Title, "One");
}

}  // namespace
}  // namespace Corvetape::Test
