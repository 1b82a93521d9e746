// Songs whose titles nobody reports: silence ends them, and another song that is heard.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "recording/automatic_rig.h"

namespace Corvetape::Test {
namespace {

using testing::ElementsAre;

TEST(AutomaticUntitled, AnotherSongThatIsHeardEndsTheOneBeforeUnsurely) {
    AutomaticRig rig;
    rig.Finder.Heard = 2000;
    rig.Finder.Places = {{2003, 2003, 0.99F, 20}};
    rig.Play(4000);
    ASSERT_EQ(rig.Songs.size(), 1U);
    EXPECT_THAT(rig.Songs[0].Pieces, ElementsAre(SlotRun{0, 2003}));
    EXPECT_EQ(rig.Songs[0].Trust.End, Certainty::Unsure) << "however sure its place is, it may be none";
    EXPECT_FALSE(rig.Songs[0].Passed) << "what is wished for the next song is passed on with this one";
    rig.Finish();
    EXPECT_THAT(rig.Present.Pieces, ElementsAre(SlotRun{2003, 4000}));
    EXPECT_EQ(rig.End.Trust().Begin, Certainty::Unsure);
    EXPECT_EQ(rig.Finder.Taught, 0) << "no title was late";
}

TEST(AutomaticUntitled, AGapBetweenTheSongsIsInNeither) {
    AutomaticRig rig;
    rig.Finder.Heard = 2000;
    rig.Finder.Places = {{1990, 2005}};
    rig.Play(1990);
    rig.Silence(15);
    rig.Play(2000);
    rig.Finish();
    ASSERT_EQ(rig.Songs.size(), 1U);
    EXPECT_THAT(rig.Songs[0].Pieces, ElementsAre(SlotRun{0, 1990}));
    EXPECT_THAT(rig.Present.Pieces, ElementsAre(SlotRun{2005, 4005}));
}

TEST(AutomaticUntitled, ASongIsAMinuteLongAtLeast) {
    for (const int64_t heard : {AutomaticEnd::LeastUntitled - 1, AutomaticEnd::LeastUntitled}) {
        AutomaticRig rig;
        rig.Silence(100);
        rig.Finder.Heard = 100 + heard;
        rig.Finder.Places = {{100 + heard, 100 + heard}};
        rig.Play(4000);
        EXPECT_EQ(rig.Songs.size(), heard == AutomaticEnd::LeastUntitled ? 1U : 0U);
    }
}

TEST(AutomaticUntitled, WhereTitlesAreReportedTheyAloneSayThatThereIsAnotherSong) {
    AutomaticRig rig;
    rig.Say("One");
    rig.Finder.Heard = 2000;
    rig.Finder.Places = {{2000, 2000}};
    rig.Play(4000);
    EXPECT_TRUE(rig.Songs.empty());
    EXPECT_TRUE(rig.Finder.Heard) << "the sound is not even listened to";
}

TEST(AutomaticUntitled, WhatAnotherSongMayBeNoticedInStaysUnwritten) {
    for (const bool titled : {false, true}) {
        AutomaticRig rig;
        if (titled) rig.Say("One");
        rig.Play(2000);
        EXPECT_EQ(rig.Read, 2000 - (titled ? AutomaticEnd::KeptBack : AutomaticEnd::KeptBackUntitled));
    }
}

TEST(AutomaticUntitled, WhileNobodyNamesTitlesASilenceOfASecondEndsASongOfAMinute) {
    AutomaticRig rig;
    rig.Play(605);
    rig.Silence(40);
    rig.Play(700);
    rig.Silence(19);
    rig.Play(195);
    EXPECT_TRUE(rig.Songs.empty()) << "too early, and shorter by a slot";
    rig.Silence(40);
    rig.Play(500);
    rig.Finish();
    ASSERT_EQ(rig.Songs.size(), 1U);
    EXPECT_THAT(rig.Songs[0].Pieces, ElementsAre(SlotRun{0, 1559}));
    EXPECT_EQ(rig.Songs[0].Trust.End, Certainty::Likely);
    EXPECT_THAT(rig.Present.Pieces, ElementsAre(SlotRun{1599, 2099}));
}

}  // namespace
}  // namespace Corvetape::Test
