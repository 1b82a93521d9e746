#include <gtest/gtest.h>

#include "audio/song_bench.h"

namespace Corvetape::Test {

namespace {

class SongCloses : public testing::Test, protected SongBench {};

}  // namespace

TEST_F(SongCloses, TheEndOfASongIsMarkedInTheHistoryInPlaceOfTheLevel) {
    Hear(3);
    Signal.History.Append(10);
    Signal.History.Append(20);
    HearPause();
    EXPECT_EQ(Signal.History[0], 10);
    EXPECT_EQ(Signal.History[1], MarkSongEnd);
    EXPECT_TRUE(Signal.History.HistogramRedraw);
}

TEST_F(SongCloses, TheEndIsMarkedEvenIfNoFileIsOpen) {
    Signal.History.Append(10);
    EXPECT_TRUE(Writer.CloseSongFile());
    EXPECT_EQ(Signal.History[0], MarkSongEnd);
}

TEST_F(SongCloses, WhileRecordingIsOffAFileStaysOpenAndTheFlagsStay) {
    Hear(5);
    Flags.RecordingEnabled = false;
    Flags.RecordNextSong = true;
    Flags.StopAtEndOfSong = true;
    EXPECT_TRUE(Writer.CloseSongFile(SongEnd::Boundary));
    EXPECT_TRUE(Writer.SongFileOpen());
    EXPECT_TRUE(Flags.RecordNextSong);
    EXPECT_TRUE(Flags.StopAtEndOfSong);
    EXPECT_TRUE(Closed.empty());
}

TEST_F(SongCloses, WithTheEndBySilenceExactlyThePauseIsTakenOff) {
    for (const int16_t pause : {int16_t{1}, int16_t{4}, int16_t{9}}) {
        Pause.PauseBuffers = pause;
        const int32_t first = Next;
        Record(20);
        EXPECT_EQ(BuffersIn(Last().TempPath), Range(first, 20 - pause));
        EXPECT_EQ(Last().Frames, (20U - static_cast<uint32_t>(pause)) * BufferFrames);
        EXPECT_EQ(Last().BeginFrame, static_cast<uint64_t>(first) * BufferFrames);
        EXPECT_EQ(Last().EndFrame, static_cast<uint64_t>(first + 20 - pause) * BufferFrames);
    }
}

TEST_F(SongCloses, InTheOtherModesNothingIsTakenOff) {
    Pause.EndOfSongDetection = EndOfSong::MediaData;
    Flags.RecordCurrentSong = true;
    Writer.CreateSongFile();
    for (int32_t i = 0; i < 10; ++i) Writer.WriteBuffer(NumberedBuffer(i));
    Writer.CloseSongFile(SongEnd::Boundary);
    EXPECT_EQ(BuffersIn(Last().TempPath), Range(0, 10));
}

TEST_F(SongCloses, ASongThatIsAllPauseIsDiscardedWithoutMovingInTheFile) {
    Pause.PauseBuffers = 10;
    Disk.AddFault({.Operation = FileOperation::Seek});
    Record(10);
    EXPECT_EQ(Last().Fate, SongFate::Short);
    EXPECT_EQ(Last().Frames, 0U);
    EXPECT_EQ(Writer.SongFileError(), 0);
    EXPECT_TRUE(Disk.Tree("/temp/Corvet").empty());
}

TEST_F(SongCloses, ASongOfExactlyTheLeastLengthIsTooShort) {
    Pause.IgnoreShortSongs = 2;
    Record(2 + 40);
    EXPECT_EQ(Last().Fate, SongFate::Short);
    EXPECT_FALSE(Disk.Exists(Last().TempPath));
    EXPECT_TRUE(HandedOver.empty());
    Record(2 + 41);
    EXPECT_EQ(Last().Fate, SongFate::Kept);
    EXPECT_TRUE(Disk.Exists(Last().TempPath));
}

TEST_F(SongCloses, AnUnwantedSongIsDeletedWithEverythingOfItsName) {
    Hear(30);
    Disk.Put("/temp/Corvet/" + Writer.SongBaseName() + ".jpg", "cover");
    HearPause();
    EXPECT_TRUE(Disk.Tree("/temp/Corvet").empty());
    EXPECT_EQ(Disk.OpenHandles(), 0U);
    EXPECT_EQ(Last().Fate, SongFate::Unwanted);
    EXPECT_TRUE(HandedOver.empty());
    EXPECT_FALSE(Writer.SongFileOpen());
}

TEST_F(SongCloses, AShortSongThatNobodyWantsIsUnwanted) {
    Pause.IgnoreShortSongs = 100;
    Hear(5);
    HearPause();
    EXPECT_EQ(Last().Fate, SongFate::Unwanted);
}

TEST_F(SongCloses, ADiscardedSongPassesTheWishForTheNextOneOn) {
    Flags.RecordNextSong = true;
    Hear(5);
    HearPause();
    EXPECT_TRUE(Flags.RecordCurrentSong);
    EXPECT_FALSE(Flags.RecordNextSong);
    EXPECT_EQ(Last().Fate, SongFate::Unwanted);
}

TEST_F(SongCloses, AlsoASongThatIsTooShortPassesTheWishOn) {
    Pause.IgnoreShortSongs = 100;
    Flags.RecordNextSong = true;
    Record(5);
    EXPECT_EQ(Last().Fate, SongFate::Short);
    EXPECT_TRUE(Flags.RecordCurrentSong);
    EXPECT_FALSE(Flags.RecordNextSong);
}

TEST_F(SongCloses, AKeptSongLeavesTheWishForTheNextOneAsItIs) {
    Flags.RecordNextSong = true;
    Record(30);
    EXPECT_EQ(Last().Fate, SongFate::Kept);
    EXPECT_TRUE(Flags.RecordNextSong);
}

TEST_F(SongCloses, StoppingAtTheEndOfTheSongClearsItsFlagsKeptOrNot) {
    Flags.StopAtEndOfSong = true;
    Record(30);
    EXPECT_EQ(Last().Fate, SongFate::Kept);
    EXPECT_FALSE(Flags.StopAtEndOfSong);
    EXPECT_FALSE(Flags.RecordCurrentSong);

    Pause.IgnoreShortSongs = 100;
    Flags.StopAtEndOfSong = true;
    Record(30);
    EXPECT_EQ(Last().Fate, SongFate::Short);
    EXPECT_FALSE(Flags.StopAtEndOfSong);
    EXPECT_FALSE(Flags.RecordCurrentSong);
}

TEST_F(SongCloses, StoppingComesAfterTheWishForTheNextSongWasPassedOn) {
    Flags.StopAtEndOfSong = true;
    Flags.RecordNextSong = true;
    Hear(5);
    HearPause();
    EXPECT_FALSE(Flags.RecordCurrentSong);
    EXPECT_FALSE(Flags.RecordNextSong);
    EXPECT_FALSE(Flags.StopAtEndOfSong);
}

TEST_F(SongCloses, AKeptSongIsHandedOverWithItsLengthInWholeSecondsAndItsName) {
    Record(2 + 59);
    EXPECT_EQ(HandedOver, (std::vector<std::string>{"240514120000"}));
    EXPECT_EQ(Media.SongMedia.Size, 2);
    EXPECT_EQ(Media.SongMedia.TempFileName, "240514120000");
    EXPECT_EQ(Media.SongMedia.FilePart, 0);
    EXPECT_EQ(Last().Media, Media.SongMedia);
    EXPECT_EQ(Writer.SongBytes(), 0);
    EXPECT_EQ(Writer.SongFilePath(), "");
    EXPECT_EQ(Writer.SongBaseName(), "240514120000");
}

TEST_F(SongCloses, EachSongIsHandedOverBeforeItsCloseIsReported) {
    Record(30);
    Told.clear();
    Clock.Advance(std::chrono::seconds(1));
    Record(30);
    EXPECT_EQ(Told, "over closed ");
}

TEST_F(SongCloses, StationArtistAlbumAndSongBecomeTagsInThisOrder) {
    Media.SongMedia.Artist = "Künstler";
    Record(30);
    const auto info = ReadWavInfo(Disk, Last().TempPath);
    const std::vector<std::pair<std::string, std::string>> tags = {
        {"IGNR", "Radio"}, {"IART", "Künstler"}, {"IALB", "Album"}, {"INAM", "Song"}};
    EXPECT_EQ(info->Tags, tags);
}

TEST_F(SongCloses, AnEmptyFieldGivesAnEmptyTag) {
    Media.SongMedia.StationName = "";
    Media.SongMedia.Album = "";
    Record(30);
    const auto info = ReadWavInfo(Disk, Last().TempPath);
    const std::vector<std::pair<std::string, std::string>> tags = {
        {"IGNR", ""}, {"IART", "Artist"}, {"IALB", ""}, {"INAM", "Song"}};
    EXPECT_EQ(info->Tags, tags);
}

TEST_F(SongCloses, WithoutASongNameOrWithoutMediaDataThereAreNoTags) {
    Media.SongMedia.Song = "";
    Record(30);
    EXPECT_TRUE(ReadWavInfo(Disk, Last().TempPath)->Tags.empty());
    EXPECT_EQ(Disk.Content(Last().TempPath)->find("LIST"), std::string::npos);
    Media.SongMedia.Song = "Song";
    Media.StationDataEnabled = false;
    Record(30);
    EXPECT_TRUE(ReadWavInfo(Disk, Last().TempPath)->Tags.empty());
}

TEST_F(SongCloses, TheCoverIsStoredBesideAKeptSongBeforeItIsHandedOver) {
    Media.SongMedia.Cover = "http://127.0.0.1/cover.jpg";
    Record(30);
    EXPECT_EQ(Covers, (std::vector<std::string>{"/temp/Corvet/240514120000"}));
    EXPECT_EQ(Told, "cover over closed ");
}

TEST_F(SongCloses, NoCoverIsStoredIfThereIsNoneOrTheUserWantsNone) {
    Record(30);
    Media.SongMedia.Cover = "http://127.0.0.1/cover.jpg";
    Options.StoreCoverImage = false;
    Record(30);
    Options.StoreCoverImage = true;
    Hear(30);
    Flags.RecordCurrentSong = false;
    HearPause();
    EXPECT_TRUE(Covers.empty());
}

TEST_F(SongCloses, WithTheProgramToEndRecordingEndsWithTheSong) {
    Flags.QuitAtEndOfSong = true;
    Record(30);
    EXPECT_FALSE(Flags.RecordingEnabled);
    EXPECT_EQ(QuitsWanted, 0) << "the transfer of the kept song ends the program";
}

TEST_F(SongCloses, ADiscardedSongThatTheEndWaitedForEndsTheProgram) {
    Flags.QuitAtEndOfSong = true;
    Hear(30);
    HearPause();
    EXPECT_FALSE(Flags.RecordingEnabled);
    EXPECT_EQ(Told, "closed quit ");
}

TEST_F(SongCloses, SwitchingOffAtTheEndOfTheSongWaitsUntilNothingIsWantedAnyMore) {
    Flags.DisableAtEndOfSong = true;
    Record(30);
    EXPECT_TRUE(Flags.RecordingEnabled) << "the next song is wanted";
    Flags.StopAtEndOfSong = true;
    Record(30);
    EXPECT_FALSE(Flags.RecordingEnabled);
}

TEST_F(SongCloses, PressingRecordTwiceWithinASongLeavesItAsItWas) {
    Flags.RecordCurrentSong = true;
    Hear(10);
    Flags.RecordCurrentSong = false;
    Hear(10);
    Flags.RecordCurrentSong = true;
    Hear(9);
    HearPause();
    EXPECT_EQ(BuffersIn(Last().TempPath), Range(0, 28));
}

TEST_F(SongCloses, ASongBetweenTwoPausesIsWholeAndTheFirstOneIsNot) {
    Record(30);
    EXPECT_FALSE(Last().Whole) << "begun with the program";
    Record(30);
    EXPECT_TRUE(Last().Whole);
    Hear(30);
    Writer.CloseSongFile();
    EXPECT_FALSE(Last().Whole) << "ended by hand";
    Record(30);
    EXPECT_FALSE(Last().Whole) << "begun by hand";
}

TEST_F(SongCloses, APauseBeforeTheFirstSongMakesItBeginAtABoundary) {
    HearPause();
    Record(30);
    EXPECT_TRUE(Last().Whole);
}

TEST_F(SongCloses, TheEndOfTheRecognitionIsNoBoundary) {
    Record(30);
    Flags.RecordCurrentSong = true;
    Hear(30);
    Writer.WriteBufferToSong(NumberedBuffer(Next++), true);
    EXPECT_FALSE(Last().Whole);
}

TEST_F(SongCloses, LostFramesDeviceChangesAndClippedSamplesAreThoseOfTheSong) {
    Flags.RecordCurrentSong = true;
    const auto hear = [this](uint64_t lost, uint32_t clipped) {
        WaveBuffer buffer = NumberedBuffer(Next++);
        buffer.FramesLostBefore = lost;
        buffer.DeviceChangesBefore = lost > 0 ? 1 : 0;
        buffer.ClippedSamples = clipped;
        Writer.WriteBufferToSong(buffer, false);
    };
    hear(100, 1);
    hear(0, 0);
    hear(20, 5);
    Hear(20);
    HearPause();
    EXPECT_EQ(Last().LostFrames, 120U);
    EXPECT_EQ(Last().DeviceChanges, 2U);
    EXPECT_EQ(Last().ClippedSamples, 6U);
    Record(30);
    EXPECT_EQ(Last().LostFrames, 0U);
    EXPECT_EQ(Last().DeviceChanges, 0U);
    EXPECT_EQ(Last().ClippedSamples, 0U);
}

TEST_F(SongCloses, ASongThatHasLostFramesIsNotWhole) {
    Record(30);
    Flags.RecordCurrentSong = true;
    Hear(10);
    WaveBuffer buffer = NumberedBuffer(Next++);
    buffer.FramesLostBefore = 1;
    Writer.WriteBufferToSong(buffer, false);
    Hear(10);
    HearPause();
    EXPECT_FALSE(Last().Whole);
    Record(30);
    EXPECT_TRUE(Last().Whole);
}

TEST_F(SongCloses, WhatPassesByWhileRecordingIsOffIsLostToTheSongThatGoesOn) {
    Record(30);
    Flags.RecordCurrentSong = true;
    Hear(10);
    Flags.FollowMediaData(false);
    Hear(7);
    Flags.FollowMediaData(true);
    Hear(10);
    HearPause();
    EXPECT_EQ(Last().LostFrames, 7U * BufferFrames);
    EXPECT_FALSE(Last().Whole);
    Flags.FollowMediaData(false);
    Hear(7);
    Flags.FollowMediaData(true);
    Record(30);
    EXPECT_EQ(Last().LostFrames, 0U) << "it came before the song";
}

TEST_F(SongCloses, OfAPauseThatBeganWhileRecordingWasOffOnlyTheRestIsTakenOff) {
    Pause.PauseBuffers = 4;
    Flags.RecordCurrentSong = true;
    Hear(30);
    Flags.FollowMediaData(false);
    Hear(5);
    Flags.FollowMediaData(true);
    Hear(1);
    HearPause();
    EXPECT_EQ(BuffersIn(Last().TempPath), Range(0, 30)) << "two were taken off";
}

TEST_F(SongCloses, ASongThatSurelyBeginsWhereItWasHeardFirstIsWholeToo) {
    for (const Certainty begin : {Certainty::Sure, Certainty::Likely, Certainty::Unsure}) {
        SongBench bench;
        bench.Pause.EndOfSongDetection = EndOfSong::Automatic;
        bench.Writer.CreateSongFile();
        bench.Writer.WriteBuffer(NumberedBuffer(0));
        SongTrust trust;
        trust.Begin = begin;
        trust.End = Certainty::Sure;
        bench.Cut.Ended = EndedSong{{}, true, trust};
        bench.Writer.CloseSongFile(SongEnd::Boundary);
        EXPECT_EQ(bench.Last().Whole, begin == Certainty::Sure);
    }
}

TEST_F(SongCloses, TheEventsMayBeMissing) {
    SongWriter writer({Disk, Flags, Signal, Pause, Media, Messages, Cut}, {Format, Options, Folders, Clock},
                      {});
    Media.SongMedia.Cover = "cover";
    Flags.RecordCurrentSong = true;
    for (int32_t i = 0; i < 30; ++i) EXPECT_TRUE(writer.WriteBufferToSong(NumberedBuffer(i), i == 29));
    EXPECT_EQ(Media.SongMedia.TempFileName, "240514120000");
    Flags.RecordCurrentSong = false;
    Flags.QuitAtEndOfSong = true;
    for (int32_t i = 0; i < 30; ++i) writer.WriteBufferToSong(NumberedBuffer(i), i == 29);
    Flags.RecordingEnabled = true;
    writer.WriteBufferToSong(NumberedBuffer(0), false);
    writer.AbortSong();
    EXPECT_FALSE(writer.SongFileOpen());
}

}  // namespace Corvetape::Test
