// What the search for a boundary without a gap costs: the features of a second of audio, and a decision.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <span>
#include <vector>

#include "audio/evidence_cut.h"
#include "platform/virtual/sim_random.h"

namespace Corvetape {
namespace {

constexpr uint32_t SlotsPerSecond = 20;

/// A second of noise in stereo whose level changes from slot to slot.
std::vector<Frame> Noise(uint32_t framesPerSecond) {
    SimRandom random(1);
    std::vector<Frame> frames(framesPerSecond);
    int64_t peak = 0;
    for (size_t i = 0; i < frames.size(); ++i) {
        if (i % (framesPerSecond / SlotsPerSecond) == 0)
            peak = random.Between(int64_t{2000}, int64_t{20'000});
        frames[i] = {static_cast<int16_t>(random.Between(-peak, peak)),
                     static_cast<int16_t>(random.Between(-peak, peak))};
    }
    return frames;
}

/// Argument: frames in a second. One iteration is a second of audio.
void FeaturesOfASecond(benchmark::State& state) {
    const auto rate = static_cast<uint32_t>(state.range(0));
    const std::vector<Frame> frames = Noise(rate);
    const size_t framesPerSlot = rate / SlotsPerSecond;
    FeatureMeter meter(rate);
    FeatureHistory history(HistorySlots);
    for (auto _ : state) {
        for (size_t slot = 0; slot < SlotsPerSecond; ++slot) {
            history.Add(meter.Measure(std::span(frames).subspan(slot * framesPerSlot, framesPerSlot)));
        }
    }
    benchmark::DoNotOptimize(history.End());
}
BENCHMARK(FeaturesOfASecond)->ArgName("rate")->Arg(44100)->Arg(48000)->Unit(benchmark::kMillisecond);

/// One iteration decides for a title change without a gap.
void DecideForAChange(benchmark::State& state) {
    constexpr int64_t change = -FirstSlotOfSearch;
    const std::vector<Frame> frames = Noise(44100);
    const std::vector<int32_t> levels(500, 8000);
    FeatureMeter meter(44100);
    FeatureHistory history(HistorySlots);
    for (int64_t slot = 0; slot < change + SlotsAfterChange; ++slot) {
        const auto at = static_cast<size_t>(slot * 7 % SlotsPerSecond);
        history.Add(meter.Measure(std::span(frames).subspan(at * 2205, 2205)));
    }
    EvidenceCutter cutter;
    const CutPrior prior;
    for (auto _ : state) {
        benchmark::DoNotOptimize(cutter.Decide({history, change, levels, 0, {170, 199}}, prior));
    }
}
BENCHMARK(DecideForAChange)->Unit(benchmark::kMillisecond);

/// One iteration learns one song.
void LearnASong(benchmark::State& state) {
    EdgeTable scores{};
    scores[0][100] = 10;
    CutPrior prior;
    for (auto _ : state) prior.Learn(scores);
    benchmark::DoNotOptimize(prior.Songs());
}
BENCHMARK(LearnASong)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace Corvetape

BENCHMARK_MAIN();
