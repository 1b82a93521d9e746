// Closing, and everything that may happen while it or a handler runs.
#include <gtest/gtest.h>

#include "audio/capture_bench.h"

namespace Corvetape::Test {

namespace {

class CaptureCloses : public testing::Test, protected CaptureBench {
 protected:
    /// Runs something among the events that the closing handles.
    void AmongEvents(std::function<void()> work) { Loop.Post(std::move(work)); }
};

}  // namespace

TEST_F(CaptureCloses, ClosingResetsTheDeviceThenClosesIt) {
    Options.PollRecordingBuffers = 1;
    Input().OpenWaveIn(0);
    Device.Due = 3;
    Advance(100);
    Signal.PeakLeft = Signal.PeakRight = 7;
    TakeAsked();
    Input().CloseWaveIn();
    EXPECT_EQ(TakeAsked(), "reset close ");
    EXPECT_FALSE(Input().IsOpen());
    EXPECT_EQ(Signal.PeakLeft, 0);
    EXPECT_EQ(Signal.PeakRight, 0);
    EXPECT_EQ(Input().PollIndex(), 0U);
}

TEST_F(CaptureCloses, WithoutAnOpenDeviceOnlyThePeaksAreCleared) {
    Signal.PeakLeft = Signal.PeakRight = 7;
    Input().CloseWaveIn();
    EXPECT_EQ(TakeAsked(), "");
    EXPECT_EQ(Signal.PeakLeft, 0);
    EXPECT_EQ(Signal.PeakRight, 0);
}

TEST_F(CaptureCloses, EventsAreHandledBeforeTheResetAfterItAndAfterTheClose) {
    Input().OpenWaveIn(0);
    TakeAsked();
    std::vector<std::string> asked;
    const std::function<void()> look = [&] { asked.push_back(Device.Asked); };
    AmongEvents(look);
    Device.OnReset = [&] {
        AmongEvents([&] {
            look();
            Signal.PeakLeft = 5;
        });
    };
    Device.OnClose = [&] { AmongEvents(look); };
    Input().CloseWaveIn();
    EXPECT_EQ(asked, (std::vector<std::string>{"", "reset ", "reset close "}));
    EXPECT_EQ(Signal.PeakLeft, 0) << "the peaks are cleared last";
    EXPECT_EQ(TakeAsked(), "reset close ");
}

TEST_F(CaptureCloses, BuffersThatComeBackFromTheResetAreNotHandled) {
    Input().OpenWaveIn(0);
    Device.OnReset = [this] { Device.Arrive(); };
    AmongEvents([this] { Device.Arrive(); });
    TakeAsked();
    Input().CloseWaveIn();
    EXPECT_TRUE(Heard.empty());
    EXPECT_EQ(TakeAsked(), "reset close ");
}

TEST_F(CaptureCloses, ThePollingEndsFirst) {
    for (const int32_t mode : {1, 2}) {
        Options.PollRecordingBuffers = mode;
        Input().OpenWaveIn(0);
        Device.Due = 3;
        AmongEvents([this] { Loop.RunFor(std::chrono::seconds(1)); });
        Input().CloseWaveIn();
        Advance(1000);
        EXPECT_TRUE(Heard.empty());
    }
}

TEST_F(CaptureCloses, ALateEventOfAClosedDeviceIsLeftOut) {
    Input().OpenWaveIn(0);
    const WaveInEvents late = Device.Events;
    WaveHeader* header = Device.Fill();
    Input().OpenWaveIn(1);
    late.BufferDone(*header);
    late.Incident({WaveInIncidentKind::Overrun, 50, "old"});
    late.Availability(true);
    late.Ended();
    EXPECT_TRUE(Heard.empty());
    EXPECT_EQ(Signal.FramesLost, 0U);
    EXPECT_EQ(Ends, 0);
    EXPECT_EQ(Availability, "");
}

TEST_F(CaptureCloses, ACloseWithinTheEventsOfACloseDoesTheRestOfIt) {
    Input().OpenWaveIn(0);
    TakeAsked();
    AmongEvents([this] { Input().CloseWaveIn(); });
    Input().CloseWaveIn();
    EXPECT_EQ(TakeAsked(), "reset close ");
    EXPECT_FALSE(Input().IsOpen());
}

TEST_F(CaptureCloses, ADeviceThatIsOpenedWithinTheEventsOfACloseStaysOpen) {
    for (const char* place : {"first", "after the reset", "after the close"}) {
        SCOPED_TRACE(place);
        Input().OpenWaveIn(0);
        TakeAsked();
        bool asked = false;
        bool opened = false;
        const auto open = [&] {
            opened = static_cast<bool>(Input().OpenWaveIn(1));
            Signal.PeakLeft = 9;
        };
        const auto once = [&] {
            if (!std::exchange(asked, true)) AmongEvents(open);
        };
        if (place == std::string("first")) AmongEvents(open);
        if (place == std::string("after the reset")) Device.OnReset = once;
        if (place == std::string("after the close")) Device.OnClose = once;
        Input().CloseWaveIn();
        Device.OnReset = nullptr;
        Device.OnClose = nullptr;
        EXPECT_TRUE(opened);
        EXPECT_TRUE(Input().IsOpen());
        EXPECT_EQ(Device.OpenStreams, 1);
        EXPECT_EQ(Signal.PeakLeft, 9) << "it is the meter of another device now";
        Heard.clear();
        Device.Arrive();
        EXPECT_EQ(Heard.size(), 1U);
    }
}

TEST_F(CaptureCloses, OpeningWinsOverADeviceThatWasOpenedWithinItsClosing) {
    Input().OpenWaveIn(0);
    TakeAsked();
    AmongEvents([this] { Input().OpenWaveIn(1); });
    EXPECT_TRUE(Input().OpenWaveIn(0));
    EXPECT_EQ(Device.OpenStreams, 1);
    EXPECT_TRUE(TakeAsked().ends_with("open0 add0 add1 add2 add3 add4 start "));
}

TEST_F(CaptureCloses, ACaptureMayBeDestroyedWithinTheEventsOfItsClosing) {
    Input().OpenWaveIn(0);
    AmongEvents([this] { Made.reset(); });
    Signal.PeakLeft = 9;
    Input().CloseWaveIn();
    EXPECT_EQ(Device.OpenStreams, 0);
    EXPECT_EQ(Signal.PeakLeft, 9) << "nothing is touched any more";
}

TEST_F(CaptureCloses, ACaptureMayBeDestroyedWithinTheEventsOfItsOpening) {
    Input().OpenWaveIn(0);
    AmongEvents([this] { Made.reset(); });
    EXPECT_FALSE(Input().OpenWaveIn(1));
    EXPECT_EQ(Device.OpenStreams, 0);
}

TEST_F(CaptureCloses, AHandlerOfABufferMayCloseTheDevice) {
    for (const int32_t mode : {0, 1, 2, 3}) {
        Options.PollRecordingBuffers = mode;
        Input().OpenWaveIn(0);
        Heard.clear();
        OnBuffer = [this](WaveBuffer& buffer) {
            Input().CloseWaveIn();
            buffer.Samples.front() = {1, 1};
            return true;
        };
        TakeAsked();
        if (mode == 0 || mode == 3) {
            Device.Arrive();
        } else {
            Device.Due = 3;
            Advance(100);
            Device.Due = 0;
        }
        EXPECT_EQ(Heard.size(), 1U) << mode;
        EXPECT_EQ(TakeAsked(), "reset close ") << mode;
        EXPECT_FALSE(Input().IsOpen());
    }
}

TEST_F(CaptureCloses, AHandlerOfABufferMayOpenAnotherDevice) {
    for (const int32_t mode : {0, 1}) {
        Options.PollRecordingBuffers = mode;
        Options.SPDIF48kHz = false;
        Input().OpenWaveIn(0);
        OnBuffer = [this](WaveBuffer& buffer) {
            Options.SPDIF48kHz = true;
            Options.RecordingBuffers = 50;
            Input().OpenWaveIn(1);
            EXPECT_EQ(buffer.Samples.size(), 2205U) << "the handler's buffer is not pulled away";
            buffer.Samples.back() = {1, 1};
            return true;
        };
        TakeAsked();
        if (mode == 0) {
            Device.Arrive();
        } else {
            Device.Due = 1;
            Advance(100);
        }
        EXPECT_FALSE(TakeAsked().ends_with("add0 ")) << "the old buffer is not queued in the new device";
        EXPECT_EQ(Input().RecordingRing().size(), 50U);
        EXPECT_EQ(Input().RecordingRing()[0].Samples.size(), 2400U);
        Options.RecordingBuffers = 5;
    }
}

TEST_F(CaptureCloses, AHandlerOfABufferMayDestroyTheCapture) {
    for (const bool good : {true, false}) {
        OnBuffer = [this, good](WaveBuffer& buffer) {
            Made.reset();
            buffer.Samples.front() = {1, 1};
            return good;
        };
        MakeCapture();
        Input().OpenWaveIn(0);
        Device.Arrive();
        EXPECT_EQ(Made, nullptr);
        EXPECT_EQ(Fatals, 0) << "there is nobody left to be told";
    }
}

TEST_F(CaptureCloses, APollMayDestroyTheCapture) {
    Options.PollRecordingBuffers = 1;
    Input().OpenWaveIn(0);
    OnBuffer = [this](WaveBuffer&) {
        Made.reset();
        return true;
    };
    Device.Due = 3;
    Advance(500);
    EXPECT_EQ(Heard.size(), 1U);
}

TEST_F(CaptureCloses, FatalMayDestroyTheCapture) {
    Input().OpenWaveIn(0);
    OnBuffer = [](WaveBuffer&) { return false; };
    OnFatal = [this] { Made.reset(); };
    Device.Arrive();
    EXPECT_EQ(Fatals, 1);
    EXPECT_EQ(Device.OpenStreams, 0);
}

TEST_F(CaptureCloses, DestroyingTheCaptureClosesTheDeviceWithoutHandlingEvents) {
    Input().OpenWaveIn(0);
    bool handled = false;
    AmongEvents([&] { handled = true; });
    TakeAsked();
    Made.reset();
    EXPECT_EQ(TakeAsked(), "reset close ");
    EXPECT_EQ(Device.OpenStreams, 0);
    EXPECT_FALSE(handled);
    Device.Events.Availability(true);
    EXPECT_EQ(Availability, "");
}

TEST_F(CaptureCloses, APollWithinAPollDoesNothing) {
    Options.PollRecordingBuffers = 2;
    Input().OpenWaveIn(0);
    OnBuffer = [this](WaveBuffer&) {
        Loop.ProcessEvents();
        Device.Events.Ended();  // would poll as well
        return true;
    };
    Device.Due = 2;
    Advance(50);
    EXPECT_EQ(Heard.size(), 2U);
    EXPECT_EQ(Input().PollIndex(), 2U);
}

TEST_F(CaptureCloses, ANumberOutsideTheRingIsNoBuffer) {
    Input().OpenWaveIn(0);
    EXPECT_TRUE(Input().ProcessBuffer(99));
    EXPECT_TRUE(Heard.empty());
}

}  // namespace Corvetape::Test
