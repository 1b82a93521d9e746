// The built command line against private sound servers.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <nlohmann/json.hpp>
#include <sstream>
#include <thread>

#include "live/sound_server.h"
#include "live/test_process.h"
#include "support/read_sound.h"
#include "support/temp_folder.h"
#include "support/test_sound.h"

namespace Corvetape {
namespace {

using Json = nlohmann::json;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

constexpr size_t Second = 44100;
constexpr auto Patience = std::chrono::seconds(90);

std::string Content(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

/// False if the condition does not hold within the limit.
bool WaitFor(const std::function<bool()>& condition, std::chrono::milliseconds limit = Patience) {
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= end) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));  // between two looks
    }
    return true;
}

/// A run of the command line on a sound server.
class CliRun {
 public:
    CliRun(SoundServer& soundServer, std::vector<std::string> arguments)
        : server(soundServer),
          wanted(StartOf(std::move(arguments))),
          process(std::make_unique<TestProcess>(wanted)) {}

    /// All that it has printed.
    std::string Printed() const { return Content(folder / "printed"); }

    /// The objects among the printed lines, but for reports: on a busy machine it may be reported that the
    /// sound came late.
    std::vector<Json> Songs() const {
        std::vector<Json> songs;
        for (const std::string& line : Lines()) {
            if (!line.starts_with('{')) continue;
            Json song = Json::parse(line);
            if (!song.contains("error")) songs.push_back(std::move(song));
        }
        return songs;
    }

    /// What it had to tell of an input that was gone and of sound that was lost.
    std::vector<std::string> ToldOfTheInput() const {
        std::vector<std::string> told;
        for (const std::string& line : Lines()) {
            const bool ofInput = line.find("The input is") != std::string::npos;
            const bool ofLoss = line.find("sound were lost") != std::string::npos;
            if (!line.starts_with('{') && (ofInput || ofLoss)) told.push_back(line);
        }
        return told;
    }

    /// Waits until the server lists its stream. A recorder that has ended because the server on a busy
    /// machine has not answered it in time is started again.
    bool WaitUntilItRecords() {
        return WaitFor([&] {
            if (process->Wait(std::chrono::milliseconds(0))) process = std::make_unique<TestProcess>(wanted);
            return server.Recordings() > 0;
        });
    }

    /// Waits until so many frames of the present song are in its temporary file.
    bool WaitForSong(size_t frames) const {
        return WaitFor([&] {
            std::error_code gone;  // of a file or folder that goes while it is looked at
            std::filesystem::recursive_directory_iterator entry(folder / "home/cache", gone);
            for (; !gone && entry != end(entry); entry.increment(gone)) {
                if (entry->path().extension() != ".wav") continue;
                const uintmax_t bytes = entry->file_size(gone);
                if (!gone && bytes > frames * sizeof(Frame)) return true;
            }
            return false;
        });
    }

    /// Waits until it has printed these words.
    bool WaitForText(const std::string& words) const {
        return WaitFor([&] { return Printed().find(words) != std::string::npos; });
    }

    TestProcess& Process() { return *process; }

 private:
    TestProcess::Start StartOf(std::vector<std::string> arguments) const {
        TestProcess::Start start;
        start.Command = {CORVETAPE_BINARY_DIR "/bin/corvetape-cli"};
        start.Command.insert(start.Command.end(), arguments.begin(), arguments.end());
        if (arguments.front() == "record") {
            start.Command.insert(start.Command.end(),
                                 {"--mode", "silence", "--json", "--home", folder / "home", "--set",
                                  "Source.IgnoreShortSongs=1"});
        }
        start.Environment = {{"PULSE_SERVER", server.Address()}};
        start.Output = folder / "printed";
        return start;
    }

    std::vector<std::string> Lines() const {
        std::vector<std::string> lines;
        std::istringstream text(Printed());
        for (std::string line; std::getline(text, line);) lines.push_back(line);
        return lines;
    }

    const TempFolder folder;
    SoundServer& server;
    const TestProcess::Start wanted;
    std::unique_ptr<TestProcess> process;
};

class CliRecordTest : public testing::TestWithParam<ServerKind> {
 protected:
    CliRecordTest() { server.Start(); }

