// What becomes of songs whose encoder refuses them, and of interruptions while encoders work.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <csignal>
#include <thread>

#include "cli/cli_test.h"

namespace Corvetape {
namespace {

using namespace Test;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

class EncoderTest : public CliTest {
 protected:
    /// An encoder that tells of each start and then waits until Release.
    std::vector<std::string> WaitingEncoder() const {
        EXPECT_EQ(mkfifo((folder / "gate").c_str(), 0600), 0);
        return {"--set", "Encode.WAV44=echo >>" + folder.Path() + "/started; read x <" + folder.Path() +
                             "/gate; cp %1.wav %2.wav\\r\\n"};
    }

    static size_t MostEncoders() { return 4 * std::max(std::thread::hardware_concurrency(), 1U) + 4; }

    size_t Started() const { return LinesOf(Content(folder / "started")).size(); }

    /// Lets all waiting encoders go on, and those that come later.
    void Release() {
        gate.open(folder / "gate", std::ios::in | std::ios::out);
        gate << std::string(100, '\n') << std::flush;  // a line for each
    }

    std::fstream gate;
};

TEST_F(EncoderTest, ARefusedSongIsNamedAndItsSoundIsKept) {
    const Recording recording = MakeRecording();
    const Finished run = Split({PutWave("show.wav", recording), "--json", "--set", "Options.Encoder=1",
                                "--set", "MP3.EncParams=--nonsense", "--set", "Options.MP3Quality=0"});
    EXPECT_EQ(run.Code, 1);
    const std::vector<Json> songs = Objects(run.Out);
    ASSERT_THAT(songs, SizeIs(3));
    for (const Json& song : songs) {
        EXPECT_EQ(song["kept"], true);
        EXPECT_EQ(song["file"], "");
    }
    std::vector<std::string> told = LinesOf(run.Err);
    std::ranges::sort(told);  // the encoders end in any order
    ASSERT_THAT(told, SizeIs(3));
    const std::string log = Home() + "/config/Corvet/encode.log";
    for (size_t i = 0; i < told.size(); ++i) {
        EXPECT_THAT(told[i], HasSubstr("no music file of show "));
        EXPECT_THAT(told[i],
                    HasSubstr(": its encoder ended with code 1, see " + log + "; the song stays as "));
        const std::string kept = told[i].substr(told[i].find("stays as ") + 9);
        EXPECT_EQ(Comparison(recording.Songs[i], ReadSound(kept)), "equal") << kept;
    }
    EXPECT_THAT(Content(log), HasSubstr("nonsense"));
}

TEST_F(EncoderTest, TheEndSaysHowManySongsAreNoMusicFiles) {
    const Finished run = Split({PutWave("show.wav", MakeRecording()), "--set", "Encode.WAV44=exit 3\\r\\n"});
    EXPECT_EQ(run.Code, 1);
    EXPECT_EQ(LastLineOf(run.Out), "3 songs kept in " + Out() + ", 3 of them not as music files");
}

TEST_F(EncoderTest, ASongThatIsNotToBeEncodedIsNoFailure) {
    const Finished run =
        Split({PutWave("show.wav", MakeRecording()), "--json", "--set", "Options.EncodeOffline=1"});
    EXPECT_EQ(run.Code, 0);
    EXPECT_EQ(run.Err, "");
    for (const Json& song : Objects(run.Out)) EXPECT_EQ(song["file"], "");
    EXPECT_THAT(FilesBelow(Out()), SizeIs(3));
}

TEST_F(EncoderTest, TheEndSaysWhereSongsAreThatAreNotToBeEncoded) {
    const Finished run = Split({PutWave("show.wav", MakeRecording()), "--set", "Options.EncodeOffline=1"});
    const std::string begin = "3 songs kept in ";
    const std::string end = LastLineOf(run.Out);
    ASSERT_TRUE(end.starts_with(begin)) << end;
    EXPECT_THAT(FilesBelow(end.substr(begin.size())), SizeIs(3));
}

TEST_F(EncoderTest, AWaitingEncoderHoldsBackTheEndAndNothingElse) {
    CommandStart start = With("split", {PutWave("show.wav", MakeRecording()), "--out", Out(), "--json"});
    for (const std::string& word : WaitingEncoder()) start.Arguments.push_back(word);
    Command command(start);
    ASSERT_TRUE(command.WaitUntil([&] { return Started() == 3; }));
    EXPECT_EQ(command.Out, "") << "a song was told before its file was there";
    Release();
    EXPECT_EQ(command.Wait(), 0);
    EXPECT_THAT(Objects(command.Out), SizeIs(3));
}

TEST_F(EncoderTest, MoreSongsThanTheMachineHasRoomForWaitForTheirEncoders) {
    const Recording recording = MakeRecording({.Songs = MostEncoders() + 8, .Seconds = 1, .Growth = 0});
    CommandStart start = With("split", {PutWave("show.wav", recording), "--out", Out(), "--json", "--set",
                                        "Source.IgnoreShortSongs=0"});
    for (const std::string& word : WaitingEncoder()) start.Arguments.push_back(word);
    Command command(start);
    ASSERT_TRUE(command.WaitUntil([&] { return Started() == MostEncoders(); }));
    EXPECT_FALSE(
        command.WaitUntil([&] { return Started() > MostEncoders(); }, std::chrono::milliseconds(300)));
    Release();
    EXPECT_EQ(command.Wait(), 0);
    EXPECT_THAT(Objects(command.Out), SizeIs(recording.Songs.size()));
    EXPECT_THAT(FilesBelow(Out()), SizeIs(recording.Songs.size()));
}

TEST_F(EncoderTest, AnInterruptedSplitKeepsItsSongsAndSaysHowFarItCame) {
    const Recording recording = MakeRecording({.Songs = MostEncoders() + 8, .Seconds = 1, .Growth = 0});
    const std::string path = PutWave("show.wav", recording);
    CommandStart start =
        With("split", {path, "--out", Out(), "--json", "--set", "Source.IgnoreShortSongs=0"});
    for (const std::string& word : WaitingEncoder()) start.Arguments.push_back(word);
    Command command(start);
    ASSERT_TRUE(command.WaitUntil([&] { return Started() == MostEncoders(); }));
    command.Signal(SIGINT);
    Release();
    EXPECT_EQ(command.Wait(), 1);
    EXPECT_EQ(command.Err, "corvetape-cli: " + path + " was split only up to the interruption\n");
    const std::vector<Json> songs = Objects(command.Out);
    EXPECT_GE(songs.size(), MostEncoders());
    EXPECT_LT(songs.size(), recording.Songs.size());
    size_t files = 0;
    for (const Json& song : songs) files += song["file"] != "" ? 1 : 0;
    EXPECT_GE(files, MostEncoders());
    EXPECT_THAT(FilesBelow(Out()), SizeIs(files)) << "something is left beside the songs";
}

TEST_F(EncoderTest, ASecondInterruptionEndsTheProgramAtOnce) {
    CommandStart start = With("split", {PutWave("show.wav", MakeRecording()), "--out", Out(), "--json"});
    for (const std::string& word : WaitingEncoder()) start.Arguments.push_back(word);
    Command command(start);
    ASSERT_TRUE(command.WaitUntil([&] { return Started() == 3; }));
    command.Signal(SIGINT);
    // The first one is only noted, and nothing shows that it was.
    ASSERT_TRUE(command.WaitUntil([&] {
        command.Signal(SIGINT);
        return command.HasEnded();
    }));
    EXPECT_EQ(command.Wait(), 128 + SIGINT);
    Release();
}

}  // namespace
}  // namespace Corvetape
