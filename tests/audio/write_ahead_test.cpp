// What waits in the ring is on the disk already, so that it outlives the process.
#include <gtest/gtest.h>

#include <cerrno>

#include "audio/drain_bench.h"

namespace Corvetape::Test {

namespace {

/// A ring that is written ahead, buffer by buffer, as the routing does it.
class WritingAhead : public Drains {
 protected:
    void Hear(int32_t count, int32_t level = Loud) {
        for (int32_t i = 0; i < count; ++i) {
            Arrive(1, level);
            Drain.WriteAhead();
        }
    }

    /// Lets time pass too: the ring is drained every second.
    void HearSeconds(int32_t seconds) {
        for (int32_t second = 0; second < seconds; ++second) {
            Hear(BuffersPerSecond);
            ASSERT_TRUE(Drain.DrainAudioRing(false));
        }
    }

    std::string Path() const { return Writer.SongFilePath(); }
    size_t FilesThere() const { return Disk.Tree(Folders.SongTempFolder).size(); }
};

}  // namespace

TEST_F(WritingAhead, WhatNobodyHasDrainedYetOutlivesTheProcess) {
    Hear(1);
    EXPECT_EQ(BuffersLeftIn(Path()), Range(0, 1));
    Hear(149);
    EXPECT_EQ(BuffersLeftIn(Path()), Range(0, 150));
    EXPECT_FALSE(Writer.SongFileOpen()) << "nothing of it is known to belong to a song";
    EXPECT_TRUE(Writer.HasSongFile());
}

TEST_F(WritingAhead, NoBufferIsWrittenTwice) {
    FileFault fault;  // the file takes each buffer once, and a header every five seconds
    fault.Operation = FileOperation::Write;
    fault.AfterBytes = WavHeaderBytes + uint64_t{1200} * BufferBytes + uint64_t{12} * (WavHeaderBytes - 4);
    Disk.AddFault(fault);
    HearSeconds(60);
    Drain.WriteOut();
    EXPECT_TRUE(Disk.FailedOperations().empty());
    EXPECT_EQ(Written(), 1200);
    EXPECT_EQ(BuffersLeftIn(Path()), Range(0, 1200));
}

TEST_F(WritingAhead, TheHeaderGivesWhatWasWrittenAheadToWithinFiveSeconds) {
    HearSeconds(60);
    const auto info = ReadWavInfo(Disk, Path());
    ASSERT_TRUE(info);
    EXPECT_GT(info->DataBytes, 1100 * static_cast<uint64_t>(BufferBytes));
    EXPECT_LT(Written(), 1110);
}

TEST_F(WritingAhead, TheOldSongEndsAtItsCutAndTheNewOneIsAheadWithTheNextBuffer) {
    Hear(180);
    RaiseCut();
    Hear(70);
    const std::string old = Path();
    EXPECT_EQ(BuffersLeftIn(old), Range(0, 250));
    for (const int32_t quiet : {200, 201, 202, 203}) SetLevel(quiet, 12);
    EXPECT_TRUE(Drain.DrainAudioRing(false));
    EXPECT_EQ(BuffersIn(old), Range(0, 200));
    EXPECT_EQ(ReadWavInfo(Disk, old)->FileBytes, ReadWavInfo(Disk, old)->RiffBytes);
    Hear(1);
    ASSERT_NE(Path(), old);
    EXPECT_EQ(BuffersLeftIn(Path()), Range(204, 47));
    Hear(10);
    EXPECT_EQ(BuffersLeftIn(Path()), Range(204, 57));
    Drain.WriteOut();
    Writer.CloseSongFile();
    EXPECT_EQ(BuffersIn(Last().TempPath), Range(204, 57));
    EXPECT_EQ(Last().BeginFrame, 204U * BufferFrames);
}

TEST_F(WritingAhead, AWindowThatGoesIntoBothSongsIsInBothFiles) {
    Pause.DuplicatepartOfSong = true;
    Hear(180);
    RaiseCut();
    Hear(60);
    const std::string old = Path();
    Drain.DrainAudioRing(false);
    EXPECT_EQ(BuffersIn(old), Range(0, 240));
    Hear(1);
    EXPECT_EQ(BuffersLeftIn(Path()), Range(121, 120));
    Hear(5);
    Drain.WriteOut();
    Writer.CloseSongFile();
    EXPECT_EQ(BuffersIn(Last().TempPath), Range(121, 125));
}

TEST_F(WritingAhead, AudioThatNoSongTakesIsCutOff) {
    HearSeconds(12);
    Ring.AudioReadIndex = Ring.AudioWriteIndex;  // nobody records it
    Hear(1);
    const int32_t counted = static_cast<int32_t>(Written());
    std::vector<int32_t> left = Range(0, counted);
    left.push_back(240);
    EXPECT_EQ(BuffersLeftIn(Path()), left);
    Drain.WriteOut();
    Writer.CloseSongFile();
    EXPECT_EQ(BuffersIn(Last().TempPath), left);
}

TEST_F(WritingAhead, AJumpOfTheReadIndexInAnOpenFileLeavesOutWhatItPasses) {
    HearSeconds(12);
    const std::string path = Path();
    const auto counted = static_cast<int32_t>(Written());
    Ring.AudioReadIndex = 230;
    Hear(10);
    Drain.WriteOut();
    Hear(5);
    std::vector<int32_t> expected = Range(0, counted);
    for (const int32_t number : Range(230, 25)) expected.push_back(number);
    EXPECT_EQ(BuffersLeftIn(path), expected);
    Drain.WriteOut();
    Writer.CloseSongFile();
    EXPECT_EQ(BuffersIn(path), expected);
}

TEST_F(WritingAhead, WhatTheDiskRefusesIsTriedAgainASecondLaterAndNotReported) {
    Hear(10);
    FileFault fault;
    fault.Operation = FileOperation::Write;
    fault.Error = ENOSPC;
    fault.Times = 1;
    Disk.AddFault(fault);
    Hear(1 + BuffersPerSecond - 1);
    EXPECT_EQ(BuffersLeftIn(Path()), Range(0, 10));
    Hear(1);
    EXPECT_EQ(BuffersLeftIn(Path()), Range(0, 31));
    EXPECT_TRUE(Failures.empty());
    EXPECT_TRUE(Flags.RecordingEnabled);
    Hear(200);
    Drain.DrainAudioRing(false);
    Drain.WriteOut();
    Writer.CloseSongFile();
    EXPECT_EQ(BuffersIn(Last().TempPath), Range(0, 231));
    EXPECT_EQ(Last().LostFrames, 0U);
}

TEST_F(WritingAhead, ADiskThatStaysFullIsReportedWhenTheBufferIsDue) {
    HearSeconds(20);
    Disk.SetFreeSpace("/", 0);
    HearSeconds(4);
    EXPECT_TRUE(Failures.empty());
    HearSeconds(6);
    ASSERT_EQ(Failures.size(), 1U);
    EXPECT_EQ(Failures[0].Number, ErrorWritingSong);
    EXPECT_EQ(Failures[0].Code, ENOSPC);
    EXPECT_EQ(BuffersIn(Path()), Range(0, 400));
}

TEST_F(WritingAhead, AFileThatCannotBeMadeAheadEndsNothing) {
    FileFault fault;
    fault.Operation = FileOperation::Create;
    fault.Times = 2;
    Disk.AddFault(fault);
    Hear(2 * BuffersPerSecond);
    EXPECT_FALSE(Writer.HasSongFile());
    EXPECT_EQ(Path(), "");
    EXPECT_TRUE(Failures.empty());
    Hear(1);
    EXPECT_EQ(BuffersLeftIn(Path()), Range(0, 41));
}

TEST_F(WritingAhead, AFileMadeAheadGoesWithTheCloseIfNoSongWasBegun) {
    Hear(100);
    EXPECT_EQ(FilesThere(), 1U);
    EXPECT_TRUE(Writer.CloseSongFile());
    EXPECT_EQ(FilesThere(), 0U);
    EXPECT_TRUE(Closed.empty());
    Hear(1);
    EXPECT_EQ(BuffersLeftIn(Path()), Range(0, 101)) << "what is unread has a file again";
    Writer.AbortSong();
    EXPECT_EQ(FilesThere(), 0U);
    EXPECT_FALSE(Writer.HasSongFile());
}

TEST_F(WritingAhead, WhileRecordingIsOffNothingIsWritten) {
    Flags.RecordingEnabled = false;
    Hear(50);
    EXPECT_EQ(FilesThere(), 0U);
}

TEST_F(WritingAhead, AFileMadeAheadOfAnotherFormatIsMadeAnew) {
    Hear(20);
    const std::string first = Path();
    Format = MakeWaveFormat(48000);
    Ring.Open(400, 2400);
    Hear(1);
    EXPECT_EQ(FilesThere(), 1U);
    EXPECT_EQ(ReadWavInfo(Disk, Path())->Format.nSamplesPerSec, 48000U);
}

TEST_F(WritingAhead, ASongThatIsFollowedRoundTheRingIsTheSameAsWithoutIt) {
    Hear(300);
    Drain.DrainAudioRing(false);
    Ring.AudioReadIndex = 299;
    RaiseCut();
    Hear(60);
    for (int32_t number = 299; number < 361; ++number) SetLevel(number, Loud);
    SetLevel(299, 0);
    Drain.DrainAudioRing(false);
    ASSERT_EQ(Closed.size(), 1U);
    std::vector<int32_t> expected = Range(0, 200);
    for (const int32_t number : Range(299, 61)) expected.push_back(number);
    for (const int32_t number : Range(0, 299)) expected.push_back(number);
    EXPECT_EQ(BuffersIn(Last().TempPath), expected);
}

/// Parts of 4 seconds.
class PartsWrittenAhead : public testing::Test, protected SongBench {
 protected:
    PartsWrittenAhead() : SongBench(80 * BufferBytes), Drain({Ring, Cut, Pause, Flags, Writer}) {
        Pause.EndOfSongDetection = EndOfSong::FixedTime;
        Flags.RecordCurrentSong = true;
        Ring.Open(400, BufferFrames);
    }
    AudioRing Ring;
    AudioDrain Drain;
};

TEST_F(PartsWrittenAhead, WhatWaitsWhileAFileBecomesFullOutlivesTheProcessToo) {
    for (int32_t i = 0; i < 275; ++i) {
        Ring.Put(NumberedBuffer(Next++));
        Drain.WriteAhead();
        if (i % BuffersPerSecond == 0) {
            ASSERT_TRUE(Drain.DrainAudioRing(false));
        }
    }
    // The second file takes 80 buffers, and holds those that come after them until a third is begun.
    EXPECT_GT(Ring.Unread(), 100);
    ASSERT_EQ(Closed.size(), 1U);
    EXPECT_EQ(BuffersLeftIn(Writer.SongFilePath()), Range(80, 195));
}

TEST(LongestRing, FitsIntoWhatALargestSongLeavesOfItsFile) {
    constexpr uint64_t mostBytes = uint64_t{AudioRing::MostSlots} * 48000 / BuffersPerSecond * sizeof(Frame);
    EXPECT_LE(MostSongBytes + mostBytes, MostWavDataBytes);
}

TEST_F(PartsWrittenAhead, ASongOfSeveralFilesLosesNothingBetweenThem) {
    for (int32_t i = 0; i < 1000; ++i) {
        Ring.Put(NumberedBuffer(Next++));
        Drain.WriteAhead();
        if (i % BuffersPerSecond == 0) {
            ASSERT_TRUE(Drain.DrainAudioRing(false));
        }
    }
    Drain.WriteOut();
    Writer.CloseSongFile();
    ASSERT_EQ(Closed.size(), 13U);
    int32_t first = 0;
    for (const ClosedSong& part : Closed) {
        EXPECT_EQ(BuffersIn(part.TempPath), Range(first, std::min(80, 1000 - first)));
        first += 80;
    }
}

}  // namespace Corvetape::Test
