#include "platform/linux/sound/pulse_mixer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <optional>

#include "cli/hosts.h"
#include "cli/mixer_report.h"
#include "core/settings/registry.h"
#include "core/settings/settings_store.h"
#include "core/text/placeholders.h"
#include "live/sound_server.h"
#include "live/test_process.h"
#include "mixer/mixer_line.h"
#include "mixer/mod_mixer.h"
#include "platform/linux/loop/linux_clock.h"
#include "support/live_session.h"

namespace Corvetape {
namespace {

using testing::HasSubstr;

/// The mixer of a sound server of its own with an output "radio".
class PulseMixerTest : public testing::TestWithParam<ServerKind> {
 protected:
    PulseMixerTest() { server.Start(); }

    std::vector<std::string> Names() {
        std::vector<std::string> names;
        const uint32_t count = mixer.CountDevices();
        for (uint32_t i = 0; i < count; ++i) {
            if (const auto device = mixer.Open(i)) names.push_back(device->Caps().szPname);
        }
        return names;
    }

    /// Waits until the server lists what it was told to.
    bool Lists(const std::vector<std::string>& names) {
        return session.WaitFor([&] { return Names() == names; }, std::chrono::seconds(60));
    }

    /// Counts until there are so many: on a busy machine the server may not answer in time.
    bool Counts(uint32_t devices) {
        return session.WaitFor([&] { return mixer.CountDevices() == devices; }, std::chrono::seconds(60));
    }

    void Set(const std::vector<std::string>& command) { EXPECT_TRUE(server.Pactl(command)); }

    /// The volumes of all channels and the mutes of everything, in the words of the server.
    std::string Volumes(const std::vector<std::string>& sinks) {
        std::string text;
        for (const std::string& sink : sinks) {
            text += server.Pactl({"get-sink-volume", sink}).value_or("gone") + "\n";
            text += server.Pactl({"get-sink-mute", sink}).value_or("gone") + "\n";
            text += server.Pactl({"get-source-volume", sink + ".monitor"}).value_or("gone") + "\n";
            text += server.Pactl({"get-source-mute", sink + ".monitor"}).value_or("gone") + "\n";
        }
        return text;
    }

    template <typename Work>
    static double SecondsOf(Work work) {
        const auto begun = std::chrono::steady_clock::now();
        work();
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - begun).count();
    }

    /// Its first control; nothing and a failure if there is none.
    static std::optional<MIXERCONTROL> FirstControl(MixerDevice& device) {
        const auto line = device.Destination(0);
        const auto controls = line ? device.Controls(*line) : std::nullopt;
        EXPECT_TRUE(controls && !controls->empty());
        if (!controls || controls->empty()) return std::nullopt;
        return controls->front();
    }

    /// What the destination of a device is for; 0 and a failure if there is no such device.
    uint32_t KindOf(uint32_t number) {
        const auto device = mixer.Open(number);
        const auto line = device ? device->Destination(0) : std::nullopt;
        EXPECT_TRUE(line) << number;
        return line ? line->dwComponentType : 0;
    }

    int32_t VolumeOf(const std::string& input) {
        const auto device = mixer.OpenWaveIn(input);
        const auto volume = device ? FirstControl(*device) : std::nullopt;
        return volume ? GetMixerControl(*device, *volume) : -1;
    }

    void SetVolume(const std::string& input, int32_t volume) {
        const auto device = mixer.OpenWaveIn(input);
        ASSERT_TRUE(device);
        const auto control = FirstControl(*device);
        ASSERT_TRUE(control);
        EXPECT_TRUE(SetMixerControl(*device, *control, volume));
    }

    std::string Said(const std::vector<std::string>& command) {
        return server.Pactl(command).value_or("nothing");
    }

