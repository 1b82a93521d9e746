#include "post/transfer_rig.h"

#include <algorithm>
#include <limits>
#include <variant>

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

template <typename Step>
bool Has(const HiddenJob& job) {
    return std::ranges::any_of(job.Steps,
                               [](const JobStep& step) { return std::holds_alternative<Step>(step); });
}

TEST_F(TransferJobTest, OnlyWithDelTempTheTemporaryFilesAreDeletedAtTheEnd) {
    Transfer();
    EXPECT_FALSE(Has<DeleteSong>(Bench.Sim.Processes.Jobs[0]));
    Bench.Options.DelTemp = true;
    Transfer();
    const std::vector<JobStep>& steps = Bench.Sim.Processes.Jobs[1].Steps;
    ASSERT_EQ(steps.size(), 4U);
    ASSERT_TRUE(std::holds_alternative<DeleteNote>(steps[3])) << "the name is free after that";
    ASSERT_TRUE(std::holds_alternative<DeleteSong>(steps[2]));
    const auto& step = std::get<DeleteSong>(steps[2]);
    EXPECT_EQ(step.Base, "/temp/Corvet/Artist - Title (2)");
    EXPECT_EQ(step.Target, "/music/Pop/Artist - Title");
}

TEST_F(TransferJobTest, TheSongThatIsDeletedIsTheOneThatNormalizingLeft) {
    Bench.Options.Normalize = Bench.Options.DelTemp = true;
    Transfer();
    const std::vector<JobStep>& steps = Bench.Sim.Processes.Jobs[0].Steps;
    ASSERT_GE(steps.size(), 3U);
    EXPECT_EQ(std::get<CommandTemplate>(steps[0]).Text, Bench.Options.NormalizeCommand);
    EXPECT_TRUE(std::holds_alternative<RememberSong>(steps[1]));
    EXPECT_EQ(std::get<CommandTemplate>(steps[2]).Text, Bench.Options.EncoderCommand[0]);
}

TEST_F(TransferJobTest, TheJobRunsInTheProgramFolderWithItsToolsAheadOfTheSearchPath) {
    Transfer();
    EXPECT_EQ(Bench.Sim.Processes.Jobs[0].WorkingFolder, "/opt/corvetape");
    EXPECT_THAT(Bench.Sim.Processes.Jobs[0].ProgramFolders,
                ElementsAre("/opt/corvetape", "/usr/share/Corvet"));
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

TEST_F(TransferJobTest, AnEncoderOutsideTheTableIsReportedAndTheSongStays) {
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

TEST_F(TransferJobTest, AQualityOutsideItsListIsReportedAndTheSongStays) {
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

TEST_F(TransferJobTest, AMissingCommandIsReportedAndTheSongStaysAlsoWithDelTemp) {
    Bench.Options.EncoderCommand[0] = " ";
    Bench.Options.DelTemp = true;
    Transfer();
    EXPECT_THAT(Bench.Sim.Processes.Jobs, IsEmpty());
    EXPECT_EQ(Bench.LogLines(),
              "ERROR\tThere is no command WAV44 to make this format. The song stays as "
              "/temp/Corvet/Artist - Title.wav\nWAV44\tArtist - Title\n");
}

TEST_F(TransferJobTest, ABrokenCommandIsReportedAndNothingOfItRuns) {
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
