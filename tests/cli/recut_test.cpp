// The command that cuts songs again: with real files, and the encoders as they are.
#include <gmock/gmock.h>

#include "audio/cut_prior.h"
#include "audio/wav_file.h"
#include "cli/cli_test.h"
#include "cli/recut_choice.h"
#include "core/version.h"
#include "platform/linux/files/linux_files.h"

namespace Corvetape::Test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;

/// Frames that tell their number.
std::vector<Frame> Numbered(size_t first, size_t count) {
    std::vector<Frame> frames(count);
    for (size_t i = 0; i < count; ++i) {
        const auto number = static_cast<uint32_t>(first + i);
        frames[i] = {static_cast<int16_t>(number & 0x7fffU), static_cast<int16_t>(number >> 15U)};
    }
    return frames;
}

/// A home in which a run has left the margins of songs: 4 s before, 10 s of the song, 3 s after it.
class RecutTest : public CliTest {
 protected:
    RecutTest() {
        for (const char* path :
             {"/home", "/home/cache", "/home/cache/Corvet", "/home/cache/Corvet/margins", "/home/Music"}) {
            std::filesystem::create_directories(folder.Path() + path);
        }
        Folders.SongTempFolder = Home() + "/cache/" + ProgramShortName;
    }

    void Write(const std::string& path, size_t first, size_t count) {
        const auto file = WavFile::Create(Disk, path, MakeWaveFormat(Rate));
        ASSERT_TRUE(file && file->Write(Numbered(first, count)) && file->FinishData() && file->FinishRiff());
    }

    KeptMargins Leave(const std::string& base, const std::string& artist, const std::string& title) {
        const auto path = [&](const char* ending) { return MarginFile(Folders, base, ending); };
        KeptMargins margins;
        margins.Base = base;
        margins.KeptAt = SecondsNow();
        margins.Media.StationName = "A Station";
        margins.Media.Artist = artist;
        margins.Media.Song = title;
        margins.Begin = Certainty::Unsure;
        margins.End = Certainty::Sure;
        margins.BeginCut = CutOrigin{"player", -20, false};
        margins.MusicFile = Home() + "/Music/" + artist + " - " + title + ".wav";
        margins.MusicKnown = true;
        margins.Encoder = 0;
        Write(path(".before.wav"), 0, 4 * Rate);
        Write(path(".song.wav"), 4 * Rate, 10 * Rate);
        Write(path(".after.wav"), 14 * Rate, 3 * Rate);
        EXPECT_TRUE(Disk.ReplaceQuickly(path(".note"), MarginNoteText(margins)));
        EXPECT_TRUE(Disk.ReplaceQuickly(margins.MusicFile, "the old one"));
        return margins;
    }

    static int64_t SecondsNow() {
        const std::time_t now = std::time(nullptr);
        std::tm local{};
        localtime_r(&now, &local);
        return timegm(&local);
    }

    Finished Recut(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"recut", "--home", Home()});
        return RunCommand({std::move(arguments), {}, folder.Path()});
    }

    /// The frames of a sound file as the numbers of its first and its last one, and how many there are.
    std::vector<size_t> Extent(const std::string& path) {
        const auto info = ReadWavInfo(Disk, path);
        if (!info) return {};
        const auto content = Content(path);
        std::vector<Frame> frames(info->DataBytes / sizeof(Frame));
        std::memcpy(frames.data(), content.data() + info->DataStart, info->DataBytes);
        const auto number = [](const Frame& frame) {
            return static_cast<size_t>(frame.Left) + (static_cast<size_t>(frame.Right) << 15U);
        };
        if (frames != Numbered(number(frames.front()), frames.size())) return {};
        return {number(frames.front()), number(frames.back()), frames.size()};
    }

    LinuxFiles Disk;
    WorkingFolders Folders;
};

