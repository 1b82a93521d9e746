#include <gtest/gtest.h>

#include "audio/drain_bench.h"
#include "audio/route.h"

namespace Corvetape::Test {

// The end of the signal.

TEST_F(Drains, AtTheEndOfTheSignalAPendingCutIsMadeAndTheRestIsWritten) {
    Arrive(180);
    RaiseCut();
    Arrive(30);
    SetLevel(185, 0);
    EXPECT_TRUE(Drain.FinishCut());
    EXPECT_EQ(BuffersIn(Last().TempPath), Range(0, 185));
    EXPECT_TRUE(Drain.WriteOut());
    Writer.CloseSongFile();
    EXPECT_EQ(BuffersIn(Last().TempPath), Range(186, 24));
    EXPECT_EQ(Ring.Unread(), 0);
}

TEST_F(Drains, AtTheEndOfTheSignalASongIsClosedThatATitleHasEndedWhenAllOfItWasWritten) {
    Arrive(180);
    ASSERT_TRUE(Drain.WriteOut());
    RaiseCut();
    Cut.Ended = EndedSong{{}, true};
    Flags.RecordCurrentSong = false;  // of the song that has begun
    Arrive(30);
    EXPECT_TRUE(Drain.FinishCut());
    ASSERT_EQ(Closed.size(), 1U);
    EXPECT_EQ(Last().Fate, SongFate::Kept);
    EXPECT_EQ(BuffersIn(Last().TempPath), Range(0, 180));
    EXPECT_FALSE(Cut.CutPending);
    EXPECT_FALSE(Cut.Ended);
    EXPECT_EQ(Ring.Unread(), 30);
}

TEST_F(Drains, AtTheEndOfTheSignalACutThatNoTitleHasRaisedLeavesAFileOpenThatIsWritten) {
    Arrive(180);
    ASSERT_TRUE(Drain.WriteOut());
    RaiseCut();
    EXPECT_TRUE(Drain.FinishCut());
    EXPECT_TRUE(Closed.empty());
    EXPECT_FALSE(Cut.CutPending);
}

TEST_F(Drains, WithNothingUnreadTheEndOfTheSignalMakesNoFile) {
    EXPECT_TRUE(Drain.FinishCut());
    EXPECT_TRUE(Drain.WriteOut());
    EXPECT_FALSE(Writer.SongFileOpen());
    Arrive(5);
    Flags.RecordingEnabled = false;
    EXPECT_TRUE(Drain.WriteOut());
    EXPECT_FALSE(Writer.SongFileOpen());
}

// Values that make no sense.

TEST_F(Drains, NegativeThresholdsAndACutOutsideTheRingDoNoHarm) {
    Pause.EndOfSongThreshold = {-3000, -3000};
    Arrive(180);
    Cut.CutPending = true;
    for (const int32_t cut : {-1, 400, 2147483647, -2147483647}) {
        Cut.CutIndex = cut;
        EXPECT_TRUE(Drain.DrainAudioRing(true)) << cut;
        EXPECT_GE(Ring.AudioReadIndex, 0);
        EXPECT_LT(Ring.AudioReadIndex, 400);
        Cut.CutPending = true;
    }
}

TEST_F(Drains, AfterTheRingWasOpenedAnewACutEndsTheOldSongAndTheNewAudioIsTheNextOnes) {
    Arrive(300);
    Drain.DrainAudioRing(false);
    RaiseCut();
    Ring.Open(400, BufferFrames);
    Next = 1000;
    Arrive(60);
    EXPECT_TRUE(Drain.DrainAudioRing(false));
    EXPECT_FALSE(Cut.CutPending);
    EXPECT_EQ(BuffersIn(Last().TempPath), Range(0, 200));
    Drain.WriteOut();
    Writer.CloseSongFile();
    EXPECT_EQ(BuffersIn(Last().TempPath), Range(1000, 60));
}

TEST_F(Drains, ACutBeforeTheReadIndexMovesNothingThatIsUnread) {
    Arrive(180);
    RaiseCut();
    Arrive(20);
    Ring.AudioReadIndex = Ring.AudioWriteIndex;  // recording was begun by hand after the change
    Arrive(40);
    EXPECT_TRUE(Drain.DrainAudioRing(false));
    EXPECT_FALSE(Cut.CutPending);
    EXPECT_EQ(Ring.AudioReadIndex, 200);
    EXPECT_TRUE(Closed.empty());
    EXPECT_FALSE(Writer.SongFileOpen());
    RaiseCut();
    Arrive(60);
    Drain.DrainAudioRing(false);
    EXPECT_TRUE(Last().Whole) << "what is unread began at that cut";
}

TEST_F(Drains, ACutThatIsOlderThanTheRingEndsTheOldSongAndMovesNothing) {
    Arrive(300);
    Drain.DrainAudioRing(false);
    Flags.RecordingEnabled = false;
    RaiseCut();
    SongTargets targets(Writer, Drain);
    for (int32_t i = 0; i < 1010; ++i) {
        Ring.SetLevel(Loud);
        RouteBuffer(NumberedBuffer(Next++), {Signal, Cut, Pause, Flags, Ring}, targets);
    }
    Flags.RecordingEnabled = true;
    const int32_t unread = Ring.Unread();
    EXPECT_TRUE(Drain.DrainAudioRing(false));
    EXPECT_FALSE(Cut.CutPending);
    EXPECT_EQ(Ring.Unread(), unread);
    ASSERT_EQ(Closed.size(), 1U);
    EXPECT_EQ(BuffersIn(Last().TempPath), Range(0, 200));
}

}  // namespace Corvetape::Test
