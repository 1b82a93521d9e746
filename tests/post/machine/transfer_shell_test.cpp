#include "platform/linux/processes/shell_script.h"
#include "platform/linux/run_shell.h"
#include "post/transfer_rig.h"

namespace Corvetape {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

/// The jobs of the transfer, run by the shell that they are written for.
class TransferShellTest : public TransferJobTest {
 protected:
    std::string LastLine() {
        return ShellLine(Bench.Sim.Processes.Jobs.back()).value_or("echo 'a template that is not closed'");
    }
    Testing::ShellRun RunLastJob() { return Testing::RunShell(LastLine()); }
};

TEST_F(TransferShellTest, EachEncoderHasItsCommandItsQualityItsLabelAndItsExtension) {
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

TEST_F(TransferShellTest, TheParametersOfTheEncoderStandInTheirOrder) {
    Bench.Options.Encoder = 1;
    Transfer();
    EXPECT_THAT(Testing::PrintedArguments(RunLastJob()),
                ElementsAre("/temp/Corvet/Artist - Title", "/music/Pop/Artist - Title", "a=Artist", "t=Title",
                            "-V", "2", "--x", "s=Pop", "/log/encode.log", "b=Album"));
}

TEST_F(TransferShellTest, HostileMediaDataArriveAsDataOnly) {
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

TEST_F(TransferShellTest, LongMediaDataStillMakeACommandLineThatCanBeStarted) {
    Bench.Options.Encoder = 1;
    Bench.Options.Normalize = Bench.Options.DelTemp = true;
    STATIONANDSONGDATA& song = Bench.Media.SongMedia;
    song.StationName = song.Artist = song.Song = song.Album = std::string(100000, '\'');
    Transfer();
    EXPECT_LT(LastLine().size(), 131072U);
    EXPECT_THAT(Testing::PrintedArguments(RunLastJob()).size(), 15U);
}

TEST_F(TransferShellTest, NormalizingComesAheadOfTheEncoder) {
    Bench.Options.Normalize = true;
    Transfer();
    const Testing::ShellRun run = RunLastJob();
    EXPECT_THAT(Testing::PrintedArguments(run),
                ElementsAre("n", "/temp/Corvet/Artist - Title", "/log/encode.log", "42", "/temp/Corvet/"));
    EXPECT_TRUE(run.Output.ends_with("wav44"));
}

TEST_F(TransferShellTest, TheEncoderRunsAlsoIfNormalizingFailed) {
    Bench.Options.Normalize = true;
    Bench.Options.NormalizeCommand = "sh -c 'exit 3'\\r\\n";
    Transfer();
    const Testing::ShellRun run = RunLastJob();
    EXPECT_EQ(run.Output, "wav44");
    EXPECT_EQ(run.ExitCode, 3);
}

TEST_F(TransferShellTest, TheJobFailsWithItsEncoder) {
    Bench.Options.EncoderCommand[0] = "sh -c 'exit 9'\\r\\n";
    Transfer();
    EXPECT_EQ(RunLastJob().ExitCode, 9);
    Bench.Options.EncoderCommand[0] = "corvet-no-such-encoder %1.wav\\r\\n";
    Transfer();
    EXPECT_EQ(RunLastJob().ExitCode, 127);
}

TEST_F(TransferShellTest, AFileThatIsBeingRecordedIsNeitherDeletedNorItsNameTaken) {
    Bench.Sim.Files.Put("/temp/Corvet/Artist - Title.wav", "input");
    Bench.Sim.Files.Put("/music/Pop/Artist - Title.wav", "input too");
    Bench.Options.EncoderCommand[0] = "printf %s \"$CORVET_SAME_NAME\"";
    Bench.Options.SameName = 0;
    TransferJob job = MakeJob({"/temp/Corvet/Artist - Title.wav", "/music/Pop/Artist - Title.wav"});
    job.TransferSong(Bench.Media.SongMedia);
    EXPECT_EQ(Bench.Sim.Files.Content("/temp/Corvet/Artist - Title.wav"), "input");
    EXPECT_TRUE(Exists("/temp/Corvet/Artist - Title (2).wav"));
    EXPECT_EQ(RunLastJob().Output, "2") << "the music is numbered whatever the rule";
}

TEST_F(TransferShellTest, TheCommandKnowsTheRuleForMusicOfTheSameName) {
    Bench.Options.EncoderCommand[0] = "printf %s \"$CORVET_SAME_NAME,$CORVET_WORK,$CORVET_MADE\"";
    for (const int32_t rule : {0, 1, 2}) {
        Bench.Options.SameName = rule;
        Transfer();
        EXPECT_THAT(RunLastJob().Output, ::testing::StartsWith(std::to_string(rule) + ",run-1-4"));
        EXPECT_THAT(RunLastJob().Output, HasSubstr(",/temp/Corvet/run-1-4"));
    }
}

}  // namespace
}  // namespace Corvetape
