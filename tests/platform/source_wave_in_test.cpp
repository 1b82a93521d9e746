#include "platform/virtual/source_wave_in.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "platform/virtual/sim_loop.h"
#include "platform/wave_in_user.h"
#include "sim/frame_stamp.h"
#include "sim/script_source.h"

namespace Corvetape {
namespace {

using namespace std::chrono_literals;
using testing::Each;
using testing::ElementsAre;

/// Frames that carry their number, `Length` of them.
class Counter : public SoundSource {
 public:
    Counter(uint64_t length, uint32_t rate) : Length(length), Rate(rate) {}
    uint32_t FramesPerSecond() const override { return Rate; }
    size_t Read(std::span<Frame> frames) override {
        Addresses.push_back(frames.data());
        size_t count = 0;
        while (count < frames.size() && Next < Length) frames[count++] = StampOf(Next++);
        return count;
    }
    SourceMedia NowPlaying() const override {
        SourceMedia media;
        media.Song = std::to_string(Next);
        return media;
    }

    uint64_t Length;
    uint32_t Rate;
    uint64_t Next = 0;
    std::vector<const Frame*> Addresses;
};

class SourceWaveInTest : public testing::Test {
 protected:
    void AddCounter(const std::string& name, uint64_t frames,
                    uint32_t formats = WAVE_FORMAT_4S16 | WAVE_FORMAT_48S16) {
        WaveInDevice device;
        device.Name = name;
        device.Id = "id-" + name;
        device.Kind = WaveInKind::File;
        device.dwFormats = formats;
        WaveIn.AddDevice(device, [this, frames](uint32_t rate) {
            auto source = std::make_unique<Counter>(frames, rate);
            Opened = source.get();
            return source;
        });
    }
    void ExpectFrames(const WaveInUser& user, uint64_t first, uint64_t count) {
        ASSERT_EQ(user.Got.size(), count);
        for (uint64_t at = 0; at < count; ++at) {
            ASSERT_EQ(FrameOfStamp(user.Got[static_cast<size_t>(at)], first + at), first + at);
        }
    }

