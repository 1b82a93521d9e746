#include "recording/margins/song_recut.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

#include "audio/wav_file.h"
#include "platform/virtual/sim_clock.h"
#include "platform/virtual/sim_loop.h"
#include "post/transfer/song_notes.h"
#include "sim/sim_files.h"
#include "sim/sim_processes.h"

namespace Corvetape::Test {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr size_t Rate = 44100;

/// Frames that tell their number.
std::vector<Frame> Numbered(size_t first, size_t count) {
    std::vector<Frame> frames(count);
    for (size_t i = 0; i < count; ++i) {
        frames[i] = {static_cast<int16_t>((first + i) & 0x7fffU), static_cast<int16_t>((first + i) >> 15U)};
    }
    return frames;
}

/// A song of 6 s with 4 s before it and 3 s after it, encoded to a WAV file.
class SongRecuts : public testing::Test {
 protected:
    SongRecuts() {
        for (const char* path : {"/temp/Corvet/margins", "/music", "/log", "/config"}) Disk.MakeFolders(path);
        Folders.Paths = {"/temp", "/music", "/log"};
        Folders.SongTempFolder = "/temp/Corvet";
        Folders.ProgramFolder = "/program";
        Options.EncoderCommand[0] = "encode %1 %2\\r\\n";
        Programs.DurationOf = [](const HiddenJob&) { return std::chrono::seconds(1); };
        Programs.OnJob = [this](const HiddenJob& job) { return Encode(job); };
        Song.Base = "one";
        Song.KeptAt = 0;
        Song.TempSong = "Ann - First";
        Song.Media.Artist = "Ann";
        Song.Media.Song = "First";
        Song.Begin = Song.End = Certainty::Unsure;
        Song.BeginCut = CutOrigin{"player", -20, false};
        Song.EndCut = CutOrigin{"player", 10, false};
        Song.MusicFile = "/music/Ann - First.wav";
        Song.MusicKnown = true;
        Song.Encoder = 0;
        Write(".before.wav", 0, 4 * Rate);
        Write(".song.wav", 4 * Rate, 6 * Rate);
        Write(".after.wav", 10 * Rate, 3 * Rate);
        Disk.Put(Song.MusicFile, "the old one");
        EXPECT_TRUE(Store.Write(Song));
    }

    void Write(const char* ending, size_t first, size_t count) {
        const auto file = WavFile::Create(Disk, MarginFile(Folders, Song.Base, ending), MakeWaveFormat(Rate));
        ASSERT_TRUE(file && file->Write(Numbered(first, count)) && file->FinishData());
    }

    /// A song of this name was closed.
    void KeepSong(const std::string& name) {
        ClosedSong song;
        song.TempPath = "/temp/Corvet/" + name + ".wav";
        Disk.Put(song.TempPath, "a song");
        ASSERT_NE(Store.Keep(song, {}), "");
    }

    /// Makes what the command line asks for out of the recording.
    int32_t Encode(const HiddenJob& job) {
        MusicDuringJob = *Disk.Content(Song.MusicFile);
        if (FailWith != 0) return FailWith;
        for (const std::string& path : Disk.Tree()) {
            if (path.find(".recut-") == std::string::npos || !path.ends_with(".wav")) continue;
            const std::string base = path.substr(0, path.size() - 4);
            EXPECT_TRUE(Mentions(job, base + ".new"));
            Disk.Put(base + ".new.wav", *Disk.Content(path));
        }
        return 0;
    }

    /// What was wrong; empty if nothing was.
    std::string Cut(const RecutWish& wish) {
        const auto song = ReadMarginNote(Disk, Folders, Song.Base);
        if (!song) return "there is no note";
        if (std::string problem = Recut.Begin(*song, wish); !problem.empty()) return problem;
        if (Recut.JobName().empty()) return {};
        Programs.WaitForAll(std::chrono::minutes(1));
        const auto results = Programs.TakeFinished();
        return results.size() == 1 ? Recut.End(results[0]) : "its encoder has not ended";
    }

    /// The numbers of the frames in the music file, as the first and one more than the last.
    std::pair<size_t, size_t> Extent(const std::string& path) {
        const auto info = ReadWavInfo(Disk, path);
        const auto content = Disk.Content(path);
        if (!info || !content) return {};
        std::vector<Frame> frames(info->DataBytes / sizeof(Frame));
        std::memcpy(frames.data(), content->data() + info->DataStart, info->DataBytes);
        const size_t first =
            static_cast<size_t>(frames[0].Left) + (static_cast<size_t>(frames[0].Right) << 15U);
        if (frames != Numbered(first, frames.size())) return {};
        return {first, first + frames.size()};
    }