TEST_F(RecutTest, WritesTheMusicFileAgainToTheSampleWithItsTags) {
    const KeptMargins margins = Leave("one", "Ann", "First");
    const Finished run = Recut({"Ann - First", "--begin", "-1.5", "--end", "+0.5"});
    EXPECT_EQ(run.Code, 0) << run.Err;
    EXPECT_EQ(run.Out, "cut again: " + margins.MusicFile + "\n");
    const size_t begin = 4 * Rate - Rate * 3 / 2;
    const size_t end = 14 * Rate + Rate / 2;
    EXPECT_THAT(Extent(margins.MusicFile), ElementsAre(begin, end - 1, end - begin));
    const auto info = ReadWavInfo(Disk, margins.MusicFile);
    ASSERT_TRUE(info);
    EXPECT_THAT(info->Tags, ElementsAre(Pair("IGNR", "A Station"), Pair("IART", "Ann"), Pair("IALB", ""),
                                        Pair("INAM", "First")));
    EXPECT_THAT(FilesBelow(MarginFolder(Folders)), SizeIs(4)) << "what it has made meanwhile is gone";
}

TEST_F(RecutTest, CountsFromWhereTheCutsAreNow) {
    const KeptMargins margins = Leave("one", "Ann", "First");
    EXPECT_EQ(Recut({"First", "--begin=-4"}).Code, 0);
    EXPECT_EQ(Recut({"First", "--begin", "1", "--end", "-2"}).Code, 0);
    EXPECT_THAT(Extent(margins.MusicFile), ElementsAre(Rate, 12 * Rate - 1, 11 * Rate));
    const Finished more = Recut({margins.MusicFile, "--begin", "-1.1"});
    EXPECT_EQ(more.Code, 1);
    EXPECT_EQ(
        more.Err,
        "corvetape-cli: Ann - First is not cut again: Only 1.00 s before its present begin were kept.\n");
}

TEST_F(RecutTest, ListsWhatCanBeCutAgainAndHowFar) {
    Leave("one", "Ann", "First");
    Leave("two", "Bob", "Second");
    const Finished all = Recut({"--list"});
    EXPECT_EQ(all.Code, 0);
    EXPECT_THAT(all.Out, HasSubstr("Ann - First  (begin unsure, end sure; kept for "));
    EXPECT_THAT(all.Out, HasSubstr("0:10; begin up to 4.00 s earlier, end up to 3.00 s later\n"));
    EXPECT_THAT(LinesOf(all.Out), SizeIs(4));
    EXPECT_THAT(LinesOf(Recut({"Second", "--list"}).Out), SizeIs(2));
}

TEST_F(RecutTest, ASongThatNobodyKnowsIsRefusedInOneLine) {
    EXPECT_EQ(
        Recut({"Nothing", "--begin", "1"}).Err,
        "corvetape-cli: no song Nothing can be cut again; margins are kept of songs with an unsure cut only, "
        "and there are none\n");
    Leave("one", "Ann", "First");
    const Finished run = Recut({"Nothing", "--begin", "1"});
    EXPECT_EQ(run.Code, 1);
    EXPECT_EQ(run.Err, "corvetape-cli: no song Nothing can be cut again; --list shows those that can\n");
}

TEST_F(RecutTest, ATitleOfTwoSongsNeedsThePath) {
    Leave("one", "Ann", "First");
    const KeptMargins second = Leave("two", "Bob", "First");
    const Finished run = Recut({"First", "--begin", "1"});
    EXPECT_EQ(run.Code, 1);
    EXPECT_EQ(run.Err, "corvetape-cli: 2 songs are called First; give the path of the music file\n");
    EXPECT_EQ(Recut({"home/Music/Bob - First.wav", "--begin", "1"}).Code, 0);
    EXPECT_THAT(Extent(second.MusicFile), ElementsAre(5 * Rate, 14 * Rate - 1, 9 * Rate));
}

