// Nothing is allocated per buffer: all memory of the signal's way is taken when input and song are opened.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <new>

#include "audio/capture.h"
#include "audio/drain.h"
#include "audio/evidence_cut.h"
#include "audio/route.h"
#include "audio/signal_bench.h"
#include "audio/song_writer.h"
#include "audio/swallowing_disk.h"
#include "platform/virtual/sim_clock.h"
#include "platform/virtual/sim_loop.h"

namespace {

int64_t allocations = 0;

void* Allocate(size_t size) {
    ++allocations;
    if (void* const memory = std::malloc(size == 0 ? 1 : size)) return memory;
    throw std::bad_alloc();
}

}  // namespace

// They stand for the whole test program. Those for arrays and without exceptions lead to these.
void* operator new(size_t size) {
    return Allocate(size);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, size_t /*size*/) noexcept {
    std::free(memory);
}

namespace Corvetape::Test {

namespace {

/// A device that the test fills and sends the buffers of.
class SilentWaveIn : public WaveIn {
 public:
    WaveInList Devices() override { return std::vector<WaveInDevice>(1); }
    OpenedWaveIn Open(size_t /*device*/, const WaveFormat& /*format*/, BufferReturn /*mode*/,
                      WaveInEvents events) override {
        Events = std::move(events);
        return std::make_unique<Stream>(Given);
    }

    WaveInEvents Events;
    std::array<WaveHeader*, 30> Given{};

 private:
    class Stream : public WaveInStream {
     public:
        explicit Stream(std::span<WaveHeader*> given) : Given(given) {}
        void AddBuffer(WaveHeader& header) override { Given[header.dwUser] = &header; }
        bool Start() override { return true; }
        void Reset() override {}
        void Deliver() override {}

     private:
        std::span<WaveHeader*> Given;
    };
};

/// The whole way of the signal, from the arrival of a buffer to the file. Parameter: end of song and gain.
class SignalWay : public testing::TestWithParam<std::pair<EndOfSong, int32_t>> {
 protected:
    SignalWay() {
        Flags.RecordingEnabled = true;
        Signal.PauseRecognition = PauseRecognitionRunning;
        Pause.PauseBuffers = 20;
        Pause.EndOfSongDetection = GetParam().first;
        Pause.LevelMultiplier = GetParam().second;
        Pause.DetectSilenceByPeak = Pause.LevelMultiplier == 100;
        Options.RecordingBuffers = static_cast<int32_t>(Device.Given.size());
        Input.OpenWaveIn(0);
    }

    /// Sound arrives, and what is done once a second is done.
    void Play(int32_t seconds) {
        for (int32_t buffer = 0; buffer < seconds * BuffersPerSecond; ++buffer) {
            WaveHeader& header = *Device.Given[static_cast<size_t>(buffer) % Device.Given.size()];
            header.dwBytesRecorded = header.dwBufferLength;
            std::fill_n(header.lpData, Input.FramesPerBuffer(), Frame{9000, -9000});
            Device.Events.BufferDone(header);
            Clock.Advance(std::chrono::milliseconds(BufferMilliseconds));
            if (buffer % BuffersPerSecond == 0) Drained = Drain.DrainAudioRing(false) && Drained;
        }
    }

    SimClock Clock;
    SimLoop Loop{Clock};
    SwallowingDisk Disk;
    SilentWaveIn Device;
    Settings Options;
    WorkingFolders Folders;
    RecordingFlags Flags;
    SignalState Signal;
    CutState Cut;
    PauseSettings Pause;
    MediaState Media;
    DeferredMessages Messages;
    AudioRing Ring;
    WaveFormat Format;
    SongWriter Writer{
        {Disk, Flags, Signal, Pause, Media, Messages, Cut}, {Format, Options, Folders, Clock}, {}};
    AudioDrain Drain{{Ring, Cut, Pause, Flags, Writer}};
    SongTargets Targets{Writer, Drain};
    SignalPath Path{{Signal, Pause, Ring, Clock}, {Signal, Cut, Pause, Flags, Ring}, Targets};
    Capture Input{{Device, Loop, Clock, Options, Signal, Ring, Path}, {}};
    bool Drained = true;
};

}  // namespace

TEST_P(SignalWay, AllocatesNothingForABuffer) {
    Play(15);  // until the song is begun and the ring was drained once
    const int64_t allocated = allocations;
    const uint64_t written = Disk.BytesTaken;
    ASSERT_GT(allocated, 0);
    Play(60);
    EXPECT_EQ(allocations, allocated);
    EXPECT_TRUE(Drained);
    EXPECT_GT(Disk.BytesTaken, written + uint64_t{50} * MakeWaveFormat(44100).nAvgBytesPerSec);
}

TEST(EvidenceCutter, AllocatesNothingForASlotOrADecision) {
    constexpr int64_t change = 400;
    std::vector<Frame> frames(2205);
    const std::vector<int32_t> levels(500, 8000);
    FeatureMeter meter(44100);
    FeatureHistory history(HistorySlots);
    EvidenceCutter cutter;
    CutPrior prior;
    const auto live = [&] {
        for (int slot = 0; slot < 650; ++slot) {
            std::ranges::fill(frames, Frame{static_cast<int16_t>(slot * 40), 100});
            history.Add(meter.Measure(frames));
        }
        const bool decided = cutter.Decide({history, change, levels, 0, {170, 199}}, prior).has_value();
        cutter.Teach(prior);
        return decided;
    };
    EXPECT_TRUE(live());  // what is computed once is there from now on
    history.Restart(0);
    const int64_t allocated = allocations;
    EXPECT_TRUE(live());
    EXPECT_EQ(allocations, allocated);
}

INSTANTIATE_TEST_SUITE_P(ModesAndGains, SignalWay,
                         testing::Values(std::pair(EndOfSong::Silence, 100),
                                         std::pair(EndOfSong::Silence, 150),
                                         std::pair(EndOfSong::MediaData, 100),
                                         std::pair(EndOfSong::MediaData, 150)));

}  // namespace Corvetape::Test
