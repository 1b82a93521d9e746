// What the time in which a device has delivered nothing does not count as.

#include <gtest/gtest.h>

#include "audio/capture_bench.h"

namespace Corvetape::Test {
namespace {

constexpr uint64_t Second = 44100;

class CaptureLosses : public testing::Test, protected CaptureBench {
 protected:
    void SetUp() override {
        Clock.Advance(std::chrono::seconds(1000));
        ASSERT_TRUE(Input().OpenWaveIn(0));
        Signal.SilenceStartSecond = 1000;
    }

    /// The device is gone for so long, and is back.
    void Lose(int32_t seconds, WaveInIncidentKind kind) {
        Advance(seconds * 1000);
        Device.Events.Incident({kind, static_cast<uint64_t>(seconds) * Second, "radio"});
    }
};

TEST_F(CaptureLosses, ABufferAfterALossHasNotWaited) {
    for (const auto kind :
         {WaveInIncidentKind::ServerLost, WaveInIncidentKind::DeviceLost, WaveInIncidentKind::ClockDrift}) {
        ArriveAfter(50);
        ArriveAfter(50);
        Lose(60, kind);
        ArriveAfter(50);
        ArriveAfter(50);
        EXPECT_EQ(Input().MaxBuffersUsed(), 2);
    }
}

TEST_F(CaptureLosses, ABufferAfterADeviceThatIsBackHasNotWaitedThoughItsLossIsNotReportedYet) {
    ArriveAfter(50);
    Device.Events.Availability(true);
    Advance(5000);
    Device.Events.Availability(false);
    ArriveAfter(50);
    ArriveAfter(50);
    EXPECT_EQ(Input().MaxBuffersUsed(), 2);
}

TEST_F(CaptureLosses, ABufferAfterAnOverrunHas) {
    ArriveAfter(50);
    Lose(3, WaveInIncidentKind::Overrun);
    ArriveAfter(50);
    EXPECT_EQ(Input().MaxBuffersUsed(), 62);
}

class PolledLosses : public testing::Test, protected CaptureBench {
 protected:
    void SetUp() override {
        Options.PollRecordingBuffers = 1;
        ASSERT_TRUE(Input().OpenWaveIn(0));
    }
};

TEST_F(PolledLosses, ALossIsCountedAfterWhatWasFullAndNotYetPolled) {
    Device.Due = 2;
    Device.Events.Incident({WaveInIncidentKind::Overrun, 500, "radio"});
    Device.Due = 1;
    Advance(200);
    EXPECT_EQ(LostBefore, (std::vector<uint64_t>{0, 0, 500}));
}

TEST_F(PolledLosses, ALossThatIsReportedInTheMiddleOfAPollIsCountedWhereItIs) {
    Device.OnDeliver = [this] {
        Device.OnDeliver = nullptr;
        Device.Fill()->dwFlags |= WHDR_DONE;
        Device.Events.Incident({WaveInIncidentKind::Overrun, 500, "radio"});
        Device.Due = 2;
    };
    Advance(200);
    EXPECT_EQ(LostBefore, (std::vector<uint64_t>{0, 500, 0}));
    EXPECT_EQ(Input().MaxBuffersUsed(), 3);
}

TEST_F(PolledLosses, ALossThatIsReportedWhileABufferIsHandledTakesItNoSecondTime) {
    OnBuffer = [this](WaveBuffer&) {
        if (Heard.size() == 1) Device.Events.Incident({WaveInIncidentKind::Overrun, 500, "radio"});
        return true;
    };
    Device.Due = 3;
    Advance(200);
    EXPECT_EQ(Heard, (std::vector<int16_t>{1, 2, 3}));
}

TEST_F(CaptureLosses, TheTimeOfALossIsNoSilence) {
    Advance(10'000);
    Lose(600, WaveInIncidentKind::DeviceLost);
    EXPECT_EQ(Clock.TimeGetTime() / 1000 - Signal.SilenceStartSecond, 10);
}

TEST_F(CaptureLosses, ALossTakesNoMoreThanTheSilenceThereWas) {
    Advance(2'000);
    Device.Events.Incident({WaveInIncidentKind::Overrun, 60 * Second, "radio"});
    EXPECT_EQ(Signal.SilenceStartSecond, Clock.TimeGetTime() / 1000);
    Signal.SilenceStartSecond = 5000;  // in the future, as after the limit of the millisecond clock
    Device.Events.Incident({WaveInIncidentKind::Overrun, 60 * Second, "radio"});
    EXPECT_EQ(Signal.SilenceStartSecond, 5000);
}

}  // namespace
}  // namespace Corvetape::Test
