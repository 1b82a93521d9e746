// Recording that is switched off within a song and on again.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "recording/automatic_rig.h"

namespace Corvetape::Test {
namespace {

using testing::ElementsAre;

/// So many slots are heard, and none is recorded, though the song's file is open.
void PlayUnrecorded(AutomaticRig& rig, int64_t slots) {
    for (int64_t slot = 0; slot < slots; ++slot) {
        rig.End.Heard({8000, false});
        if (++rig.Now % 20 == 0) rig.Undone += rig.End.Forget(true);
    }
    rig.Read = rig.End.Read();
}

/// The first song is written up to its slot 800 when recording goes off.
void PlayUpToOff(AutomaticRig& rig) {
    rig.Say("One");
    rig.Play(1000);
    rig.Said.Media.Song = "One";
    ASSERT_EQ(rig.Read, 800);
    PlayUnrecorded(rig, 200);
}

TEST(AutomaticEnd, ASongGoesOnAfterRecordingWasOff) {
    AutomaticRig rig;
    PlayUpToOff(rig);
    rig.Play(500);
    rig.Finish();
    EXPECT_TRUE(rig.Songs.empty());
    EXPECT_THAT(rig.Present.Pieces, ElementsAre(SlotRun{0, 800}, SlotRun{1200, 1700}));
    EXPECT_EQ(rig.End.Trust().PausesCut, 0) << "it was no pause";
    EXPECT_EQ(rig.End.Trust().Begin, Certainty::Unsure) << "what is known of it stays known";
}

TEST(AutomaticEnd, AnotherTitleWhileRecordingIsOffEndsTheSongThere) {
    AutomaticRig rig;
    PlayUpToOff(rig);
    rig.Say("Two");
    PlayUnrecorded(rig, 200);
    rig.Play(500);
    rig.Finish();
    ASSERT_EQ(rig.Songs.size(), 1U);
    EXPECT_EQ(rig.Songs[0].Title, "One");
    EXPECT_THAT(rig.Songs[0].Pieces, ElementsAre(SlotRun{0, 800}));
    EXPECT_EQ(rig.Songs[0].Trust.End, Certainty::Unsure);
    EXPECT_EQ(rig.Present.Title, "Two");
    EXPECT_THAT(rig.Present.Pieces, ElementsAre(SlotRun{1400, 1900}));
    EXPECT_EQ(rig.End.Trust().Begin, Certainty::Unsure) << "it may have begun long before";
}

TEST(AutomaticEnd, AnotherTitleWhileRecordingIsOffEndsTheSongAlsoIfTheInputIsOpenedAnew) {
    AutomaticRig rig;
    PlayUpToOff(rig);
    rig.Wanted = true;
    rig.Say("Two");
    rig.Wanted = false;
    PlayUnrecorded(rig, 200);
    rig.End.Restart(true);
    rig.Now = rig.Read = 0;
    EXPECT_EQ(rig.End.Media().Song, "One") << "it is still the one that is written";
    rig.Play(500);
    rig.Finish();
    ASSERT_EQ(rig.Songs.size(), 1U);
    EXPECT_EQ(rig.Songs[0].Title, "One");
    EXPECT_TRUE(rig.Songs[0].Wanted);
    EXPECT_EQ(rig.Present.Title, "Two");
    EXPECT_THAT(rig.Present.Pieces, ElementsAre(SlotRun{0, 500}));
}

TEST(AutomaticEnd, ATitleThatIsTakenBackAfterTheInputWasOpenedAnewEndsNothing) {
    AutomaticRig rig;
    PlayUpToOff(rig);
    rig.Say("Two");
    PlayUnrecorded(rig, 200);
    rig.End.Restart(true);
    rig.Now = rig.Read = 0;
    rig.Say("One");
    rig.Play(500);
    EXPECT_TRUE(rig.Songs.empty());
    EXPECT_EQ(rig.End.Media().Song, "One");
}

TEST(AutomaticEnd, ABannerWhileRecordingIsOffEndsNothing) {
    AutomaticRig rig;
    PlayUpToOff(rig);
    rig.Say("Buy this");
    PlayUnrecorded(rig, 200);
    rig.Say("One");
    PlayUnrecorded(rig, 200);
    rig.Play(500);
    EXPECT_TRUE(rig.Songs.empty());
    EXPECT_EQ(rig.End.Media().Song, "One");
    EXPECT_EQ(rig.Undone, 2U);
}

TEST(AutomaticEnd, TheSameSongThatPlaysAgainLaterWhileRecordingIsOffIsAnother) {
    for (const int64_t seconds : {12, 19, 20, 240}) {
        AutomaticRig rig;
        PlayUpToOff(rig);
        rig.Say("Two");
        PlayUnrecorded(rig, seconds * AutomaticEnd::SecondSlots);
        rig.Say("One");
        PlayUnrecorded(rig, 200);
        rig.Play(500);
        EXPECT_EQ(rig.Songs.size(), seconds < 20 ? 0U : 1U) << seconds << " s";
        EXPECT_EQ(rig.End.Media().Song, "One");
    }
}

TEST(AutomaticEnd, OfTheTitlesWhileRecordingIsOffTheFirstEndsTheSongAndTheNewestNamesTheNext) {
    AutomaticRig rig;
    PlayUpToOff(rig);
    for (const char* title : {"Two", "Three", "Three", "Four", "Five", "Four"}) {
        rig.Say(title);
        PlayUnrecorded(rig, 200);
    }
    rig.Play(500);
    rig.Finish();
    ASSERT_EQ(rig.Songs.size(), 1U) << "of the others nothing was heard";
    EXPECT_EQ(rig.Songs[0].Title, "One");
    EXPECT_THAT(rig.Songs[0].Pieces, ElementsAre(SlotRun{0, 800}));
    EXPECT_EQ(rig.Present.Title, "Four");
    EXPECT_THAT(rig.Present.Pieces, ElementsAre(SlotRun{2400, 2900}));
}

TEST(AutomaticEnd, ABannerWhileRecordingIsOffDoesNotHideTheNextTitle) {
    AutomaticRig rig;
    PlayUpToOff(rig);
    for (const char* title : {"Buy this", "One", "Buy this", "One", "Two"}) {
        rig.Say(title);
        PlayUnrecorded(rig, 200);
    }
    rig.Play(500);
    EXPECT_EQ(rig.Undone, 4U);
    ASSERT_EQ(rig.Songs.size(), 1U);
    EXPECT_EQ(rig.Songs[0].Title, "One");
    EXPECT_EQ(rig.End.Media().Song, "Two");
}

}  // namespace
}  // namespace Corvetape::Test