    SimClock Clock;
    SimLoop Loop{Clock};
    SimFiles Disk;
    SimProcesses Programs{Clock, Loop};
    Settings Options;
    WorkingFolders Folders;
    MarginStore Store{Disk, Clock, Options, Folders, "run-1"};
    LearnedCuts Learned{Disk, "/config/cuts", Options};
    SongRecut Recut{{Disk, Programs, Options, Folders, Store, Learned, "run-1"}};
    KeptMargins Song;
    int32_t FailWith = 0;
    std::string MusicDuringJob;
};

TEST_F(SongRecuts, TheNoteReadsBackAsItWasWritten) {
    Song.Media.Album = "Quotes \" and\nlines";
    Song.BeginMoved = -123456;
    Song.Quality = 7;
    Song.Normalize = true;
    ASSERT_TRUE(Store.Write(Song));
    const auto read = ReadMarginNote(Disk, Folders, Song.Base);
    ASSERT_TRUE(read);
    Song.Media.Album = "Quotes \" and lines";
    EXPECT_EQ(MarginNoteText(*read), MarginNoteText(Song));
    EXPECT_EQ(read->BeginCut, Song.BeginCut);
    EXPECT_EQ(read->EndCut, Song.EndCut);
    EXPECT_EQ(read->Begin, Certainty::Unsure);
    EXPECT_EQ(read->BeginMoved, -123456);
}

TEST_F(SongRecuts, EachCutMovesBothWaysFromWhereItIsNow) {
    ASSERT_EQ(Cut({-1.5, 0}), "");
    EXPECT_EQ(Extent(Song.MusicFile), std::pair(4 * Rate - Rate * 3 / 2, 10 * Rate));
    ASSERT_EQ(Cut({2.5, 0}), "");
    EXPECT_EQ(Extent(Song.MusicFile), std::pair(5 * Rate, 10 * Rate));
    ASSERT_EQ(Cut({0, -2}), "");
    EXPECT_EQ(Extent(Song.MusicFile), std::pair(5 * Rate, 8 * Rate));
    ASSERT_EQ(Cut({0, 4.5}), "");
    EXPECT_EQ(Extent(Song.MusicFile), std::pair(5 * Rate, 12 * Rate + Rate / 2));
    ASSERT_EQ(Cut({-5, 0.5}), "");
    EXPECT_EQ(Extent(Song.MusicFile), std::pair(size_t{0}, 13 * Rate));
}

TEST_F(SongRecuts, TheOldMusicFileStaysUntilTheNewOneIsComplete) {
    ASSERT_EQ(Cut({-1, 0}), "");
    EXPECT_EQ(MusicDuringJob, "the old one");
    EXPECT_EQ(Recut.MusicFile(), Song.MusicFile);
}

TEST_F(SongRecuts, TheRecordingHasTheTagsAndNothingElseIsLeft) {
    const auto before = Disk.Tree();
    ASSERT_EQ(Cut({-1, 0}), "");
    const auto info = ReadWavInfo(Disk, Song.MusicFile);
    ASSERT_TRUE(info);
    EXPECT_THAT(info->Tags, testing::ElementsAre(testing::Pair("IGNR", ""), testing::Pair("IART", "Ann"),
                                                 testing::Pair("IALB", ""), testing::Pair("INAM", "First")));
    auto after = Disk.Tree();
    std::erase_if(after, [](const std::string& path) { return path.starts_with("/config/cuts"); });
    EXPECT_EQ(after, before);
}

TEST_F(SongRecuts, ACutThatWasMovedIsSure) {
    ASSERT_EQ(Cut({-1, 0}), "");
    const auto song = ReadMarginNote(Disk, Folders, Song.Base);
    EXPECT_EQ(song->Begin, Certainty::Sure);
    EXPECT_EQ(song->End, Certainty::Unsure);
}

TEST_F(SongRecuts, BeyondTheMarginsItIsRefused) {
    EXPECT_EQ(Cut({-4.1, 0}), "Only 4.00 s before its present begin were kept.");
    EXPECT_EQ(Cut({0, 3.1}), "Only 3.00 s after its present end were kept.");
    EXPECT_EQ(Cut({5.5, 0}), "Nothing would be left of the song.");
    EXPECT_EQ(*Disk.Content(Song.MusicFile), "the old one");
    EXPECT_THAT(Programs.Jobs, IsEmpty());
}

TEST_F(SongRecuts, WhenItsEncoderFailsTheOldMusicFileStays) {
    const auto before = Disk.Tree();
    FailWith = 3;
    EXPECT_EQ(Cut({-1, 0}), "Its encoder ended with code 3; the music file stays as it was.");
    EXPECT_EQ(*Disk.Content(Song.MusicFile), "the old one");
    EXPECT_EQ(Disk.Tree(), before);
    EXPECT_EQ(ReadMarginNote(Disk, Folders, Song.Base)->BeginMoved, 0);
}

TEST_F(SongRecuts, AFullDiskLeavesTheOldMusicFile) {
    const auto before = Disk.Tree();
    Disk.SetFreeSpace("/", 100'000);
    EXPECT_THAT(Cut({-1, 0}), HasSubstr("cannot be written"));
    EXPECT_EQ(*Disk.Content(Song.MusicFile), "the old one");
    EXPECT_EQ(Disk.Tree(), before);
}

TEST_F(SongRecuts, AFileThatMayBeAnotherSongsIsLeftAlone) {
    Song.MusicKnown = false;
    ASSERT_TRUE(Store.Write(Song));
    ASSERT_EQ(Cut({-1, 0}), "");
    EXPECT_EQ(*Disk.Content(Song.MusicFile), "the old one");
    EXPECT_EQ(Extent("/music/Ann - First (2).wav"), std::pair(3 * Rate, 10 * Rate));
}

TEST_F(SongRecuts, ASongWhoseNameALongerOneHasTakenIsWrittenUnderTheNumberThatItGot) {
    Disk.Put("/music/Ann - First (3).wav", "the old one");
    Disk.Put(Song.MusicFile, "the longer one");
    Store.MusicMade("another job", {Song.MusicFile, 3});
    ASSERT_EQ(Cut({-1, 0}), "");
    EXPECT_EQ(*Disk.Content(Song.MusicFile), "the longer one");
    EXPECT_EQ(Extent("/music/Ann - First (3).wav"), std::pair(3 * Rate, 10 * Rate));
}

TEST_F(SongRecuts, ASongThatWasReplacedIsWrittenBesideTheOneThatHasItsName) {
    for (const std::optional<int32_t> older : {std::optional(OlderIsReplaced), {}}) {
        ASSERT_TRUE(Store.Write(Song));
        Disk.Put(Song.MusicFile, "the new one");
        Store.MusicMade("another job", {Song.MusicFile, older});
        ASSERT_EQ(Cut({-1, 0}), "");
        EXPECT_EQ(*Disk.Content(Song.MusicFile), "the new one");
        EXPECT_EQ(Extent("/music/Ann - First (2).wav"), std::pair(3 * Rate, 10 * Rate));
        Disk.Delete("/music/Ann - First (2).wav");
    }
}

TEST_F(SongRecuts, ASongThatStaysInItsFolderFollowsItsNumberToo) {
    TransferredSong newer;
    newer.TempFile = Song.MusicFile;
    newer.OlderSong = 2;
    Disk.Put("/music/Ann - First (2).wav", "the old one");
    Disk.Put(Song.MusicFile, "the new one");
    Store.SongTransferred(newer);
    ASSERT_EQ(Cut({-1, 0}), "");
    EXPECT_EQ(*Disk.Content(Song.MusicFile), "the new one");
    EXPECT_EQ(Extent("/music/Ann - First (2).wav"), std::pair(3 * Rate, 10 * Rate));
}

TEST_F(SongRecuts, RoomIsMadeWithoutReadingAllNotesAgainForEachSong) {
    ASSERT_TRUE(Store.DropOldest());
    const auto operationsToDrop = [this](int songs) {
        for (int i = 0; i < songs; ++i) KeepSong("song-" + std::to_string(i));
        const uint64_t before = Disk.OperationCount();
        for (int i = 0; i < songs; ++i) EXPECT_TRUE(Store.DropOldest());
        EXPECT_THAT(Store.List(), IsEmpty());
        return Disk.OperationCount() - before;
    };
    const uint64_t ofThirty = operationsToDrop(30);
    EXPECT_LE(operationsToDrop(60), 2 * ofThirty);
}

TEST_F(SongRecuts, RoomIsMadeOfWhatCameAfterTheOldestWereListedToo) {
    KeepSong("two");
    EXPECT_TRUE(Store.DropOldest());
    KeepSong("three");
    EXPECT_TRUE(Store.DropOldest());
    EXPECT_TRUE(Store.DropOldest());
    EXPECT_THAT(Store.List(), IsEmpty());
    EXPECT_FALSE(Store.DropOldest());
}

TEST_F(SongRecuts, ItIsEncodedAsItWasWhateverTheSettingsAreNow) {
    Options.Encoder = 1;
    ASSERT_EQ(Cut({-1, 0}), "");
    ASSERT_THAT(Programs.Jobs, SizeIs(1));
    EXPECT_TRUE(Mentions(Programs.Jobs[0], "encode "));
}

TEST_F(SongRecuts, ACorrectionTeachesItsSourceAsTenSongsDo) {
    ASSERT_EQ(Cut({-1, 0}), "");
    EXPECT_EQ(Learned.Of("player", false).Songs(), CutPrior::SongsOfCorrection);
    const EdgeRange likely = Learned.Of("player", false).LikelyEdges();
    EXPECT_LE(likely.First, -40);
    EXPECT_GE(likely.Last, -40);
    EXPECT_LT(likely.Last - likely.First, 100) << "of 230 that were as likely before";
    ASSERT_EQ(Cut({0, 0.5}), "");
    EXPECT_EQ(Learned.Of("player", false).Songs(), 2 * CutPrior::SongsOfCorrection);
}

TEST_F(SongRecuts, ACutLaterThanAnyTitleTeachesNothing) {
    ASSERT_EQ(Cut({0, 3}), "");
    EXPECT_EQ(Learned.Of("player", false).Songs(), 0U) << "3.5 s after the change";
}

TEST_F(SongRecuts, ASongThatIsStillToBeEncodedWaitsAndItsMarginsStay) {
    SongNote note;
    note.Run = "run-1";
    note.HandedOn = 1;
    Disk.Put("/temp/Corvet/Ann - First.note", SongNoteText(note));
    EXPECT_EQ(Cut({-1, 0}), "Its music file is not made yet.");
    EXPECT_FALSE(Store.DropOldest());
    Loop.RunFor(std::chrono::hours(30));
    Store.DropOld();
    EXPECT_THAT(Store.List(), SizeIs(1));
    note.HandedOn = MostHandOvers;  // no run takes it up any more
    Disk.Put("/temp/Corvet/Ann - First.note", SongNoteText(note));
    EXPECT_TRUE(Store.DropOldest());
}

TEST_F(SongRecuts, MarginsGoByTheirAgeAndNothingElseGoesWithThem) {
    Options.KeepMargins = 24;
    ClosedSong song;
    song.TempPath = "/temp/Corvet/two.wav";
    Disk.Put(song.TempPath, "a song");
    Disk.Put("/temp/Corvet/margins/mine.txt", "not of this program");
    Disk.Put("/temp/Corvet/margins/one.recut-run-9.new.mp3", "broken off");
    ASSERT_EQ(Store.Keep(song, Numbered(0, 10)), "two");
    Store.DropOld();
    EXPECT_TRUE(ReadMarginNote(Disk, Folders, "two")) << "it is new";
    EXPECT_FALSE(ReadMarginNote(Disk, Folders, "one")) << "it is of 1970";
    EXPECT_FALSE(Disk.Exists("/temp/Corvet/margins/one.recut-run-9.new.mp3"));
    Loop.RunFor(std::chrono::hours(25));
    Store.DropOld();
    EXPECT_THAT(Store.List(), IsEmpty());
    EXPECT_TRUE(Disk.Exists("/temp/Corvet/margins/mine.txt"));
    EXPECT_TRUE(Disk.Exists(song.TempPath));
    EXPECT_TRUE(Disk.Exists(Song.MusicFile));
}

TEST_F(SongRecuts, TwoSongsOfOneNameHaveMarginsOfTheirOwn) {
    ClosedSong song;
    song.TempPath = "/temp/Corvet/one.wav";
    Disk.Put(song.TempPath, "a song");
    EXPECT_EQ(Store.Keep(song, {}), "one-2");
    EXPECT_EQ(ReadMarginNote(Disk, Folders, "one")->Media.Song, "First");
}

TEST_F(SongRecuts, ADiskThatRefusesLeavesNothingOfIt) {
    const auto before = Disk.Tree();
    ClosedSong song;
    song.TempPath = "/temp/Corvet/gone.wav";
    EXPECT_EQ(Store.Keep(song, Numbered(0, 10)), "") << "its file is not there";
    EXPECT_EQ(Disk.Tree(), before);
    Options.KeepMargins = 0;
    Disk.Put(song.TempPath, "a song");
    EXPECT_EQ(Store.Keep(song, Numbered(0, 10)), "") << "the user wants none";
}

}  // namespace
}  // namespace Corvetape::Test