    /// Songs with silence before, between and after them, as a file.
    std::string PutShow(const std::string& name, const std::vector<std::vector<Frame>>& songs) const {
        std::vector<Frame> show(Second);
        for (const std::vector<Frame>& song : songs) {
            show.insert(show.end(), song.begin(), song.end());
            show.insert(show.end(), 3 * Second / 2, Frame{});
        }
        WriteWave(server.Folder / name, show, Second);
        return server.Folder / name;
    }

    SoundServer server{GetParam()};
};

TEST_P(CliRecordTest, WhatIsPlayedComesOutBitForBitBetweenFirstAndLastSound) {
    const std::vector<std::vector<Frame>> songs = {Noise(3 * Second, 21), Noise(4 * Second, 22)};
    const std::string show = PutShow("show.wav", songs);
    CliRun record(server, {"record", "--songs", "2"});
    ASSERT_TRUE(record.WaitUntilItRecords()) << record.Printed();
    const auto player = server.Play(show);
    EXPECT_EQ(record.Process().Wait(Patience), 0) << record.Printed();
    const std::vector<Json> recorded = record.Songs();
    ASSERT_THAT(recorded, SizeIs(2)) << record.Printed();
    for (size_t i = 0; i < recorded.size(); ++i) {
        const std::vector<Frame> frames = ReadSound(recorded[i].value("file", ""));
        EXPECT_EQ(Comparison(songs[i], WithoutSilenceAround(frames)), "equal");
        EXPECT_EQ(recorded[i].value("lost_frames", -1), 0);
    }
    EXPECT_THAT(record.ToldOfTheInput(), IsEmpty());
}

TEST_P(CliRecordTest, RecordingGoesOnAfterTheServerWasKilledAndTheGapIsReported) {
    const std::vector<Frame> before = Noise(20 * Second, 31);
    const std::vector<Frame> after = Noise(3 * Second, 32);
    const std::string first = PutShow("first.wav", {before});
    const std::string second = PutShow("second.wav", {after});
    // The silence until the second file plays is no end of the song.
    CliRun record(server, {"record", "--input", "radio.monitor", "--set", "Source.LengthOfPause=10000"});
    ASSERT_TRUE(record.WaitUntilItRecords()) << record.Printed();
    const auto player = server.Play(first);
    ASSERT_TRUE(record.WaitForSong(10 * Second)) << record.Printed();

    const auto killed = std::chrono::steady_clock::now();
    server.Kill();
    EXPECT_TRUE(record.WaitForText("The input is gone")) << record.Printed();
    std::this_thread::sleep_for(std::chrono::milliseconds(700));  // the length of the gap
    const std::chrono::duration<double> leastGap = std::chrono::steady_clock::now() - killed;
    server.Start();
    ASSERT_TRUE(record.WaitForText("The input is back")) << record.Printed();
    const std::chrono::duration<double> mostGap = std::chrono::steady_clock::now() - killed;
    EXPECT_EQ(server.Play(second)->Wait(Patience), 0);
    EXPECT_TRUE(record.WaitForText("of sound were lost (")) << record.Printed();
    record.Process().Signal(SIGINT);
    EXPECT_EQ(record.Process().Wait(Patience), 0) << record.Printed();

    EXPECT_THAT(record.Printed(), HasSubstr("the sound server was gone"));
    const std::vector<Json> songs = record.Songs();
    ASSERT_THAT(songs, SizeIs(1)) << record.Printed();
    EXPECT_TRUE(songs[0].value("kept", false));
    // It was away for all of the first time, and back before the second one was over, but for what was on its
    // way.
    const double lost = songs[0].value("lost_frames", -1.0) / Second;
    EXPECT_GT(lost, leastGap.count() - 0.15) << record.Printed();
    EXPECT_LT(lost, mostGap.count() + 0.5) << record.Printed();
    const std::vector<Frame> frames = ReadSound(songs[0].value("file", ""));
    const std::span<const Frame> sound = WithoutSilenceAround(frames);
    ASSERT_GT(sound.size(), after.size());
    EXPECT_EQ(Comparison(after, sound.last(after.size())), "equal");
    const auto heard = WithoutSilenceAround(sound.first(sound.size() - after.size()));
    EXPECT_GE(heard.size(), 2 * Second) << "the song begins with the silence before the first sound";
    EXPECT_EQ(Comparison(std::span(before).first(std::min(before.size(), heard.size())), heard), "equal");
}

