// From where a correction by hand is counted.

#include <gtest/gtest.h>

#include "recording/automatic_rig.h"

namespace Corvetape::Test {
namespace {

TEST(AutomaticEnd, ACutThatWasFoundWhileItsTitleWaitedIsCountedFromThatTitle) {
    AutomaticRig rig;
    rig.Say("One");
    rig.Play(1000);
    rig.Say("Two");
    rig.Play(SlotsAfterChange + 20);
    rig.Finder.Places = {{1080, 1080, 0.9F, 6}};
    rig.Play(200);
    rig.Finish();
    ASSERT_EQ(rig.Songs.size(), 1U);
    ASSERT_TRUE(rig.Songs[0].Trust.EndCut && rig.End.Trust().BeginCut);
    EXPECT_EQ(rig.Songs[0].Trust.EndCut->Edge, 80);
    EXPECT_EQ(rig.End.Trust().BeginCut->Edge, 80);
}

TEST(AutomaticEnd, AFadeThatBothSongsKeepIsCountedFromWhereTheirFilesEndAndBegin) {
    AutomaticRig rig;
    rig.Say("One");
    rig.Play(1000);
    rig.Finder.Places = {{980, 980, 0.9F, 6, 40}};
    rig.Say("Two");
    rig.Play(SlotsAfterChange + 40);
    ASSERT_EQ(rig.Songs.size(), 1U);
    EXPECT_EQ(rig.Songs[0].Pieces.back().End, 1000);
    EXPECT_EQ(rig.Songs[0].Trust.EndCut->Edge, 0);
    EXPECT_EQ(rig.End.Trust().BeginCut->Edge, -40);
}

}  // namespace
}  // namespace Corvetape::Test
