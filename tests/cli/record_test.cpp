#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <ctime>

#include "cli/cli_test.h"

namespace Corvetape {
namespace {

using namespace Test;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

class RecordTest : public CliTest {
 protected:
    CommandStart Demo(std::vector<std::string> arguments, const std::string& speed = "1000") const {
        arguments.insert(arguments.begin(), {"--input", "demo", "--speed", speed});
        return With("record", std::move(arguments));
    }

    std::vector<Json> RecordDemo(std::vector<std::string> arguments) const {
        arguments.push_back("--json");
        const Finished run = RunCommand(Demo(std::move(arguments)));
        EXPECT_EQ(run.Code, 0);
        EXPECT_EQ(run.Err, "");
        return Objects(run.Out);
    }

    /// Bytes of the temporary song that is being written.
    size_t TempBytes() const {
        size_t bytes = 0;
        for (const std::string& name : FilesBelow(Home() + "/cache")) {
            std::error_code gone;
            const auto size = std::filesystem::file_size(Home() + "/cache/" + name, gone);
            if (!gone && name.ends_with(".wav")) bytes = std::max<size_t>(bytes, size);
        }
        return bytes;
    }

    static std::vector<std::string> ReasonsOf(const std::vector<Json>& songs) {
        std::vector<std::string> reasons;
        for (const Json& song : songs) reasons.push_back(song.value("reason", song.dump()));
        return reasons;
    }
};

TEST_F(RecordTest, SongsEndsWithThatNumberOfMusicFiles) {
    const std::vector<Json> songs = RecordDemo({"--songs", "2"});
    EXPECT_THAT(ReasonsOf(songs), ElementsAre("kept", "kept"));
    for (const Json& song : songs) {
        const std::string file = song["file"];
        EXPECT_NE(song["artist"], "");
        EXPECT_THAT(file, HasSubstr(song["title"].get<std::string>()));
        EXPECT_EQ(ReadSound(file).size(), song["frames"]);
        EXPECT_EQ(TagOf(file, "IART"), song["artist"]);
        EXPECT_EQ(song["whole"], true);
    }
}

TEST_F(RecordTest, SecondsEndsThereAndKeepsThePartialSong) {
    const std::vector<Json> songs = RecordDemo({"--seconds", "20"});
    ASSERT_THAT(ReasonsOf(songs), ElementsAre("kept"));
    EXPECT_NEAR(songs[0]["end"].get<double>(), 20.0, 0.051);
    EXPECT_EQ(songs[0]["whole"], false);
}

TEST_F(RecordTest, FoldersAreMeantFromThePresentOneOn) {
    CommandStart start = Demo({"--songs", "1", "--json", "--set", "Options.MusicPath=songs"});
    start.Arguments[2] = "own";  // of --home
    const Finished run = RunCommand(start);
    EXPECT_EQ(run.Err, "");
    ASSERT_THAT(Objects(run.Out), SizeIs(1));
    EXPECT_TRUE(std::filesystem::exists(folder / "own/config/Corvet/Corvet.ini"));
    EXPECT_THAT(Objects(run.Out)[0]["file"].get<std::string>(), testing::StartsWith(folder / "songs/"));
    EXPECT_THAT(FilesBelow(folder / "songs"), SizeIs(1));
}

TEST_F(RecordTest, NextBeginsWithTheNextSong) {
    const std::vector<Json> songs = RecordDemo({"--next", "--songs", "1"});
    EXPECT_THAT(ReasonsOf(songs), ElementsAre("unwanted", "kept"));
}

TEST_F(RecordTest, ForEndsWithTheSongThatPlaysThen) {
    const std::vector<Json> songs = RecordDemo({"--for", "1"});
    ASSERT_THAT(songs, testing::Not(IsEmpty()));
    EXPECT_EQ(songs.back()["reason"], "kept");
    EXPECT_EQ(songs.back()["whole"], true);
    EXPECT_LE(songs.back()["begin"].get<double>(), 62.0);
    EXPECT_GE(songs.back()["end"].get<double>(), 60.0);
}

TEST_F(RecordTest, QuitEndsAfterTheLastSongOfATimedRecording) {
    const std::vector<Json> songs = RecordDemo({"--for", "1", "--quit"});
    ASSERT_THAT(songs, testing::Not(IsEmpty()));
    EXPECT_EQ(songs.back()["reason"], "kept");
    EXPECT_LE(songs.back()["begin"].get<double>(), 62.0);
    EXPECT_GE(songs.back()["end"].get<double>(), 60.0);
}

TEST_F(RecordTest, AnInputThatCannotBeOpenedEndsTheRunWithItsReason) {
    const std::string file = PutWave("gone.wav", MakeRecording());
    Command run(With("record", {"--input", "file:" + file, "--seconds", "3", "--speed", "1"}));
    const auto hasStarted = [&] {
        const auto isLog = [](const std::string& name) { return name.ends_with(".log"); };
        return std::ranges::any_of(FilesBelow(Home() + "/config"), isLog);
    };
    ASSERT_TRUE(run.WaitUntil(hasStarted));
    std::filesystem::remove(file);  // the input is opened two seconds after the start
    EXPECT_EQ(run.Wait(), 1);
    EXPECT_THAT(run.Err, HasSubstr("the input cannot be opened"));
}

TEST_F(RecordTest, RunsThatStartAtOnceShareTheSongsOfAnEarlierOne) {
    const std::string temp = Home() + "/cache/Corvet/";
    std::filesystem::create_directories(temp);
    constexpr size_t songs = 8;
    for (size_t i = 0; i < songs; ++i) {
        const std::string name = temp + "left" + std::to_string(i);
        WriteWave(name + ".wav", Noise(5 * Rate, static_cast<uint32_t>(i)), Rate);
        std::ofstream(name + ".note") << "[Song]\nRun=1-1\nWanted=1\n";
    }
    std::vector<std::unique_ptr<Command>> runs;
    for (int i = 0; i < 3; ++i) {
        runs.push_back(std::make_unique<Command>(Demo({"--seconds", "40"}, "10")));
    }
    for (const auto& run : runs) EXPECT_EQ(run->Wait(), 0);
    std::vector<std::string> handedOn;
    for (const std::string& name : FilesBelow(Home() + "/config/Corvet")) {
        if (!name.ends_with(".log") || name == "encode.log") continue;
        for (const std::string& line : LinesOf(Content(Home() + "/config/Corvet/" + name))) {
            const size_t at = line.find("\tleft");
            if (at != std::string::npos) handedOn.push_back(line.substr(at + 1, 5));
        }
    }
    std::ranges::sort(handedOn);
    EXPECT_THAT(handedOn,
                ElementsAre("left0", "left1", "left2", "left3", "left4", "left5", "left6", "left7"));
}

TEST_F(RecordTest, QuitAndForHoldForThisRunOnly) {
    RecordDemo({"--for", "1", "--quit"});
    size_t files = 0;
    for (const std::string& name : FilesBelow(Home())) {
        if (!name.ends_with(".ini")) continue;
        ++files;
        std::ifstream file(Home() + "/" + name);
        const std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
        for (const char* key : {"QuitAfterRecording=1", "StopAfter=1"}) {
            EXPECT_EQ(text.find(key), std::string::npos) << name;
        }
    }
    EXPECT_GT(files, 0U);
}

TEST_F(RecordTest, SpeedIsHeldAgainstTheClock) {
    const auto began = std::chrono::steady_clock::now();
    const Finished run = RunCommand(Demo({"--seconds", "20"}, "20"));
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - began;
    EXPECT_EQ(run.Code, 0);
    EXPECT_GE(took.count(), 0.99);
    EXPECT_LT(took.count(), 19) << "not even real time";
}

TEST_F(RecordTest, AFileIsRecordedToItsEndBitForBit) {
    const Recording recording = MakeRecording();
    const std::string path = PutWave("show.wav", recording);
    const Finished run = RunCommand(With("record", {"--input", "file:" + path, "--speed", "1000", "--json"}));
    EXPECT_EQ(run.Code, 0);
    EXPECT_EQ(run.Err, "");
    EXPECT_THAT(Compared(recording, run), ElementsAre("equal", "equal", "equal"));
}

TEST_F(RecordTest, AFileThatHasToBeConvertedIsReported) {
    WriteSound(folder / "show.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_U8, MakeRecording().Frames, 1);
    const Finished run =
        RunCommand(With("record", {"--input", "file:show.wav", "--speed", "1000", "--json"}));
    EXPECT_EQ(run.Code, 0);
    EXPECT_EQ(run.Err, "corvetape-cli: show.wav: is mono, 8-bit; converted to 16-bit stereo at 44100 Hz\n");
    EXPECT_THAT(Objects(run.Out), SizeIs(3));
}

class InterruptedRecord : public RecordTest, public testing::WithParamInterface<int> {};

TEST_P(InterruptedRecord, ClosesTheSongInOrderAndKeepsIt) {
    Command command(Demo({"--json"}, "20"));
    ASSERT_TRUE(command.WaitUntil([&] { return TempBytes() > size_t{5} * Rate * sizeof(Frame); }));
    command.Signal(GetParam());
    EXPECT_EQ(command.Wait(), 0);
    EXPECT_EQ(command.Err, "");
    const std::vector<Json> songs = Objects(command.Out);
    ASSERT_THAT(ReasonsOf(songs), ElementsAre("kept"));
    EXPECT_EQ(ReadSound(songs[0]["file"]).size(), songs[0]["frames"]);
    EXPECT_GE(songs[0]["frames"], 5 * Rate);
    std::string log;
    for (const std::string& name : FilesBelow(Home() + "/config/Corvet")) {
        if (name.ends_with(".log") && name != "encode.log") log += Content(Home() + "/config/Corvet/" + name);
    }
    EXPECT_THAT(log, HasSubstr("\tEND "));
}

INSTANTIATE_TEST_SUITE_P(Signals, InterruptedRecord, testing::Values(SIGINT, SIGTERM, SIGHUP));

TEST_F(RecordTest, GoesOnWithoutItsTerminalIfHangupsAreIgnored) {
    CommandStart start = Demo({"--json"}, "20");
    start.IgnoresHangup = true;
    Command command(start);
    ASSERT_TRUE(command.WaitUntil([&] { return TempBytes() > size_t{2} * Rate * sizeof(Frame); }));
    command.Signal(SIGHUP);
    EXPECT_TRUE(command.WaitUntil([&] { return TempBytes() > size_t{8} * Rate * sizeof(Frame); }));
    command.Signal(SIGINT);
    EXPECT_EQ(command.Wait(), 0);
}

TEST_F(RecordTest, WhatAKilledRecordingHasLeftIsBroughtHomeByTheNextOne) {
    {
        Command command(Demo({"--json"}, "20"));
        ASSERT_TRUE(command.WaitUntil([&] { return TempBytes() > size_t{12} * Rate * sizeof(Frame); }));
        command.Signal(SIGKILL);
        EXPECT_EQ(command.Wait(), 128 + SIGKILL);
    }
    EXPECT_THAT(FilesBelow(Home() + "/Music"), IsEmpty());
    const Finished run = RunCommand(Demo({"--seconds", "1", "--json"}));
    EXPECT_EQ(run.Code, 0);
    const std::vector<std::string> music = FilesBelow(Home() + "/Music");
    ASSERT_THAT(music, SizeIs(1));
    EXPECT_GE(ReadSound(Home() + "/Music/" + music[0]).size(), size_t{5} * Rate);
}

TEST_F(RecordTest, ASongIsNeverWrittenThroughALinkThatWaitsForIt) {
    const std::string place = Home() + "/cache/Corvet/";
    std::filesystem::create_directories(place);
    // Songs are named after the second in which they begin.
    const auto now = std::chrono::system_clock::now();
    for (int second = -1; second < 60; ++second) {
        const std::time_t then = std::chrono::system_clock::to_time_t(now + std::chrono::seconds(second));
        std::tm parts{};
        char name[40];
        ASSERT_GT(std::strftime(name, sizeof name, "%y%m%d%H%M%S.wav", localtime_r(&then, &parts)), 0u);
        std::filesystem::create_symlink(folder / "planted", place + name);
    }
    const std::vector<Json> songs = RecordDemo({"--seconds", "20"});
    ASSERT_THAT(ReasonsOf(songs), ElementsAre("kept"));
    EXPECT_EQ(ReadSound(songs[0]["file"].get<std::string>()).size(), songs[0]["frames"]);
    EXPECT_FALSE(std::filesystem::exists(folder / "planted"));
}

/// What this process starts meanwhile may make no file larger than so many bytes.
class FileLimit {
 public:
    explicit FileLimit(rlim_t bytes) {
        getrlimit(RLIMIT_FSIZE, &Before);
        const rlimit limit{bytes, Before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileLimit() { setrlimit(RLIMIT_FSIZE, &Before); }
    FileLimit(const FileLimit&) = delete;
    FileLimit& operator=(const FileLimit&) = delete;

 private:
    rlimit Before{};
};

TEST_F(RecordTest, ASongThatReachesTheLargestFileGoesOnInNextFilesWithoutALostFrame) {
    const Recording recording = MakeRecording();
    const std::string path = PutWave("show.wav", recording);
    const auto start = [&] {
        const FileLimit limit(400'000);  // a little more than two seconds
        return std::make_unique<Command>(
            With("record", {"--input", "file:" + path, "--speed", "1000", "--json"}));
    };
    const auto command = start();
    EXPECT_EQ(command->Wait(), 0) << command->Err;
    const std::vector<Json> parts = Objects(command->Out);
    ASSERT_GT(parts.size(), 3U);
    std::vector<Frame> all;
    for (const Json& part : parts) {
        EXPECT_EQ(part["lost_frames"], 0);
        const std::vector<Frame> frames = ReadSound(part["file"]);
        EXPECT_EQ(frames.size(), part["frames"]);
        all.insert(all.end(), frames.begin(), frames.end());
    }
    std::vector<Frame> songs;
    for (const std::vector<Frame>& song : recording.Songs)
        songs.insert(songs.end(), song.begin(), song.end());
    EXPECT_EQ(Comparison(songs, all), "equal");
}

TEST_F(RecordTest, ADiskThatTakesNothingMoreEndsTheRunWithItsReason) {
    const auto start = [&] {
        const FileLimit limit(5'000);  // less than one buffer
        return std::make_unique<Command>(Demo({"--json"}, "20"));
    };
    const auto command = start();
    EXPECT_EQ(command->Wait(), 1);
    EXPECT_THAT(command->Err, HasSubstr("could not be written any further (error 27: File too large)"));
    const std::vector<Json> objects = Objects(command->Out);
    ASSERT_THAT(objects, testing::Not(IsEmpty()));
    EXPECT_THAT(objects[0]["error"].get<std::string>(), HasSubstr("could not be written any further"));
}

TEST_F(RecordTest, ATerminalShowsTheStateOfTheRecording) {
    CommandStart start = Demo({}, "20");
    start.Terminal = true;
    Command command(start);
    EXPECT_TRUE(command.WaitUntil([&] { return command.Err.find("recording 0 kept") != std::string::npos; }));
    command.Signal(SIGINT);
    EXPECT_EQ(command.Wait(), 0);
    EXPECT_TRUE(command.Err.ends_with(" \r")) << "the line is still there";
}

TEST_F(RecordTest, NothingButTextIsPrintedWhereThereIsNoTerminal) {
    const Finished run = RunCommand(Demo({"--songs", "1"}));
    EXPECT_EQ(run.Err, "");
    for (const char letter : run.Out) {
        EXPECT_TRUE(static_cast<unsigned char>(letter) >= 0x20 || letter == '\n') << static_cast<int>(letter);
    }
    const std::vector<std::string> lines = LinesOf(run.Out);
    ASSERT_THAT(lines, SizeIs(2));
    EXPECT_TRUE(lines[0].starts_with("kept ")) << lines[0];
    EXPECT_EQ(lines[1], "1 song kept in " + Home() + "/Music");
}

TEST_F(RecordTest, WithoutASoundServerTheDemoRadioIsStillThere) {
    const Finished run = RunCommand({{"devices", "--json"}, {}, "", false});
    EXPECT_EQ(run.Code, 0);
    EXPECT_EQ(run.Err, "");
    const std::vector<Json> devices = Objects(run.Out);
    ASSERT_THAT(devices, SizeIs(1));
    EXPECT_EQ(devices[0]["number"], 0);
    EXPECT_EQ(devices[0]["id"], "demo");
    EXPECT_EQ(devices[0]["kind"], "demo");
    EXPECT_EQ(devices[0]["default"], false);
    EXPECT_NE(devices[0]["name"], "");
    const Finished text = RunCommand({{"devices"}, {}, "", false});
    EXPECT_EQ(text.Code, 0);
    EXPECT_EQ(text.Out, "   0  demo     Demo radio (made-up music)\n");
    EXPECT_EQ(text.Err, "corvetape-cli: no sound server answers: Connection refused\n");
}

}  // namespace
}  // namespace Corvetape
