// Songs that are longer than a file can be.
#include <gtest/gtest.h>

#include "audio/drain.h"
#include "audio/song_bench.h"
#include "audio/swallowing_disk.h"

namespace Corvetape::Test {

namespace {

/// Files hold 10 buffers and a bit.
class LongSongs : public testing::Test, protected SongBench {
 protected:
    LongSongs() : SongBench(10 * BufferBytes + 100) { Flags.RecordCurrentSong = true; }
};

}  // namespace

TEST_F(LongSongs, ASongGoesOnInNextFilesWithoutALostBuffer) {
    Hear(24);
    HearPause();
    ASSERT_EQ(Closed.size(), 3U);
    EXPECT_EQ(BuffersIn(Closed[0].TempPath), Range(0, 10));
    EXPECT_EQ(BuffersIn(Closed[1].TempPath), Range(10, 10));
    EXPECT_EQ(BuffersIn(Closed[2].TempPath), Range(20, 3)) << "the last one without the pause";
    EXPECT_EQ(Disk.OpenHandles(), 0U);
}

TEST_F(LongSongs, ABufferThatJustFitsStaysInTheFile) {
    Hear(10);
    EXPECT_EQ(Closed.size(), 0U);
    Hear(1);
    EXPECT_EQ(Closed.size(), 1U);
}

TEST_F(LongSongs, TheFilesOfASongAreNumberedFromOneOn) {
    Hear(24);
    HearPause();
    EXPECT_EQ(Closed[0].Media.FilePart, 1);
    EXPECT_EQ(Closed[1].Media.FilePart, 2);
    EXPECT_EQ(Closed[2].Media.FilePart, 3);
    EXPECT_EQ(HandedOver.size(), 3U);
    Record(8);
    EXPECT_EQ(Last().Media.FilePart, 0) << "the next song is in one file again";
}

TEST_F(LongSongs, AllButTheLastFileSayThatTheSongGoesOn) {
    Record(4);
    Hear(24);
    HearPause();
    EXPECT_TRUE(Closed[1].Continues);
    EXPECT_TRUE(Closed[2].Continues);
    EXPECT_FALSE(Closed[3].Continues);
    for (size_t i = 1; i < 4; ++i) EXPECT_FALSE(Closed[i].Whole) << i;
    Record(5);
    EXPECT_TRUE(Last().Whole);
}

TEST_F(LongSongs, TheFramesOfTheFilesFollowOneAnother) {
    Hear(24);
    HearPause();
    EXPECT_EQ(Closed[0].BeginFrame, 0U);
    EXPECT_EQ(Closed[1].BeginFrame, Closed[0].EndFrame);
    EXPECT_EQ(Closed[2].BeginFrame, Closed[1].EndFrame);
    EXPECT_EQ(Closed[2].EndFrame, 23U * BufferFrames);
}

TEST_F(LongSongs, TheSongHasNotEndedSoItsFlagsStay) {
    Flags.RecordNextSong = true;
    Flags.StopAtEndOfSong = true;
    Flags.QuitAtEndOfSong = true;
    Flags.DisableAtEndOfSong = true;
    Hear(15);
    EXPECT_EQ(Closed.size(), 1U);
    EXPECT_TRUE(Flags.RecordCurrentSong);
    EXPECT_TRUE(Flags.RecordNextSong);
    EXPECT_TRUE(Flags.StopAtEndOfSong);
    EXPECT_TRUE(Flags.RecordingEnabled);
    EXPECT_EQ(QuitsWanted, 0);
}

TEST_F(LongSongs, AFullFileThatNobodyWantsIsDeletedAndTheWishForTheNextSongStays) {
    Flags.RecordCurrentSong = false;
    Flags.RecordNextSong = true;
    Flags.QuitAtEndOfSong = true;
    Hear(15);
    EXPECT_EQ(Last().Fate, SongFate::Unwanted);
    EXPECT_TRUE(Last().Continues);
    EXPECT_FALSE(Disk.Exists(Last().TempPath) && Last().TempPath != Writer.SongFilePath());
    EXPECT_TRUE(Flags.RecordNextSong);
    EXPECT_FALSE(Flags.RecordCurrentSong);
    EXPECT_EQ(QuitsWanted, 0);
    EXPECT_EQ(Disk.Tree("/temp/Corvet").size(), 1U);
}

TEST_F(LongSongs, AFullFileIsKeptHoweverShortAndSoIsTheEndOfItsSong) {
    Pause.IgnoreShortSongs = 1;  // 20 buffers
    Hear(23);
    HearPause();
    ASSERT_EQ(Closed.size(), 3U);
    EXPECT_EQ(Closed[0].Fate, SongFate::Kept);
    EXPECT_EQ(Closed[2].Fate, SongFate::Kept);
    Record(20);
    EXPECT_EQ(Last().Fate, SongFate::Short) << "20 buffers in all, 18 without the pause";
}

TEST_F(LongSongs, ALastFileThatIsAllPauseIsDiscarded) {
    Hear(20);
    HearPause();
    ASSERT_EQ(Closed.size(), 3U);
    EXPECT_EQ(Last().Fate, SongFate::Short);
    EXPECT_FALSE(Disk.Exists(Last().TempPath));
}

TEST_F(LongSongs, NoPauseIsTakenOffWhereAFileIsFull) {
    Hear(11);
    EXPECT_EQ(Last().Frames, 10U * BufferFrames);
}

TEST_F(LongSongs, TheHistoryIsMarkedAtTheSongsStartAndEndOnly) {
    Signal.History.Append(50);
    Hear(1);
    Signal.History.Append(60);
    Hear(15);
    EXPECT_EQ(Signal.History[1], 60);
    HearPause();
    EXPECT_EQ(Signal.History[1], MarkSongEnd);
}

TEST_F(LongSongs, ANextFileThatCannotBeMadeEndsTheProgram) {
    Hear(10);
    Disk.AddFault({.Operation = FileOperation::Create, .Error = EACCES});
    EXPECT_FALSE(Hear(1));
    EXPECT_EQ(Writer.SongFileError(), ErrorCreatingSong);
    EXPECT_FALSE(Flags.RecordingEnabled);
    EXPECT_EQ(BuffersIn(Closed[0].TempPath), Range(0, 10));
    EXPECT_EQ(HandedOver.size(), 1U);
}

TEST_F(LongSongs, WhileTheRingIsDrainedANextFileThatCannotBeMadeEndsTheProgramToo) {
    Pause.EndOfSongDetection = EndOfSong::MediaData;
    AudioRing ring;
    ring.Open(400, BufferFrames);
    CutState cut;
    AudioDrain drain({ring, cut, Pause, Flags, Writer});
    for (int32_t i = 0; i < 200; ++i) ring.Put(NumberedBuffer(i));
    Disk.AddFault({.Operation = FileOperation::Create, .AfterCalls = 1});
    EXPECT_FALSE(drain.DrainAudioRing(false));
    EXPECT_EQ(ring.AudioReadIndex, 10) << "what found no file stays unread";
    ASSERT_EQ(Closed.size(), 1U);
    EXPECT_EQ(BuffersIn(Closed[0].TempPath), Range(0, 10));
}

TEST_F(LongSongs, AFullFileThatCannotBeFinishedEndsTheRecordingButStaysReadable) {
    Hear(10);
    Disk.AddFault({.Operation = FileOperation::Close});
    EXPECT_TRUE(Hear(1));
    EXPECT_EQ(Writer.SongFileError(), ErrorClosingSong);
    EXPECT_FALSE(Flags.RecordingEnabled);
    EXPECT_FALSE(Writer.SongFileOpen());
    EXPECT_EQ(BuffersIn(Closed[0].TempPath), Range(0, 10));
    Disk.ClearFaults();
    Flags.RecordingEnabled = true;
    Next = 100;
    Record(9);
    EXPECT_EQ(Last().Media.FilePart, 0) << "the song was broken off; this is another file";
}

TEST_F(LongSongs, AnInputOfAnotherRateGoesOnInANextFile) {
    Hear(4);
    Format = MakeWaveFormat(48000);
    Writer.WriteBufferToSong(MakeBuffer({7, 7}, 0, 2400), false);
    ASSERT_EQ(Closed.size(), 1U);
    EXPECT_EQ(Closed[0].FramesPerSecond, 44100U);
    EXPECT_EQ(BuffersIn(Closed[0].TempPath), Range(0, 4));
    Pause.PauseBuffers = 0;
    Writer.CloseSongFile();
    EXPECT_EQ(Last().FramesPerSecond, 48000U);
    EXPECT_EQ(Last().Frames, 2400U);
    EXPECT_EQ(ReadWavInfo(Disk, Last().TempPath)->Format, Format);
}

TEST(LongSongLimits, AFileHoldsAtLeastOneBuffer) {
    SongBench bench(1);
    bench.Pause.PauseBuffers = 0;
    bench.Record(3);
    ASSERT_EQ(bench.Closed.size(), 3U);
    for (const ClosedSong& song : bench.Closed) EXPECT_EQ(song.Frames, BufferFrames);
}

TEST(LongSongLimits, ALimitBeyondTheFormatsIsTheFormats) {
    SongBench bench(uint64_t{1} << 40U);
    bench.Record(30);
    EXPECT_EQ(bench.Closed.size(), 1U);
}

TEST(LongSongLimits, AFileMayBeFilledToTheLastByte) {
    SongBench bench(10 * BufferBytes);
    bench.Flags.RecordCurrentSong = true;
    bench.Hear(10);
    EXPECT_TRUE(bench.Closed.empty());
    bench.Hear(1);
    EXPECT_EQ(bench.BuffersIn(bench.Last().TempPath), SongBench::Range(0, 10));
}

TEST(LongSongLimits, AtFourGibibytesASongGoesOnInTheNextFileWithoutALostFrame) {
    SongBench bench;
    SwallowingDisk disk;
    std::vector<ClosedSong> closed;
    SongEvents events;
    events.SongClosed = [&](const ClosedSong& song) { closed.push_back(song); };
    SongWriter writer({disk, bench.Flags, bench.Signal, bench.Pause, bench.Media, bench.Messages, bench.Cut},
                      {bench.Format, bench.Options, bench.Folders, bench.Clock}, events);
    bench.Flags.RecordCurrentSong = true;
    bench.Pause.PauseBuffers = 0;
    WaveBuffer buffer = NumberedBuffer(0);
    constexpr uint64_t buffers = 0x1'0000'0000U / BufferBytes + 100;
    for (uint64_t i = 0; i < buffers; ++i) {
        buffer.StreamPosition = i * BufferFrames;
        ASSERT_TRUE(writer.WriteBufferToSong(buffer, i + 1 == buffers));
    }
    ASSERT_EQ(closed.size(), 2U);
    EXPECT_LE(closed[0].Frames * sizeof(Frame), MostSongBytes);
    EXPECT_GT(closed[0].Frames * sizeof(Frame) + BufferBytes, MostSongBytes) << "as much as it may hold";
    EXPECT_EQ(closed[1].BeginFrame, closed[0].EndFrame);
    EXPECT_EQ(closed[0].Frames + closed[1].Frames, buffers * BufferFrames);
    EXPECT_EQ(closed[0].Media.Size, static_cast<int32_t>(closed[0].Frames / 44100));
}

}  // namespace Corvetape::Test
