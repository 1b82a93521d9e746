#include "post/transfer_rig.h"

namespace Corvetape {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

TEST_F(TransferJobTest, TheTemporaryFilesGetTheFinalName) {
    Bench.Sim.Files.Put("/temp/Corvet/" + std::string(Stamp) + ".jpg", "cover");
    Job.TransferSong();
    EXPECT_THAT(TempFiles(), ElementsAre("Artist - Title.jpg", "Artist - Title.wav"));
    EXPECT_EQ(Bench.Sim.Files.Content("/temp/Corvet/Artist - Title.wav"), "sound");
}

TEST_F(TransferJobTest, WithoutSongDataNoFileIsRenamed) {
    Bench.Media.SongMedia.Song.clear();
    Job.TransferSong();
    EXPECT_THAT(TempFiles(), ElementsAre(std::string(Stamp) + ".wav"));
}

TEST_F(TransferJobTest, APieceOfFixedTimeIsNotRenamed) {
    Bench.Pause.EndOfSongDetection = EndOfSong::FixedTime;
    Job.TransferSong();
    EXPECT_THAT(TempFiles(), ElementsAre(std::string(Stamp) + ".wav"));
    EXPECT_FALSE(Exists("/music/Pop"));
}

TEST_F(TransferJobTest, AnEmptyNameGivesAFileOfExtensionOnly) {
    Bench.Options.MusicFileTemplate[1] = "%Source%";
    Job.TransferSong();
    EXPECT_THAT(TempFiles(), ElementsAre(".wav"));
    EXPECT_EQ(Songs[0].TempFile, "/temp/Corvet/.wav");
}

TEST_F(TransferJobTest, WhatIsLeftOfAnEarlierSongOfTheNameIsDeleted) {
    for (const char* name : {"Artist - Title.wav", "Artist - Title.jpg", "Artist - Title.mp3"}) {
        Bench.Sim.Files.Put("/temp/Corvet/" + std::string(name), "old");
    }
    Job.TransferSong();
    EXPECT_THAT(TempFiles(), ElementsAre("Artist - Title.wav"));
    EXPECT_EQ(Bench.Sim.Files.Content("/temp/Corvet/Artist - Title.wav"), "sound");
}

TEST_F(TransferJobTest, ASongWhoseNameOnlyBeginsLikeThisOneIsLeftAlone) {
    for (const char* name : {"Artist - Title. Part B.wav", "Artist - Title.x.jpg", "Artist - Title2.wav"}) {
        Bench.Sim.Files.Put("/temp/Corvet/" + std::string(name), "other");
    }
    Job.TransferSong();
    EXPECT_EQ(TempFiles().size(), 4U);
}

TEST_F(TransferJobTest, ASongWhoseNameIsItsTimeStampDoesNotDeleteItself) {
    Bench.Options.MusicFileTemplate[1] = Stamp;
    Job.TransferSong();
    EXPECT_THAT(TempFiles(), ElementsAre(std::string(Stamp) + ".wav"));
}

TEST_F(TransferJobTest, PartsOfASongDoNotReplaceOneAnother) {
    Bench.Media.SongMedia.FilePart = 1;
    Job.TransferSong();
    Bench.Sim.Files.Put("/temp/Corvet/second.wav", "more");
    Bench.Media.SongMedia.TempFileName = "second";
    Bench.Media.SongMedia.FilePart = 2;
    Job.TransferSong();
    EXPECT_THAT(TempFiles(), ElementsAre("Artist - Title (1).wav", "Artist - Title (2).wav"));
    EXPECT_NE(Songs[0].MusicFile, Songs[1].MusicFile);
}

TEST_F(TransferJobTest, TheSubfolderIsMade) {
    Job.TransferSong();
    EXPECT_TRUE(Exists("/music/Pop"));
}

TEST_F(TransferJobTest, OnlyTheLastLevelOfTheSubfolderIsMade) {
    Bench.Options.MusicFolderTemplate = "%Genre%/%Artist%";
    Job.TransferSong();
    EXPECT_FALSE(Exists("/music/Pop"));
    ASSERT_EQ(Bench.Sim.Processes.Jobs.size(), 1U);
    Bench.Sim.Files.MakeFolders("/music/Pop");
    Job.TransferSong();
    EXPECT_TRUE(Exists("/music/Pop/Artist"));
}

TEST_F(TransferJobTest, AFailingRenameStartsTheEncoderAllTheSameAndKeepsTheSong) {
    Bench.Sim.Files.AddFault({.Operation = FileOperation::Rename});
    Job.TransferSong();
    EXPECT_EQ(Bench.Sim.Processes.Jobs.size(), 1U);
    EXPECT_THAT(TempFiles(), ElementsAre(std::string(Stamp) + ".wav"));
    EXPECT_EQ(Bench.LogLines(), "WAV44\tArtist - Title\n");
}

TEST_F(TransferJobTest, WithAutoExcludeTheNameGoesOnTheExcludeList) {
    Bench.Options.AutoExclude = true;
    Bench.Media.SongMedia.FilePart = 3;
    Job.TransferSong();
    EXPECT_THAT(Excluded, ElementsAre("1 Artist - Title"));
}

TEST_F(TransferJobTest, WithoutAutoExcludeOrSongDataTheListStaysAsItIs) {
    Job.TransferSong();
    Bench.Options.AutoExclude = true;
    Bench.Media.SongMedia.Song.clear();
    Job.TransferSong();
    EXPECT_THAT(Excluded, IsEmpty());
}

TEST_F(TransferJobTest, TheSongCounterRisesForEverySong) {
    Job.TransferSong();
    EXPECT_EQ(SongCounter, 42);
    EXPECT_EQ(StoredCounter, 42);
    Bench.Media.SongMedia.Song.clear();
    Job.TransferSong();
    Bench.Options.EncodeOffline = true;
    Job.TransferSong();
    EXPECT_EQ(SongCounter, 44);
    EXPECT_EQ(StoredCounter, 44);
}

TEST_F(TransferJobTest, TheSongCounterGoesOnPastItsLargestNumber) {
    SongCounter = std::numeric_limits<int32_t>::max();
    CounterFails = true;
    Job.TransferSong();
    EXPECT_EQ(SongCounter, std::numeric_limits<int32_t>::min());
}

TEST_F(TransferJobTest, EncodingOfflineLeavesTheSongUnderItsFinalName) {
    Bench.Options.EncodeOffline = true;
    Bench.Options.Normalize = Bench.Options.DelTemp = true;
    Job.TransferSong();
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
    Job.TransferSong();
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
        Job.TransferSong();
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
    Job.TransferSong();
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
    Job.TransferSong();
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
    Job.TransferSong();
    EXPECT_LT(Bench.Sim.Processes.Jobs.back().CommandLine.size(), 131072U);
    EXPECT_THAT(Testing::PrintedArguments(RunLastJob()).size(), 15U);
}

TEST_F(TransferJobTest, NormalizingComesAheadOfTheEncoder) {
    Bench.Options.Normalize = true;
    Job.TransferSong();
    const Testing::ShellRun run = RunLastJob();
    EXPECT_THAT(Testing::PrintedArguments(run),
                ElementsAre("n", "/temp/Corvet/Artist - Title", "/log/encode.log", "42", "/temp/Corvet/"));
    EXPECT_TRUE(run.Output.ends_with("wav44"));
}

TEST_F(TransferJobTest, TheEncoderRunsAlsoIfNormalizingFailed) {
    Bench.Options.Normalize = true;
    Bench.Options.NormalizeCommand = "sh -c 'exit 3'\\r\\n";
    Job.TransferSong();
    const Testing::ShellRun run = RunLastJob();
    EXPECT_EQ(run.Output, "wav44");
    EXPECT_EQ(run.ExitCode, 3);
}

TEST_F(TransferJobTest, TheJobFailsWithItsEncoder) {
    Bench.Options.EncoderCommand[0] = "sh -c 'exit 9'\\r\\n";
    Job.TransferSong();
    EXPECT_EQ(RunLastJob().ExitCode, 9);
    Bench.Options.EncoderCommand[0] = "corvet-no-such-encoder %1.wav\\r\\n";
    Job.TransferSong();
    EXPECT_EQ(RunLastJob().ExitCode, 127);
}

TEST_F(TransferJobTest, OnlyWithDelTempAnythingIsDeletedAtTheEnd) {
    Job.TransferSong();
    EXPECT_THAT(Bench.Sim.Processes.Jobs[0].CommandLine, ::testing::Not(HasSubstr("for corvet_file")));
    Bench.Options.DelTemp = true;
    Job.TransferSong();
    EXPECT_THAT(Bench.Sim.Processes.Jobs[1].CommandLine, HasSubstr("for corvet_file"));
}

TEST_F(TransferJobTest, TheJobRunsInTheProgramFolderWithItsToolsAheadOfTheSearchPath) {
    Bench.Options.EncoderCommand[0] = "printf %s \"$PATH\"";
    Job.TransferSong();
    EXPECT_EQ(Bench.Sim.Processes.Jobs[0].WorkingFolder, "/opt/corvetape");
    EXPECT_TRUE(RunLastJob().Output.starts_with("/opt/corvetape:/usr/share/Corvet:"));
}

TEST_F(TransferJobTest, EveryJobHasANameOfItsOwn) {
    Job.TransferSong();
    Job.TransferSong();
    EXPECT_EQ(Songs[0].JobName, Bench.Sim.Processes.Jobs[0].Name);
    EXPECT_EQ(Songs[1].JobName, Bench.Sim.Processes.Jobs[1].Name);
    EXPECT_NE(Songs[0].JobName, Songs[1].JobName);
}

TEST_F(TransferJobTest, ACommandThatCannotBeStartedIsLoggedAllTheSame) {
    Bench.Sim.Processes.RefuseJobs = true;
    Job.TransferSong();
    EXPECT_EQ(Bench.LogLines(), "WAV44\tArtist - Title\n");
    EXPECT_THAT(TempFiles(), ElementsAre("Artist - Title.wav"));
    EXPECT_EQ(Songs[0].MusicFile, "");
    EXPECT_EQ(Songs[0].JobName, "");
}

TEST_F(TransferJobTest, WithMediaDataSwitchedOffTheLineNamesTheTemporaryFile) {
    Bench.Media.StationDataEnabled = false;
    Job.TransferSong();
    EXPECT_EQ(Bench.LogLines(), "WAV44\t" + std::string(Stamp) + "\n");
}

TEST_F(TransferJobTest, TheLineOfAnUnknownSongNamesTheTemporaryFile) {
    Bench.Media.SongMedia.Artist.clear();
    Bench.Media.SongMedia.Song.clear();
    Job.TransferSong();
    EXPECT_EQ(Bench.LogLines(), "WAV44\t" + std::string(Stamp) + "\n");
}

TEST_F(TransferJobTest, AnEncoderOutsideTheTableIsToldAndTheSongStays) {
    for (const int32_t encoder : {6, -1}) {
        Bench.Options.Encoder = encoder;
        Job.TransferSong();
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
    Job.TransferSong();
    Bench.Options.MP3Quality = -1;
    Job.TransferSong();
    EXPECT_THAT(Bench.Sim.Processes.Jobs, IsEmpty());
    EXPECT_EQ(Bench.LogLines(),
              "ERROR\tThere is no quality 2 for MP3. The song stays as /temp/Corvet/Artist - Title.wav\n"
              "ERROR\tThere is no quality -1 for MP3.\n");
    EXPECT_EQ(SongCounter, 43);
}

TEST_F(TransferJobTest, AMissingCommandIsToldAndTheSongStaysAlsoWithDelTemp) {
    Bench.Options.EncoderCommand[0] = " ";
    Bench.Options.DelTemp = true;
    Job.TransferSong();
    EXPECT_THAT(Bench.Sim.Processes.Jobs, IsEmpty());
    EXPECT_EQ(Bench.LogLines(),
              "ERROR\tThere is no command WAV44 to make this format. The song stays as "
              "/temp/Corvet/Artist - Title.wav\nWAV44\tArtist - Title\n");
}

TEST_F(TransferJobTest, ABrokenCommandIsToldAndNothingOfItRuns) {
    Bench.Options.EncoderCommand[0] = "echo 'a\\r\\n";
    Job.TransferSong();
    Bench.Options.EncoderCommand[0] = "echo a\\r\\n";
    Bench.Options.Normalize = true;
    Bench.Options.NormalizeCommand = "echo \"";
    Job.TransferSong();
    EXPECT_THAT(Bench.Sim.Processes.Jobs, IsEmpty());
    EXPECT_THAT(Songs[0].Problem, HasSubstr("WAV44"));
    EXPECT_THAT(Songs[1].Problem, HasSubstr("Normalize"));
}

TEST_F(TransferJobTest, ThePendingEndOfTheProgramFollowsTheSong) {
    Job.TransferSong();
    EXPECT_EQ(Unloads, 0);
    Bench.Flags.QuitAtEndOfSong = true;
    Job.TransferSong();
    EXPECT_EQ(Unloads, 1);
    Bench.Options.Encoder = 99;
    Job.TransferSong();
    EXPECT_EQ(Unloads, 2);
    Bench.Options.EncodeOffline = true;
    Job.TransferSong();
    EXPECT_EQ(Unloads, 3);
    EXPECT_EQ(Songs.size(), 4U);
}

TEST_F(TransferJobTest, TheTimerRunsTheJobOnce) {
    Job.Attach(Bench.Form.tmrEncodeFile);
    Bench.Form.tmrEncodeFile.Attach(Bench.Sim.Loop);
    Bench.Form.tmrEncodeFile.Interval(EncodeInterval(5000));
    Bench.Form.tmrEncodeFile.Running(true);
    Bench.Sim.Loop.RunFor(std::chrono::milliseconds(4999));
    EXPECT_THAT(Songs, IsEmpty());
    Bench.Sim.Loop.RunFor(std::chrono::milliseconds(1));
    EXPECT_EQ(Songs.size(), 1U);
    EXPECT_FALSE(Bench.Form.tmrEncodeFile.Running());
    Bench.Sim.Loop.RunFor(std::chrono::milliseconds(20000));
    EXPECT_EQ(Songs.size(), 1U);
}

TEST(EncodeInterval, IsAtLeastAHundredMilliseconds) {
    EXPECT_EQ(EncodeInterval(5000), 5000);
    EXPECT_EQ(EncodeInterval(101), 101);
    EXPECT_EQ(EncodeInterval(100), 100);
    EXPECT_EQ(EncodeInterval(0), 100);
    EXPECT_EQ(EncodeInterval(-7), 100);
}

}  // namespace
}  // namespace Corvetape
