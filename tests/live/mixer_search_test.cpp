// The searches of the mixer, pressed in the whole program, on a real sound server.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <deque>
#include <filesystem>
#include <fstream>
#include <optional>

#include "app/program.h"
#include "cli/hosts.h"
#include "live/sound_server.h"
#include "mixer/auto_gain.h"
#include "platform/linux/loop/linux_clock.h"
#include "platform/linux/sound/pulse_mixer.h"
#include "platform/linux/sound/pulse_wave_in.h"
#include "support/live_session.h"
#include "support/temp_folder.h"
#include "support/test_sound.h"

namespace Corvetape {
namespace {

using std::chrono::seconds;
using testing::HasSubstr;

constexpr uint32_t Rate = 44100;

/// Answers questions as it was told and notes them.
class ScriptedDialogs : public Dialogs {
 public:
    void ShowMessage(const std::string& text, DialogIcon) override { Texts.push_back(text); }
    void ShowTitled(const std::string&, const std::string& text, DialogIcon) override {
        Texts.push_back(text);
    }
    bool AskYesNo(const std::string& text, DialogIcon) override {
        Texts.push_back(text);
        if (Answers.empty()) return false;
        const bool answer = Answers.front();
        Answers.pop_front();
        return answer;
    }
    void Beep() override {}
    std::optional<std::string> BrowseForFolder(const std::string&, const std::string&) override {
        return std::nullopt;
    }
    std::optional<std::string> OpenFile(const std::string&, const std::string&, const std::string&) override {
        return std::nullopt;
    }

    std::deque<bool> Answers;
    std::vector<std::string> Texts;
};

/// A square wave of this magnitude, in seconds.
std::vector<Frame> Square(int16_t level, size_t length) {
    std::vector<Frame> frames(length * Rate);
    for (size_t i = 0; i < frames.size(); ++i) {
        const auto sample = static_cast<int16_t>(i / 50 % 2 == 0 ? level : -level);
        frames[i] = {sample, sample};
    }
    return frames;
}

class MixerSearchTest : public testing::TestWithParam<ServerKind> {
 protected:
    MixerSearchTest() { server.Start(); }

    /// Starts the program and waits until its input is open.
    void Start() {
        std::filesystem::create_directories(folder / "config/Corvet");
        RunOptions options;
        options.ProbeAllTools = false;
        options.Overrides = {{"General", "Language", "english"},
                             {"Options", "NoStartupInfo", "1"},
                             {"Options", "EncodeOffline", "1"},
                             {"Providers", "Enable", "0"}};
        const Machine machine{clock,          session.Loop,  waveIn,  mixer,       host.Files,
                              host.Processes, *host.Folders, dialogs, host.System, host.Desktop};
        program.emplace(machine, std::move(options));
        ASSERT_TRUE(program->Load());
        ASSERT_TRUE(session.WaitFor([this] { return program->InputOpen(); }, seconds(60)));
        dialogs.Texts.clear();
    }

    void TearDown() override {
        if (program) program->Unload();
    }

    /// Plays a square wave until the test ends.
    void Play(int16_t level, const std::string& sink = "radio") {
        const std::string path = server.Folder / ("square" + std::to_string(level) + ".wav");
        WriteWave(path, Square(level, 120), Rate);
        player = server.Play(path, sink);
        ASSERT_TRUE(session.WaitFor(
            [this] {
                return !server.Pactl({"list", "short", "sink-inputs"}).value_or("").empty();
            },
            seconds(60)));
    }

    bool Hears(int32_t level) {
        return session.WaitFor([&] { return PeakOfLastLevels(Signal().History, 1) >= level; }, seconds(60));
    }

    /// The highest level of the second that comes now.
    int32_t LevelNow() {
        const uint64_t before = Signal().History.Appended();
        EXPECT_TRUE(session.WaitFor([&] { return Signal().History.Appended() >= before + 24; }, seconds(60)));
        return PeakOfLastLevels(Signal().History, 19);
    }

    /// Presses the button and answers OK, then that nothing is to be saved. The history is filled with levels
    /// that the search does not look at, instead of ten seconds of sound.
    void FindGain() {
        LevelHistory& history = program->Values().Signal.History;
        while (history.Size() < LevelHistory::Capacity) history.Append(1);
        dialogs.Answers = {true, false};
        program->Values().Form.cmdAGC.Press();
        ASSERT_EQ(dialogs.Texts.size(), 2U);
    }

    const SignalState& Signal() { return program->Values().Signal; }
    const std::string& Verdict() { return dialogs.Texts.back(); }
    std::string SourceVolume(const std::string& source) {
        return server.Pactl({"get-source-volume", source}).value_or("gone");
    }

