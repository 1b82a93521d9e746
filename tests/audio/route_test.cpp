#include "audio/route.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "audio/signal_bench.h"
#include "platform/virtual/sim_clock.h"

namespace Corvetape::Test {

namespace {

class Routing : public testing::Test, protected RouteTargets {
 protected:
    Routing() {
        Pause.PauseBuffers = 3;
        Pause.SilenceAmplitude = 100;
        Pause.EndOfSilenceAmplitude = 120;
        Signal.ActiveThreshold = 100;
        Signal.PauseRecognition = PauseRecognitionRunning;
        Flags.RecordingEnabled = true;
        Ring.Open(8, BufferFrames);
    }

    RouteParts Parts() { return {Signal, Cut, Pause, Flags, Ring}; }

    bool WriteBufferToSong(const SignalBuffer& buffer, bool end) override {
        Written += end ? "end " : "write ";
        LastWritten = FramesOf(buffer).front();
        return FileWorks;
    }
    bool MakeRoom() override {
        ++RoomWanted;
        if (MakesRoom) Ring.AudioReadIndex = Ring.Wrapped(Ring.AudioReadIndex + int64_t{2});
        return RoomWorks;
    }
    void WriteAhead() override { WrittenAhead.push_back(Ring.AudioWriteIndex); }

    bool Route(int32_t number = 1) { return RouteBuffer(NumberedBuffer(number), Parts(), *this); }

    bool Handle(Frame frame) {
        WaveBuffer buffer = MakeBuffer(frame);
        return SignalPath({Signal, Pause, Ring, Clock}, Parts(), *this).Handle(buffer);
    }

    /// The sound or the silence of one buffer after the other: "s" sound, "." silence, "b" between the
    /// two thresholds.
    void Hear(const std::string& signal) {
        for (const char letter : signal) {
            const int16_t level = letter == 's' ? int16_t{5000} : letter == 'b' ? int16_t{110} : int16_t{0};
            EXPECT_TRUE(Handle({level, level}));
        }
    }

