// Pauses of a player within songs that end by everything that is known.
#include "recording/automatic/automatic_end.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "recording/automatic_rig.h"

namespace Corvetape::Test {
namespace {

using testing::ElementsAre;

TEST(AutomaticEnd, APauseOfThePlayerIsCutOutAndTheSongGoesOnAsOne) {
    AutomaticRig rig;
    rig.Track("1", "One");
    rig.Play(1000);
    rig.Silence(4);
    rig.Said.Position = 1000;
    rig.Began.reset();
    rig.Status(PlayerStatus::Paused);
    rig.Silence(156);
    rig.Play(6);
    rig.Began = rig.Now - 1006;
    rig.Status(PlayerStatus::Playing);
    rig.Play(994);
    rig.Finish();
    EXPECT_TRUE(rig.Songs.empty());
    EXPECT_THAT(rig.Present.Pieces, ElementsAre(SlotRun{0, 1000}, SlotRun{1160, 2160}));
    EXPECT_EQ(rig.Changes, 0);
}

TEST(AutomaticEnd, AfterAPauseTheSongGoesOnAlsoIfThePlayerTellsItsPositionLater) {
    AutomaticRig rig;
    rig.Track("1", "One");
    rig.Play(100);
    rig.Silence(4);
    rig.Began.reset();
    rig.Said.Position = 100;
    rig.Status(PlayerStatus::Paused);
    rig.Silence(156);
    rig.Play(6);
    rig.Said.Position.reset();
    rig.Status(PlayerStatus::Playing);
    rig.Play(34);
    rig.Began = rig.Now - 140;
    rig.Play(860);
    EXPECT_EQ(rig.Changes, 0);
    rig.Silence(100);
    ASSERT_EQ(rig.Songs.size(), 1U);
    EXPECT_THAT(rig.Songs[0].Pieces, ElementsAre(SlotRun{0, 100}, SlotRun{260, 1160}));
    EXPECT_EQ(rig.Songs[0].Trust.PausesCut, 1);
    EXPECT_FALSE(rig.Songs[0].Trust.Sought);
}

TEST(AutomaticEnd, ASilenceInWhichThePositionStandsStillIsAPause) {
    AutomaticRig rig;
    rig.Track("1", "One");
    rig.Play(1000);
    rig.Began.reset();
    rig.Said.Position = 1000;  // and still "Playing"
    rig.Silence(160);
    rig.Began = rig.Now - 1000;
    rig.Play(1000);
    rig.Finish();
    EXPECT_TRUE(rig.Songs.empty());
    EXPECT_THAT(rig.Present.Pieces, ElementsAre(SlotRun{0, 1000}, SlotRun{1160, 2160}));
}

TEST(AutomaticEnd, AnotherTrackAfterAPauseEndsTheSongWhereItPaused) {
    AutomaticRig rig;
    rig.Track("1", "One");
    rig.Play(1000);
    rig.Began.reset();
    rig.Said.Position = 1000;
    rig.Status(PlayerStatus::Paused);
    rig.Silence(200);
    rig.Track("2", "Two");
    rig.Play(1000);
    rig.Finish();
    ASSERT_EQ(rig.Songs.size(), 1U);
    EXPECT_THAT(rig.Songs[0].Pieces, ElementsAre(SlotRun{0, 1000}));
    EXPECT_THAT(rig.Present.Pieces, ElementsAre(SlotRun{1200, 2200}));
}

}  // namespace
}  // namespace Corvetape::Test
