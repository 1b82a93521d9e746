#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <iomanip>
#include <iterator>
#include <sstream>

#include "cli/cli_test.h"

namespace Corvetape {
namespace {

using namespace Test;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

class SplitTest : public CliTest {};

TEST_F(SplitTest, EachSongOfAWavComesOutBitForBit) {
    const Recording recording = MakeRecording();
    const Finished run = Split({PutWave("show.wav", recording), "--json"});
    EXPECT_EQ(run.Code, 0);
    EXPECT_EQ(run.Err, "");
    EXPECT_THAT(Compared(recording, run), ElementsAre("equal", "equal", "equal"));
    EXPECT_THAT(FilesBelow(Out()), SizeIs(3)) << "something is left beside the songs";
}

TEST_F(SplitTest, TheJsonObjectHasExactlyItsFields) {
    const Recording recording = MakeRecording();
    const Finished run = Split({PutWave("show.wav", recording), "--json"});
    const std::vector<Json> songs = Objects(run.Out);
    ASSERT_THAT(songs, SizeIs(3));
    std::vector<std::string> names;
    for (const auto& [name, value] : songs[1].items()) names.push_back(name);
    EXPECT_THAT(names, testing::UnorderedElementsAre("begin", "end", "frames", "kept", "reason", "artist",
                                                     "title", "file", "lost_frames", "clipped", "whole"));
    EXPECT_EQ(songs[1]["begin"], 4.0);
    EXPECT_EQ(songs[1]["end"], 8.0);
    EXPECT_EQ(songs[1]["frames"], 4 * Rate);
    EXPECT_EQ(songs[1]["kept"], true);
    EXPECT_EQ(songs[1]["reason"], "kept");
    EXPECT_EQ(songs[1]["artist"], "");
    EXPECT_EQ(songs[1]["title"], "");
    EXPECT_EQ(songs[1]["lost_frames"], 0);
    EXPECT_EQ(songs[1]["clipped"], 0);
    EXPECT_EQ(songs[1]["whole"], true);
    const std::string file = songs[1]["file"];
    EXPECT_TRUE(file.starts_with(Out() + "/show ")) << file;
    EXPECT_TRUE(file.ends_with(".wav")) << file;
}

TEST_F(SplitTest, AFileThatStaysInOnePieceSaysWhatWouldCutIt) {
    const std::string file = PutWave("show.wav", MakeRecording());
    const Finished automatic = Split({file, "--json", "--mode", "auto"});
    EXPECT_THAT(Objects(automatic.Out), SizeIs(1));
    EXPECT_THAT(automatic.Err, HasSubstr("show.wav stayed in one piece: without titles"));
    EXPECT_THAT(automatic.Err, HasSubstr("--mode silence"));
}

TEST_F(SplitTest, AShortSongIsToldAndHasNoFile) {
    const Finished run =
        Split({PutWave("show.wav", MakeRecording()), "--json", "--set", "Source.IgnoreShortSongs=3"});
    const std::vector<Json> songs = Objects(run.Out);
    ASSERT_THAT(songs, SizeIs(3));
    EXPECT_EQ(songs[0]["reason"], "short");
    EXPECT_EQ(songs[0]["kept"], false);
    EXPECT_EQ(songs[0]["file"], "");
    EXPECT_EQ(songs[1]["reason"], "kept");
    EXPECT_THAT(FilesBelow(Out()), SizeIs(2));
}

TEST_F(SplitTest, WithoutJsonEachSongIsALineAndTheEndTellsTheirNumber) {
    const Finished run = Split({PutWave("show.wav", MakeRecording({.Seed = 1, .Songs = 1}))});
    EXPECT_EQ(run.Code, 0);
    const std::vector<std::string> lines = LinesOf(run.Out);
    ASSERT_THAT(lines, SizeIs(2));
    EXPECT_TRUE(lines[0].starts_with("kept         0:03  show ")) << lines[0];
    EXPECT_EQ(lines[1], "1 song kept in " + Out());
}

TEST_F(SplitTest, FlacIsSplitBitForBit) {
    const Recording recording = MakeRecording();
    WriteSound(folder / "show.flac", SF_FORMAT_FLAC | SF_FORMAT_PCM_16, recording.Frames);
    const Finished run = Split({folder / "show.flac", "--json"});
    EXPECT_EQ(run.Code, 0);
    EXPECT_EQ(run.Err, "");
    EXPECT_THAT(Compared(recording, run), ElementsAre("equal", "equal", "equal"));
}

TEST_F(SplitTest, OggAndMp3AreSplitAtTheirPauses) {
    const Recording recording = MakeRecording();
    WriteSound(folder / "show.ogg", SF_FORMAT_OGG | SF_FORMAT_VORBIS, recording.Frames);
    WriteSound(folder / "other.mp3", SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III, recording.Frames);
    for (const char* name : {"show.ogg", "other.mp3"}) {
        SCOPED_TRACE(name);
        const Finished run = Split({folder / name, "--json"});
        EXPECT_EQ(run.Code, 0);
        EXPECT_EQ(run.Err, "");
        const std::vector<Json> songs = Objects(run.Out);
        ASSERT_THAT(songs, SizeIs(3));
        for (size_t i = 0; i < songs.size(); ++i) {
            const double length = static_cast<double>(recording.Songs[i].size()) / Rate;
            EXPECT_NEAR(songs[i]["end"].get<double>() - songs[i]["begin"].get<double>(), length, 0.2);
        }
    }
}

TEST_F(SplitTest, AFileAt48KilohertzIsReadAsItIsAndKeptSoInThatFormat) {
    const Recording recording = MakeRecording({.FramesPerSecond = 48000});
    WriteWave(folder / "show.wav", recording.Frames, 48000);
    const Finished run = Split({folder / "show.wav", "--json", "--set", "Options.Encoder=5"});
    EXPECT_EQ(run.Err, "");
    EXPECT_THAT(Compared(recording, run), ElementsAre("equal", "equal", "equal"));
    EXPECT_EQ(SoundFileSource::NativeRate(Objects(run.Out).at(0)["file"]), 48000u);
}

TEST_F(SplitTest, AFileAt48KilohertzIsConvertedFor44) {
    WriteWave(folder / "show.wav", MakeRecording({.FramesPerSecond = 48000}).Frames, 48000);
    const Finished run = Split({folder / "show.wav", "--json"});
    EXPECT_EQ(run.Code, 0);
    const std::vector<Json> songs = Objects(run.Out);
    ASSERT_THAT(songs, SizeIs(3));
    EXPECT_EQ(songs[0]["frames"], 3 * 48000);
    EXPECT_EQ(SoundFileSource::NativeRate(songs[0]["file"]), Rate);
    EXPECT_NEAR(static_cast<double>(ReadSound(songs[0]["file"]).size()), 3 * Rate, 2);
}

TEST_F(SplitTest, AMonoFileIsToldAndSplitAsStereo) {
    Recording recording = MakeRecording();
    WriteSound(folder / "show.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, recording.Frames, 1);
    const Finished run = Split({"show.wav", "--json"});
    EXPECT_EQ(run.Code, 0);
    EXPECT_EQ(run.Err, "corvetape-cli: show.wav: is mono; converted to 16-bit stereo at 44100 Hz\n");
    for (std::vector<Frame>& song : recording.Songs) {
        for (Frame& frame : song) frame.Right = frame.Left;
    }
    EXPECT_THAT(Compared(recording, run), ElementsAre("equal", "equal", "equal"));
}

TEST_F(SplitTest, AnEightBitFileIsToldAndSplit) {
    WriteSound(folder / "show.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_U8, MakeRecording().Frames, 1, 22050);
    const Finished run = Split({"show.wav", "--json"});
    EXPECT_EQ(run.Code, 0);
    EXPECT_EQ(run.Err,
              "corvetape-cli: show.wav: is mono, 8-bit, 22050 Hz; converted to 16-bit stereo at 44100 Hz\n");
    EXPECT_THAT(Objects(run.Out), SizeIs(3));
}

TEST_F(SplitTest, SeveralFilesAreSplitInTheirOrder) {
    const Recording first = MakeRecording({.Seed = 1, .Songs = 2});
    const Recording second = MakeRecording({.Seed = 2, .Songs = 2});
    const Finished run = Split({PutWave("one.wav", first), PutWave("two.wav", second), "--json"});
    EXPECT_EQ(run.Code, 0);
    Recording both = first;
    both.Songs.insert(both.Songs.end(), second.Songs.begin(), second.Songs.end());
    EXPECT_THAT(Compared(both, run), ElementsAre("equal", "equal", "equal", "equal"));
    EXPECT_EQ(Objects(run.Out).at(2)["begin"], 0.0) << "the second file has its own time";
}

TEST_F(SplitTest, FilesOfOneNameFromTwoFoldersKeepAllTheirSongs) {
    std::filesystem::create_directory(folder / "a");
    std::filesystem::create_directory(folder / "b");
    const Finished run = Split({PutWave("a/show.wav", MakeRecording({.Seed = 1})),
                                PutWave("b/show.wav", MakeRecording({.Seed = 2}))});
    EXPECT_EQ(run.Code, 0);
    EXPECT_THAT(FilesBelow(Out()), SizeIs(6));
}

TEST_F(SplitTest, TwoSplitsIntoOneFolderAtOnceDoNotDisturbEachOther) {
    const Recording first = MakeRecording({.Seed = 1});
    const Recording second = MakeRecording({.Seed = 2});
    Command one(With("split", {"--out", Out(), PutWave("one.wav", first), "--json"}));
    Command two(With("split", {"--out", Out(), PutWave("two.wav", second), "--json"}));
    EXPECT_EQ(one.Wait(), 0);
    EXPECT_EQ(two.Wait(), 0);
    EXPECT_THAT(Compared(first, {0, one.Out, ""}), ElementsAre("equal", "equal", "equal"));
    EXPECT_THAT(Compared(second, {0, two.Out, ""}), ElementsAre("equal", "equal", "equal"));
    EXPECT_THAT(FilesBelow(Out()), SizeIs(6));
}

TEST_F(SplitTest, WithoutAFolderTheMusicGoesWhereItAlwaysGoes) {
    const Finished run = RunCommand(With("split", {PutWave("show.wav", MakeRecording()), "--json"}));
    EXPECT_EQ(run.Code, 0);
    const std::vector<Json> songs = Objects(run.Out);
    ASSERT_THAT(songs, SizeIs(3));
    for (const Json& song : songs)
        EXPECT_TRUE(song["file"].get<std::string>().starts_with(Home() + "/Music/"));
}

TEST_F(SplitTest, TemporarySongsOfOtherRunsStayWhereTheyAre) {
    const std::string others = Home() + "/cache/Corvet";
    std::filesystem::create_directories(others);
    Put("home/cache/Corvet/left on purpose.wav", "a song");
    const std::string show = PutWave("show.wav", MakeRecording());
    EXPECT_EQ(RunCommand(With("split", {show})).Code, 0);
    EXPECT_EQ(RunCommand(With("split", {show, "--set", "Options.Encoder=9"})).Code, 1);
    EXPECT_THAT(FilesBelow(Home() + "/cache"), ElementsAre("Corvet/left on purpose.wav"));
    EXPECT_FALSE(std::filesystem::is_empty(Home() + "/Music"));
    size_t folders = 0;
    for (const auto& entry : std::filesystem::directory_iterator(Home() + "/cache"))
        folders += entry.exists();
    EXPECT_EQ(folders, 1U) << "the split's own one has gone";
}

TEST_F(SplitTest, AFolderThatIsNotThereYetIsMadeWithItsParents) {
    const Finished run = RunCommand(With("split", {PutWave("show.wav", MakeRecording()), "--out", "x/y/z"}));
    EXPECT_EQ(run.Code, 0);
    EXPECT_THAT(FilesBelow(folder / "x/y/z"), SizeIs(3));
}

TEST_F(SplitTest, AFileThatBreaksOffIsSplitAsFarAsItGoes) {
    const Recording recording = MakeRecording();
    const std::string path = PutWave("show.wav", recording);
    std::filesystem::resize_file(path, 44 + (4 * Rate + 2 * Rate) * sizeof(Frame));
    const Finished run = Split({path, "--json"});
    EXPECT_EQ(run.Code, 0);
    const std::vector<Json> songs = Objects(run.Out);
    ASSERT_THAT(songs, SizeIs(2));
    EXPECT_EQ(songs[1]["end"], 6.0);
    EXPECT_EQ(songs[1]["whole"], false);
}

TEST_F(SplitTest, NothingButTextIsPrintedWhereThereIsNoTerminal) {
    const Finished run = Split({PutWave("show.wav", MakeRecording())});
    for (const char letter : run.Out + run.Err) {
        const auto code = static_cast<unsigned char>(letter);
        EXPECT_TRUE(code >= 0x20 || letter == '\n') << static_cast<int>(code);
    }
}

TEST_F(SplitTest, ATerminalShowsHowFarItIsAndIsLeftClean) {
    CommandStart start = With("split", {PutWave("show.wav", MakeRecording()), "--out", Out()});
    start.Terminal = true;
    const Finished run = RunCommand(start);
    EXPECT_EQ(run.Code, 0);
    EXPECT_THAT(run.Err, HasSubstr("\r[----------------------------------------]   0 %"));
    EXPECT_TRUE(run.Err.ends_with(" \r")) << "the bar is still there";
    EXPECT_THAT(LinesOf(run.Out), SizeIs(4));
}

TEST_F(SplitTest, SettingsOfOneRunAreNotWritten) {
    const Finished run = Split({PutWave("show.wav", MakeRecording())});
    EXPECT_EQ(run.Code, 0);
    const std::string ini = Content(Home() + "/config/Corvet/Corvet.ini");
    EXPECT_NE(ini, "");
    EXPECT_EQ(ini.find(Out()), std::string::npos) << ini;
    EXPECT_EQ(ini.find("IgnoreShortSongs"), std::string::npos) << ini;
}

/// Writes the first part of a file, with some of its bytes changed, beside it.
std::string Damaged(const std::string& path, double part, bool flipped) {
    std::ifstream whole(path, std::ios::binary);
    std::string bytes((std::istreambuf_iterator<char>(whole)), {});
    bytes.resize(static_cast<size_t>(static_cast<double>(bytes.size()) * part));
    for (size_t i = bytes.size() / 2; flipped && i < bytes.size() / 2 + 20000; i += 50) {
        bytes[i] = static_cast<char>(bytes[i] ^ 0x55);
    }
    const std::string damaged = path.substr(0, path.rfind('.')) + "-damaged" + path.substr(path.rfind('.'));
    std::ofstream(damaged, std::ios::binary) << bytes;
    return damaged;
}

TEST_F(SplitTest, OfATruncatedFileIsKeptWhatCouldBeRead) {
    const Recording recording = MakeRecording();
    WriteSound(folder / "show.flac", SF_FORMAT_FLAC | SF_FORMAT_PCM_16, recording.Frames);
    WriteSound(folder / "show.ogg", SF_FORMAT_OGG | SF_FORMAT_VORBIS, recording.Frames);
    const Finished flac = Split({Damaged(folder / "show.flac", 0.5, false), "--json"});
    EXPECT_EQ(flac.Code, 1);
    EXPECT_THAT(flac.Err, testing::ContainsRegex("show-damaged.flac: [0-9.]+ of 15.0 s could not be read"));
    EXPECT_GE(Objects(flac.Out).size(), 1U);
    EXPECT_EQ(Objects(flac.Out)[0]["kept"], true);
    const Finished ogg = Split({Damaged(folder / "show.ogg", 0.5, false), "--json"});
    EXPECT_EQ(ogg.Code, 1);
    EXPECT_THAT(ogg.Err, HasSubstr("the end of the file is missing"));
    EXPECT_GE(Objects(ogg.Out).size(), 1U);
}

TEST_F(SplitTest, OfADamagedFileIsToldWhatCouldNotBeRead) {
    const Recording recording = MakeRecording();
    WriteSound(folder / "show.flac", SF_FORMAT_FLAC | SF_FORMAT_PCM_16, recording.Frames);
    WriteSound(folder / "show.ogg", SF_FORMAT_OGG | SF_FORMAT_VORBIS, recording.Frames);
    for (const char* name : {"show.flac", "show.ogg"}) {
        const Finished run = Split({Damaged(folder / name, 1, true), "--json"});
        EXPECT_EQ(run.Code, 1) << name;
        EXPECT_THAT(run.Err, HasSubstr("what could be read was split")) << name;
        EXPECT_GE(Objects(run.Out).size(), 1U) << name;
    }
}

TEST_F(SplitTest, AFullDiskLeavesNothingUnfinishedAndSaysWhatHappened) {
    if (std::system("unshare -rm true 2>/dev/null") != 0)
        GTEST_SKIP() << "this machine lets nobody make a disk";
    std::filesystem::create_directory(Out());
    // The song does not fit on it.
    Recording show;
    show.Frames = Noise(size_t{40} * Rate, 40);
    const std::string path = PutWave("show.wav", show);
    const std::string script =
        "mount -t tmpfs -o size=5M none '" + Out() + "' && { '" + CORVETAPE_BINARY_DIR +
        "/bin/corvetape-cli' split --home '" + Home() + "' --out '" + Out() +
        "' --set Options.LowTempSpace=0 --set Options.LowMusicSpace=0"
        " --set Source.IgnoreShortSongs=1 '" +
        path + "' >'" + (folder / "printed") + "' 2>&1; echo \\$? >'" + (folder / "code") + "'; find '" +
        Out() + "' -mindepth 1 >'" + (folder / "left") + "'; }";
    ASSERT_EQ(std::system(("unshare -rm sh -c \"" + script + "\"").c_str()) & 0xFF, 0);
    const auto content = [this](const char* name) {
        std::ifstream file(folder / name);
        return std::string{std::istreambuf_iterator<char>(file), {}};
    };
    EXPECT_EQ(content("code"), "1\n");
    EXPECT_THAT(content("printed"), HasSubstr("No space left on device"));
    EXPECT_THAT(content("printed"), HasSubstr("was deleted again: its sound file still has it"));
    EXPECT_EQ(content("left"), "");
}

TEST_F(SplitTest, TheLogHasTheTimeOfTheRunAndNotThatOfTheSound) {
    // Twenty minutes of sound take a few seconds.
    const auto began = std::chrono::system_clock::now();
    const Finished run = Split({PutWave("show.wav", MakeRecording({.Songs = 3, .Seconds = 400}))});
    EXPECT_EQ(run.Code, 0) << run.Err;
    const auto ended = std::chrono::system_clock::now();
    size_t lines = 0;
    for (const std::string& file : FilesBelow(Home() + "/config/Corvet")) {
        if (!file.starts_with("2") || !file.ends_with(".log")) continue;
        std::ifstream log(Home() + "/config/Corvet/" + file);
        for (std::string line; std::getline(log, line); ++lines) {
            std::tm time{};
            std::istringstream(file.substr(0, 8) + line.substr(0, 8)) >>
                std::get_time(&time, "%Y%m%d%H:%M:%S");
            time.tm_isdst = -1;
            const auto written = std::chrono::system_clock::from_time_t(std::mktime(&time));
            EXPECT_GE(written + std::chrono::seconds(2), began) << line;
            EXPECT_LE(written, ended) << line;
        }
    }
    EXPECT_GE(lines, 5U);
}

}  // namespace
}  // namespace Corvetape
