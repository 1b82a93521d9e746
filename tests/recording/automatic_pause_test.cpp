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

/// A player plays a stream: it has a title and nothing else.
void Stream(AutomaticRig& rig, const std::string& title) {
    rig.Said.Source = "player";
    rig.Said.Status = PlayerStatus::Playing;
    rig.Say(title);
}

/// It pauses, and shows no title meanwhile.
void PauseStream(AutomaticRig& rig) {
    rig.Said.Media.Song.clear();
    rig.Status(PlayerStatus::Paused);
}

TEST(AutomaticEnd, AStreamThatPausesGoesOnAsOneSongThoughItsTitleWasGone) {
    for (const int64_t pause : {10, 30, 160}) {
        SCOPED_TRACE(pause);
        AutomaticRig rig;
        Stream(rig, "One");
        rig.Play(1000);
        // Another sound before the pause and after it, which is no boundary.
        rig.Finder.Places = {{1000 + pause, 1000 + pause, 0.9F, 9}};
        rig.Silence(4);
        PauseStream(rig);
        rig.Silence(pause - 4);
        rig.Play(6);
        Stream(rig, "One");
        rig.Play(994);
        EXPECT_EQ(rig.Changes, 0);
        rig.Finish();
        EXPECT_TRUE(rig.Songs.empty());
        EXPECT_THAT(rig.Present.Pieces, ElementsAre(SlotRun{0, 1000}, SlotRun{1000 + pause, rig.Now}));
    }
}

TEST(AutomaticEnd, ATitleThatWasGoneInAPauseIsTheSameSong) {
    AutomaticRig rig;
    rig.Track("1", "One");
    rig.Play(1000);
    rig.Said.TrackId.clear();
    rig.Said.Position.reset();
    rig.Began.reset();
    rig.Said.Media.Song.clear();
    rig.Status(PlayerStatus::Paused);
    rig.Silence(160);
    rig.Status(PlayerStatus::Unknown);  // it is there again, and says nothing yet
    rig.Silence(20);
    Stream(rig, "One");
    rig.Silence(40);
    rig.Play(1000);
    rig.Finish();
    EXPECT_TRUE(rig.Songs.empty());
    EXPECT_THAT(rig.Present.Pieces, ElementsAre(SlotRun{0, 1000}, SlotRun{1220, 2220}));
}

/// A player's track that has paused at slot 1000, after a rest of so many slots two seconds before, and says
/// so a little later or earlier than it is heard.
void PlayUpToPause(AutomaticRig& rig, int64_t rest, int64_t news = 4) {
    rig.Track("1", "One");
    rig.Play(960 - rest);
    rig.Silence(rest);
    rig.Play(40 + std::min<int64_t>(news, 0));
    rig.Silence(std::max<int64_t>(news, 0));
    rig.Said.Position = 1000;
    rig.Began.reset();
    rig.Status(PlayerStatus::Paused);
    rig.Play(std::max<int64_t>(-news, 0));
}

/// It goes on from there.
void Resume(AutomaticRig& rig) {
    rig.Began = rig.Now - 1000;
    rig.Status(PlayerStatus::Playing);
    rig.Play(1000);
    rig.Finish();
}

TEST(AutomaticEnd, ARestBeforeAPauseIsOfTheSong) {
    for (const int64_t rest : {3, 12, 25}) {
        for (const int64_t news : {-15, 4, 20}) {
            for (const int64_t pause : {30, 55, 70, 160}) {
                SCOPED_TRACE(testing::Message() << rest << " " << news << " " << pause);
                AutomaticRig rig;
                PlayUpToPause(rig, rest, news);
                rig.Silence(pause - std::max<int64_t>(news, 0));
                Resume(rig);
                EXPECT_TRUE(rig.Songs.empty());
                EXPECT_THAT(rig.Present.Pieces,
                            ElementsAre(SlotRun{0, 1000}, SlotRun{1000 + pause, rig.Now}));
                EXPECT_EQ(rig.End.Trust().PausesCut, 1);
            }
        }
    }
}

TEST(AutomaticEnd, AnotherSoundInAPauseIsInNoSong) {
    AutomaticRig rig;
    PlayUpToPause(rig, 0);
    rig.Silence(50);
    rig.Play(10);  // somebody writes to the user
    rig.Silence(100);
    rig.Play(10);
    rig.Silence(75);
    Resume(rig);
    EXPECT_TRUE(rig.Songs.empty());
    EXPECT_THAT(rig.Present.Pieces, ElementsAre(SlotRun{0, 1000}, SlotRun{1249, rig.Now}));
    EXPECT_EQ(rig.End.Trust().PausesCut, 1);
}

TEST(AutomaticEnd, ASoundThatGoesOnThoughThePlayerSaysThatItPausesIsBelieved) {
    AutomaticRig rig;
    PlayUpToPause(rig, 0);
    rig.Silence(56);
    rig.Play(50);
    rig.Silence(15);  // a rest, just when it is decided
    rig.Play(200);
    rig.Finish();
    EXPECT_THAT(rig.Present.Pieces, ElementsAre(SlotRun{0, 1000}, SlotRun{1060, rig.Now}));
}

TEST(AutomaticEnd, ARestBeforeTheLastChordIsOfTheSong) {
    AutomaticRig rig;
    rig.Track("1", "One");
    rig.Play(960);
    rig.Silence(12);
    rig.Play(28);
    rig.Silence(3);
    rig.Said = {};
    rig.Began.reset();
    rig.Status(PlayerStatus::Unknown);
    rig.Silence(37);
    ASSERT_EQ(rig.Songs.size(), 1U) << "needs no long silence";
    EXPECT_EQ(rig.Songs[0].Title, "One");
    EXPECT_THAT(rig.Songs[0].Pieces, ElementsAre(SlotRun{0, 1000}));
    rig.Silence(100);
    rig.Finish();
    EXPECT_TRUE(rig.Present.Pieces.empty());
}

}  // namespace
}  // namespace Corvetape::Test