    SimClock Clock;
    SimLoop Loop{Clock};
    SourceWaveIn WaveIn{Clock, Loop};
    Counter* Opened = nullptr;
};

TEST_F(SourceWaveInTest, EveryFiftyMillisecondsABufferComesInOrder) {
    AddCounter("a", 1'000'000);
    for (const BufferReturn mode : {BufferReturn::Loop, BufferReturn::CaptureThread}) {
        WaveInUser user;
        ASSERT_TRUE(user.Open(WaveIn, 0, mode));
        Loop.RunFor(49ms);
        EXPECT_TRUE(user.Order.empty());
        Loop.RunFor(1ms);
        EXPECT_THAT(user.Order, ElementsAre(0));
        Loop.RunFor(1950ms);
        ASSERT_EQ(user.Order.size(), 40U);
        for (uint32_t at = 0; at < 40; ++at) EXPECT_EQ(user.Order[at], at % 30);
        EXPECT_THAT(user.Sizes, Each(8820U));
        EXPECT_TRUE(user.DoneFlags);
        ExpectFrames(user, 0, 2205 * 40);
    }
}

TEST_F(SourceWaveInTest, At48KilohertzABufferHas2400Frames) {
    AddCounter("a", 1'000'000);
    WaveInUser user(48000);
    ASSERT_TRUE(user.Open(WaveIn));
    Loop.RunFor(1s);
    EXPECT_THAT(user.Sizes, Each(9600U));
    ExpectFrames(user, 0, 48000);
}

TEST_F(SourceWaveInTest, PolledBuffersAreFilledInOrderAndComeOnlyWhenAskedFor) {
    AddCounter("a", 1'000'000);
    for (const BufferReturn mode : {BufferReturn::PollByTimer, BufferReturn::PollPrecisely}) {
        WaveInUser user;
        ASSERT_TRUE(user.Open(WaveIn, 0, mode));
        Loop.RunFor(120ms);
        EXPECT_EQ(user.Headers[0].dwFlags, 0U);
        user.Poll();
        EXPECT_THAT(user.Order, ElementsAre(0, 1));
        Loop.RunFor(1s);
        user.Poll();
        EXPECT_EQ(user.Order.size(), 22U);
        ExpectFrames(user, 0, 22 * 2205);
    }
}

TEST_F(SourceWaveInTest, APollingOwnerIsNeverToldOfABuffer) {
    AddCounter("a", 1'000'000);
    WaveIn.Devices();
    bool told = false;
    WaveInEvents events;
    events.BufferDone = [&](WaveHeader&) { told = true; };
    const auto stream = WaveIn.Open(0, MakeWaveFormat(44100), BufferReturn::PollByTimer, events);
    WaveInUser buffers;
    stream->AddBuffer(buffers.Headers[0]);
    stream->Start();
    Loop.RunFor(1s);
    stream->Deliver();
    Loop.RunFor(1s);
    EXPECT_FALSE(told);
    EXPECT_EQ(buffers.Headers[0].dwFlags, WHDR_DONE);
}

TEST_F(SourceWaveInTest, DeliverIsForPollingOwnersOnly) {
    AddCounter("a", 1'000'000);
    WaveInUser user;
    ASSERT_TRUE(user.Open(WaveIn, 0, BufferReturn::Loop));
    Loop.Sleep(1s);
    user.Stream->Deliver();
    EXPECT_EQ(user.Headers[0].dwFlags, 0U);
}

TEST_F(SourceWaveInTest, AfterAStallEverythingIsDelivered) {
    AddCounter("a", 100'000'000);
    for (const auto mode : {BufferReturn::Loop, BufferReturn::PollByTimer, BufferReturn::PollPrecisely,
                            BufferReturn::CaptureThread}) {
        WaveInUser user;
        ASSERT_TRUE(user.Open(WaveIn, 0, mode));
        Loop.RunFor(1s);
        Loop.Sleep(60s);
        for (int tick = 0; tick < 100; ++tick) {
            Loop.RunFor(1ms);
            user.Poll();
        }
        EXPECT_TRUE(user.Incidents.empty());
        ExpectFrames(user, 0, 2205 * 20 * 61 + 2205 * 2);
    }
}

TEST_F(SourceWaveInTest, DuringTheCatchUpOtherTimersGetTheirTurn) {
    AddCounter("a", 100'000'000);
    WaveInUser user;
    ASSERT_TRUE(user.Open(WaveIn));
    std::vector<size_t> atTick;
    const auto other = Loop.NewTimer([&] { atTick.push_back(user.Order.size()); });
    other->Start(1ms, TimerPrecision::Precise);
    Loop.Sleep(30s);
    Loop.RunFor(3ms);
    // The first tick of this timer was due before the buffers could be filled.
    EXPECT_THAT(atTick, ElementsAre(0, 60, 90, 120));
}

TEST_F(SourceWaveInTest, AnOwnerWithoutFreeBuffersLosesNothing) {
    AddCounter("a", 10'000'000);
    WaveInUser user;
    user.KeepBuffers = true;
    ASSERT_TRUE(user.Open(WaveIn));
    Loop.RunFor(10s);
    EXPECT_EQ(user.Order.size(), WaveInUser::Buffers);
    user.KeepBuffers = false;
    for (WaveHeader& header : user.Headers) {
        header.dwFlags = 0;
        user.Stream->AddBuffer(header);
    }
    Loop.RunFor(1s);
    ExpectFrames(user, 0, 2205 * 20 * 11);
}

TEST_F(SourceWaveInTest, TheSourceWritesStraightIntoTheOwnersSamples) {
    AddCounter("a", 10'000'000);
    WaveInUser user;
    ASSERT_TRUE(user.Open(WaveIn));
    Loop.RunFor(100ms);
    EXPECT_THAT(Opened->Addresses, ElementsAre(user.Headers[0].lpData, user.Headers[1].lpData));
}

TEST_F(SourceWaveInTest, TheLastBufferIsShortAndItsRestIsZero) {
    AddCounter("a", 2205 * 3 + 100);
    for (const auto mode : {BufferReturn::Loop, BufferReturn::PollByTimer, BufferReturn::CaptureThread}) {
        WaveInUser user;
        std::ranges::fill(user.Samples[3], Frame{77, 77});
        ASSERT_TRUE(user.Open(WaveIn, 0, mode));
        for (int tick = 0; tick < 20; ++tick) {
            Loop.RunFor(50ms);
            user.Poll();
        }
        EXPECT_THAT(user.Sizes, ElementsAre(8820, 8820, 8820, 400));
        EXPECT_EQ(user.Samples[3][99], StampOf(2205 * 3 + 99));
        EXPECT_THAT(std::span(user.Samples[3]).subspan(100), Each(Frame{}));
        EXPECT_EQ(user.Ends, 1U);
    }
}

TEST_F(SourceWaveInTest, AnInputThatEndsWithAFullBufferEndsOnceToo) {
    AddCounter("a", 2205 * 3);
    WaveInUser user;
    ASSERT_TRUE(user.Open(WaveIn));
    Loop.RunFor(10s);
    EXPECT_THAT(user.Sizes, ElementsAre(8820, 8820, 8820));
    EXPECT_EQ(user.Ends, 1U);
}

TEST_F(SourceWaveInTest, TheEndIsReportedAfterTheLastBuffer) {
    AddCounter("a", 100);
    WaveIn.Devices();
    std::vector<std::string> told;
    WaveInEvents events;
    events.BufferDone = [&](WaveHeader&) { told.emplace_back("buffer"); };
    events.Ended = [&] { told.emplace_back("end"); };
    const auto stream = WaveIn.Open(0, MakeWaveFormat(44100), BufferReturn::CaptureThread, events);
    WaveInUser buffers;
    for (WaveHeader& header : buffers.Headers) stream->AddBuffer(header);
    stream->Start();
    Loop.RunFor(1s);
    EXPECT_THAT(told, ElementsAre("buffer", "end"));
}

TEST_F(SourceWaveInTest, ResetForgetsBuffersAndNothingComesAfterIt) {
    AddCounter("a", 1'000'000);
    for (const auto mode : {BufferReturn::Loop, BufferReturn::CaptureThread}) {
        WaveIn.Devices();
        WaveInUser buffers;
        std::unique_ptr<WaveInStream> stream;
        size_t told = 0;
        WaveInEvents events;
        events.BufferDone = [&](WaveHeader&) {
            ++told;
            stream->Reset();
        };
        stream = WaveIn.Open(0, MakeWaveFormat(44100), mode, events);
        for (WaveHeader& header : buffers.Headers) stream->AddBuffer(header);
        stream->Start();
        Loop.Sleep(500ms);  // ten buffers are due, and are posted at once
        Loop.RunFor(1s);
        EXPECT_EQ(told, 1U);

        stream->Start();
        Loop.RunFor(1s);
        EXPECT_EQ(told, 1U);  // the queue is empty
        buffers.Headers[7].dwFlags = 0;
        stream->AddBuffer(buffers.Headers[7]);
        Loop.RunFor(100ms);
        EXPECT_EQ(told, 2U);
    }
}

TEST_F(SourceWaveInTest, AStreamMayBeDestroyedWithinItsOwnEvent) {
    AddCounter("a", 1'000'000);
    for (const auto mode : {BufferReturn::Loop, BufferReturn::CaptureThread}) {
        WaveIn.Devices();
        std::unique_ptr<WaveInStream> stream;
        size_t buffers = 0;
        WaveInEvents events;
        events.BufferDone = [&stream, &buffers, text = std::string(50, 'x')](WaveHeader&) {
            stream.reset();
            buffers += text.size();  // what the event holds is still there
        };
        stream = WaveIn.Open(0, MakeWaveFormat(44100), mode, events);
        WaveInUser owner;
        for (WaveHeader& header : owner.Headers) stream->AddBuffer(header);
        stream->Start();
        Loop.RunFor(1s);
        EXPECT_EQ(buffers, 50U);
        EXPECT_EQ(WaveIn.OpenFeed(), nullptr);
    }
}

TEST_F(SourceWaveInTest, AStreamMayBeReopenedWithinItsOwnEvent) {
    AddCounter("a", 1'000'000);
    WaveInUser user;
    bool reopened = false;
    WaveIn.Devices();
    WaveInEvents events = user.Events();
    WaveInEvents first;
    first.BufferDone = [&](WaveHeader&) {
        if (std::exchange(reopened, true)) return;
        user.Stream = nullptr;
        user.Stream = WaveIn.Open(0, MakeWaveFormat(44100), BufferReturn::Loop, events);
        user.Stream->Start();
        for (WaveHeader& header : user.Headers) user.Stream->AddBuffer(header);
    };
    user.Stream = WaveIn.Open(0, MakeWaveFormat(44100), BufferReturn::Loop, first);
    for (WaveHeader& header : user.Headers) user.Stream->AddBuffer(header);
    user.Stream->Start();
    Loop.RunFor(1050ms);
    ExpectFrames(user, 0, 2205 * 20);
}

TEST_F(SourceWaveInTest, AnOpenBeginsItsSourceAnew) {
    AddCounter("a", 1'000'000);
    for (int round = 0; round < 2; ++round) {
        WaveInUser user;
        ASSERT_TRUE(user.Open(WaveIn));
        Loop.RunFor(1s);
        ExpectFrames(user, 0, 44100);
    }
}

TEST_F(SourceWaveInTest, OnlyListedDevicesWithTheFormatOpen) {
    AddCounter("a", 1000, WAVE_FORMAT_4S16);
    AddCounter("b", 1000, WAVE_FORMAT_48S16);
    EXPECT_EQ(WaveIn.Open(0, MakeWaveFormat(44100), BufferReturn::Loop, {}), nullptr);  // not yet listed
    EXPECT_EQ(WaveIn.Devices().size(), 2U);
    EXPECT_NE(WaveIn.Open(0, MakeWaveFormat(44100), BufferReturn::Loop, {}), nullptr);
    EXPECT_EQ(WaveIn.Open(0, MakeWaveFormat(48000), BufferReturn::Loop, {}), nullptr);
    EXPECT_NE(WaveIn.Open(1, MakeWaveFormat(48000), BufferReturn::Loop, {}), nullptr);
    EXPECT_EQ(WaveIn.Open(2, MakeWaveFormat(44100), BufferReturn::Loop, {}), nullptr);
    WaveFormat mono = MakeWaveFormat(44100);
    mono.nChannels = 1;
    EXPECT_EQ(WaveIn.Open(0, mono, BufferReturn::Loop, {}), nullptr);
}

TEST_F(SourceWaveInTest, AFactoryWithoutASourceOpensNothing) {
    WaveIn.AddDevice({}, [](uint32_t) { return nullptr; });
    WaveIn.Devices();
    EXPECT_EQ(WaveIn.Open(0, MakeWaveFormat(44100), BufferReturn::Loop, {}), nullptr);
}

TEST_F(SourceWaveInTest, TwoStreamsRunBesideOneAnother) {
    AddCounter("a", 1'000'000);
    WaveInUser first;
    WaveInUser second(48000);
    ASSERT_TRUE(first.Open(WaveIn));
    Loop.RunFor(500ms);
    ASSERT_TRUE(second.Open(WaveIn, 0, BufferReturn::CaptureThread));
    Loop.RunFor(500ms);
    ExpectFrames(first, 0, 44100);
    ExpectFrames(second, 0, 24000);
    EXPECT_EQ(WaveIn.OpenFeed()->Delivered(), 24000U);
}

TEST_F(SourceWaveInTest, ReportsWhatPlaysOnTheOpenInput) {
    AddCounter("a", 1'000'000);
    EXPECT_EQ(WaveIn.NowPlaying(), SourceMedia{});
    WaveInUser user;
    ASSERT_TRUE(user.Open(WaveIn));
    Loop.RunFor(50ms);
    EXPECT_EQ(WaveIn.NowPlaying().Song, "2205");
    user.Stream.reset();
    EXPECT_EQ(WaveIn.NowPlaying(), SourceMedia{});
}

}  // namespace
}  // namespace Corvetape
