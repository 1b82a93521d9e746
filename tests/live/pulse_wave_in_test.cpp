#include "platform/linux/sound/pulse_wave_in.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <algorithm>

#include "live/recorder.h"
#include "live/sound_server.h"
#include "support/live_session.h"
#include "support/test_sound.h"

namespace Corvetape {
namespace {

using std::chrono::seconds;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr size_t Second = 44100;

class PulseWaveInTest : public testing::TestWithParam<ServerKind> {
 protected:
    PulseWaveInTest() { server.Start(); }

    /// Plays noise of this length and waits until it has been recorded whole.
    std::vector<Frame> PlayNoise(Recorder& recorder, size_t frames, uint32_t seed) {
        const std::vector<Frame> noise = Noise(frames, seed);
        const std::string path = server.Folder / ("noise" + std::to_string(seed) + ".wav");
        WriteWave(path, noise, Second);
        const auto player = server.Play(path);
        const bool over = session.WaitFor(
            [&] { return std::ranges::find(recorder.Frames, noise.back()) != recorder.Frames.end(); },
            seconds(60 + frames / Second));
        EXPECT_TRUE(over) << "the end of the file has not arrived";
        EXPECT_EQ(player->Wait(seconds(60)), 0);
        return noise;
    }

    LiveSession session;
    SoundServer server{GetParam()};
};

TEST_P(PulseWaveInTest, InputsAreListedByTheirNamesAndTheMonitorOfTheDefaultOutputIsMarked) {
    server.AddSink("another");
    PulseWaveIn waveIn(session.Loop, Patiently(server.Address()));
    std::vector<WaveInDevice> devices;
    const auto marked = [&](const std::string& id) {
        devices = waveIn.Devices();
        const auto found = std::ranges::find(devices, true, &WaveInDevice::IsDefault);
        return devices.size() == 2 && found != devices.end() && found->Id == id;
    };
    server.SetDefaultSink("another");
    ASSERT_TRUE(session.WaitFor([&] { return marked("another.monitor"); }, seconds(60)));
    EXPECT_EQ(devices[0].Id, "another.monitor");
    EXPECT_EQ(devices[1].Id, "radio.monitor");
    EXPECT_FALSE(devices[1].IsDefault);
    server.SetDefaultSink("radio");
    ASSERT_TRUE(session.WaitFor([&] { return marked("radio.monitor"); }, seconds(60)));
    EXPECT_EQ(devices[0].Id, "another.monitor");
    EXPECT_FALSE(devices[0].IsDefault);
    EXPECT_EQ(devices[1].Id, "radio.monitor");
    EXPECT_EQ(devices[1].Name, "Monitor of Radio");
    EXPECT_EQ(devices[1].Kind, WaveInKind::Monitor);
    EXPECT_EQ(devices[1].dwFormats, WAVE_FORMAT_4S16 | WAVE_FORMAT_48S16);
}

TEST_P(PulseWaveInTest, AnUnknownDeviceOrFormatIsRefused) {
    PulseWaveIn waveIn(session.Loop, Patiently(server.Address()));
    ASSERT_EQ(waveIn.Devices().size(), 1u);
    EXPECT_EQ(waveIn.Open(1, MakeWaveFormat(44100), BufferReturn::Loop, {}), nullptr);
    EXPECT_EQ(waveIn.Open(0, MakeWaveFormat(22050), BufferReturn::Loop, {}), nullptr);
    WaveFormat mono = MakeWaveFormat(44100);
    mono.nChannels = 1;
    EXPECT_EQ(waveIn.Open(0, mono, BufferReturn::Loop, {}), nullptr);
    EXPECT_NE(waveIn.Open(0, MakeWaveFormat(44100), BufferReturn::Loop, {}), nullptr);
}

TEST_P(PulseWaveInTest, ADeviceThatIsGoneSinceTheListIsRefused) {
    const std::string module = server.AddSink("another");
    PulseWaveIn waveIn(session.Loop, Patiently(server.Address()));
    const WaveInList devices = waveIn.Devices();
    ASSERT_EQ(devices.size(), 2u);
    ASSERT_EQ(devices[0].Id, "another.monitor");
    server.RemoveSink(module);
    EXPECT_EQ(waveIn.Open(0, MakeWaveFormat(44100), BufferReturn::Loop, {}), nullptr);
}

TEST_P(PulseWaveInTest, AnOpticalInputsRateGivesBuffersOf2400Frames) {
    Recorder recorder(session, server.Address(), BufferReturn::Loop, 48000);
    ASSERT_TRUE(recorder.Begin("radio.monitor"));
    const auto began = std::chrono::steady_clock::now();
    ASSERT_TRUE(recorder.WaitForFrames(48000));
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - began;
    EXPECT_GT(took.count(), 0.7) << "it comes no faster than it plays";
    EXPECT_EQ(recorder.Frames.size() % 2400, 0u);
    EXPECT_EQ(recorder.OddBuffers, 0u);
}

TEST_P(PulseWaveInTest, AllFourBufferReturnModesRecordBitForBit) {
    for (const BufferReturn mode : {BufferReturn::Loop, BufferReturn::PollByTimer,
                                    BufferReturn::PollPrecisely, BufferReturn::CaptureThread}) {
        SCOPED_TRACE("mode " + std::to_string(static_cast<int>(mode)));
        Recorder recorder(session, server.Address(), mode);
        ASSERT_TRUE(recorder.Begin("radio.monitor"));
        ASSERT_TRUE(recorder.WaitForFrames(Second / 4));
        const std::vector<Frame> noise = PlayNoise(recorder, 3 * Second / 2, 7);
        EXPECT_EQ(Comparison(noise, WithoutSilenceAround(recorder.Frames)), "equal");
        EXPECT_EQ(recorder.OddBuffers, 0u);
        EXPECT_THAT(recorder.Incidents, IsEmpty());
        EXPECT_THAT(recorder.Lost, IsEmpty());
    }
}

TEST_P(PulseWaveInTest, AMainThreadThatStandsStillFor30SecondsLosesNothing) {
    Recorder recorder(session, server.Address());
    ASSERT_TRUE(recorder.Begin("radio.monitor"));
    ASSERT_TRUE(recorder.WaitForFrames(Second / 4));
    const std::vector<Frame> noise = Noise(31 * Second, 3);
    const std::string path = server.Folder / "long.wav";
    WriteWave(path, noise, Second);
    const auto player = server.Play(path);
    ASSERT_TRUE(session.WaitFor(
        [&] { return std::ranges::find(recorder.Frames, noise.front()) != recorder.Frames.end(); },
        seconds(60)));
    const size_t before = recorder.Frames.size();
    session.Loop.Sleep(seconds(30));  // the condition itself: no event is handled
    EXPECT_EQ(recorder.Frames.size(), before);
    ASSERT_TRUE(session.WaitFor(
        [&] { return std::ranges::find(recorder.Frames, noise.back()) != recorder.Frames.end(); },
        seconds(60)));
    EXPECT_EQ(Comparison(noise, WithoutSilenceAround(recorder.Frames)), "equal");
    EXPECT_EQ(recorder.OddBuffers, 0u);
    EXPECT_THAT(recorder.Incidents, IsEmpty());
    EXPECT_THAT(recorder.Lost, IsEmpty());
}

TEST_P(PulseWaveInTest, WhatTheQueueHasNoRoomForIsReportedToTheFrame) {
    PulseTerms terms = Patiently(server.Address());
    terms.QueueLength = seconds(1);
    Recorder recorder(session, terms);
    ASSERT_TRUE(recorder.Begin("radio.monitor"));
    ASSERT_TRUE(recorder.WaitForFrames(Second / 4));
    const std::vector<Frame> noise = Noise(4 * Second, 21);
    const std::string path = server.Folder / "noise.wav";
    WriteWave(path, noise, Second);
    const auto player = server.Play(path);
    ASSERT_TRUE(session.WaitFor(
        [&] { return std::ranges::find(recorder.Frames, noise.front()) != recorder.Frames.end(); },
        seconds(60)));
    session.Loop.Sleep(seconds(2));  // the condition itself: the queue overflows
    ASSERT_TRUE(session.WaitFor(
        [&] { return std::ranges::find(recorder.Frames, noise.back()) != recorder.Frames.end(); },
        seconds(60)));
    ASSERT_FALSE(recorder.Incidents.empty());
    // More than one if this process has stood still once more.
    uint64_t lost = 0;
    for (const WaveInIncident& incident : recorder.Incidents) {
        EXPECT_EQ(incident.Kind, WaveInIncidentKind::Overrun);
        lost += incident.LostFrames;
    }
    EXPECT_EQ(WithoutSilenceAround(recorder.Frames).size() + lost, noise.size());
    EXPECT_GT(recorder.Incidents[0].LostFrames, Second / 2);
}

TEST_P(PulseWaveInTest, ASourceThatIsSuspendedIsReportedAndComesBack) {
    Recorder recorder(session, server.Address());
    ASSERT_TRUE(recorder.Begin("radio.monitor"));
    ASSERT_TRUE(recorder.WaitForFrames(3 * Second));
    recorder.BeginAccount();
    server.Suspend("radio", true);
    if (GetParam() == ServerKind::PipeWire) {
        // This server does not suspend an output that is listened to.
        ASSERT_TRUE(recorder.WaitForFrames(3 * Second));
        EXPECT_THAT(recorder.Lost, IsEmpty());
        EXPECT_THAT(recorder.Incidents, IsEmpty());
        return;
    }
    ASSERT_TRUE(session.WaitFor([&] { return !recorder.Lost.empty(); }, seconds(60)));
    server.Suspend("radio", false);
    ASSERT_TRUE(session.WaitFor([&] { return recorder.Lost.size() == 2; }, seconds(60)));
    EXPECT_THAT(recorder.Lost, ElementsAre(true, false));
    const std::vector<Frame> noise = PlayNoise(recorder, 2 * Second, 12);
    EXPECT_EQ(Comparison(noise, WithoutSilenceAround(recorder.Frames)), "equal");
    EXPECT_TRUE(recorder.AccountIsEven(0.25)) << recorder.Unaccounted() << " s";
}

TEST_P(PulseWaveInTest, AServerThatStandsStillForAWhileIsLostAndComesBack) {
    Recorder recorder(session, server.Address());
    ASSERT_TRUE(recorder.Begin("radio.monitor"));
    ASSERT_TRUE(recorder.WaitForFrames(3 * Second));
    recorder.BeginAccount();
    server.Signal(SIGSTOP);
    EXPECT_TRUE(session.WaitFor([&] { return !recorder.Lost.empty(); }, seconds(60)));
    server.Signal(SIGCONT);
    ASSERT_TRUE(session.WaitFor([&] { return recorder.Lost.size() == 2; }, seconds(60)));
    // Whether the server makes up for the time is its own affair; what it does not must be told.
    EXPECT_TRUE(recorder.AccountIsEven(0.25)) << recorder.Unaccounted() << " s";
}

TEST_P(PulseWaveInTest, AfterTheServerWasKilledRecordingGoesOnAndTheGapIsReportedOnce) {
    Recorder recorder(session, server.Address());
    ASSERT_TRUE(recorder.Begin("radio.monitor"));
    ASSERT_TRUE(recorder.WaitForFrames(5 * Second / 2));
    recorder.BeginAccount();
    const size_t before = recorder.Frames.size();
    server.Kill();
    ASSERT_TRUE(session.WaitFor([&] { return !recorder.Lost.empty(); }, seconds(60)));
    EXPECT_THAT(recorder.Lost, ElementsAre(true));
    EXPECT_LT(recorder.Frames.size() - before, Second);
    session.Loop.Sleep(std::chrono::milliseconds(700));  // the length of the gap: several attempts fail
    server.Start();
    ASSERT_TRUE(session.WaitFor([&] { return recorder.Lost.size() == 2; }, seconds(60)));
    EXPECT_THAT(recorder.Lost, ElementsAre(true, false));
    const std::vector<Frame> noise = PlayNoise(recorder, 2 * Second, 11);
    ASSERT_TRUE(session.WaitFor([&] { return !recorder.Incidents.empty(); }, seconds(60)));
    ASSERT_EQ(recorder.Incidents.size(), 1u);
    EXPECT_EQ(recorder.Incidents[0].Kind, WaveInIncidentKind::ServerLost);
    EXPECT_EQ(recorder.Incidents[0].DeviceName, "Monitor of Radio");
    EXPECT_EQ(recorder.Incidents[0].Reason, "Connection terminated");
    EXPECT_GT(recorder.Told(), recorder.Gap() - 0.5);
    EXPECT_TRUE(recorder.AccountIsEven(0.25)) << recorder.Unaccounted() << " s";
    EXPECT_EQ(Comparison(noise, WithoutSilenceAround(recorder.Frames)), "equal");
    EXPECT_EQ(recorder.OddBuffers, 0u);
}

TEST_P(PulseWaveInTest, ARemovedDeviceIsWaitedForAndNoOtherOneIsRecordedMeanwhile) {
    const std::string module = server.AddSink("another");
    Recorder recorder(session, server.Address());
    ASSERT_TRUE(recorder.Begin("another.monitor"));
    ASSERT_TRUE(recorder.WaitForFrames(5 * Second / 2));
    recorder.BeginAccount();
    const std::string path = server.Folder / "wrong.wav";
    WriteWave(path, Noise(6 * Second, 5), Second);
    const auto wrong = server.Play(path, "radio");  // what must not be heard
    server.RemoveSink(module);
    ASSERT_TRUE(session.WaitFor([&] { return !recorder.Lost.empty(); }, seconds(60)));
    EXPECT_FALSE(session.WaitFor([&] { return recorder.Lost.size() > 1; }, seconds(1)));
    server.AddSink("another");
    ASSERT_TRUE(session.WaitFor([&] { return recorder.Lost.size() == 2; }, seconds(60)));
    EXPECT_EQ(recorder.LostAt[0], recorder.LostAt[1]) << "something was recorded without the device";
    EXPECT_THAT(recorder.Lost, ElementsAre(true, false));
    ASSERT_TRUE(session.WaitFor([&] { return !recorder.Incidents.empty(); }, seconds(60)));
    ASSERT_EQ(recorder.Incidents.size(), 1u);
    EXPECT_EQ(recorder.Incidents[0].Kind, WaveInIncidentKind::DeviceLost);
    EXPECT_FALSE(recorder.Incidents[0].Reason.empty());
    EXPECT_GT(recorder.Told(), recorder.Gap() - 0.5);
    EXPECT_TRUE(recorder.AccountIsEven(0.25)) << recorder.Unaccounted() << " s";
    EXPECT_TRUE(WithoutSilenceAround(recorder.Frames).empty()) << "the other output was recorded";
}

TEST_P(PulseWaveInTest, AStreamCanBeResetAtAnyTimeAndStartedAgain) {
    Recorder recorder(session, server.Address());
    ASSERT_TRUE(recorder.Begin("radio.monitor"));
    ASSERT_TRUE(recorder.WaitForFrames(Second / 4));
    server.Kill();
    ASSERT_TRUE(session.WaitFor([&] { return !recorder.Lost.empty(); }, seconds(60)));
    // In the middle of attempts to get the server back.
    const auto began = std::chrono::steady_clock::now();
    recorder.End();
    EXPECT_LT(std::chrono::steady_clock::now() - began, seconds(3)) << "an attempt may take five";
    EXPECT_FALSE(recorder.Begin("radio.monitor"));
    server.Start();
    const size_t before = recorder.Frames.size();
    ASSERT_TRUE(recorder.Begin("radio.monitor"));
    ASSERT_TRUE(recorder.WaitForFrames(Second / 4));
    recorder.End();
    const size_t after = recorder.Frames.size();
    EXPECT_FALSE(session.WaitFor([&] { return recorder.Frames.size() != after; }, seconds(1) / 2));
    EXPECT_GT(after, before);
    EXPECT_EQ(recorder.OddBuffers, 0u);
}

TEST_P(PulseWaveInTest, AStreamMayBeDestroyedByTheOwnerOfABuffer) {
    PulseWaveIn waveIn(session.Loop, Patiently(server.Address()));
    ASSERT_EQ(waveIn.Devices().size(), 1u);
    std::unique_ptr<WaveInStream> stream;
    size_t buffers = 0;
    WaveInEvents events;
    events.BufferDone = [&](WaveHeader&) {
        ++buffers;
        stream.reset();
    };
    std::vector<Frame> memory(4410);
    std::array<WaveHeader, 2> headers{};
    stream = waveIn.Open(0, MakeWaveFormat(44100), BufferReturn::Loop, events);
    ASSERT_NE(stream, nullptr);
    for (size_t i = 0; i < headers.size(); ++i) {
        headers[i].lpData = memory.data() + i * 2205;
        headers[i].dwBufferLength = 8820;
        stream->AddBuffer(headers[i]);
    }
    ASSERT_TRUE(stream->Start());
    ASSERT_TRUE(session.WaitFor([&] { return buffers > 0; }, seconds(60)));
    EXPECT_FALSE(session.WaitFor([&] { return buffers > 1; }, seconds(1) / 5));
}

INSTANTIATE_TEST_SUITE_P(Servers, PulseWaveInTest,
                         testing::Values(ServerKind::PulseAudio, ServerKind::PipeWire),
                         [](const testing::TestParamInfo<ServerKind>& kind) {
                             return kind.param == ServerKind::PulseAudio ? "PulseAudio" : "PipeWire";
                         });

TEST(PulseWaveInWithoutServer, GivesAnEmptyListAtOnce) {
    LiveSession session;
    TempFolder folder;
    PulseWaveIn waveIn(session.Loop, {.Server = "unix:" + (folder / "nobody")});
    const auto began = std::chrono::steady_clock::now();
    EXPECT_THAT(waveIn.Devices(), IsEmpty());
    EXPECT_LT(std::chrono::steady_clock::now() - began, PulseTerms().ConnectLimit);
    EXPECT_EQ(waveIn.Open(0, MakeWaveFormat(44100), BufferReturn::Loop, {}), nullptr);
}

TEST(PulseWaveInWithoutServer, AServerThatDoesNotAnswerIsNotWaitedForLongerThanTheLimit) {
    LiveSession session;
    SoundServer server(ServerKind::PulseAudio);
    server.Start();
    PulseWaveIn waveIn(session.Loop, {.Server = server.Address()});
    ASSERT_EQ(waveIn.Devices().size(), 1u);
    server.Signal(SIGSTOP);
    const auto began = std::chrono::steady_clock::now();
    EXPECT_EQ(waveIn.Open(0, MakeWaveFormat(44100), BufferReturn::Loop, {}), nullptr);
    EXPECT_THAT(waveIn.Devices(), IsEmpty());
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - began;
    EXPECT_GT(took.count(), 3.9) << "each of the two is waited for";
    EXPECT_LT(took.count(), 5.9);
    server.Kill();
}

}  // namespace
}  // namespace Corvetape
