#include "audio/drain.h"

#include <gtest/gtest.h>

#include "audio/drain_bench.h"

namespace Corvetape::Test {

// Plain draining.

TEST_F(Drains, WithTheEndOfSongBySilenceOrWithRecordingOffNothingIsDrained) {
    Arrive(300);
    Pause.EndOfSongDetection = EndOfSong::Silence;
    EXPECT_TRUE(Drain.DrainAudioRing(false));
    Pause.EndOfSongDetection = EndOfSong::FixedTime;
    Flags.RecordingEnabled = false;
    EXPECT_TRUE(Drain.DrainAudioRing(true));
    EXPECT_EQ(Ring.AudioReadIndex, 0);
    EXPECT_FALSE(Writer.SongFileOpen());
}

TEST_F(Drains, BelowTenSecondsTheRingIsLeftAlone) {
    Arrive(199);
    EXPECT_TRUE(Drain.DrainAudioRing(false));
    EXPECT_FALSE(Writer.SongFileOpen());
}

TEST_F(Drains, FromTenSecondsOnAllButTheLastFiveAreWritten) {
    Arrive(200);
    EXPECT_TRUE(Drain.DrainAudioRing(false));
    EXPECT_EQ(Written(), 100);
    EXPECT_EQ(Ring.AudioReadIndex, 100);
    EXPECT_EQ(Ring.Unread(), 100);
    Arrive(130);
    EXPECT_TRUE(Drain.DrainAudioRing(false));
    EXPECT_EQ(Written(), 230);
    EXPECT_EQ(Ring.Unread(), 100);
}

TEST_F(Drains, RoundAndRoundNothingIsLostOrWrittenTwice) {
    Pause.EndOfSongDetection = EndOfSong::FixedTime;
    for (int32_t second = 0; second < 100; ++second) {
        Arrive(20);
        ASSERT_TRUE(Drain.DrainAudioRing(false));
        ASSERT_LT(Ring.Unread(), 200);
    }
    Drain.WriteOut();
    Writer.CloseSongFile();
    EXPECT_EQ(BuffersIn(Last().TempPath), Range(0, 2000));
}

TEST_F(Drains, ARingOfTwoHundredSlotsNeverDrains) {
    Ring.Open(200, BufferFrames);
    Arrive(199);
    EXPECT_TRUE(Drain.DrainAudioRing(false));
    EXPECT_TRUE(Drain.MakeRoom());
    EXPECT_FALSE(Writer.SongFileOpen());
}

TEST_F(Drains, ARingThatWasNeverOpenedIsLeftAlone) {
    AudioRing none;
    AudioDrain drain({none, Cut, Pause, Flags, Writer});
    RaiseCut();
    EXPECT_TRUE(drain.DrainAudioRing(true));
    EXPECT_TRUE(drain.MakeRoom());
    EXPECT_TRUE(drain.FinishCut());
    EXPECT_TRUE(drain.WriteOut());
    EXPECT_FALSE(Writer.SongFileOpen());
}

TEST_F(Drains, AFileThatCannotBeMadeEndsTheProgram) {
    Arrive(200);
    Disk.AddFault({.Operation = FileOperation::Create});
    EXPECT_FALSE(Drain.DrainAudioRing(false));
    EXPECT_FALSE(Flags.RecordingEnabled);
    EXPECT_EQ(Ring.AudioReadIndex, 0);
}

// When a cut is due.

TEST_F(Drains, ACutWaitsUntilTheAudioAfterItHasArrived) {
    Arrive(180);
    RaiseCut();
    Arrive(59);
    EXPECT_TRUE(Drain.DrainAudioRing(false));
    EXPECT_TRUE(Cut.CutPending);
    EXPECT_FALSE(Writer.SongFileOpen());
    Arrive(1);
    EXPECT_TRUE(Drain.DrainAudioRing(false));
    EXPECT_FALSE(Cut.CutPending);
    EXPECT_EQ(Closed.size(), 1U);
}

TEST_F(Drains, WhileACutIsPendingNothingIsDrainedPlainly) {
    Arrive(250);
    RaiseCut();
    Arrive(30);
    EXPECT_TRUE(Drain.DrainAudioRing(false));
    EXPECT_FALSE(Writer.SongFileOpen());
    EXPECT_EQ(Ring.AudioReadIndex, 0);
}

TEST_F(Drains, TheOldSongEndsWhereTheQuietStretchBeginsAndTheNewOneBeginsAfterIt) {
    Arrive(180);
    RaiseCut();
    Arrive(70);
    for (const int32_t quiet : {200, 201, 202, 203}) SetLevel(quiet, 12);
    EXPECT_TRUE(Drain.DrainAudioRing(false));
    EXPECT_EQ(BuffersIn(Last().TempPath), Range(0, 200));
    EXPECT_EQ(Ring.AudioReadIndex, 204);
    EXPECT_EQ(Last().EndFrame, 200U * BufferFrames);
    Arrive(300 - 46);
    Drain.DrainAudioRing(false);
    Writer.CloseSongFile();
    EXPECT_EQ(BuffersIn(Last().TempPath), Range(204, 200));
}

TEST_F(Drains, TheWindowReachesFromTheTimeBeforeToTheTimeAfterBothEndsIncluded) {
    Pause.EndOfSongThreshold = {500, 1000};  // 10 and 20 slots
    struct Case {
        int32_t Quiet;
        int32_t OldEnd;
        int32_t NewBegin;
    };
    // All of one loudness: the window is one stretch, and shows its ends.
    for (const Case& each :
         {Case{169, 170, 201}, Case{170, 170, 171}, Case{200, 200, 201}, Case{201, 170, 201}}) {
        Ring.Open(400, BufferFrames);
        Next = 0;
        Arrive(180);
        RaiseCut();
        Arrive(40);
        SetLevel(each.Quiet, 0);
        Drain.DrainAudioRing(false);
        EXPECT_EQ(BuffersIn(Last().TempPath), Range(0, each.OldEnd)) << each.Quiet;
        EXPECT_EQ(Ring.AudioReadIndex, each.NewBegin) << each.Quiet;
    }
}

TEST_F(Drains, WhatIsWrittenAlreadyIsNotSearched) {
    Arrive(300);
    Drain.DrainAudioRing(false);  // 0 to 199 are written
    Ring.AudioReadIndex = 280;    // as after an earlier cut
    RaiseCut();
    Arrive(60);
    SetLevel(279, 0);
    SetLevel(290, 500);
    Drain.DrainAudioRing(false);
    EXPECT_EQ(Ring.AudioReadIndex, 291);
    EXPECT_EQ(BuffersIn(Last().TempPath).back(), 289);
}

TEST_F(Drains, WithNothingUnwrittenNoFileIsClosedAndTheReadIndexJumps) {
    Arrive(300);
    Drain.DrainAudioRing(false);
    const int64_t written = Written();
    Ring.AudioReadIndex = 300;
    RaiseCut();
    Arrive(60);
    SetLevel(310, 0);
    Drain.DrainAudioRing(false);
    EXPECT_EQ(Ring.AudioReadIndex, 311);
    EXPECT_FALSE(Cut.CutPending);
    EXPECT_TRUE(Writer.SongFileOpen());
    EXPECT_EQ(Written(), written);
    EXPECT_TRUE(Closed.empty());
}

TEST_F(Drains, OneUnwrittenSlotIsTheOldSongsLast) {
    Arrive(300);
    Drain.DrainAudioRing(false);
    Ring.AudioReadIndex = 299;
    RaiseCut();
    Arrive(60);
    SetLevel(300, 0);
    Drain.DrainAudioRing(false);
    ASSERT_EQ(Closed.size(), 1U);
    EXPECT_EQ(BuffersIn(Last().TempPath).size(), 201U);
    EXPECT_EQ(BuffersIn(Last().TempPath).back(), 299);
    EXPECT_EQ(Ring.AudioReadIndex, 301);
}

TEST_F(Drains, AWindowWithoutLengthIsTheSlotOfTheChangeWhichIsThrownAway) {
    Pause.EndOfSongThreshold = {0, 0};
    Arrive(180);
    RaiseCut();
    Arrive(1);
    Drain.DrainAudioRing(false);
    EXPECT_EQ(BuffersIn(Last().TempPath), Range(0, 180));
    EXPECT_EQ(Ring.AudioReadIndex, 181);
}

TEST_F(Drains, ASongBetweenTwoCutsIsWhole) {
    RaiseCut();
    Arrive(60);
    SetLevel(5, 0);
    Drain.DrainAudioRing(false);
    Arrive(200);
    RaiseCut();
    Arrive(60);
    SetLevel(260, 0);
    Drain.DrainAudioRing(false);
    ASSERT_EQ(Closed.size(), 1U);
    EXPECT_TRUE(Last().Whole);
    EXPECT_EQ(BuffersIn(Last().TempPath), Range(6, 254));
}

TEST_F(Drains, ASongThatWouldEndAtTheReadIndexIsFollowedOnceRoundTheRing) {
    Arrive(400);
    Drain.DrainAudioRing(false);
    Writer.CloseSongFile();
    Ring.AudioReadIndex = Ring.Wrapped(390);
    RaiseCut();
    Arrive(60);
    SetLevel(390, 0);
    Drain.DrainAudioRing(false);
    const std::vector<int32_t> written = BuffersIn(Last().TempPath);
    EXPECT_EQ(written.size(), 400U);
    EXPECT_EQ(written.front(), 390);
    EXPECT_EQ(written.back(), 389);
    EXPECT_EQ(Last().EndFrame, Last().BeginFrame + 400U * BufferFrames) << "after its beginning all the same";
    EXPECT_EQ(Ring.AudioReadIndex, 391);
}

TEST_F(Drains, AWindowOfFullScaleIsCutAtTheChangeAndLosesNothing) {
    Arrive(180, 32768);
    RaiseCut();
    Arrive(60, 32767);
    EXPECT_TRUE(Drain.DrainAudioRing(false));
    EXPECT_EQ(BuffersIn(Last().TempPath), Range(0, 180));
    EXPECT_EQ(Ring.AudioReadIndex, 180);
    EXPECT_FALSE(Cut.CutPending);
}

TEST_F(Drains, AFullScaleWindowWithNothingUnwrittenBeginsTheNewSongAtTheChange) {
    Arrive(180, 32768);
    Ring.AudioReadIndex = 180;
    RaiseCut();
    Arrive(60, 32768);
    EXPECT_TRUE(Drain.DrainAudioRing(false));
    EXPECT_EQ(Ring.AudioReadIndex, 180);
    EXPECT_TRUE(Closed.empty());
}

TEST_F(Drains, WhatIsAfterTheNewestSlotIsNoPlaceForACut) {
    Arrive(400, 0);  // twenty seconds of silence, which all later slots still hold
    Ring.AudioReadIndex = Ring.AudioWriteIndex;
    Arrive(180);
    RaiseCut();
    Arrive(60);
    SetLevel(400 + 190, 20);
    Drain.DrainAudioRing(false);
    EXPECT_EQ(BuffersIn(Last().TempPath), Range(400, 190));
    EXPECT_EQ(Ring.AudioReadIndex, 191);
}

// The window in both songs.

TEST_F(Drains, WithDuplicationTheWholeWindowGoesIntoBothSongs) {
    Pause.DuplicatepartOfSong = true;
    Arrive(180);
    RaiseCut();
    Arrive(70);
    SetLevel(200, 0);
    Drain.DrainAudioRing(false);
    EXPECT_EQ(BuffersIn(Last().TempPath), Range(0, 240)) << "up to the window's end, which is not written";
    EXPECT_EQ(Ring.AudioReadIndex, 121) << "one slot after the window's start";
}

TEST_F(Drains, WithDuplicationTheNewSongBeginsNoEarlierThanWhatIsUnwritten) {
    Pause.DuplicatepartOfSong = true;
    Arrive(180);
    Ring.AudioReadIndex = 150;
    RaiseCut();
    Arrive(60);
    Drain.DrainAudioRing(false);
    EXPECT_EQ(BuffersIn(Last().TempPath), Range(150, 90));
    EXPECT_EQ(Ring.AudioReadIndex, 151);
}

// Cutting without waiting.

TEST_F(Drains, WithoutWaitingTheCutIsMadeWithWhatIsThere) {
    Pause.EndOfSongDetection = EndOfSong::FixedTime;
    Arrive(180);
    SetLevel(170, 0);
    RaiseCut();
    EXPECT_TRUE(Drain.DrainAudioRing(true));
    EXPECT_FALSE(Cut.CutPending);
    EXPECT_EQ(BuffersIn(Last().TempPath), Range(0, 170));
    EXPECT_EQ(Ring.AudioReadIndex, 171);
}

TEST_F(Drains, WithoutWaitingAndWithoutAnyAudioNothingHappensToTheSong) {
    RaiseCut();
    EXPECT_TRUE(Drain.DrainAudioRing(true));
    EXPECT_FALSE(Cut.CutPending);
    EXPECT_EQ(Ring.AudioReadIndex, 0);
    EXPECT_TRUE(Closed.empty());
    Pause.DuplicatepartOfSong = true;
    RaiseCut();
    EXPECT_TRUE(Drain.DrainAudioRing(true));
    EXPECT_EQ(Ring.Unread(), 0);
}

TEST_F(Drains, WithoutWaitingAndWithNothingNewTheHistoryIsNotSearched) {
    Arrive(400);
    Ring.AudioReadIndex = Ring.AudioWriteIndex;
    SetLevel(100, 0);
    RaiseCut();
    EXPECT_TRUE(Drain.DrainAudioRing(true));
    EXPECT_EQ(Ring.Unread(), 0);
}

TEST_F(Drains, WithoutWaitingADuplicatedWindowEndsWithTheNewestSlot) {
    Pause.DuplicatepartOfSong = true;
    Arrive(180);
    RaiseCut();
    Arrive(10);
    Drain.DrainAudioRing(true);
    EXPECT_EQ(BuffersIn(Last().TempPath), Range(0, 190));
    EXPECT_EQ(Ring.AudioReadIndex, 121);
}

// Failures.

TEST_F(Drains, AWriteThatFailsEndsTheRecordingAndLeavesTheRestUnread) {
    Arrive(200);
    Disk.AddFault({.Operation = FileOperation::Write, .Error = ENOSPC, .AfterCalls = 31, .Times = 1});
    EXPECT_TRUE(Drain.DrainAudioRing(false));
    EXPECT_EQ(Writer.SongFileError(), ErrorWritingSong);
    EXPECT_FALSE(Flags.RecordingEnabled);
    EXPECT_EQ(Ring.AudioReadIndex, 30);

    Flags.RecordingEnabled = true;
    EXPECT_TRUE(Drain.DrainAudioRing(false));
    Drain.WriteOut();
    Writer.CloseSongFile(SongEnd::Boundary);
    EXPECT_EQ(BuffersIn(Last().TempPath), Range(0, 200)) << "it goes on with the buffer that failed";
    EXPECT_FALSE(Last().Whole);
}

TEST_F(Drains, ACutInWhichAWriteFailsStaysPending) {
    Arrive(180);
    RaiseCut();
    Arrive(60);
    SetLevel(185, 0);
    Disk.AddFault({.Operation = FileOperation::Write, .AfterCalls = 31, .Times = 1});
    EXPECT_TRUE(Drain.DrainAudioRing(false));
    EXPECT_TRUE(Cut.CutPending);
    EXPECT_TRUE(Closed.empty());
    Flags.RecordingEnabled = true;
    EXPECT_TRUE(Drain.DrainAudioRing(false));
    EXPECT_EQ(BuffersIn(Last().TempPath), Range(0, 185));
}

// A ring that nobody drains.

TEST_F(Drains, ARingThatIsNearlyFullIsDrainedBeforeUnreadAudioIsReached) {
    for (int32_t i = 0; i < 5000; ++i) {
        if (Ring.Full()) {
            ASSERT_TRUE(Drain.MakeRoom());
            ASSERT_FALSE(Ring.Full());
        }
        Arrive(1);
    }
    Drain.WriteOut();
    Writer.CloseSongFile();
    EXPECT_EQ(BuffersIn(Last().TempPath), Range(0, 5000));
}

TEST_F(Drains, InAFullRingWhatIsBeforeTheWindowOfAPendingCutIsWritten) {
    Arrive(360);
    RaiseCut();
    Arrive(39);
    ASSERT_TRUE(Ring.Full());
    EXPECT_TRUE(Drain.MakeRoom());
    EXPECT_TRUE(Cut.CutPending);
    EXPECT_EQ(Ring.AudioReadIndex, 300);
    Arrive(21);
    SetLevel(370, 0);
    Drain.DrainAudioRing(false);
    EXPECT_EQ(BuffersIn(Last().TempPath), Range(0, 370));
    EXPECT_EQ(Ring.AudioReadIndex, 371);
}

TEST_F(Drains, ACutThatWaitsForMoreThanTheRingCanHoldIsMadeWhenTheRingIsFull) {
    Pause.EndOfSongThreshold = {10000, 30000};
    Arrive(100);
    RaiseCut();
    Arrive(299);
    SetLevel(150, 0);
    EXPECT_TRUE(Drain.DrainAudioRing(false));
    EXPECT_TRUE(Cut.CutPending);
    EXPECT_TRUE(Drain.MakeRoom());
    EXPECT_FALSE(Cut.CutPending);
    EXPECT_EQ(BuffersIn(Last().TempPath), Range(0, 150));
    EXPECT_EQ(Ring.AudioReadIndex, 151);
}

TEST_F(Drains, InASmallRingAPendingCutIsMadeWhenItIsFull) {
    Pause.EndOfSongThreshold[0] = 500;
    for (const int32_t size : {100, 200}) {
        Ring.Open(size, BufferFrames);
        Next = 0;
        Arrive(size - 40);
        RaiseCut();
        Arrive(38);
        SetLevel(size - 30, 0);
        EXPECT_TRUE(Drain.MakeRoom());
        EXPECT_TRUE(Cut.CutPending) << "not yet";
        Arrive(1);
        EXPECT_TRUE(Drain.MakeRoom());
        EXPECT_FALSE(Cut.CutPending);
        EXPECT_EQ(BuffersIn(Last().TempPath), Range(0, size - 30));
    }
}

TEST_F(Drains, InAFullRingACutWithNothingBeforeItsWindowIsMade) {
    Pause.EndOfSongThreshold = {3000, 20000};
    for (const int32_t before : {60, 61}) {
        Ring.Open(400, BufferFrames);
        Next = 0;
        Arrive(before);
        RaiseCut();
        Arrive(399 - before);
        EXPECT_TRUE(Drain.MakeRoom());
        EXPECT_EQ(Cut.CutPending, before == 61) << before;
        EXPECT_FALSE(Ring.Full()) << before;
    }
}

TEST_F(Drains, WhileRecordingIsOffNoRoomIsMadeAndNoCutFinished) {
    Arrive(100);
    RaiseCut();
    Arrive(299);
    Flags.RecordingEnabled = false;
    EXPECT_TRUE(Drain.MakeRoom());
    EXPECT_TRUE(Drain.FinishCut());
    EXPECT_TRUE(Cut.CutPending);
    EXPECT_TRUE(Ring.Full());
    EXPECT_TRUE(Begun.empty());
}

TEST_F(Drains, RoomThatNeedsAFileThatCannotBeMadeEndsTheProgram) {
    Disk.AddFault({.Operation = FileOperation::Create});
    Arrive(399);
    EXPECT_FALSE(Drain.MakeRoom());
    Flags.RecordingEnabled = true;
    Cut.CutPending = true;
    Cut.CutIndex = 390;
    EXPECT_FALSE(Drain.MakeRoom());
}

}  // namespace Corvetape::Test
