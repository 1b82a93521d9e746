// Cutting by the clock acts at once: no pause and no change of media data will come.

#include <gtest/gtest.h>

#include "session_rig.h"

namespace Corvetape::Test {
namespace {

/// A session by fixed time with ten seconds of sound, of which five are in the file.
class SessionAtOnce : public testing::Test {
 protected:
    SessionAtOnce() {
        Rig.Pause.EndOfSongDetection = EndOfSong::FixedTime;
        Rig.Cut.FixedTimeSeconds = 77;
        Rig.Play(300);
        Rig.Closed.clear();
    }

    SessionRig Rig;
};

TEST_F(SessionAtOnce, WaitingForTheNextPieceKeepsTheOneUpToNow) {
    Rig.Form.chkStartStop[1].Value(1);
    ASSERT_EQ(Rig.Closed.size(), 1U);
    EXPECT_EQ(Rig.Closed[0], SongFate::Kept);
    EXPECT_TRUE(Rig.Flags.RecordNextSong);
    EXPECT_FALSE(Rig.Flags.RecordCurrentSong);
    EXPECT_EQ(Rig.Cut.FixedTimeSeconds, 0);
}

TEST_F(SessionAtOnce, APieceThatIsTooShortDoesNotUseUpTheWishForTheNextOne) {
    Rig.Pause.IgnoreShortSongs = 120;
    Rig.Form.chkStartStop[1].Value(1);
    ASSERT_EQ(Rig.Closed.size(), 1U);
    EXPECT_EQ(Rig.Closed[0], SongFate::Short);
    EXPECT_TRUE(Rig.Flags.RecordNextSong);
    EXPECT_FALSE(Rig.Flags.RecordCurrentSong);
    EXPECT_EQ(Rig.Form.chkStartStop[1].Value(), 1);
}

TEST_F(SessionAtOnce, FromWaitingToRecordingTheBoxesClearOneAnotherAndCutOnce) {
    Rig.Form.chkStartStop[1].Value(1);
    Rig.Play(300);
    Rig.Closed.clear();
    Rig.Form.chkStartStop[0].Value(1);
    EXPECT_EQ(Rig.Form.chkStartStop[1].Value(), 0);
    EXPECT_EQ(Rig.Closed.size(), 1U);
    EXPECT_TRUE(Rig.Flags.RecordCurrentSong);
    EXPECT_FALSE(Rig.Flags.RecordNextSong);
}

TEST_F(SessionAtOnce, FromRecordingToWaitingTheBoxesClearOneAnotherAndCutOnce) {
    Rig.Form.chkStartStop[0].Value(1);
    Rig.Play(300);
    Rig.Closed.clear();
    Rig.Form.cmdSkipThisRecording.Press();
    ASSERT_EQ(Rig.Closed.size(), 1U);
    EXPECT_EQ(Rig.Closed[0], SongFate::Kept);
    EXPECT_TRUE(Rig.Flags.RecordNextSong);
}

TEST_F(SessionAtOnce, AQuickRecordingBeginsNowAndStopsAtTheEndOfThePiece) {
    Rig.Form.cmdQuickRecord.Press();
    ASSERT_EQ(Rig.Closed.size(), 1U);
    EXPECT_EQ(Rig.Closed[0], SongFate::Unwanted);
    Rig.Play(300);
    Rig.EndSong();
    ASSERT_EQ(Rig.Closed.size(), 2U);
    EXPECT_EQ(Rig.Closed[1], SongFate::Kept);
    EXPECT_FALSE(Rig.Flags.RecordCurrentSong);
}

TEST_F(SessionAtOnce, TheRunningMinutesBeginAnewWithTheNewPiece) {
    Rig.Form.cmdStartStop.Press();
    EXPECT_EQ(Rig.Cut.FixedTimeSeconds, 0);
    EXPECT_EQ(Rig.Ring.Unread(), 0);
    Rig.Cut.FixedTimeSeconds = 50;
    Rig.Play(300);
    Rig.Form.cmdStartStop.Press();
    EXPECT_EQ(Rig.Cut.FixedTimeSeconds, 0);
    EXPECT_FALSE(Rig.Cut.CutPending);
}

TEST_F(SessionAtOnce, AStopAtTheEndIsClearedByTurningRecordingOff) {
    Rig.Form.cmdQuickRecord.Press();
    Rig.Play(300);
    Rig.Form.cmdStartStop.Press();
    EXPECT_FALSE(Rig.Flags.StopAtEndOfSong);
    EXPECT_EQ(Rig.Form.chkStopRecording[0].Value(), 0);
    EXPECT_EQ(Rig.Closed.back(), SongFate::Kept);
}

// Programs that are to end with their recording.

TEST_F(SessionAtOnce, WhatPlayedBeforeTheRecordingDoesNotEndIt) {
    Rig.Flags.DisableAtEndOfSong = true;
    Rig.Form.chkStartStop[0].Value(1);
    EXPECT_TRUE(Rig.Flags.RecordingEnabled);
    EXPECT_TRUE(Rig.Flags.DisableAtEndOfSong);
    EXPECT_TRUE(Rig.Flags.RecordCurrentSong);
}

// Silence.

TEST_F(SessionAtOnce, APieceEndsWhereTheSilenceBeganAndTheNextOneBeginsAtOnce) {
    for (const int32_t silence : {1200, 150, 90}) {  // in the file, in both, in the ring alone
        Rig.Form.chkStartStop[0].Value(0);
        Rig.Form.chkStartStop[0].Value(1);
        Rig.Play(300);
        Rig.Play(silence, true);
        Rig.Closed.clear();
        Rig.Recording.BreakOff();
        EXPECT_EQ(Rig.Closed, std::vector{SongFate::Kept});
        EXPECT_EQ(Rig.ClosedBuffers, 300) << silence;
        EXPECT_TRUE(Rig.Flags.RecordCurrentSong);
        EXPECT_EQ(Rig.Form.chkStartStop[0].Value(), 1);
        EXPECT_EQ(Rig.Cut.FixedTimeSeconds, 0);
        EXPECT_EQ(Rig.Ring.Unread(), 0);
    }
}

TEST_F(SessionAtOnce, APieceOfSilenceAloneIsNotKept) {
    Rig.Pause.IgnoreShortSongs = 0;
    Rig.Form.chkStartStop[0].Value(1);
    Rig.Play(1300, true);
    ASSERT_TRUE(Rig.Writer.SongFileOpen());
    Rig.Closed.clear();
    Rig.Recording.BreakOff();
    EXPECT_EQ(Rig.Closed, std::vector{SongFate::Short});
    EXPECT_LE(Rig.ClosedBuffers, 0);
    EXPECT_TRUE(Rig.Flags.RecordCurrentSong);
}

TEST_F(SessionAtOnce, WhatWasSkippedAfterThePauseCostsNoSound) {
    Rig.Pause.IgnorePauseBuffers = 6;
    for (const int32_t silence : {1200, 150, 90}) {  // in the file, in both, in the ring alone
        Rig.Form.chkStartStop[0].Value(0);
        Rig.Form.chkStartStop[0].Value(1);
        Rig.Play(300);
        Rig.Play(2, true);
        Rig.Signal.FramesReceived += 6 * Rig.FramesPerBuffer;
        Rig.Signal.SilentBufferCount += 6;
        Rig.Play(silence - 8, true);
        Rig.Recording.BreakOff();
        EXPECT_EQ(Rig.ClosedBuffers, 300) << silence;
    }
}

TEST_F(SessionAtOnce, ASoundWithinWhatWasSkippedCostsNoSoundEither) {
    for (const int32_t silence : {1200, 90}) {  // in the file, in the ring alone
        Rig.Form.chkStartStop[0].Value(0);
        Rig.Form.chkStartStop[0].Value(1);
        Rig.Play(302);
        for (const int32_t silent : {5, 6}) {
            Rig.Signal.FramesReceived += 6 * Rig.FramesPerBuffer;
            Rig.Signal.SilentBufferCount = silent;
            Rig.Play(2, true);
        }
        Rig.Play(silence, true);
        // The first of all that was skipped was a click, after which the silence began anew.
        Rig.Signal.SilentBufferCount = silence + 5 + 2 + 6 + 2;
        Rig.Recording.BreakOff();
        EXPECT_EQ(Rig.ClosedBuffers, 302) << silence;
    }
}

TEST_F(SessionAtOnce, APieceThatIsTooShortBeforeTheSilenceLeavesTheWishToStopToTheNextOne) {
    Rig.Pause.IgnoreShortSongs = 60;
    Rig.Form.cmdQuickRecord.Press();
    Rig.Play(300);
    Rig.Play(1200, true);
    Rig.Recording.BreakOff();
    EXPECT_EQ(Rig.Closed.back(), SongFate::Short);
    EXPECT_TRUE(Rig.Flags.RecordCurrentSong);
    EXPECT_TRUE(Rig.Flags.StopAtEndOfSong);
}

TEST_F(SessionAtOnce, ALastPieceThatTheSilenceEndsIsTheLast) {
    Rig.Form.cmdQuickRecord.Press();
    Rig.Play(300);
    Rig.Play(1200, true);
    Rig.Recording.BreakOff();
    EXPECT_EQ(Rig.Closed.back(), SongFate::Kept);
    EXPECT_FALSE(Rig.Flags.RecordCurrentSong);
    EXPECT_FALSE(Rig.Flags.StopAtEndOfSong);
}

TEST_F(SessionAtOnce, WhatNobodyWantsIsNotBrokenOff) {
    Rig.Recording.BreakOff();
    EXPECT_TRUE(Rig.Closed.empty());
    EXPECT_TRUE(Rig.Writer.SongFileOpen());
}

}  // namespace
}  // namespace Corvetape::Test