    LiveSession session;
    SoundServer server{GetParam()};
    TempFolder folder;
    LinuxClock clock;
    PulseWaveIn waveIn{session.Loop, {.Server = server.Address()}};
    PulseMixer mixer{server.Address()};
    HostParts host{folder.Path()};
    ScriptedDialogs dialogs;
    std::optional<Program> program;
    std::unique_ptr<TestProcess> player;
};

TEST_P(MixerSearchTest, FindsTheOneOfThreeSourcesThatCarriesSoundAndLeavesTheOthersAlone) {
    server.AddSink("another");
    server.AddSink("third");
    for (const char* source : {"another.monitor", "radio.monitor", "third.monitor"}) {
        EXPECT_TRUE(server.Pactl({"set-source-volume", source, "40000"}));
    }
    EXPECT_TRUE(server.Pactl({"set-source-mute", "third.monitor", "1"}));
    ASSERT_NO_FATAL_FAILURE(Start());
    ASSERT_NO_FATAL_FAILURE(Play(12000, "third"));
    const std::string before = SourceVolume("another.monitor");
    dialogs.Answers = {false, true, true, false};
    program->Values().Form.cmdAutoInput.Press();
    ASSERT_EQ(dialogs.Texts.size(), 4U) << testing::PrintToString(dialogs.Texts);
    EXPECT_THAT(dialogs.Texts[2], HasSubstr("third"));
    EXPECT_THAT(dialogs.Texts[3], HasSubstr("third"));
    EXPECT_EQ(program->Values().Form.cmbInputDevices.ListIndex(), 2);
    EXPECT_TRUE(program->InputOpen());
    EXPECT_TRUE(Hears(11000));
    EXPECT_THAT(SourceVolume("third.monitor"), HasSubstr(" 65536 "));
    EXPECT_THAT(server.Pactl({"get-source-mute", "third.monitor"}).value_or("gone"), HasSubstr("no"));
    EXPECT_EQ(SourceVolume("another.monitor"), before);
    EXPECT_EQ(SourceVolume("radio.monitor"), before);
}

TEST_P(MixerSearchTest, WithNothingPlayingFindsNothingAndSaysToStartTheMusic) {
    ASSERT_NO_FATAL_FAILURE(Start());
    const std::string before = SourceVolume("radio.monitor");
    dialogs.Answers = {false, true};
    program->Values().Form.cmdAutoInput.Press();
    ASSERT_EQ(dialogs.Texts.size(), 3U);
    EXPECT_THAT(dialogs.Texts[2], HasSubstr("start some music first"));
    EXPECT_EQ(SourceVolume("radio.monitor"), before);
    EXPECT_TRUE(program->InputOpen());
}

TEST_P(MixerSearchTest, AWeakSignalEndsWithin0Point2DecibelsOf90Percent) {
    ASSERT_NO_FATAL_FAILURE(Start());
    ASSERT_NO_FATAL_FAILURE(Play(3277));  // -20 dBFS
    ASSERT_TRUE(Hears(3000));
    FindGain();
    EXPECT_THAT(Verdict(), HasSubstr("is adjusted"));
    EXPECT_EQ(program->Values().Form.vscMultiplier.Value(), program->Values().Pause.LevelMultiplier);
    const double decibels = 20 * std::log10(LevelNow() / (0.9 * 32768));
    EXPECT_NEAR(decibels, 0, 0.2);
}

TEST_P(MixerSearchTest, AnAmplifiedSignalEndsBelow95PercentWithoutClipping) {
    EXPECT_TRUE(server.Pactl({"set-source-volume", "radio.monitor", "6dB"}));
    ASSERT_NO_FATAL_FAILURE(Start());
    ASSERT_NO_FATAL_FAILURE(Play(25000));
    ASSERT_TRUE(Hears(32767));
    FindGain();
    EXPECT_THAT(Verdict(), HasSubstr("is adjusted"));
    EXPECT_EQ(program->Values().Pause.LevelMultiplier, 100);
    const uint64_t clipped = Signal().ClippedSamples;
    const int32_t level = LevelNow();
    EXPECT_LT(level, 31130);
    EXPECT_NEAR(level, 25000, 0.05 * 25000) << "no volume above 100 % is set, so this is the most there is";
    EXPECT_EQ(Signal().ClippedSamples, clipped);
}

TEST_P(MixerSearchTest, SilenceReachesNoLevelAndLeavesTheGainAt100) {
    ASSERT_NO_FATAL_FAILURE(Start());
    program->Values().Form.vscMultiplier.Value(300);
    FindGain();
    EXPECT_THAT(Verdict(), HasSubstr("could not be reached"));
    EXPECT_EQ(program->Values().Pause.LevelMultiplier, 100);
}

TEST_P(MixerSearchTest, ARecordingOfTheCommandLineLeavesTheMixerAloneWhateverTheSettingsSay) {
    std::filesystem::create_directories(folder / "config/Corvet");
    std::ofstream(folder / "config/Corvet/Corvet.ini") << "[Mixer]\nAutoUpdate=1\nC000000=100\nC010000=100\n";
    const std::string before = SourceVolume("radio.monitor");
    const std::string output = server.Folder / "record.out";
    TestProcess record(
        {{CORVETAPE_BINARY_DIR "/bin/corvetape-cli", "record", "--seconds", "3", "--home", folder.Path()},
         {{"PULSE_SERVER", server.Address()}},
         output});
    EXPECT_EQ(record.Wait(seconds(90)), 0);
    EXPECT_EQ(SourceVolume("radio.monitor"), before);
}

INSTANTIATE_TEST_SUITE_P(Servers, MixerSearchTest,
                         testing::Values(ServerKind::PulseAudio, ServerKind::PipeWire),
                         [](const testing::TestParamInfo<ServerKind>& server) {
                             return server.param == ServerKind::PulseAudio ? "PulseAudio" : "PipeWire";
                         });

}  // namespace
}  // namespace Corvetape
