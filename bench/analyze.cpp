// What the analysis of a buffer costs: bytes of audio per second on one core, by peak and by mean, without
// and with software gain, and with a gain that drives the audio into its limits.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <vector>

#include "audio/analyze.h"
#include "platform/virtual/sim_clock.h"
#include "platform/virtual/sim_random.h"

namespace Corvetape {
namespace {

/// Ten seconds of noise, buffer by buffer. The buffers are put back before they are amplified again, at a
/// cost that counts against the result.
class Noise {
 public:
    explicit Noise(int64_t peak) {
        SimRandom random(1);
        Pristine.resize(Count * FramesPerBuffer);
        for (Frame& frame : Pristine) {
            frame.Left = static_cast<int16_t>(random.Between(-peak, peak));
            frame.Right = static_cast<int16_t>(random.Between(-peak, peak));
        }
        Buffers.resize(Count);
        for (size_t i = 0; i < Count; ++i) {
            WaveBuffer& buffer = Buffers[i];
            buffer.Samples.resize(FramesPerBuffer);
            buffer.lpData = buffer.Samples.data();
            buffer.dwBufferLength = FramesPerBuffer * sizeof(Frame);
            buffer.dwBytesRecorded = buffer.dwBufferLength;
            Restore(i);
        }
    }

    WaveBuffer& operator[](size_t i) { return Buffers[i]; }
    void Restore(size_t i) {
        std::copy_n(Pristine.begin() + static_cast<std::ptrdiff_t>(i * FramesPerBuffer), FramesPerBuffer,
                    Buffers[i].Samples.begin());
    }

    static constexpr size_t Count = 200;
    static constexpr uint32_t FramesPerBuffer = 2205;

 private:
    std::vector<Frame> Pristine;
    std::vector<WaveBuffer> Buffers;
};

/// Arguments: by peak (1) or by mean (0), gain in per cent, peak of the noise.
void AnalyzeBuffers(benchmark::State& state) {
    Noise noise(state.range(2));
    SimClock clock;
    SignalState signal;
    AudioRing ring;
    ring.Open(400, Noise::FramesPerBuffer);
    PauseSettings pause;
    pause.DetectSilenceByPeak = state.range(0) != 0;
    pause.LevelMultiplier = static_cast<int32_t>(state.range(1));
    const AnalysisParts parts = {signal, pause, ring, clock};
    size_t next = 0;
    for (auto _ : state) {
        if (pause.LevelMultiplier != 100) noise.Restore(next);
        benchmark::DoNotOptimize(AnalyzeBuffer(noise[next], parts));
        next = (next + 1) % Noise::Count;
    }
    const auto frames = static_cast<double>(state.iterations()) * Noise::FramesPerBuffer;
    state.SetBytesProcessed(state.iterations() * Noise::FramesPerBuffer *
                            static_cast<int64_t>(sizeof(Frame)));
    state.counters["perFrame"] =
        benchmark::Counter(frames, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

BENCHMARK(AnalyzeBuffers)
    ->ArgNames({"byPeak", "gain", "peak"})
    ->Args({1, 100, 12000})
    ->Args({0, 100, 12000})
    ->Args({1, 150, 12000})
    ->Args({0, 150, 12000})
    ->Args({1, 400, 12000})
    ->Args({0, 400, 12000})
    ->Args({1, 100, 32767});

}  // namespace
}  // namespace Corvetape

BENCHMARK_MAIN();
