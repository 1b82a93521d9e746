#include "audio/song_writer.h"

#include <gtest/gtest.h>

#include "audio/song_bench.h"

namespace Corvetape::Test {

namespace {

class Songs : public testing::Test, protected SongBench {};

}  // namespace

// Writing.

TEST_F(Songs, InTheOtherModesNothingIsWrittenHere) {
    for (const EndOfSong mode : {EndOfSong::MediaData, EndOfSong::FixedTime}) {
        Pause.EndOfSongDetection = mode;
        EXPECT_TRUE(Hear(3));
        EXPECT_TRUE(HearPause());
        EXPECT_FALSE(Writer.SongFileOpen());
    }
    EXPECT_TRUE(Begun.empty());
}

TEST_F(Songs, NothingIsWrittenWhileRecordingIsOff) {
    Flags.RecordingEnabled = false;
    EXPECT_TRUE(Hear(3));
    EXPECT_FALSE(Writer.SongFileOpen());
}

TEST_F(Songs, TheFirstBufferBeginsTheFileWhetherOrNotAnybodyWantsIt) {
    EXPECT_TRUE(Hear(1));
    EXPECT_TRUE(Writer.SongFileOpen());
    EXPECT_EQ(Writer.SongBaseName(), "240514120000");
    EXPECT_EQ(Writer.SongFilePath(), PathOf("240514120000"));
    EXPECT_EQ(Begun, (std::vector<std::string>{PathOf("240514120000")}));
    EXPECT_EQ(Writer.SongBytes(), BufferBytes);
    EXPECT_EQ(Writer.LastMmioResult(), BufferBytes);
}

TEST_F(Songs, AnEndWithoutAFileHasNothingToEnd) {
    EXPECT_TRUE(HearPause());
    EXPECT_FALSE(Writer.SongFileOpen());
    EXPECT_TRUE(Begun.empty());
    EXPECT_TRUE(Closed.empty());
}

TEST_F(Songs, TheLastBufferOfASongIsWrittenBeforeTheClose) {
    Pause.PauseBuffers = 0;
    Record(5);
    EXPECT_EQ(BuffersIn(Last().TempPath), Range(0, 5));
}

TEST_F(Songs, ABufferThatHoldsNothingIsNoFailure) {
    Hear(1);
    WaveBuffer buffer = NumberedBuffer(1);
    buffer.dwBytesRecorded = 0;
    EXPECT_EQ(Writer.WriteBuffer(buffer), SongWriter::Written::Yes);
    EXPECT_EQ(Writer.SongBytes(), BufferBytes);
}

TEST_F(Songs, WithoutAFileABufferCannotBeWritten) {
    EXPECT_EQ(Writer.WriteBuffer(NumberedBuffer(0)), SongWriter::Written::Failed);
    EXPECT_TRUE(Flags.RecordingEnabled);
}

TEST_F(Songs, AShortLastBufferIsWrittenAsFarAsItGoes) {
    Hear(1);
    WaveBuffer buffer = NumberedBuffer(1);
    buffer.dwBytesRecorded = 400;
    Writer.WriteBufferToSong(buffer, false);
    EXPECT_EQ(Writer.SongBytes(), BufferBytes + 400);
}

// Creating.

TEST_F(Songs, WhileRecordingIsOffAFileIsOnlyNamed) {
    Flags.RecordingEnabled = false;
    EXPECT_TRUE(Writer.CreateSongFile());
    EXPECT_FALSE(Writer.SongFileOpen());
    EXPECT_EQ(Writer.SongBaseName(), "240514120000");
    EXPECT_TRUE(Disk.Tree("/temp/Corvet").empty());
}

TEST_F(Songs, ASongIsNeverWrittenOverAnotherOfTheSameSecond) {
    Record(5);
    Record(5);
    Record(5);
    EXPECT_EQ(HandedOver, (std::vector<std::string>{"240514120000", "240514120000-2", "240514120000-3"}));
    EXPECT_EQ(BuffersIn(PathOf("240514120000")), Range(0, 3));
    EXPECT_EQ(BuffersIn(PathOf("240514120000-2")), Range(5, 3));
}

TEST_F(Songs, ANameCannotLeadOutOfItsFolder) {
    Options.MusicFileTemplate[0] = "\"../../etc\\passwd\"";
    Hear(1);
    EXPECT_EQ(Writer.SongBaseName(), ".._.._etc_passwd");
    Writer.AbortSong();
    Flags.RecordingEnabled = true;
    Options.MusicFileTemplate[0] = "yymmddhhnnss";
    Hear(1);
    EXPECT_EQ(Writer.SongBaseName(), "240514120000");
}

TEST_F(Songs, AnEmptyTextAsTemplateStillGivesAName) {
    Options.MusicFileTemplate[0] = "\"\"";
    Hear(1);
    EXPECT_EQ(Writer.SongBaseName(), "_");
}

TEST(SongNames, HaveThePrefixOfTheRunBeforeTheDate) {
    SongBench bench;
    SongWriter writer(
        {bench.Disk, bench.Flags, bench.Signal, bench.Pause, bench.Media, bench.Messages, bench.Cut},
        {bench.Format, bench.Options, bench.Folders, bench.Clock, "show "}, {});
    EXPECT_TRUE(writer.CreateSongFile());
    EXPECT_EQ(writer.SongBaseName(), "show 240514120000");
}

TEST_F(Songs, TheStartOfASongIsMarkedInTheHistoryBySign) {
    Signal.History.Append(300);
    Signal.History.Append(700);
    Hear(1);
    EXPECT_EQ(Signal.History[1], -700);
    EXPECT_EQ(Signal.History[0], 300);
    EXPECT_TRUE(Signal.History.HistogramRedraw);
    Hear(1);
    EXPECT_EQ(Signal.History[1], -700) << "once a song";
}

TEST_F(Songs, TheStartIsMarkedEvenWhileRecordingIsOff) {
    Flags.RecordingEnabled = false;
    Signal.History.Append(700);
    Writer.CreateSongFile();
    EXPECT_EQ(Signal.History[0], -700);
}

TEST_F(Songs, AnEmptyHistoryTakesNoMark) {
    Hear(3);
    HearPause();
    EXPECT_EQ(Signal.History.Size(), 0U);
}

TEST_F(Songs, InTheOtherModesTheHistoryGetsNoMarks) {
    Pause.EndOfSongDetection = EndOfSong::MediaData;
    Signal.History.Append(700);
    Writer.CreateSongFile();
    Writer.WriteBuffer(NumberedBuffer(0));
    Writer.CloseSongFile(SongEnd::Boundary);
    EXPECT_EQ(Signal.History[0], 700);
    EXPECT_FALSE(Signal.History.HistogramRedraw);
}

// Breaking off.

TEST_F(Songs, AnAbortedSongIsDeletedWithItsNoteAndCoverAndNothingElse) {
    Flags.RecordCurrentSong = true;
    Hear(10);
    const std::string base = Writer.SongBaseName();
    Disk.Put("/temp/Corvet/" + base + ".jpg", "cover");
    Disk.Put("/temp/Corvet/" + base + "-2.wav", "another");
    Disk.Put("/temp/Corvet/" + base + ".note", "note");
    Disk.Put("/temp/Corvet/" + base + ". Live.wav", "another");
    Disk.Put("/temp/Corvet/" + base + ".txt", "another's");
    Disk.Put("/temp/Corvet/2405141200.wav", "another");
    Writer.AbortSong();
    EXPECT_EQ(
        Disk.Tree("/temp/Corvet"),
        (std::vector<std::string>{"/temp/Corvet/2405141200.wav", "/temp/Corvet/240514120000-2.wav",
                                  "/temp/Corvet/240514120000. Live.wav", "/temp/Corvet/240514120000.txt"}));
    EXPECT_FALSE(Flags.RecordingEnabled);
    EXPECT_FALSE(Writer.SongFileOpen());
    EXPECT_EQ(Writer.SongBytes(), 0);
    EXPECT_EQ(Writer.SongFilePath(), "");
    EXPECT_EQ(Disk.OpenHandles(), 0U);
    EXPECT_TRUE(Flags.RecordCurrentSong) << "the flags are the caller's";
    EXPECT_EQ(Last().Fate, SongFate::Aborted);
    EXPECT_EQ(Last().TempPath, PathOf(base));
    EXPECT_EQ(Last().Frames, 10U * BufferFrames);
    EXPECT_TRUE(HandedOver.empty());
}

TEST_F(Songs, AnAbortWithoutAFileEndsTheRecordingAndReportsNothing) {
    Writer.AbortSong();
    EXPECT_FALSE(Flags.RecordingEnabled);
    EXPECT_TRUE(Closed.empty());
}

// The end of the signal.

TEST_F(Songs, ASongThatEndsWithTheSignalLosesNothingToThePauseThatNeverCame) {
    Flags.RecordCurrentSong = true;
    Hear(10);
    Writer.EndWithoutPause();
    Writer.CloseSongFile();
    EXPECT_EQ(BuffersIn(Last().TempPath), Range(0, 10));
    EXPECT_EQ(Last().Frames, 10U * BufferFrames);
    EXPECT_EQ(Last().EndFrame, 10U * BufferFrames);
    EXPECT_FALSE(Last().Whole);
}

TEST_F(Songs, ThatEndWithTheSignalNeedNoRoomForTheirPause) {
    Flags.RecordCurrentSong = true;
    Hear(10);
    Disk.SetFreeSpace("/", 0);
    Writer.EndWithoutPause();
    Writer.CloseSongFile();
    ASSERT_EQ(Closed.size(), 1U);
    EXPECT_EQ(Last().Fate, SongFate::Kept);
    EXPECT_EQ(BuffersIn(Last().TempPath), Range(0, 10));
}

TEST_F(Songs, TheSongAfterOneThatEndedWithTheSignalGivesItsPause) {
    Flags.RecordCurrentSong = true;
    Hear(10);
    Writer.EndWithoutPause();
    Writer.CloseSongFile();
    Record(10);
    EXPECT_EQ(Last().Frames, 8U * BufferFrames);
}

TEST_F(Songs, TheNameOfAKeptSongIsNotTakenAgainThoughTheDiskFailsToSeeIt) {
    Record(10);
    const std::string kept = Last().TempPath;
    FileFault blind;
    blind.Operation = FileOperation::Look;
    Disk.AddFault(blind);
    Record(5);
    Disk.ClearFaults();
    EXPECT_NE(Last().TempPath, kept);
    EXPECT_EQ(BuffersIn(kept), Range(0, 8));
}

}  // namespace Corvetape::Test