    LiveSession session;
    SoundServer server{GetParam()};
    PulseMixer mixer{server.Address()};
};

TEST_P(PulseMixerTest, ListsSourcesBeforeSinksByTheirNamesWhicheverIsTheDefault) {
    const std::vector<std::string> names = {"another.monitor", "radio.monitor", "third.monitor",
                                            "another",         "radio",         "third"};
    server.AddSink("third");
    server.AddSink("another");
    ASSERT_TRUE(Lists(names));
    server.SetDefaultSink("third");
    EXPECT_EQ(Names(), names);
    EXPECT_EQ(KindOf(0), MIXERLINE_COMPONENTTYPE_DST_WAVEIN);
    EXPECT_EQ(KindOf(3), MIXERLINE_COMPONENTTYPE_DST_SPEAKERS);
    EXPECT_EQ(mixer.Open(6), nullptr);
}

TEST_P(PulseMixerTest, ARestartOfTheServerShiftsNoDevice) {
    const std::vector<std::string> before = {"radio.monitor", "radio"};
    ASSERT_TRUE(Lists(before));
    server.Kill();
    EXPECT_EQ(mixer.CountDevices(), 0U);
    server.Start();
    ASSERT_TRUE(Lists(before));
}

TEST_P(PulseMixerTest, GivesVolumeAndMuteOfAMonitorAndOfItsSink) {
    Set({"set-source-volume", "radio.monitor", "32768"});
    Set({"set-sink-mute", "radio", "1"});
    const std::string text = MixerText(mixer);
    EXPECT_THAT(text, HasSubstr("  0  input    Monitor of Radio  (radio.monitor)\n"
                                "      C000000      volume    32768  of 0 to 65535\n"
                                "      C000001      mute      0  of 0 to 1\n"));
    EXPECT_THAT(text, HasSubstr("  1  output   Radio  (radio)\n"));
    EXPECT_THAT(text, HasSubstr("      C010001      mute      1  of 0 to 1\n"));
}

TEST_P(PulseMixerTest, SavedValuesComeBackBitForBit) {
    server.AddSink("another");
    ASSERT_TRUE(Lists({"another.monitor", "radio.monitor", "another", "radio"}));
    Set({"set-source-volume", "radio.monitor", "40001"});
    Set({"set-sink-volume", "radio", "12345", "54321"});
    Set({"set-sink-volume", "another", "65536"});
    Set({"set-source-volume", "another.monitor", "1"});
    Set({"set-source-mute", "another.monitor", "1"});
    const std::string before = Volumes({"radio", "another"});

    HostParts host(server.Folder / "user");
    const LinuxClock clock;
    RegistryBranches registry(host.Files, server.Folder / "user.reg", server.Folder / "machine.reg");
    const Placeholders expansion(clock, *host.Folders, registry);
    SettingsStore store(host.Files, *host.Folders, registry, expansion, host.System.Version());
    const std::string& ini = store.Ini().Path();
    std::filesystem::create_directories(ini.substr(0, ini.rfind('/')));
    MediaState media;
    media.MixerSectionName = "MixerSome Radio";
    modMixer walk(mixer, store, media);
    EXPECT_TRUE(walk.MixerAction(MixerMode::TakeSnapshot));
    EXPECT_TRUE(walk.MixerAction(MixerMode::Save));
    EXPECT_EQ(store.ReadProviderText("MixerSome Radio", "C010000"), "40001");
    EXPECT_EQ(store.ReadProviderText("MixerSome Radio", "C000001"), "1");

    for (const MixerMode mode : {MixerMode::Load, MixerMode::Restore}) {
        for (const char* sink : {"radio", "another"}) {
            Set({"set-sink-volume", sink, "20%"});
            Set({"set-sink-mute", sink, "1"});
            Set({"set-source-volume", std::string(sink) + ".monitor", "30%"});
            Set({"set-source-mute", std::string(sink) + ".monitor", "0"});
        }
        ASSERT_NE(Volumes({"radio", "another"}), before);
        EXPECT_TRUE(walk.MixerAction(mode));
        EXPECT_EQ(Volumes({"radio", "another"}), before) << static_cast<int>(mode);
    }
}

TEST_P(PulseMixerTest, AVolumeThatItSetsKeepsTheBalance) {
    Set({"set-source-volume", "radio.monitor", "40000", "20000"});
    ASSERT_EQ(VolumeOf("radio.monitor"), 40000);
    SetVolume("radio.monitor", 20000);
    EXPECT_THAT(Said({"get-source-volume", "radio.monitor"}), HasSubstr("20000"));
    EXPECT_THAT(Said({"get-source-volume", "radio.monitor"}), HasSubstr("10000"));
    SetVolume("radio.monitor", 0);
    SetVolume("radio.monitor", 40000);
    EXPECT_THAT(Said({"get-source-volume", "radio.monitor"}), HasSubstr("20000"));
}

TEST_P(PulseMixerTest, FullVolumeIs100PercentAndMoreIsNeverSetButComesBackIfTheUserHadIt) {
    SetVolume("radio.monitor", 30000);
    SetVolume("radio.monitor", 65535);
    EXPECT_THAT(Said({"get-source-volume", "radio.monitor"}), HasSubstr(" 65536 "));
    Set({"set-source-volume", "radio.monitor", "80000"});
    EXPECT_EQ(VolumeOf("radio.monitor"), 65535);
    SetVolume("radio.monitor", 30000);
    SetVolume("radio.monitor", 65535);
    EXPECT_THAT(Said({"get-source-volume", "radio.monitor"}), HasSubstr(" 80000 "));
    Set({"set-source-volume", "radio.monitor", "20000"});
    SetVolume("radio.monitor", 65535);
    EXPECT_THAT(Said({"get-source-volume", "radio.monitor"}), HasSubstr(" 65536 "));
}

TEST_P(PulseMixerTest, AServerThatDoesNotAnswerIsWaitedForTwoSecondsAtMost) {
    server.Signal(SIGSTOP);
    const double counting = SecondsOf([this] { EXPECT_EQ(mixer.CountDevices(), 0U); });
    EXPECT_LT(counting, 3.5);
    server.Signal(SIGCONT);
    ASSERT_TRUE(Lists({"radio.monitor", "radio"}));

    ASSERT_TRUE(Counts(2));
    const auto open = mixer.Open(0);
    ASSERT_TRUE(open);
    const auto control = FirstControl(*open);
    ASSERT_TRUE(control);
    server.Signal(SIGSTOP);
    const double setting = SecondsOf([&] { SetMixerControl(*open, *control, 5); });
    EXPECT_GT(setting, 1.9);
    EXPECT_LT(setting, 3.5) << "it would be four with two waits";
    const double rest = SecondsOf([this] { EXPECT_EQ(mixer.Open(1), nullptr); });
    EXPECT_LT(rest, 1.5) << "the rest of a walk does not wait again";
    server.Signal(SIGCONT);
}

TEST_P(PulseMixerTest, AServerThatDiesInTheMiddleOfAWalkEndsItQuietly) {
    ASSERT_TRUE(Counts(2));
    const auto open = mixer.Open(0);
    ASSERT_TRUE(open);
    const auto control = FirstControl(*open);
    ASSERT_TRUE(control);
    server.Kill();
    const double seconds = SecondsOf([&] {
        EXPECT_TRUE(SetMixerControl(*open, *control, 5));
        EXPECT_EQ(mixer.Open(1), nullptr);
        EXPECT_EQ(mixer.OpenWaveIn("radio.monitor"), nullptr);
    });
    EXPECT_LT(seconds, 1.9) << "nothing of it waits for an answer";
}

TEST_P(PulseMixerTest, ADeviceThatVanishesIsPassedOver) {
    const std::string module = server.AddSink("another");
    ASSERT_TRUE(Lists({"another.monitor", "radio.monitor", "another", "radio"}));
    ASSERT_TRUE(Counts(4));
    const auto open = mixer.Open(0);
    ASSERT_TRUE(open);
    const auto control = FirstControl(*open);
    ASSERT_TRUE(control);
    server.RemoveSink(module);
    EXPECT_TRUE(session.WaitFor([this] { return mixer.OpenWaveIn("another.monitor") == nullptr; },
                                std::chrono::seconds(60)));
    EXPECT_TRUE(SetMixerControl(*open, *control, 5));
    EXPECT_EQ(mixer.Open(2), nullptr);
    EXPECT_NE(mixer.Open(1), nullptr);
}

TEST_P(PulseMixerTest, TheCommandLineListsWhatTheWalkSees) {
    const std::string output = server.Folder / "mixer.out";
    TestProcess command({{CORVETAPE_BINARY_DIR "/bin/corvetape-cli", "mixer", "--json"},
                         {{"PULSE_SERVER", server.Address()}},
                         output});
    ASSERT_EQ(command.Wait(std::chrono::seconds(60)), 0);
    std::ifstream file(output);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    EXPECT_EQ(text, MixerJson(mixer));
    EXPECT_THAT(text, HasSubstr("\"key\":\"C000000\",\"device\":0,\"name\":\"radio.monitor\""));
}

INSTANTIATE_TEST_SUITE_P(Servers, PulseMixerTest,
                         testing::Values(ServerKind::PulseAudio, ServerKind::PipeWire),
                         [](const testing::TestParamInfo<ServerKind>& server) {
                             return server.param == ServerKind::PulseAudio ? "PulseAudio" : "PipeWire";
                         });

}  // namespace
}  // namespace Corvetape
