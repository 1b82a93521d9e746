// The program with its window, as the process that it is, on a screen that nobody sees.
#include <gtest/gtest.h>
#include <signal.h>

#include <QCoreApplication>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "live/session_bus.h"
#include "live/sound_server.h"
#include "support/read_sound.h"
#include "support/temp_folder.h"
#include "support/test_sound.h"

namespace Corvetape {
namespace {

using namespace std::chrono_literals;

constexpr size_t Second = 44100;
constexpr auto Patient = 90s;

/// The silence until the second file plays is no end of the song.
constexpr const char* Settings =
    "[General]\r\nLanguage=english\r\n[Options]\r\nNoStartupInfo=1\r\n"
    "[NoStationData]\r\nEndOfSongDetection=0\r\nLengthOfPause=10000\r\nIgnoreShortSongs=1\r\n";

class WindowTest : public testing::TestWithParam<ServerKind> {
 protected:
    WindowTest() {
        Server.Start();
        std::filesystem::create_directories(Home + "/config/Corvet");
        std::ofstream(Home + "/config/Corvet/Corvet.ini") << Settings;
    }

    TestProcess::Start Program(const std::vector<std::string>& words) const {
        TestProcess::Start start;
        start.Command = {QCoreApplication::applicationDirPath().toStdString() + "/corvetape"};
        start.Command.insert(start.Command.end(), words.begin(), words.end());
        start.Environment = {
            {"PULSE_SERVER", Server.Address()},         {"DBUS_SESSION_BUS_ADDRESS", Bus.Address()},
            {"XDG_RUNTIME_DIR", Server.Folder / "run"}, {"HOME", Server.Folder / "home"},
            {"QT_QPA_PLATFORM", "offscreen"},           {"DISPLAY", ""}};
        start.Output = Folder / "printed";
        return start;
    }

    bool WaitFor(const std::function<bool()>& condition) { return Session.WaitFor(condition, Patient); }

    /// Files below a folder of the program's home whose names end like this.
    std::vector<std::string> Files(const std::string& below, const std::string& end) const {
        std::vector<std::string> files;
        std::error_code gone;  // of what the program takes away meanwhile
        std::filesystem::recursive_directory_iterator entry(Home + below, gone);
        for (; !gone && entry != std::filesystem::recursive_directory_iterator(); entry.increment(gone)) {
            if (entry->path().string().ends_with(end)) files.push_back(entry->path());
        }
        return files;
    }

    bool HasRecorded(size_t frames) const {
        for (const std::string& file : Files("/cache", ".wav")) {
            std::error_code gone;
            const uintmax_t bytes = std::filesystem::file_size(file, gone);
            if (!gone && bytes > frames * sizeof(Frame)) return true;
        }
        return false;
    }

    /// All logs of the program, and what it has printed.
    std::string Story() const {
        std::ostringstream story;
        story << std::ifstream(Folder / "printed").rdbuf() << '\n';
        for (const std::string& file : Files("/config", ".log")) story << std::ifstream(file).rdbuf() << '\n';
        return story.str();
    }

    /// Noise between two seconds of silence.
    std::string Put(const std::string& name, const std::vector<Frame>& noise) const {
        std::vector<Frame> show(Second);
        show.insert(show.end(), noise.begin(), noise.end());
        show.insert(show.end(), Second, Frame{});
        WriteWave(Folder / name, show, Second);
        return Folder / name;
    }

    LiveSession Session;
    SessionBus Bus{Session};
    SoundServer Server{GetParam()};
    const TempFolder Folder;
    const std::string Home = Folder / "home";
};

TEST_P(WindowTest, ASoundServerThatGoesInASongAndComesBackCostsOnlyTheTimeBetween) {
    const std::vector<Frame> before = Noise(40 * Second, 61);
    const std::vector<Frame> after = Noise(3 * Second, 62);
    const std::string first = Put("first.wav", before);
    const std::string second = Put("second.wav", after);
    TestProcess program(Program({"--home", Home, "-dontask"}));
    ASSERT_TRUE(WaitFor([this] { return Server.Recordings() == 1; })) << Story();
    EXPECT_EQ(TestProcess(Program({"--press", "record"})).Wait(Patient), 0);
    const auto player = Server.Play(first);
    ASSERT_TRUE(WaitFor([this] { return HasRecorded(8 * Second); })) << Story();

    Server.Kill();
    Session.Loop.Sleep(700ms);  // the length of the gap
    Server.Start();
    ASSERT_TRUE(WaitFor([this] { return Server.Recordings() == 1; })) << Story();
    EXPECT_EQ(Server.Play(second)->Wait(Patient), 0);
    EXPECT_TRUE(WaitFor([this] { return Story().find("of sound were lost (") != std::string::npos; }))
        << Story();
    program.Signal(SIGTERM);
    EXPECT_EQ(program.Wait(Patient), 0) << Story();

    EXPECT_NE(Story().find("because the sound server was gone"), std::string::npos) << Story();
    std::vector<std::string> songs;
    const auto encoded = [&] { return !(songs = Files("/Music", ".wav")).empty(); };
    ASSERT_TRUE(WaitFor(encoded)) << Story();  // its encoder outlives the program
    ASSERT_EQ(songs.size(), 1U) << Story();
    const std::vector<Frame> frames = ReadSound(songs[0]);
    const std::span<const Frame> sound = WithoutSilenceAround(frames);
    ASSERT_GT(sound.size(), after.size());
    EXPECT_EQ(Comparison(after, sound.last(after.size())), "equal") << "it goes on afterwards";
    const auto heard = WithoutSilenceAround(sound.first(sound.size() - after.size()));
    EXPECT_GE(heard.size(), 2 * Second);
    EXPECT_EQ(Comparison(std::span(before).first(std::min(before.size(), heard.size())), heard), "equal")
        << "what was recorded before is kept";
}

INSTANTIATE_TEST_SUITE_P(Servers, WindowTest, testing::Values(ServerKind::PulseAudio, ServerKind::PipeWire),
                         [](const testing::TestParamInfo<ServerKind>& server) {
                             return server.param == ServerKind::PulseAudio ? "PulseAudio" : "PipeWire";
                         });

}  // namespace
}  // namespace Corvetape
