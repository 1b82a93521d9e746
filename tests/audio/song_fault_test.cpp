// Every file operation of a song made to fail in turn.
#include <gtest/gtest.h>

#include <algorithm>

#include "audio/drain.h"
#include "audio/song_bench.h"

namespace Corvetape::Test {

namespace {

/// A song of 120 buffers that is recorded and kept, with tags, with the end of song by silence.
void RecordBySilence(SongBench& bench) {
    bench.Pause.PauseBuffers = 2;
    bench.Record(120);
}

/// The same by media data, through the ring and a cut.
void RecordByMediaData(SongBench& bench) {
    bench.Pause.EndOfSongDetection = EndOfSong::MediaData;
    bench.Flags.RecordCurrentSong = true;
    AudioRing ring;
    ring.Open(400, BufferFrames);
    CutState cut;
    AudioDrain drain({ring, cut, bench.Pause, bench.Flags, bench.Writer});
    for (int32_t i = 0; i < 200; ++i) {
        ring.SetLevel(i == 118 || i == 119 ? 0 : 9000);
        ring.Put(NumberedBuffer(bench.Next++));
        if (i != 110) continue;
        cut.CutPending = true;
        cut.CutIndex = ring.AudioWriteIndex;
    }
    drain.DrainAudioRing(false);
}

struct Course {
    const char* Name;
    void (*Run)(SongBench&);
    int32_t Kept;  ///< buffers of the finished song
};
constexpr Course Courses[] = {{"by silence", RecordBySilence, 118},
                              {"by media data", RecordByMediaData, 118}};

/// Operations of a course without a fault.
uint64_t OperationsOf(const Course& course) {
    SongBench bench;
    const uint64_t before = bench.Disk.OperationCount();
    course.Run(bench);
    return bench.Disk.OperationCount() - before;
}

/// What stands in the temporary folder after the run must be readable, and hold the song from its beginning
/// without a hole.
void ExpectReadable(SongBench& bench, int32_t most) {
    for (const std::string& path : bench.Disk.Tree("/temp/Corvet")) {
        const std::vector<int32_t> buffers = bench.BuffersIn(path);
        EXPECT_EQ(buffers, SongBench::Range(0, static_cast<int32_t>(buffers.size()))) << path;
        EXPECT_LE(buffers.size(), static_cast<size_t>(most)) << path;
        const auto info = ReadWavInfo(bench.Disk, path);
        ASSERT_TRUE(info) << path;
        EXPECT_LE(info->RiffBytes, info->FileBytes);
    }
}

void ExpectNothingRaised(const SongBench& bench) {
    EXPECT_EQ(bench.Writer.SongFileError(), 0);
    EXPECT_EQ(bench.Messages.PendingError, 0);
    EXPECT_TRUE(bench.Flags.RecordingEnabled);
}

void ExpectRaised(const SongBench& bench, int32_t number) {
    EXPECT_EQ(bench.Writer.SongFileError(), number);
    EXPECT_EQ(bench.Writer.SongFileErrorPath(), SongBench::PathOf("240514120000"));
    EXPECT_EQ(bench.Messages.PendingError, number);
    EXPECT_EQ(bench.Messages.PendingErrorText, SongBench::PathOf("240514120000"));
    EXPECT_EQ(bench.Messages.PendingErrorCode, EIO);
    EXPECT_FALSE(bench.Flags.RecordingEnabled);
}

}  // namespace

TEST(SongFaults, AfterAnyFailingOperationTheStateIsAsReportedAndWhatWasWrittenIsReadable) {
    for (const Course& course : Courses) {
        const uint64_t operations = OperationsOf(course);
        ASSERT_GT(operations, 120U);
        for (uint64_t number = 1; number <= operations; ++number) {
            SongBench bench;
            bench.Disk.FailOperation(bench.Disk.OperationCount() + number);
            course.Run(bench);
            ASSERT_EQ(bench.Disk.FailedOperations().size(), 1U);
            const std::string failed = bench.Disk.FailedOperations().front();
            SCOPED_TRACE(std::string(course.Name) + ", operation " + std::to_string(number) + ": " + failed);

            ExpectReadable(bench, course.Kept + 2);
            const bool open = bench.Writer.SongFileOpen();
            EXPECT_EQ(bench.Disk.OpenHandles(), bench.Writer.HasSongFile() ? 1U : 0U);
            if (bench.Closed.empty()) {
                // Broken off: creating or writing.
                EXPECT_EQ(open, bench.Writer.SongFileError() == ErrorWritingSong);
                ExpectRaised(bench, open ? ErrorWritingSong : ErrorCreatingSong);
                EXPECT_TRUE(bench.HandedOver.empty());
                EXPECT_TRUE(bench.Flags.RecordCurrentSong);
            } else {
                EXPECT_FALSE(open);
                EXPECT_EQ(bench.Last().Fate, SongFate::Kept) << "a song is never thrown away for a failure";
                EXPECT_EQ(bench.HandedOver.size(), 1U);
                EXPECT_GE(bench.BuffersIn(bench.Last().TempPath).size(), 118U);
                if (bench.Writer.SongFileError() == 0) {
                    ExpectNothingRaised(bench);
                } else {
                    ExpectRaised(bench, ErrorClosingSong);
                }
            }
        }
    }
}

TEST(SongFaults, AfterAnyFailingOperationTheRecordingCanGoOn) {
    for (const Course& course : Courses) {
        const uint64_t operations = OperationsOf(course);
        for (uint64_t number = 1; number <= operations; ++number) {
            SongBench bench;
            bench.Disk.FailOperation(bench.Disk.OperationCount() + number);
            course.Run(bench);
            SCOPED_TRACE(std::string(course.Name) + ", operation " + std::to_string(number));
            bench.Flags.RecordingEnabled = true;
            bench.Pause.EndOfSongDetection = EndOfSong::Silence;
            bench.Clock.Advance(std::chrono::seconds(1));
            const int32_t first = bench.Next;
            bench.Record(30);
            ASSERT_FALSE(bench.Closed.empty());
            const std::vector<int32_t> buffers = bench.BuffersIn(bench.Last().TempPath);
            ASSERT_GE(buffers.size(), 28U);
            EXPECT_TRUE(std::ranges::equal(std::vector(buffers.end() - 28, buffers.end()),
                                           SongBench::Range(first, 28)));
        }
    }
}

TEST(SongFaults, ADiskThatFillsUpAtAnyByteLeavesAReadableFile) {
    for (uint64_t room = 0; room < 130U * BufferBytes; room += 7919) {
        SongBench bench;
        bench.Disk.SetFreeSpace("/temp/Corvet", room);
        bench.Record(120);
        SCOPED_TRACE("room for " + std::to_string(room));
        const auto whole = static_cast<int32_t>(room < 44 ? 0 : (room - 44) / BufferBytes);
        if (room < 44) {
            EXPECT_EQ(bench.Writer.SongFileError(), ErrorCreatingSong);
            EXPECT_TRUE(bench.Disk.Tree("/temp/Corvet").empty());
            continue;
        }
        const std::vector<int32_t> buffers = bench.BuffersIn(SongBench::PathOf("240514120000"));
        if (whole >= 120) {
            EXPECT_EQ(buffers.size(), 118U);
            continue;
        }
        EXPECT_EQ(buffers, SongBench::Range(0, whole)) << "all that found room";
        EXPECT_EQ(bench.Writer.SongFileError(), ErrorWritingSong);
        EXPECT_EQ(bench.Messages.PendingErrorCode, ENOSPC);
    }
}

TEST(SongFaults, AFileThatCannotBeCreatedEndsTheProgram) {
    SongBench bench;
    bench.Disk.AddFault({.Operation = FileOperation::Create, .Error = EACCES});
    EXPECT_FALSE(bench.Hear(1));
    EXPECT_FALSE(bench.Flags.RecordingEnabled);
    EXPECT_FALSE(bench.Writer.SongFileOpen());
    EXPECT_EQ(bench.Writer.SongFileError(), 903);
    EXPECT_EQ(bench.Writer.LastMmioResult(), EACCES);
    EXPECT_EQ(bench.Messages.PendingErrorCode, EACCES);
    EXPECT_TRUE(bench.Hear(5)) << "recording is off now";
}

TEST(SongFaults, AFailedWriteEndsTheRecordingButNotTheProgram) {
    SongBench bench;
    bench.Hear(10);
    bench.Disk.AddFault({.Operation = FileOperation::Write, .Error = ENOSPC, .Times = 1});
    EXPECT_TRUE(bench.Hear(1));
    EXPECT_FALSE(bench.Flags.RecordingEnabled);
    EXPECT_EQ(bench.Writer.SongFileError(), 905);
    EXPECT_EQ(bench.Writer.SongBytes(), 10 * BufferBytes) << "what failed does not count";
}

TEST(SongFaults, AFileThatMayNotGrowFurtherGoesOnInANextOne) {
    SongBench bench;
    bench.Flags.RecordCurrentSong = true;
    bench.Hear(10);
    bench.Disk.AddFault({.Operation = FileOperation::Write, .Error = EFBIG, .Times = 1});
    EXPECT_TRUE(bench.Hear(5));
    EXPECT_TRUE(bench.Flags.RecordingEnabled);
    EXPECT_EQ(bench.Messages.PendingError, 0);
    ASSERT_EQ(bench.Closed.size(), 1U);
    EXPECT_TRUE(bench.Last().Continues);
    EXPECT_EQ(bench.BuffersIn(bench.Last().TempPath), SongBench::Range(0, 10));
    EXPECT_EQ(bench.BuffersIn(bench.Writer.SongFilePath()).size(), 0U) << "its header follows";
    EXPECT_EQ(bench.Writer.SongBytes(), 5 * BufferBytes);
    EXPECT_EQ(bench.Media.SongMedia.FilePart, 1);
}

TEST(SongFaults, AFileThatTakesNoBufferAtAllIsAFullDisk) {
    SongBench bench;
    bench.Disk.AddFault({.Operation = FileOperation::Write, .Error = EFBIG, .AfterCalls = 1});
    EXPECT_TRUE(bench.Hear(1));
    EXPECT_FALSE(bench.Flags.RecordingEnabled);
    EXPECT_EQ(bench.Messages.PendingErrorCode, EFBIG);
    EXPECT_TRUE(bench.Closed.empty());
}

TEST(SongFaults, AFailureIsReportedWhenItHappensOnceAFile) {
    SongBench bench;
    bench.Hear(10);
    bench.Disk.AddFault({.Operation = FileOperation::Write, .Error = ENOSPC});
    for (int second = 0; second < 3; ++second) {
        bench.Flags.RecordingEnabled = true;
        bench.Hear(1);
    }
    EXPECT_EQ(bench.Failures, (std::vector<SongFailure>{{905, SongBench::PathOf("240514120000"), ENOSPC,
                                                         "28: No space left on device"}}));
}

TEST(SongFaults, AFailedWriteOfTheLastBufferDoesNotCloseTheSong) {
    SongBench bench;
    bench.Flags.RecordCurrentSong = true;
    bench.Hear(30);
    bench.Disk.AddFault({.Operation = FileOperation::Write, .Times = 1});
    EXPECT_TRUE(bench.HearPause());
    EXPECT_TRUE(bench.Writer.SongFileOpen());
    EXPECT_TRUE(bench.Closed.empty());
}

TEST(SongFaults, ASongGoesOnInItsFileWhenRecordingIsEnabledAgain) {
    SongBench bench;
    bench.HearPause();  // buffer 0: the song begins at a boundary
    bench.Hear(10);
    bench.Disk.AddFault({.Operation = FileOperation::Write, .Error = ENOSPC, .Times = 1});
    bench.Hear(5);  // the first one fails, the others are not taken
    bench.Flags.RecordingEnabled = true;
    bench.Hear(5);
    bench.Next += 3;  // what a rule takes out is not lost
    bench.Record(15);
    std::vector<int32_t> expected = SongBench::Range(1, 10);
    for (const int32_t number : SongBench::Range(16, 5)) expected.push_back(number);
    for (const int32_t number : SongBench::Range(24, 13)) expected.push_back(number);
    EXPECT_EQ(bench.BuffersIn(bench.Last().TempPath), expected);
    EXPECT_FALSE(bench.Last().Whole);
    EXPECT_EQ(bench.Last().LostFrames, 5U * BufferFrames);
}

TEST(SongFaults, WhatTheDiskRefusesOfTheBeginningIsLost) {
    SongBench bench;
    bench.HearPause();
    bench.Disk.AddFault({.Operation = FileOperation::Write, .Error = ENOSPC, .AfterCalls = 1, .Times = 1});
    bench.Hear(5);  // the header is written, the first buffer is not, the others are not taken
    bench.Flags.RecordingEnabled = true;
    bench.Record(15);
    EXPECT_EQ(bench.BuffersIn(bench.Last().TempPath), SongBench::Range(6, 13));
    EXPECT_FALSE(bench.Last().Whole);
    EXPECT_EQ(bench.Last().LostFrames, 5U * BufferFrames);
    EXPECT_EQ(bench.Last().BeginFrame, BufferFrames);
}

TEST(SongFaults, OfAPauseThatTheDiskHasRefusedOnlyTheRestIsTakenOff) {
    SongBench bench;
    bench.Pause.PauseBuffers = 4;
    bench.Flags.RecordCurrentSong = true;
    bench.HearPause();
    bench.Hear(30);
    bench.Disk.AddFault({.Operation = FileOperation::Write, .Error = ENOSPC, .Times = 1});
    bench.Hear(5);
    bench.Flags.RecordingEnabled = true;
    bench.Hear(1);
    bench.HearPause();
    EXPECT_EQ(bench.BuffersIn(bench.Last().TempPath), SongBench::Range(1, 30)) << "two were taken off";
    EXPECT_EQ(bench.Last().LostFrames, 5U * BufferFrames);
}

TEST(SongFaults, OnlyTheFirstFailureIsKept) {
    SongBench bench;
    bench.Hear(10);
    const size_t fault = bench.Disk.AddFault({.Operation = FileOperation::Write, .Error = ENOSPC});
    bench.Hear(1);
    bench.Disk.RemoveFault(fault);
    bench.Flags.RecordingEnabled = true;
    bench.Writer.AbortSong();
    bench.Flags.RecordingEnabled = true;
    bench.Disk.AddFault({.Operation = FileOperation::Create, .Error = EACCES});
    EXPECT_FALSE(bench.Hear(1));
    EXPECT_EQ(bench.Writer.SongFileError(), 905);
    EXPECT_EQ(bench.Messages.PendingError, 905);
    EXPECT_EQ(bench.Messages.PendingErrorCode, ENOSPC);
    EXPECT_EQ(bench.Writer.LastMmioResult(), EACCES);
}

TEST(SongFaults, AMessageOfSomebodyElseThatCameFirstStays) {
    SongBench bench;
    bench.Messages.RaiseError(906, "disk", 5);
    bench.Disk.AddFault({.Operation = FileOperation::Create, .Error = EACCES});
    bench.Hear(1);
    EXPECT_EQ(bench.Writer.SongFileError(), 903);
    EXPECT_EQ(bench.Messages.PendingError, 906);
}

TEST(SongFaults, ACloseThatFailsGoesOnWithItsRemainingSteps) {
    for (const FileOperation operation : {FileOperation::Seek, FileOperation::Write, FileOperation::Close}) {
        SongBench bench;
        bench.Media.SongMedia.Cover = "cover";
        bench.Flags.RecordCurrentSong = true;
        bench.Flags.StopAtEndOfSong = true;
        bench.Hear(30);
        const uint64_t last = operation == FileOperation::Write ? 1U : 0U;  // the last buffer itself succeeds
        bench.Disk.AddFault({.Operation = operation, .AfterCalls = last});
        EXPECT_TRUE(bench.HearPause());
        SCOPED_TRACE(NameOf(operation));
        EXPECT_EQ(bench.Writer.SongFileError(), 904);
        EXPECT_FALSE(bench.Flags.RecordingEnabled);
        EXPECT_FALSE(bench.Flags.StopAtEndOfSong);
        EXPECT_FALSE(bench.Flags.RecordCurrentSong);
        EXPECT_FALSE(bench.Writer.SongFileOpen());
        EXPECT_EQ(bench.Writer.SongBytes(), 0);
        EXPECT_EQ(bench.Covers.size(), 1U);
        EXPECT_EQ(bench.HandedOver.size(), 1U);
        EXPECT_EQ(bench.Last().Fate, SongFate::Kept);
    }
}

TEST(SongFaults, ATrimThatFailsLeavesThePauseInTheSong) {
    SongBench bench;
    bench.Flags.RecordCurrentSong = true;
    bench.Hear(30);
    bench.Disk.AddFault({.Operation = FileOperation::Seek, .Times = 1});
    bench.HearPause();
    EXPECT_EQ(bench.Writer.SongFileError(), 904);
    EXPECT_EQ(bench.BuffersIn(bench.Last().TempPath), SongBench::Range(0, 31));
}

TEST(SongFaults, ADiscardedSongGoesEvenIfTheFolderCannotBeListed) {
    SongBench bench;
    bench.Hear(30);
    bench.Disk.AddFault({.Operation = FileOperation::Look});
    bench.HearPause();
    EXPECT_TRUE(bench.Disk.Tree("/temp/Corvet").empty());
    ExpectNothingRaised(bench);
}

TEST(SongFaults, ADiscardedSongThatCannotBeDeletedIsNoFailureOfTheRecording) {
    SongBench bench;
    bench.Flags.RecordNextSong = true;
    bench.Hear(30);
    bench.Disk.AddFault({.Operation = FileOperation::Delete});
    bench.HearPause();
    ExpectNothingRaised(bench);
    EXPECT_TRUE(bench.Flags.RecordCurrentSong);
    EXPECT_FALSE(bench.Writer.SongFileOpen());
}

TEST(SongFaults, ACrashAtAnyMomentLeavesAFileThatPlaysAndCanBeRepaired) {
    SongBench bench;
    bench.Flags.RecordCurrentSong = true;
    for (int32_t heard = 1; heard <= 260; ++heard) {
        bench.Hear(1);
        if (heard % 13 != 0) continue;
        SimFiles left;
        left.Restore(bench.Disk.Snapshot());
        const std::string path = SongBench::PathOf("240514120000");
        const auto info = ReadWavInfo(left, path);
        ASSERT_TRUE(info);
        EXPECT_GT(info->DataBytes + 100U * BufferBytes, static_cast<uint64_t>(heard) * BufferBytes);
        EXPECT_TRUE(RepairWavHeader(left, path));
        EXPECT_EQ(ReadWavInfo(left, path)->DataBytes, static_cast<uint64_t>(heard) * BufferBytes);
    }
}

TEST(SongFaults, APowerCutLeavesASongThatPlaysUpToTheLastFiveSeconds) {
    SongBench bench;
    std::vector<uint64_t> onTheDisk;  // bytes of audio that a header told of when the disk was asked
    SimDiskImage lastImage;
    bench.Disk.NoticeSyncs([&](const std::string& path) {
        lastImage = bench.Disk.Snapshot();
        onTheDisk.push_back(ReadWavInfo(bench.Disk, path)->DataBytes);
    });
    bench.Flags.RecordCurrentSong = true;
    bench.Hear(250);
    EXPECT_EQ(onTheDisk, (std::vector<uint64_t>{100 * BufferBytes, 200 * BufferBytes}));
    bench.HearPause();
    ASSERT_EQ(onTheDisk.size(), 3U) << "and when it is complete";
    SimFiles left;
    left.Restore(lastImage);
    EXPECT_EQ(ReadWavInfo(left, bench.Last().TempPath)->Tags.size(), 4U);
    EXPECT_EQ(onTheDisk[2], bench.Last().Frames * sizeof(Frame));
}

TEST(SongFaults, ForASongThatNobodyWantsTheDiskIsNotAskedAtItsEnd) {
    SongBench bench;
    int32_t asked = 0;
    bench.Disk.NoticeSyncs([&](const std::string&) { ++asked; });
    bench.Hear(150);
    bench.HearPause();
    EXPECT_EQ(asked, 1);
}

}  // namespace Corvetape::Test