TEST_F(RecutTest, WhatIsLeftOutIsTheUsersMistake) {
    EXPECT_EQ(Recut({}).Code, 2);
    EXPECT_EQ(Recut({"First"}).Code, 2);
    EXPECT_EQ(Recut({"First", "--begin", "soon"}).Code, 2);
    EXPECT_EQ(Recut({"First", "--begin", "inf"}).Code, 2);
}

TEST_F(RecutTest, WhenTheEncoderFailsTheOldMusicFileStays) {
    const KeptMargins margins = Leave("one", "Ann", "First");
    const std::string bin = folder / "bin";
    std::filesystem::create_directories(bin);
    std::ofstream(bin + "/lame") << "#!/bin/sh\nexit 7\n";
    std::filesystem::permissions(bin + "/lame", std::filesystem::perms::owner_all);
    KeptMargins mp3 = margins;
    mp3.Encoder = 1;
    mp3.MusicFile = Home() + "/Music/Ann - First.mp3";
    ASSERT_TRUE(Disk.ReplaceQuickly(mp3.MusicFile, "the old one"));
    ASSERT_TRUE(Disk.ReplaceQuickly(MarginFile(Folders, "one", ".note"), MarginNoteText(mp3)));
    const std::string path = bin + ":" + std::getenv("PATH");
    const Finished run =
        RunCommand({{"recut", "--home", Home(), "First", "--begin", "1"}, {{"PATH", path}}, folder.Path()});
    EXPECT_EQ(run.Code, 1);
    EXPECT_THAT(run.Err, HasSubstr("Its encoder ended with code 7; the music file stays as it was."));
    EXPECT_EQ(Content(mp3.MusicFile), "the old one");
    EXPECT_THAT(FilesBelow(MarginFolder(Folders)), SizeIs(4));
}

TEST_F(RecutTest, TheSourceHasLearnedIt) {
    Leave("one", "Ann", "First");
    ASSERT_EQ(Recut({"First", "--begin", "-1"}).Code, 0);
    const auto learned = CutPrior::FromText(Content(Home() + "/config/Corvet/cuts/player.cuts"));
    ASSERT_TRUE(learned);
    EXPECT_EQ(learned->Songs(), CutPrior::SongsOfCorrection);
    EXPECT_LE(learned->LikelyEdges().First, -40);
    EXPECT_GE(learned->LikelyEdges().Last, -40);
}

TEST_F(RecutTest, WhatIsOlderThanADayIsNotThereAnyMore) {
    KeptMargins margins = Leave("one", "Ann", "First");
    margins.KeptAt -= 25 * 3600;
    ASSERT_TRUE(Disk.ReplaceQuickly(MarginFile(Folders, "one", ".note"), MarginNoteText(margins)));
    std::ofstream(MarginFolder(Folders) + "/mine.txt") << "not of this program";
    EXPECT_EQ(Recut({"--list"}).Out, "");
    EXPECT_THAT(FilesBelow(MarginFolder(Folders)), ElementsAre("mine.txt"));
}

TEST(SecondsToMove, AreANumberWithItsSign) {
    EXPECT_EQ(SecondsToMove("+1.5"), 1.5);
    EXPECT_EQ(SecondsToMove("-0.25"), -0.25);
    EXPECT_EQ(SecondsToMove("3"), 3.0);
    for (const char* text : {"", "soon", "nan", "inf", "1e9", "+-1"})
        EXPECT_EQ(SecondsToMove(text), std::nullopt) << text;
}

TEST(RecutLines, SayWhatIsNotComplete) {
    RecutEntry entry;
    entry.Margins.MusicFile = "/music/A - B.mp3";
    entry.Margins.End = Certainty::Unsure;
    entry.SecondsLeft = 5400;
    EXPECT_EQ(
        RecutLines(entry),
        "A - B  (begin not known, end unsure; kept for 1.5 h)\n    what was kept of it is not complete\n");
}

}  // namespace
}  // namespace Corvetape::Test
