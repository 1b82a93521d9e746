#include "post/transfer_rig.h"

#include <limits>

namespace Corvetape {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

TEST_F(TransferJobTest, TheTemporaryFilesGetTheFinalName) {
    Bench.Sim.Files.Put("/temp/Corvet/" + std::string(Stamp) + ".jpg", "cover");
    Transfer();
    EXPECT_THAT(TempFiles(), ElementsAre("Artist - Title.jpg", "Artist - Title.wav"));
    EXPECT_EQ(Bench.Sim.Files.Content("/temp/Corvet/Artist - Title.wav"), "sound");
}

TEST_F(TransferJobTest, WithoutSongDataNoFileIsRenamed) {
    Bench.Media.SongMedia.Song.clear();
    Transfer();
    EXPECT_THAT(TempFiles(), ElementsAre(std::string(Stamp) + ".wav"));
}

TEST_F(TransferJobTest, APieceOfFixedTimeIsNotRenamed) {
    Bench.Pause.EndOfSongDetection = EndOfSong::FixedTime;
    Transfer();
    EXPECT_THAT(TempFiles(), ElementsAre(std::string(Stamp) + ".wav"));
    EXPECT_FALSE(Exists("/music/Pop"));
}

TEST_F(TransferJobTest, AnEmptyNameGivesAFileOfExtensionOnly) {
    Bench.Options.MusicFileTemplate[1] = "%Source%";
    Transfer();
    EXPECT_THAT(TempFiles(), ElementsAre(".wav"));
    EXPECT_EQ(Songs[0].TempFile, "/temp/Corvet/.wav");
}

TEST_F(TransferJobTest, WhatIsLeftOfAnEarlierSongOfTheNameIsDeleted) {
    for (const char* name : {"Artist - Title.wav", "Artist - Title.jpg", "Artist - Title.mp3"}) {
        Bench.Sim.Files.Put("/temp/Corvet/" + std::string(name), "old");
    }
    Transfer();
    EXPECT_THAT(TempFiles(), ElementsAre("Artist - Title.wav"));
    EXPECT_EQ(Bench.Sim.Files.Content("/temp/Corvet/Artist - Title.wav"), "sound");
}

TEST_F(TransferJobTest, ASongWhoseNameOnlyBeginsLikeThisOneIsLeftAlone) {
    for (const char* name : {"Artist - Title. Part B.wav", "Artist - Title.x.jpg", "Artist - Title2.wav"}) {
        Bench.Sim.Files.Put("/temp/Corvet/" + std::string(name), "other");
    }
    Transfer();
    EXPECT_EQ(TempFiles().size(), 4U);
}

TEST_F(TransferJobTest, ASongWhoseNameIsItsTimeStampDoesNotDeleteItself) {
    Bench.Options.MusicFileTemplate[1] = Stamp;
    Transfer();
    EXPECT_THAT(TempFiles(), ElementsAre(std::string(Stamp) + ".wav"));
}

TEST_F(TransferJobTest, PartsOfASongDoNotReplaceOneAnother) {
    Bench.Media.SongMedia.FilePart = 1;
    Transfer();
    Bench.Sim.Files.Put("/temp/Corvet/second.wav", "more");
    Bench.Media.SongMedia.TempFileName = "second";
    Bench.Media.SongMedia.FilePart = 2;
    Transfer();
    EXPECT_THAT(TempFiles(), ElementsAre("Artist - Title (1).wav", "Artist - Title (2).wav"));
    EXPECT_NE(Songs[0].MusicFile, Songs[1].MusicFile);
}

TEST_F(TransferJobTest, TheSubfolderIsMade) {
    Transfer();
    EXPECT_TRUE(Exists("/music/Pop"));
}

TEST_F(TransferJobTest, OnlyTheLastLevelOfTheSubfolderIsMade) {
    Bench.Options.MusicFolderTemplate = "%Genre%/%Artist%";
    Transfer();
    EXPECT_FALSE(Exists("/music/Pop"));
    ASSERT_EQ(Bench.Sim.Processes.Jobs.size(), 1U);
    Bench.Sim.Files.MakeFolders("/music/Pop");
    Transfer();
    EXPECT_TRUE(Exists("/music/Pop/Artist"));
}

TEST_F(TransferJobTest, AFailingRenameStartsTheEncoderAllTheSameAndKeepsTheSong) {
    Bench.Sim.Files.AddFault({.Operation = FileOperation::Rename});
    Transfer();
    EXPECT_EQ(Bench.Sim.Processes.Jobs.size(), 1U);
    EXPECT_THAT(TempFiles(), ElementsAre(std::string(Stamp) + ".wav"));
    EXPECT_EQ(Bench.LogLines(), "WAV44\tArtist - Title\n");
}

TEST_F(TransferJobTest, WithAutoExcludeTheNameGoesOnTheExcludeList) {
    Bench.Options.AutoExclude = true;
    Bench.Media.SongMedia.FilePart = 3;
    Transfer();
    EXPECT_THAT(Lists.List(WatchListKind::Exclude).Entries(), ElementsAre("Artist - Title"));
}

TEST_F(TransferJobTest, WithoutAutoExcludeOrSongDataTheListStaysAsItIs) {
    Transfer();
    Bench.Options.AutoExclude = true;
    Bench.Media.SongMedia.Song.clear();
    Transfer();
    EXPECT_THAT(Lists.List(WatchListKind::Exclude).Entries(), IsEmpty());
}

TEST_F(TransferJobTest, TheSongCounterRisesForEverySong) {
    const auto stored = [this] { return NumberOf(Bench.Registry.ReadUserValue("", "TotalCountOfSongs")); };
    Transfer();
    EXPECT_EQ(Counter.Total(), 42);
    EXPECT_EQ(stored(), 42);
    Bench.Media.SongMedia.Song.clear();
    Transfer();
    Bench.Options.EncodeOffline = true;
    Transfer();
    EXPECT_EQ(Counter.Total(), 44);
    EXPECT_EQ(stored(), 44);
}

TEST_F(TransferJobTest, TheSongCounterGoesOnPastItsLargestNumber) {
    ASSERT_TRUE(Bench.Registry.WriteUserValue("", "TotalCountOfSongs", std::numeric_limits<int32_t>::max()));
    Counter.Load();
    Bench.Sim.Files.AddFault({.Pattern = "*registry-user", .Operation = FileOperation::Replace});
    Transfer();
    EXPECT_EQ(Counter.Total(), std::numeric_limits<int32_t>::min());
}

TEST(SongCounterAlone, TakesTheLargestNumberForATotalThatIsNone) {
    Testing::PostBench bench;
    SongCounter counter(bench.Registry);
    counter.Load();
    EXPECT_EQ(counter.Total(), 0);
    ASSERT_TRUE(bench.Registry.WriteUserValue("", "TotalCountOfSongs", std::string("1e300")));
    counter.Load();
    EXPECT_EQ(counter.Total(), std::numeric_limits<int32_t>::max());
}

TEST_F(TransferJobTest, EncodingOfflineLeavesTheSongUnderItsFinalName) {
    Bench.Options.EncodeOffline = true;
    Bench.Options.Normalize = Bench.Options.DelTemp = true;
    Transfer();
    EXPECT_THAT(TempFiles(), ElementsAre("Artist - Title.wav"));
    EXPECT_THAT(Bench.Sim.Processes.Jobs, IsEmpty());
    EXPECT_EQ(Bench.LogLines(), "TEMP\tArtist - Title\n");
    EXPECT_EQ(Songs[0].MusicFile, "");
    EXPECT_EQ(Songs[0].TempFile, "/temp/Corvet/Artist - Title.wav");
    EXPECT_EQ(Songs[0].Problem, "");
}

TEST_F(TransferJobTest, EncodingOfflineLooksAtNoEncoder) {
    Bench.Options.EncodeOffline = true;
    Bench.Options.Encoder = 17;
    Transfer();
    EXPECT_EQ(Bench.LogLines(), "TEMP\tArtist - Title\n");
}

TEST_F(TransferJobTest, EachEncoderHasItsCommandItsQualityItsLabelAndItsExtension) {
    struct {
        const char* Output;
        const char* Label;
        const char* Extension;
    } rows[] = {{"wav44", "WAV44", "wav"},    {nullptr, "MP3 ", "mp3"},     {"ogg -q 1", "OGG ", "ogg"},
                {"wma4444a", "WMA44", "wma"}, {"wma4848a", "WMA48", "wma"}, {"wav48", "WAV48", "wav"}};
    std::string lines;
    for (int32_t encoder = 0; encoder < 6; ++encoder) {
        Bench.Options.Encoder = encoder;
        Transfer();
        const auto& row = rows[encoder];
        if (row.Output != nullptr) {
            EXPECT_EQ(RunLastJob().Output, row.Output) << encoder;
        }
        EXPECT_EQ(Songs.back().JobLabel, row.Label);
        EXPECT_EQ(Songs.back().MusicFile, "/music/Pop/Artist - Title." + std::string(row.Extension));
        lines += std::string(row.Label) + "\tArtist - Title\n";
    }
    EXPECT_EQ(Bench.LogLines(), lines);
}

TEST_F(TransferJobTest, TheParametersOfTheEncoderStandInTheirOrder) {
    Bench.Options.Encoder = 1;
    Transfer();
    EXPECT_THAT(Testing::PrintedArguments(RunLastJob()),
                ElementsAre("/temp/Corvet/Artist - Title", "/music/Pop/Artist - Title", "a=Artist", "t=Title",
                            "-V", "2", "--x", "s=Pop", "/log/encode.log", "b=Album"));
}

TEST_F(TransferJobTest, HostileMediaDataArriveAsDataOnly) {
    Bench.Options.Encoder = 1;
    STATIONANDSONGDATA& song = Bench.Media.SongMedia;
    song.StationName = "`id`; %5\\r\\nid";
    song.Artist = "-rf \"$(id)\" %1%2";
    song.Song = "'; id; '%5 %1 \\R\\N\n$HOME &";
    song.Album = "%3%4\\";
    Transfer();
    const auto arguments = Testing::PrintedArguments(RunLastJob());
    ASSERT_EQ(arguments.size(), 10U);
    EXPECT_EQ(arguments[2], "a=" + song.Artist);
    EXPECT_EQ(arguments[3], "t=" + song.Song);
    EXPECT_EQ(arguments[7], "s=" + song.StationName);
    EXPECT_EQ(arguments[9], "b=" + song.Album);
    EXPECT_TRUE(arguments[0].starts_with("/temp/Corvet/-rf _$(id)_ %1%2 - '; id; '%5 %1 _R_N_$HOME &"));
}

TEST_F(TransferJobTest, LongMediaDataStillMakeACommandLineThatCanBeStarted) {
    Bench.Options.Encoder = 1;
    Bench.Options.Normalize = Bench.Options.DelTemp = true;
    STATIONANDSONGDATA& song = Bench.Media.SongMedia;
    song.StationName = song.Artist = song.Song = song.Album = std::string(100000, '\'');
    Transfer();
    EXPECT_LT(Bench.Sim.Processes.Jobs.back().CommandLine.size(), 131072U);
    EXPECT_THAT(Testing::PrintedArguments(RunLastJob()).size(), 15U);
}

TEST_F(TransferJobTest, NormalizingComesAheadOfTheEncoder) {
    Bench.Options.Normalize = true;
    Transfer();
    const Testing::ShellRun run = RunLastJob();
    EXPECT_THAT(Testing::PrintedArguments(run),
                ElementsAre("n", "/temp/Corvet/Artist - Title", "/log/encode.log", "42", "/temp/Corvet/"));
    EXPECT_TRUE(run.Output.ends_with("wav44"));
}

TEST_F(TransferJobTest, TheEncoderRunsAlsoIfNormalizingFailed) {
    Bench.Options.Normalize = true;
    Bench.Options.NormalizeCommand = "sh -c 'exit 3'\\r\\n";
    Transfer();
    const Testing::ShellRun run = RunLastJob();
    EXPECT_EQ(run.Output, "wav44");
    EXPECT_EQ(run.ExitCode, 3);
}

TEST_F(TransferJobTest, TheJobFailsWithItsEncoder) {
    Bench.Options.EncoderCommand[0] = "sh -c 'exit 9'\\r\\n";
    Transfer();
    EXPECT_EQ(RunLastJob().ExitCode, 9);
    Bench.Options.EncoderCommand[0] = "corvet-no-such-encoder %1.wav\\r\\n";
    Transfer();
    EXPECT_EQ(RunLastJob().ExitCode, 127);
}

TEST_F(TransferJobTest, OnlyWithDelTempAnythingIsDeletedAtTheEnd) {
    Transfer();
    EXPECT_THAT(Bench.Sim.Processes.Jobs[0].CommandLine, ::testing::Not(HasSubstr("for corvet_file")));
    Bench.Options.DelTemp = true;
    Transfer();
    EXPECT_THAT(Bench.Sim.Processes.Jobs[1].CommandLine, HasSubstr("for corvet_file"));
}

TEST_F(TransferJobTest, TheJobRunsInTheProgramFolderWithItsToolsAheadOfTheSearchPath) {
    Bench.Options.EncoderCommand[0] = "printf %s \"$PATH\"";
    Transfer();
    EXPECT_EQ(Bench.Sim.Processes.Jobs[0].WorkingFolder, "/opt/corvetape");
    EXPECT_TRUE(RunLastJob().Output.starts_with("/opt/corvetape:/usr/share/Corvet:"));
}

TEST_F(TransferJobTest, EveryJobHasANameOfItsOwn) {
    Transfer();
    Transfer();
    EXPECT_EQ(Songs[0].JobName, Bench.Sim.Processes.Jobs[0].Name);
    EXPECT_EQ(Songs[1].JobName, Bench.Sim.Processes.Jobs[1].Name);
    EXPECT_NE(Songs[0].JobName, Songs[1].JobName);
}

TEST_F(TransferJobTest, ACommandThatCannotBeStartedIsLoggedAllTheSame) {
    Bench.Sim.Processes.RefuseJobs = true;
    Transfer();
    EXPECT_EQ(Bench.LogLines(), "WAV44\tArtist - Title\n");
    EXPECT_THAT(TempFiles(), ElementsAre("Artist - Title.wav"));
    EXPECT_EQ(Songs[0].MusicFile, "");
    EXPECT_EQ(Songs[0].JobName, "");
}

TEST_F(TransferJobTest, WithMediaDataSwitchedOffTheLineNamesTheTemporaryFile) {
    Bench.Media.StationDataEnabled = false;
    Transfer();
    EXPECT_EQ(Bench.LogLines(), "WAV44\t" + std::string(Stamp) + "\n");
}

TEST_F(TransferJobTest, TheLineOfAnUnknownSongNamesTheTemporaryFile) {
    Bench.Media.SongMedia.Artist.clear();
    Bench.Media.SongMedia.Song.clear();
    Transfer();
    EXPECT_EQ(Bench.LogLines(), "WAV44\t" + std::string(Stamp) + "\n");
}

TEST_F(TransferJobTest, AnEncoderOutsideTheTableIsToldAndTheSongStays) {
    for (const int32_t encoder : {6, -1}) {
        Bench.Options.Encoder = encoder;
        Transfer();
        EXPECT_THAT(Songs.back().Problem, HasSubstr(std::to_string(encoder)));
        EXPECT_EQ(Songs.back().JobLabel, "");
    }
    EXPECT_THAT(Bench.Sim.Processes.Jobs, IsEmpty());
    EXPECT_EQ(Bench.LogLines(),
              "ERROR\tThere is no encoder 6. The song stays as /temp/Corvet/Artist - Title.wav\n"
              "ERROR\tThere is no encoder -1.\n")
        << "the second time there is no file";
}

TEST_F(TransferJobTest, AQualityOutsideItsListIsToldAndTheSongStays) {
    Bench.Options.Encoder = 1;
    Bench.Options.MP3Quality = 2;
    Transfer();
    Bench.Options.MP3Quality = -1;
    Transfer();
    EXPECT_THAT(Bench.Sim.Processes.Jobs, IsEmpty());
    EXPECT_EQ(Bench.LogLines(),
              "ERROR\tThere is no quality 2 for MP3. The song stays as /temp/Corvet/Artist - Title.wav\n"
              "ERROR\tThere is no quality -1 for MP3.\n");
    EXPECT_EQ(Counter.Total(), 43);
}

TEST_F(TransferJobTest, AMissingCommandIsToldAndTheSongStaysAlsoWithDelTemp) {
    Bench.Options.EncoderCommand[0] = " ";
    Bench.Options.DelTemp = true;
    Transfer();
    EXPECT_THAT(Bench.Sim.Processes.Jobs, IsEmpty());
    EXPECT_EQ(Bench.LogLines(),
              "ERROR\tThere is no command WAV44 to make this format. The song stays as "
              "/temp/Corvet/Artist - Title.wav\nWAV44\tArtist - Title\n");
}

TEST_F(TransferJobTest, ABrokenCommandIsToldAndNothingOfItRuns) {
    Bench.Options.EncoderCommand[0] = "echo 'a\\r\\n";
    Transfer();
    Bench.Options.EncoderCommand[0] = "echo a\\r\\n";
    Bench.Options.Normalize = true;
    Bench.Options.NormalizeCommand = "echo \"";
    Transfer();
    EXPECT_THAT(Bench.Sim.Processes.Jobs, IsEmpty());
    EXPECT_THAT(Songs[0].Problem, HasSubstr("WAV44"));
    EXPECT_THAT(Songs[1].Problem, HasSubstr("Normalize"));
}

}  // namespace
}  // namespace Corvetape