    SimClock Clock;
    SignalState Signal;
    CutState Cut;
    PauseSettings Pause;
    RecordingFlags Flags;
    AudioRing Ring;
    std::string Written;
    Frame LastWritten;
    bool FileWorks = true;
    bool RoomWorks = true;
    bool MakesRoom = false;
    int32_t RoomWanted = 0;
    std::vector<int32_t> WrittenAhead;  ///< the ring's write index each time
};

}  // namespace

TEST_F(Routing, WithTheRecognitionOffEveryBufferIsWrittenAndNoPauseHolds) {
    Signal.PauseRecognition = -1;
    Signal.InPause = true;
    Signal.SilentBufferCount = 100;
    EXPECT_TRUE(Route());
    EXPECT_EQ(Written, "write ");
    EXPECT_FALSE(Signal.InPause);
    EXPECT_EQ(Signal.PauseRecognition, -1);
    EXPECT_FALSE(Cut.SongBoundary);
}

TEST_F(Routing, SwitchingTheRecognitionOffEndsTheSong) {
    Signal.PauseRecognition = 0;
    Route();
    EXPECT_EQ(Written, "end ");
    EXPECT_EQ(Signal.PauseRecognition, -1);
    EXPECT_FALSE(Signal.InPause);
    EXPECT_FALSE(Cut.SongBoundary);
}

TEST_F(Routing, SwitchingTheRecognitionOffInAPauseEndsThePause) {
    Signal.PauseRecognition = 0;
    Signal.InPause = true;
    Route();
    EXPECT_EQ(Written, "write ");
    EXPECT_EQ(Signal.PauseRecognition, -1);
    EXPECT_FALSE(Signal.InPause);
}

TEST_F(Routing, WhileTheSilenceIsTooShortTheSongGoesOnAtTheLowThreshold) {
    Signal.SilentBufferCount = 2;
    Signal.InPause = true;
    Signal.ActiveThreshold = 120;
    Route();
    EXPECT_EQ(Written, "write ");
    EXPECT_FALSE(Signal.InPause);
    EXPECT_EQ(Signal.ActiveThreshold, 100);
}

TEST_F(Routing, ASilenceAsLongAsAPauseEndsTheSongWithThisBuffer) {
    Signal.SilentBufferCount = 3;
    Pause.IgnorePauseBuffers = 7;
    Route();
    EXPECT_EQ(Written, "end ");
    EXPECT_TRUE(Cut.SongBoundary);
    EXPECT_TRUE(Signal.InPause);
    EXPECT_EQ(Signal.SkipBuffers, 7);
    EXPECT_EQ(Signal.ActiveThreshold, 120);
}

TEST_F(Routing, InsideAPauseNothingIsWritten) {
    Signal.SilentBufferCount = 4;
    Signal.InPause = true;
    EXPECT_TRUE(Route());
    EXPECT_EQ(Written, "");
    EXPECT_TRUE(Signal.InPause);
    EXPECT_FALSE(Cut.SongBoundary);
}

TEST_F(Routing, AFileThatCannotBeMadeEndsTheProgram) {
    FileWorks = false;
    Pause.EndOfSongDetection = EndOfSong::MediaData;
    EXPECT_FALSE(Route());
    EXPECT_EQ(Ring.AudioWriteIndex, 0);
}

TEST_F(Routing, WithTheEndOfSongBySilenceTheRingIsNotFilled) {
    Route();
    EXPECT_EQ(Ring.AudioWriteIndex, 0);
}

TEST_F(Routing, InTheOtherModesTheBufferGoesIntoTheRing) {
    for (const EndOfSong mode : {EndOfSong::MediaData, EndOfSong::FixedTime}) {
        Pause.EndOfSongDetection = mode;
        const int32_t slot = Ring.AudioWriteIndex;
        Route(40 + slot);
        EXPECT_EQ(Ring.AudioWriteIndex, slot + 1);
        EXPECT_EQ(FramesOf(Ring[slot]).front(), MarkOf(40 + slot));
    }
}

TEST_F(Routing, WhatIsInTheRingIsWrittenAheadAtOnce) {
    Route();
    EXPECT_TRUE(WrittenAhead.empty()) << "with the end of song by silence";
    Pause.EndOfSongDetection = EndOfSong::MediaData;
    for (int32_t i = 0; i < 3; ++i) Route(i);
    EXPECT_EQ(WrittenAhead, (std::vector<int32_t>{1, 2, 3}));
}

TEST_F(Routing, SilenceOfAPauseStaysOutOfTheRingOnlyIfItIsToBeIgnored) {
    Pause.EndOfSongDetection = EndOfSong::MediaData;
    Pause.IgnoreSilence = true;
    Hear("ss...");
    EXPECT_EQ(Ring.AudioWriteIndex, 4) << "the buffer that makes the pause is in the pause already";
    Hear("....");
    EXPECT_EQ(Ring.AudioWriteIndex, 4);
    Hear("s");
    EXPECT_EQ(Ring.AudioWriteIndex, 5);

    Ring.Open(8, BufferFrames);
    Pause.IgnoreSilence = false;
    Hear("....");
    EXPECT_EQ(Ring.AudioWriteIndex, 4);
}

TEST_F(Routing, WhatIsSkippedAfterAPauseReachesNeitherFileNorRing) {
    Pause.EndOfSongDetection = EndOfSong::MediaData;
    Pause.IgnorePauseBuffers = 2;
    Hear("s...");
    EXPECT_EQ(Ring.AudioWriteIndex, 4);
    Written.clear();
    Hear("ss");
    EXPECT_EQ(Ring.AudioWriteIndex, 4);
    EXPECT_EQ(Written, "");
    Hear("s");
    EXPECT_EQ(Ring.AudioWriteIndex, 5);
    EXPECT_EQ(Written, "write ");
}

TEST_F(Routing, SoundInsideTheSkippingEndsTheSilenceButStartsNoSong) {
    Pause.IgnorePauseBuffers = 3;
    Hear("s...");
    EXPECT_EQ(Signal.SkipBuffers, 3);
    Hear("s");
    EXPECT_EQ(Signal.SilentBufferCount, 0);
    EXPECT_EQ(Signal.SkipBuffers, 2);
    EXPECT_TRUE(Signal.InPause);
    Hear("..");
    EXPECT_EQ(Signal.SilentBufferCount, 2);
    Hear("s");
    EXPECT_FALSE(Signal.InPause);
}

TEST_F(Routing, TheNewSongBeginsWithTheFirstBufferAboveTheHigherThreshold) {
    Hear("ss..");
    EXPECT_EQ(Written, "write write write write ");
    Written.clear();
    Hear(".");
    EXPECT_EQ(Written, "end ");
    Written.clear();
    Hear("..bb");
    EXPECT_EQ(Written, "") << "above the lower threshold only";
    Hear("s");
    EXPECT_EQ(Written, "write ");
    EXPECT_EQ(LastWritten, (Frame{5000, 5000}));
    EXPECT_EQ(Signal.ActiveThreshold, 100);
    Hear("bbb");
    EXPECT_EQ(Written, "write write write write ") << "inside a song it is sound";
}

TEST_F(Routing, APauseOfOneBufferEndsTheSongAtTheFirstSilentBuffer) {
    Pause.PauseBuffers = 1;
    Hear("s.");
    EXPECT_EQ(Written, "write end ");
}

TEST_F(Routing, APauseOfNoLengthIsThereAtOnceEvenInSound) {
    Pause.PauseBuffers = 0;
    Hear("sss");
    EXPECT_EQ(Written, "end ");
    EXPECT_TRUE(Signal.InPause);
}

TEST_F(Routing, TheLevelOfTheSlotIsThatOfItsBuffer) {
    Pause.EndOfSongDetection = EndOfSong::FixedTime;
    Hear("s.b");
    EXPECT_EQ(Ring.AudioLevels[0], 5000);
    EXPECT_EQ(Ring.AudioLevels[1], 0);
    EXPECT_EQ(Ring.AudioLevels[2], 110);
}

TEST_F(Routing, RoomIsAskedForBeforeUnreadAudioIsReached) {
    Pause.EndOfSongDetection = EndOfSong::MediaData;
    MakesRoom = true;
    for (int32_t i = 0; i < 7; ++i) Route(i);
    EXPECT_EQ(RoomWanted, 0);
    EXPECT_TRUE(Ring.Full());
    Route(7);
    EXPECT_EQ(RoomWanted, 1);
    EXPECT_EQ(Ring.Unread(), 6);
    EXPECT_EQ(Ring.OverrunBuffers, 0U);
}

TEST_F(Routing, AudioThatIsWrittenOverUnreadIsCounted) {
    Pause.EndOfSongDetection = EndOfSong::MediaData;
    for (int32_t i = 0; i < 8; ++i) Route(i);
    EXPECT_EQ(Ring.OverrunBuffers, 8U) << "all of the ring counts as read now";
    for (int32_t i = 0; i < 8; ++i) Route(i);
    EXPECT_EQ(Ring.OverrunBuffers, 16U);
}

TEST_F(Routing, WhatNobodyRecordsIsNoOverrun) {
    Pause.EndOfSongDetection = EndOfSong::MediaData;
    Flags.RecordingEnabled = false;
    for (int32_t i = 0; i < 30; ++i) Route(i);
    EXPECT_EQ(Ring.OverrunBuffers, 0U);
    EXPECT_EQ(RoomWanted, 0);
    EXPECT_EQ(Ring.AudioReadIndex, 0) << "only the draining moves it";
}

TEST_F(Routing, RoomThatCannotBeMadeForLackOfAFileEndsTheProgram) {
    Pause.EndOfSongDetection = EndOfSong::MediaData;
    RoomWorks = false;
    for (int32_t i = 0; i < 7; ++i) EXPECT_TRUE(Route(i));
    EXPECT_FALSE(Route(7));
}

}  // namespace Corvetape::Test
