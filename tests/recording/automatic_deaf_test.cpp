// What a source says while the input stands still.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "recording/automatic_rig.h"

namespace Corvetape::Test {
namespace {

using testing::ElementsAre;

/// Says it while the input stands still.
void SayDeaf(AutomaticRig& rig, const std::string& title) {
    rig.Said.Deaf = true;
    rig.Say(title);
    rig.Said.Deaf = false;
}

TEST(AutomaticEnd, ATitleThatChangesUnheardCutsWhereTheInputStood) {
    AutomaticRig rig;
    rig.Say("One");
    rig.Play(1000);
    rig.Finder.Places = {{900, 900, 0.9F, 9}};  // whatever it sounds like
    SayDeaf(rig, "Two");
    rig.Follow(rig.End.Decide(true));
    EXPECT_TRUE(rig.Songs.empty()) << "the title may change again";
    rig.Play(300);
    ASSERT_EQ(rig.Songs.size(), 1U);
    EXPECT_EQ(rig.Songs[0].Title, "One");
    EXPECT_THAT(rig.Songs[0].Pieces, ElementsAre(SlotRun{0, 1000}));
    EXPECT_EQ(rig.Songs[0].Trust.End, Certainty::Unsure);
    EXPECT_EQ(rig.Finder.Taught, 0);
    rig.Finish();
    EXPECT_EQ(rig.Present.Title, "Two");
    EXPECT_THAT(rig.Present.Pieces, ElementsAre(SlotRun{1000, 1300}));
}

TEST(AutomaticEnd, TitlesThatComeAndGoUnheardAreOneChange) {
    AutomaticRig rig;
    rig.Say("One");
    rig.Play(1000);
    SayDeaf(rig, "Two");
    SayDeaf(rig, "Three");
    EXPECT_EQ(rig.Changes, 1);
    rig.Play(300);
    rig.Finish();
    ASSERT_EQ(rig.Songs.size(), 1U);
    EXPECT_EQ(rig.Present.Title, "Three");
}

TEST(AutomaticEnd, ATitleThatIsBackBeforeAnythingIsHeardHasNotChanged) {
    AutomaticRig rig;
    rig.Say("One");
    rig.Play(1000);
    SayDeaf(rig, "Two");
    SayDeaf(rig, "One");
    rig.Play(300);
    rig.Finish();
    EXPECT_TRUE(rig.Songs.empty());
    EXPECT_EQ(rig.Undone, 1U);
    EXPECT_THAT(rig.Present.Pieces, ElementsAre(SlotRun{0, 1300}));
}

TEST(AutomaticEnd, SilenceRoundThePlaceWhereTheInputStoodIsInNoSong) {
    AutomaticRig rig;
    rig.Say("One");
    rig.Play(1000);
    rig.Silence(20);
    SayDeaf(rig, "Two");
    rig.Silence(80);
    rig.Play(300);
    rig.Finish();
    ASSERT_EQ(rig.Songs.size(), 1U) << "no song of nothing between them";
    EXPECT_THAT(rig.Songs[0].Pieces, ElementsAre(SlotRun{0, 1000}));
    EXPECT_THAT(rig.Present.Pieces, ElementsAre(SlotRun{1100, 1400}));
}

TEST(AutomaticEnd, AChangeBeforeTheInputStoodIsNotLookedForAfterIt) {
    AutomaticRig rig;
    rig.Say("One");
    rig.Play(1000);
    rig.Say("Two");
    rig.Play(20);
    SayDeaf(rig, "Three");
    rig.Finder.Places = {{1030, 1030, 0.9F, 9}, {990, 990, 0.9F, 5}};
    rig.Play(300);
    rig.Finish();
    ASSERT_EQ(rig.Songs.size(), 2U);
    EXPECT_THAT(rig.Songs[0].Pieces, ElementsAre(SlotRun{0, 990}));
    EXPECT_EQ(rig.Songs[1].Title, "Two");
    EXPECT_THAT(rig.Songs[1].Pieces, ElementsAre(SlotRun{990, 1020}));
    EXPECT_EQ(rig.Present.Title, "Three");
}

TEST(AutomaticEnd, ATitleThatHasChangedWhileTheInputWasOpenedAnewEndsTheSongThere) {
    AutomaticRig rig;
    rig.Say("One");
    rig.Play(1000);
    rig.Finish();
    rig.End.Restart(true);
    rig.Now = rig.Read = 0;
    rig.Play(5);
    rig.Finder.Places = {{20, 20, 0.9F, 9}};
    rig.Say("Two");
    rig.Play(300);
    ASSERT_EQ(rig.Songs.size(), 1U);
    EXPECT_EQ(rig.Songs[0].Title, "One");
    EXPECT_THAT(rig.Songs[0].Pieces, ElementsAre(SlotRun{0, 1000}));
}

TEST(AutomaticEnd, APositionThatGoesOnUnheardWasNotSought) {
    AutomaticRig rig;
    rig.Track("1", "One");
    rig.Play(1000);
    rig.Said.Deaf = true;
    for (int i = 0; i < 10; ++i) {
        rig.Began = *rig.Began - 10;
        rig.LookNow();
    }
    rig.Said.Deaf = false;
    rig.Play(100);
    EXPECT_FALSE(rig.End.Trust().Sought);
    rig.Began = *rig.Began - 100;
    rig.Play(100);
    EXPECT_TRUE(rig.End.Trust().Sought);
}

}  // namespace
}  // namespace Corvetape::Test
