#include "audio/analyze.h"

#include <gtest/gtest.h>

#include "audio/signal_bench.h"
#include "platform/virtual/sim_clock.h"

namespace Corvetape::Test {

namespace {

class Analysis : public testing::Test {
 protected:
    Analysis() { Signal.ActiveThreshold = 100; }

    bool Analyze(WaveBuffer& buffer) { return AnalyzeBuffer(buffer, {Signal, Pause, Ring, Clock}); }
    bool Analyze(Frame frame) {
        WaveBuffer buffer = MakeBuffer(frame);
        return Analyze(buffer);
    }

    SimClock Clock;
    SignalState Signal;
    PauseSettings Pause;
    AudioRing Ring;
};

}  // namespace

TEST_F(Analysis, ALevelEqualToTheThresholdIsSilent) {
    EXPECT_TRUE(Analyze({100, -100}));
    EXPECT_EQ(Signal.SilentBufferCount, 1);
    EXPECT_FALSE(Analyze({101, 0}));
    EXPECT_EQ(Signal.SilentBufferCount, 0);
}

TEST_F(Analysis, OneChannelAboveTheThresholdIsSound) {
    EXPECT_FALSE(Analyze({0, -101}));
    EXPECT_FALSE(Analyze({-101, 0}));
    EXPECT_TRUE(Analyze({0, 0}));
}

TEST_F(Analysis, SilentBuffersAreCountedUntilTheFirstSound) {
    for (int32_t i = 1; i <= 5; ++i) {
        Analyze({10, 10});
        EXPECT_EQ(Signal.SilentBufferCount, i);
    }
    Analyze({1000, 0});
    EXPECT_EQ(Signal.SilentBufferCount, 0);
}

TEST_F(Analysis, WithTheGainAtAHundredTheAudioIsLeftAsItIs) {
    WaveBuffer buffer = MakeBuffer({-32768, 32767});
    buffer.Samples[7] = {123, -321};
    const std::vector<Frame> before = buffer.Samples;
    Analyze(buffer);
    EXPECT_EQ(buffer.Samples, before);
}

TEST_F(Analysis, TheGainChangesTheSamplesBeforeTheyAreMeasured) {
    Pause.LevelMultiplier = 300;
    WaveBuffer buffer = MakeBuffer({50, -60});
    EXPECT_FALSE(Analyze(buffer));
    EXPECT_EQ(buffer.Samples.front(), (Frame{150, -180}));
    EXPECT_EQ(Signal.PeakLeft, 150);
    EXPECT_EQ(Signal.PeakRight, 180);
}

TEST_F(Analysis, ByPeakOneLoudSampleMakesTheBufferSound) {
    WaveBuffer buffer = MakeBuffer({0, 0});
    buffer.Samples[1000].Right = -5000;
    EXPECT_FALSE(Analyze(buffer));
}

TEST_F(Analysis, ByMeanOneLoudSampleInSilenceIsSilent) {
    Pause.DetectSilenceByPeak = false;
    WaveBuffer buffer = MakeBuffer({0, 0});
    buffer.Samples[1000].Right = -5000;
    EXPECT_TRUE(Analyze(buffer));
}

TEST_F(Analysis, TheMeanIsTruncated) {
    Pause.DetectSilenceByPeak = false;
    WaveBuffer buffer = MakeBuffer({100, 100});
    for (uint32_t i = 0; i + 1 < BufferFrames; ++i) buffer.Samples[i].Left = 101;
    EXPECT_TRUE(Analyze(buffer)) << "100.9995 is not above 100";
    buffer.Samples.back().Left = 101;
    EXPECT_FALSE(Analyze(buffer));
}

TEST_F(Analysis, AShortLastBufferIsMeasuredAsIfSilenceFollowed) {
    Pause.DetectSilenceByPeak = false;
    Ring.Open(3, BufferFrames);
    WaveBuffer buffer = MakeBuffer({1000, 1000});
    buffer.dwBytesRecorded = 4 * 441;
    Analyze(buffer);
    EXPECT_EQ(Ring.AudioLevels[0], 200);
}

TEST_F(Analysis, WhatIsAfterTheRecordedBytesIsNotMeasured) {
    WaveBuffer buffer = MakeBuffer({0, 0});
    buffer.Samples.back() = {30000, 30000};
    buffer.dwBytesRecorded = BufferBytes - 4;
    EXPECT_TRUE(Analyze(buffer));
}

TEST_F(Analysis, PeaksStayAtTheHighestUntilSomebodyClearsThem) {
    Analyze({3000, -200});
    Analyze({-400, 1000});
    EXPECT_EQ(Signal.PeakLeft, 3000);
    EXPECT_EQ(Signal.PeakRight, 1000);
    Signal.PeakLeft = Signal.PeakRight = 0;
    Analyze({-32768, 1});
    EXPECT_EQ(Signal.PeakLeft, 32768);
    EXPECT_EQ(Signal.PeakRight, 1);
}

TEST_F(Analysis, TheHistoryIsByPeakWhateverTheMeasureIs) {
    for (const bool byPeak : {true, false}) {
        Pause.DetectSilenceByPeak = byPeak;
        WaveBuffer buffer = MakeBuffer({1, 1});
        buffer.Samples[3].Left = -700;
        Analyze(buffer);
        EXPECT_EQ(Signal.History[Signal.History.Size() - 1], 700);
    }
}

TEST_F(Analysis, TheHistoryHoldsTheLastTwoHundredPeaks) {
    for (int16_t i = 0; i < 205; ++i) Analyze({i, 0});
    EXPECT_EQ(Signal.History.Size(), 200U);
    EXPECT_EQ(Signal.History[0], 5);
    EXPECT_EQ(Signal.History[199], 204);
}

TEST_F(Analysis, TheRingLevelIsTheGreaterMeasureOfTheTwoChannels) {
    Ring.Open(3, BufferFrames);
    WaveBuffer buffer = MakeBuffer({100, -300});
    buffer.Samples[0].Left = 20000;
    Analyze(buffer);
    EXPECT_EQ(Ring.AudioLevels[0], 20000);
    Pause.DetectSilenceByPeak = false;
    Analyze(buffer);
    EXPECT_EQ(Ring.AudioLevels[0], 300);
    EXPECT_EQ(Ring.AudioWriteIndex, 0) << "the analysis does not move the ring on";
}

TEST_F(Analysis, SilenceSecondsAreWholeSecondsOfTheMillisecondClockSinceTheLastSound) {
    Clock.Advance(std::chrono::milliseconds(1900));
    Analyze({1000, 0});
    EXPECT_EQ(Signal.SilenceStartSecond, 1);
    EXPECT_EQ(Signal.SilenceSeconds, 0);
    Clock.Advance(std::chrono::milliseconds(150));
    Analyze({0, 0});
    EXPECT_EQ(Signal.SilenceSeconds, 1) << "2 minus 1, though only 0.15 s have passed";
    Clock.Advance(std::chrono::seconds(30));
    Analyze({0, 0});
    EXPECT_EQ(Signal.SilenceSeconds, 31);
    Analyze({1000, 0});
    EXPECT_EQ(Signal.SilenceSeconds, 0);
    EXPECT_EQ(Signal.SilenceStartSecond, 32);
}

TEST(AnalysisOfALongRun, SecondsOfAClockPastItsSignedLimitAreNegativeAndTheDifferenceStaysRight) {
    SimClock clock(SimClock::DefaultWallTime, SimClock::NanosecondsToWrap + 5'000'000'000);
    SignalState signal;
    PauseSettings pause;
    AudioRing ring;
    WaveBuffer sound = MakeBuffer({1000, 0});
    AnalyzeBuffer(sound, {signal, pause, ring, clock});
    EXPECT_EQ(signal.SilenceStartSecond, -2147478);
    clock.Advance(std::chrono::seconds(60));
    WaveBuffer silence = MakeBuffer({0, 0});
    AnalyzeBuffer(silence, {signal, pause, ring, clock});
    EXPECT_EQ(signal.SilenceSeconds, 60);
}

TEST_F(Analysis, SamplesAtFullScaleAreCountedPerBufferAndInAll) {
    WaveBuffer buffer = MakeBuffer({100, 32766});
    Analyze(buffer);
    EXPECT_EQ(buffer.ClippedSamples, 0U);
    buffer.Samples[5] = {32767, -32768};
    Analyze(buffer);
    EXPECT_EQ(buffer.ClippedSamples, 2U);
    buffer.Samples[6].Right = -32768;
    Analyze(buffer);
    EXPECT_EQ(buffer.ClippedSamples, 3U);
    EXPECT_EQ(Signal.ClippedSamples, 5U);
}

TEST_F(Analysis, SamplesThatTheGainSendsToFullScaleCountAsClipped) {
    Pause.LevelMultiplier = 200;
    WaveBuffer buffer = MakeBuffer({0, 1});
    buffer.Samples[0].Left = 20000;
    Analyze(buffer);
    EXPECT_EQ(buffer.ClippedSamples, 2U);
}

}  // namespace Corvetape::Test
