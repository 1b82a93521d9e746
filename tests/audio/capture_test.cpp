#include "audio/capture.h"

#include <gtest/gtest.h>

#include "audio/capture_bench.h"

namespace Corvetape::Test {

namespace {

class Captures : public testing::Test, protected CaptureBench {};

}  // namespace

// Opening.

TEST_F(Captures, AtTheCommonRateABufferHas2205Frames) {
    EXPECT_EQ(Input().FramesPerBuffer(), 0U);
    EXPECT_TRUE(Input().OpenWaveIn(0));
    EXPECT_EQ(Input().Format(), MakeWaveFormat(44100));
    EXPECT_EQ(Device.Format, MakeWaveFormat(44100));
    EXPECT_EQ(Input().FramesPerBuffer(), 2205U);
    EXPECT_EQ(Input().RecordingRing()[0].dwBufferLength, 8820U);
}

TEST_F(Captures, TheOpticalRateTakesEffectAtTheNextOpening) {
    Input().OpenWaveIn(0);
    Options.SPDIF48kHz = true;
    EXPECT_EQ(Input().FramesPerBuffer(), 2205U);
    EXPECT_TRUE(Input().OpenWaveIn(0));
    EXPECT_EQ(Input().Format(), MakeWaveFormat(48000));
    EXPECT_EQ(Input().FramesPerBuffer(), 2400U);
    EXPECT_EQ(Input().RecordingRing()[4].dwBufferLength, 9600U);
    EXPECT_EQ(Input().RecordingRing()[4].Samples.size(), 2400U);
}

TEST_F(Captures, AllBuffersAreQueuedInTheirOrderBeforeTheDeviceStarts) {
    EXPECT_TRUE(Input().OpenWaveIn(1));
    EXPECT_EQ(TakeAsked(), "open1 add0 add1 add2 add3 add4 start ");
    EXPECT_TRUE(Input().IsOpen());
    for (const WaveBuffer& buffer : Input().RecordingRing()) {
        EXPECT_EQ(buffer.lpData, buffer.Samples.data());
        EXPECT_EQ(buffer.dwFlags, 0U);
    }
}

TEST_F(Captures, OpeningMakesTheRingAnew) {
    Ring.Open(3, 10);
    Ring.AudioReadIndex = 2;
    Input().OpenWaveIn(0);
    EXPECT_EQ(Ring.Size(), 8);
    EXPECT_EQ(Ring.AudioReadIndex, 0);
    Device.Arrive();
    WaveBuffer buffer = Input().RecordingRing()[0];
    buffer.lpData = buffer.Samples.data();
    Ring.Put(buffer);
    EXPECT_EQ(Ring[0].dwBytesRecorded, 8820U) << "a slot holds a buffer";
}

TEST_F(Captures, ADeviceThatIsNotThereCannotBeOpened) {
    EXPECT_FALSE(Input().OpenWaveIn(7));
    EXPECT_FALSE(Input().IsOpen());
    EXPECT_EQ(TakeAsked(), "open7 ");
}

TEST_F(Captures, ADeviceThatDoesNotStartIsClosedAgain) {
    Device.Starts = false;
    EXPECT_FALSE(Input().OpenWaveIn(0));
    EXPECT_FALSE(Input().IsOpen());
    EXPECT_EQ(Device.OpenStreams, 0);
}

TEST_F(Captures, OpeningTheOpenDeviceClosesItFirstAndBeginsAnew) {
    Options.PollRecordingBuffers = 1;
    Input().OpenWaveIn(0);
    Device.Due = 3;
    Advance(100);
    EXPECT_EQ(Input().PollIndex(), 3U);
    Ring.AudioWriteIndex = 5;
    Ring.AudioReadIndex = 4;
    TakeAsked();
    EXPECT_TRUE(Input().OpenWaveIn(0));
    EXPECT_EQ(TakeAsked(), "reset close open0 add0 add1 add2 add3 add4 start ");
    EXPECT_EQ(Input().PollIndex(), 0U);
    EXPECT_EQ(Ring.AudioWriteIndex, 0);
    EXPECT_EQ(Ring.AudioReadIndex, 0);
    EXPECT_EQ(Signal.FramesReceived, 0U);
}

TEST_F(Captures, OpeningForgetsWhatTheBuffersHeldAndWhatWasLost) {
    Options.PollRecordingBuffers = 1;
    Input().OpenWaveIn(0);
    Device.Events.Incident({WaveInIncidentKind::Overrun, 500, "radio"});
    Device.Fill()->dwFlags |= WHDR_DONE;
    Input().OpenWaveIn(0);
    EXPECT_EQ(Input().RecordingRing()[0].dwBytesRecorded, 0U);
    Advance(100);
    EXPECT_TRUE(Heard.empty());
    Device.Due = 1;
    Advance(100);
    EXPECT_EQ(LostBefore, (std::vector<uint64_t>{0}));
}

TEST_F(Captures, NumbersOfBuffersThatMakeNoSenseAreBroughtIntoBounds) {
    for (const int32_t count : {0, -5}) {
        Options.RecordingBuffers = count;
        EXPECT_TRUE(Input().OpenWaveIn(0));
        EXPECT_EQ(Input().RecordingRing().size(), 1U);
    }
    Options.RecordingBuffers = 2000000000;
    Options.AudioBuffers = -1;
    EXPECT_TRUE(Input().OpenWaveIn(0));
    EXPECT_EQ(Input().RecordingRing().size(), static_cast<size_t>(Capture::MostRecordingBuffers));
    EXPECT_EQ(Ring.Size(), 1);
}

TEST_F(Captures, TheReturnModeIsThatOfTheSettingAndAnUnknownOneIsByTheLoop) {
    const std::pair<int32_t, BufferReturn> modes[] = {
        {0, BufferReturn::Loop},          {1, BufferReturn::PollByTimer}, {2, BufferReturn::PollPrecisely},
        {3, BufferReturn::CaptureThread}, {4, BufferReturn::Loop},        {-1, BufferReturn::Loop}};
    for (const auto& [setting, mode] : modes) {
        Options.PollRecordingBuffers = setting;
        Input().OpenWaveIn(0);
        EXPECT_EQ(Device.Mode, mode) << setting;
    }
}

// Buffers that arrive.

TEST_F(Captures, ABufferIsHandledAndThenGivenBack) {
    Input().OpenWaveIn(0);
    TakeAsked();
    std::string askedMeanwhile = "?";
    OnBuffer = [&](WaveBuffer& buffer) {
        askedMeanwhile = Device.Asked;
        EXPECT_EQ(buffer.dwUser, 0U);
        return true;
    };
    Device.Arrive();
    EXPECT_EQ(askedMeanwhile, "") << "a slow disk eats the queue";
    EXPECT_EQ(TakeAsked(), "add0 ");
    EXPECT_EQ(Input().RecordingRing()[0].dwFlags, 0U);
}

TEST_F(Captures, BuffersArriveInModes0And3AsEvents) {
    for (const int32_t mode : {0, 3}) {
        Options.PollRecordingBuffers = mode;
        Input().OpenWaveIn(0);
        Heard.clear();
        const int16_t first = Device.Value;
        for (int32_t i = 0; i < 12; ++i) Device.Arrive();
        ASSERT_EQ(Heard.size(), 12U);
        for (size_t i = 0; i < 12; ++i) EXPECT_EQ(Heard[i], first + static_cast<int16_t>(i));
    }
}

TEST_F(Captures, BuffersAreNumberedByFramesThroughAllOpenings) {
    Input().OpenWaveIn(0);
    Device.Arrive();
    Device.Arrive();
    Device.Arrive(100);
    Device.Arrive();
    EXPECT_EQ(Positions, (std::vector<uint64_t>{0, 2205, 4410, 4510}));
    EXPECT_EQ(Signal.FramesReceived, 4510U + 2205U);
    Input().OpenWaveIn(0);
    Device.Arrive();
    EXPECT_EQ(Positions.back(), 6715U);
    EXPECT_EQ(Signal.FramesReceived, 2205U) << "of this opening";
    EXPECT_EQ(Signal.FramesOfEarlierInputs, 6715U);
}

TEST_F(Captures, AnEmptyBufferIsGivenBackUnheard) {
    Input().OpenWaveIn(0);
    TakeAsked();
    Device.Arrive(0);
    EXPECT_TRUE(Heard.empty());
    EXPECT_EQ(TakeAsked(), "add0 ");
    Device.Arrive(1);
    EXPECT_EQ(Heard.size(), 1U) << "a single frame is audio";
}

TEST_F(Captures, ABufferThatClaimsMoreThanItHoldsIsCutToItsLength) {
    Input().OpenWaveIn(0);
    uint32_t bytes = 0;
    OnBuffer = [&](WaveBuffer& buffer) {
        bytes = buffer.dwBytesRecorded;
        return true;
    };
    WaveHeader* header = Device.Fill();
    header->dwBytesRecorded = 1000000;
    Device.Events.BufferDone(*header);
    EXPECT_EQ(bytes, 8820U);
}

TEST_F(Captures, ABufferThatCannotBeHandledEndsTheProgramAndIsNotGivenBack) {
    Input().OpenWaveIn(0);
    Device.Arrive();
    TakeAsked();
    OnBuffer = [](WaveBuffer&) { return false; };
    ArriveAfter(50);
    EXPECT_EQ(Fatals, 1);
    EXPECT_EQ(TakeAsked(), "");
    EXPECT_EQ(Input().MaxBuffersUsed(), 0);
}

TEST_F(Captures, LostAudioIsCountedAndNotedAtTheNextBuffer) {
    Input().OpenWaveIn(0);
    Device.Arrive();
    Device.Events.Incident({WaveInIncidentKind::Overrun, 500, "radio"});
    Device.Events.Incident({WaveInIncidentKind::ServerLost, 30, "radio"});
    Device.Arrive();
    Device.Arrive();
    EXPECT_EQ(Signal.FramesLost, 530U);
    EXPECT_EQ(Incidents, (std::vector<uint64_t>{500, 30}));
    EXPECT_EQ(LostBefore, (std::vector<uint64_t>{0, 530, 0}));
}

TEST_F(Captures, ADeviceThatGoesAndComesBackIsReported) {
    Input().OpenWaveIn(0);
    Device.Events.Availability(true);
    Device.Events.Availability(false);
    EXPECT_EQ(Availability, "gone back ");
}

TEST_F(Captures, WithoutHandlersEventsAreLeftOut) {
    Capture bare({Device, Loop, Clock, Options, Signal, Ring, Target()}, {});
    ASSERT_TRUE(bare.OpenWaveIn(0));
    Device.Arrive();
    Device.Events.Incident({WaveInIncidentKind::Overrun, 5, "radio"});
    Device.Events.Availability(true);
    Device.Events.Ended();
    EXPECT_EQ(Signal.FramesReceived, 2205U);
}

// Polling.

TEST_F(Captures, Mode1PollsEveryIntervalAndMode2EveryFiftyMilliseconds) {
    const auto polls = [this](int32_t mode) {
        Options.PollRecordingBuffers = mode;
        Options.Interval = 130;
        Input().OpenWaveIn(0);
        int32_t count = 0;
        Device.OnDeliver = [&count] { ++count; };
        Advance(1300);
        Device.OnDeliver = nullptr;
        return count;
    };
    EXPECT_EQ(polls(1), 10);
    EXPECT_EQ(polls(2), 26);
    EXPECT_EQ(polls(0), 0);
    EXPECT_EQ(polls(3), 0);
}

TEST_F(Captures, APollTakesAllBuffersThatAreDoneRoundTheRing) {
    Options.PollRecordingBuffers = 1;
    Input().OpenWaveIn(0);
    const int16_t first = Device.Value;
    for (const int32_t due : {2, 0, 4, 5, 1}) {
        Device.Due = due;
        Advance(100);
    }
    ASSERT_EQ(Heard.size(), 12U);
    for (size_t i = 0; i < Heard.size(); ++i) EXPECT_EQ(Heard[i], first + static_cast<int16_t>(i));
    EXPECT_EQ(Input().PollIndex(), 12U % 5U);
}

TEST_F(Captures, TheHighestNumberFoundInOnePollIsKept) {
    Options.PollRecordingBuffers = 1;
    Input().OpenWaveIn(0);
    for (const int32_t due : {2, 4, 1}) {
        Device.Due = due;
        Advance(100);
    }
    EXPECT_EQ(Input().MaxBuffersUsed(), 4);
    Input().MaxBuffersUsed() = 0;
    Device.Due = 2;
    Advance(100);
    EXPECT_EQ(Input().MaxBuffersUsed(), 2);
    Device.Due = 100;
    Advance(100);
    EXPECT_EQ(Input().MaxBuffersUsed(), 5) << "no more than there are";
}

TEST_F(Captures, APollThatFailsFatallyStopsWithoutGoingOn) {
    Options.PollRecordingBuffers = 2;
    Input().OpenWaveIn(0);
    OnBuffer = [this](WaveBuffer&) { return Heard.size() < 2; };
    Device.Due = 4;
    Advance(50);
    EXPECT_EQ(Heard.size(), 2U);
    EXPECT_EQ(Fatals, 1);
    EXPECT_EQ(Input().PollIndex(), 1U);
    EXPECT_EQ(Input().MaxBuffersUsed(), 0);
}

TEST_F(Captures, AnUnforeseenFailureInAPollEndsThePollingUntilTheNextOpening) {
    for (const int32_t mode : {1, 2}) {
        Options.PollRecordingBuffers = mode;
        Input().OpenWaveIn(0);
        Heard.clear();
        OnBuffer = [](WaveBuffer&) -> bool { throw std::bad_alloc(); };
        Device.Due = 1;
        Advance(100);
        EXPECT_EQ(Heard.size(), 1U);
        OnBuffer = [](WaveBuffer&) { return true; };
        Device.Due = 3;
        Advance(1000);
        EXPECT_EQ(Heard.size(), 1U);
        EXPECT_TRUE(Input().IsOpen());
        EXPECT_EQ(Fatals, 0);
        Input().OpenWaveIn(0);
        Device.Due = 3;
        Advance(100);
        EXPECT_EQ(Heard.size(), 4U);
        Device.Due = 0;
    }
}

TEST_F(Captures, InPollingModesEventsOfBuffersAreNotLookedAt) {
    Options.PollRecordingBuffers = 1;
    Input().OpenWaveIn(0);
    Device.Arrive();
    EXPECT_TRUE(Heard.empty());
}

TEST_F(Captures, TheEndOfTheInputIsReportedAfterItsLastBuffer) {
    for (const int32_t mode : {0, 1}) {
        Options.PollRecordingBuffers = mode;
        Input().OpenWaveIn(0);
        Heard.clear();
        Ends = 0;
        if (mode == 0) {
            Device.Arrive();
        } else {
            Device.Due = 1;
        }
        Device.Events.Ended();
        EXPECT_EQ(Heard.size(), 1U) << mode;
        EXPECT_EQ(Ends, 1) << mode;
    }
}

// The mark of modes 0 and 3.

TEST_F(Captures, AnArrivalOnTimeCountsTwo) {
    Input().OpenWaveIn(0);
    Device.Arrive();
    EXPECT_EQ(Input().MaxBuffersUsed(), 0) << "the first one has none before it";
    ArriveAfter(50);
    EXPECT_EQ(Input().MaxBuffersUsed(), 2);
    ArriveAfter(1);
    EXPECT_EQ(Input().MaxBuffersUsed(), 2);
}

TEST_F(Captures, TheMarkIsTheTimeSinceTheLastArrivalInBuffersPlusOneRounded) {
    const std::pair<int32_t, int32_t> cases[] = {{1, 1}, {24, 1}, {26, 2}, {74, 2}, {76, 3}, {1000, 21}};
    for (const auto& [milliseconds, mark] : cases) {
        Clock.SetLocalNow({2024, 5, 14, 0, 0, 1, 0});
        Input().OpenWaveIn(0);
        Device.Arrive();
        Input().MaxBuffersUsed() = 0;
        ArriveAfter(milliseconds);
        EXPECT_EQ(Input().MaxBuffersUsed(), mark) << milliseconds << " ms";
    }
}

TEST_F(Captures, TheTimeOfArrivalHasSinglePrecision) {
    // Late in the day such a time goes in steps of 1/128 s: 26 ms are taken for 23.4 ms and round down.
    Clock.SetLocalNow({2024, 5, 14, 23, 0, 0, 0});
    Input().OpenWaveIn(0);
    Device.Arrive();
    ArriveAfter(26);
    EXPECT_EQ(Input().MaxBuffersUsed(), 1);
}

TEST_F(Captures, AcrossMidnightThereIsNoFalseMark) {
    Clock.SetLocalNow({2024, 5, 14, 23, 59, 59, 900});
    Input().OpenWaveIn(0);
    Device.Arrive();
    ArriveAfter(50);
    EXPECT_EQ(Input().MaxBuffersUsed(), 2);
    ArriveAfter(60);  // 0:00:00.010
    EXPECT_EQ(Input().MaxBuffersUsed(), 2);
    ArriveAfter(150);
    EXPECT_EQ(Input().MaxBuffersUsed(), 4);
}

TEST_F(Captures, AnArrivalAtMidnightExactlyStandsForNone) {
    Clock.SetLocalNow({2024, 5, 15, 0, 0, 0, 0});
    Input().OpenWaveIn(0);
    Device.Arrive();
    ArriveAfter(500);
    EXPECT_EQ(Input().MaxBuffersUsed(), 0);
    ArriveAfter(500);
    EXPECT_EQ(Input().MaxBuffersUsed(), 11);
}

TEST_F(Captures, TheTimeOfALostDeviceMakesNoMarkButThatOfAnOverrunDoes) {
    Input().OpenWaveIn(0);
    Device.Arrive();
    Advance(5000);
    Device.Events.Incident({WaveInIncidentKind::ServerLost, 220500, "radio"});
    Device.Arrive();
    EXPECT_EQ(Input().MaxBuffersUsed(), 0);
    Advance(1000);
    Device.Events.Incident({WaveInIncidentKind::Overrun, 44100, "radio"});
    Device.Arrive();
    EXPECT_EQ(Input().MaxBuffersUsed(), 21);
}

TEST_F(Captures, TheTimeInWhichNoDeviceWasOpenMakesNoMark) {
    Input().OpenWaveIn(0);
    Device.Arrive();
    Input().CloseWaveIn();
    Advance(5000);
    Input().OpenWaveIn(0);
    Device.Arrive();
    EXPECT_EQ(Input().MaxBuffersUsed(), 0);
    ArriveAfter(50);
    EXPECT_EQ(Input().MaxBuffersUsed(), 2);
}

TEST_F(Captures, TheTimeOfALostDeviceDoesNotCountAsSilence) {
    Input().OpenWaveIn(0);
    Signal.SilenceStartSecond = 10;
    Advance(100000);
    Device.Events.Incident({WaveInIncidentKind::DeviceLost, 60 * 44100 + 44099, "radio"});
    EXPECT_EQ(Signal.SilenceStartSecond, 70);
    Device.Events.Incident({WaveInIncidentKind::DeviceLost, 3600 * 44100, "radio"});
    EXPECT_EQ(Signal.SilenceStartSecond, 100) << "not beyond now";
}

TEST_F(Captures, AClockThatIsSetBackMakesNoMark) {
    Input().OpenWaveIn(0);
    Device.Arrive();
    Clock.ShiftWall(std::chrono::hours(-1));
    ArriveAfter(50);
    EXPECT_EQ(Input().MaxBuffersUsed(), 0);
    ArriveAfter(50);
    EXPECT_EQ(Input().MaxBuffersUsed(), 2);
}

TEST_F(Captures, ATimeTooLongForTheMarkIsLeftOut) {
    Input().OpenWaveIn(0);
    Device.Arrive();
    Clock.ShiftWall(std::chrono::hours(1));
    ArriveAfter(50);
    EXPECT_EQ(Input().MaxBuffersUsed(), 0);
    ArriveAfter(50);
    EXPECT_EQ(Input().MaxBuffersUsed(), 2);
}

}  // namespace Corvetape::Test