TEST_P(CliRecordTest, ARunOfLimitedTimeEndsAlsoIfItsInputIsGoneForGood) {
    const std::string show = PutShow("show.wav", {Noise(20 * Second, 33)});
    CliRun run(server, {"record", "--input", "radio.monitor", "--seconds", "12"});
    ASSERT_TRUE(run.WaitUntilItRecords()) << run.Printed();
    const auto player = server.Play(show);
    ASSERT_TRUE(run.WaitForSong(Second / 2)) << run.Printed();
    server.Kill();
    EXPECT_EQ(run.Process().Wait(Patience), 1) << run.Printed();
    EXPECT_THAT(run.Printed(), HasSubstr("the input has given no sound for 10 seconds"));
    EXPECT_THAT(run.Printed(), HasSubstr("the input gave no sound any more, and the time is over"));
}

TEST_P(CliRecordTest, AStoppedProcessLosesNothingThatTheServerCanKeep) {
    const std::vector<std::vector<Frame>> songs = {Noise(12 * Second, 41)};
    const std::string show = PutShow("show.wav", songs);
    CliRun record(server, {"record", "--songs", "1"});
    ASSERT_TRUE(record.WaitUntilItRecords()) << record.Printed();
    const auto player = server.Play(show);
    ASSERT_TRUE(record.WaitForSong(Second)) << record.Printed();
    record.Process().Signal(SIGSTOP);
    std::this_thread::sleep_for(std::chrono::seconds(8));  // the condition itself
    record.Process().Signal(SIGCONT);
    EXPECT_EQ(record.Process().Wait(Patience), 0) << record.Printed();
    const std::vector<Json> recorded = record.Songs();
    ASSERT_THAT(recorded, SizeIs(1)) << record.Printed();
    EXPECT_EQ(Comparison(songs[0], WithoutSilenceAround(ReadSound(recorded[0].value("file", "")))), "equal");
    EXPECT_EQ(recorded[0].value("lost_frames", -1), 0);
    EXPECT_THAT(record.ToldOfTheInput(), IsEmpty());
}

TEST_P(CliRecordTest, DevicesListsTheServersMonitorsAndTheDemoRadio) {
    CliRun devices(server, {"devices", "--json"});
    EXPECT_EQ(devices.Process().Wait(Patience), 0);
    const std::vector<Json> listed = devices.Songs();
    ASSERT_THAT(listed, SizeIs(2)) << devices.Printed();
    EXPECT_EQ(listed[0].value("number", -1), 0);
    EXPECT_EQ(listed[0].value("name", ""), "Monitor of Radio");
    EXPECT_EQ(listed[0].value("id", ""), "radio.monitor");
    EXPECT_EQ(listed[0].value("kind", ""), "monitor");
    EXPECT_TRUE(listed[0].value("default", false));
    EXPECT_EQ(listed[1].value("id", ""), "demo");
    EXPECT_FALSE(listed[1].value("default", true));
    CliRun people(server, {"devices"});
    EXPECT_EQ(people.Process().Wait(Patience), 0);
    EXPECT_EQ(people.Printed(),
              "*  0  monitor  Monitor of Radio\n   1  demo     Demo radio (made-up music)\n");
}

TEST_P(CliRecordTest, ALiveInputHasNoSpeed) {
    CliRun record(server, {"record", "--speed", "2"});
    EXPECT_EQ(record.Process().Wait(Patience), 1);
    EXPECT_EQ(record.Printed(), "corvetape-cli: --speed is for demo and file inputs\n");
}

INSTANTIATE_TEST_SUITE_P(Servers, CliRecordTest,
                         testing::Values(ServerKind::PulseAudio, ServerKind::PipeWire), [](const auto& test) {
                             return test.param == ServerKind::PulseAudio ? "PulseAudio" : "PipeWire";
                         });

}  // namespace
}  // namespace Corvetape
