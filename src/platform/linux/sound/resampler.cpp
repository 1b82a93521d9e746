#include "platform/linux/sound/resampler.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <numeric>

namespace Corvetape {
namespace {

// 100 dB: the window's shape for it, and the width of the slope that this many zero crossings allow.
constexpr double WindowShape = 10.06;
constexpr double ZeroCrossings = 80;
constexpr double Slope = 0.04;  // half of it, as a part of the half rate
constexpr size_t Lanes = 8;
constexpr size_t MostWeights = size_t{1} << 19;
constexpr size_t BlendedPhases = 1024;
constexpr size_t BlockFrames = 4096;

/// Modified Bessel function of order 0.
double Bessel(double x) {
    double sum = 1;
    double term = 1;
    for (int k = 1; term > sum * 1e-17; ++k) {
        term *= (x / 2 / k) * (x / 2 / k);
        sum += term;
    }
    return sum;
}

/// Sum of products in a fixed order, in lanes that the machine can add side by side.
float Product(const float* samples, const float* weights, size_t count) {
    std::array<float, Lanes> sums{};
    for (size_t i = 0; i < count; i += Lanes) {
        for (size_t lane = 0; lane < Lanes; ++lane) sums[lane] += samples[i + lane] * weights[i + lane];
    }
    return ((sums[0] + sums[4]) + (sums[1] + sums[5])) + ((sums[2] + sums[6]) + (sums[3] + sums[7]));
}

}  // namespace

Resampler::Resampler(uint32_t from, uint32_t to, Source sourceOfFrames) : Input(std::move(sourceOfFrames)) {
    const uint32_t common = std::gcd(from, to);
    Up = to / common;
    Down = from / common;
    const double ratio = std::min(1.0, static_cast<double>(to) / from);
    Half = static_cast<size_t>(std::ceil(ZeroCrossings / ratio / (Lanes / 2.0))) * (Lanes / 2);
    Taps = 2 * Half;
    Blended = Up * Taps > MostWeights;
    Phases = Blended ? BlendedPhases : static_cast<size_t>(Up);
    MakeWeights(ratio * (1 - Slope));
    Blend.resize(Taps);
    Block.resize(2 * BlockFrames);
    Left.assign(Half - 1, 0.0F);  // silence before the signal
    Right = Left;
    Filled = Half - 1;
}

void Resampler::MakeWeights(double cutoff) {
    Weights.resize((Phases + 1) * Taps);
    const double reach = static_cast<double>(Half);
    const double top = Bessel(WindowShape);
    std::vector<double> set(Taps);
    for (size_t phase = 0; phase <= Phases; ++phase) {
        const double fraction = static_cast<double>(phase) / static_cast<double>(Phases);
        double sum = 0;
        for (size_t tap = 0; tap < Taps; ++tap) {
            const double distance = static_cast<double>(tap) - (reach - 1) - fraction;
            const double x = std::numbers::pi * cutoff * distance;
            const double inside = std::max(0.0, 1 - (distance / reach) * (distance / reach));
            set[tap] = (x == 0 ? 1.0 : std::sin(x) / x) * Bessel(WindowShape * std::sqrt(inside)) / top;
            sum += set[tap];
        }
        for (size_t tap = 0; tap < Taps; ++tap) {
            Weights[phase * Taps + tap] = static_cast<float>(set[tap] / sum);
        }
    }
}

bool Resampler::Refill() {
    if (Ended) return false;
    Left.erase(Left.begin(), Left.begin() + static_cast<std::ptrdiff_t>(At));
    Right.erase(Right.begin(), Right.begin() + static_cast<std::ptrdiff_t>(At));
    Filled -= At;
    At = 0;
    const size_t got = Input(Block);
    for (size_t i = 0; i < got; ++i) {
        Left.push_back(Block[2 * i]);
        Right.push_back(Block[2 * i + 1]);
    }
    Filled += got;
    if (got < BlockFrames) {
        Ended = true;
        End = Filled;
        Left.resize(Filled + Taps, 0.0F);  // silence after it
        Right.resize(Filled + Taps, 0.0F);
        Filled += Taps;
    }
    return true;
}

void Resampler::WeightsAt(uint64_t place) {
    const double exact = static_cast<double>(place) * static_cast<double>(Phases) / static_cast<double>(Up);
    const auto phase = static_cast<size_t>(exact);
    const auto part = static_cast<float>(exact - static_cast<double>(phase));
    const float* const before = Weights.data() + phase * Taps;
    const float* const after = before + Taps;
    for (size_t tap = 0; tap < Taps; ++tap) Blend[tap] = before[tap] + part * (after[tap] - before[tap]);
}

size_t Resampler::Read(std::span<float> interleaved) {
    const size_t frames = interleaved.size() / 2;
    for (size_t done = 0; done < frames; ++done) {
        while (At + Taps > Filled) {
            if (!Refill()) return done;
        }
        // The signal is over when the next output frame would lie after its last one.
        if (Ended && At + Half - 1 >= End) return done;
        const float* set = Blend.data();
        if (Blended) {
            WeightsAt(Position);
        } else {
            set = Weights.data() + Position * Taps;
        }
        interleaved[2 * done] = Product(Left.data() + At, set, Taps);
        interleaved[2 * done + 1] = Product(Right.data() + At, set, Taps);
        Position += Down;
        At += static_cast<size_t>(Position / Up);
        Position %= Up;
    }
    return frames;
}

}  // namespace Corvetape
