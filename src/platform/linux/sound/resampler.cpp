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

Resampler::Resampler(uint32_t from, uint32_t to, Source sourceOfFrames) : source(std::move(sourceOfFrames)) {
    const uint32_t common = std::gcd(from, to);
    up = to / common;
    down = from / common;
    const double ratio = std::min(1.0, static_cast<double>(to) / from);
    half = static_cast<size_t>(std::ceil(ZeroCrossings / ratio / (Lanes / 2.0))) * (Lanes / 2);
    taps = 2 * half;
    blended = up * taps > MostWeights;
    phases = blended ? BlendedPhases : static_cast<size_t>(up);
    MakeWeights(ratio * (1 - Slope));
    blend.resize(taps);
    block.resize(2 * BlockFrames);
    left.assign(half - 1, 0.0F);  // silence before the signal
    right = left;
    filled = half - 1;
}

void Resampler::MakeWeights(double cutoff) {
    weights.resize((phases + 1) * taps);
    const double reach = static_cast<double>(half);
    const double top = Bessel(WindowShape);
    std::vector<double> set(taps);
    for (size_t phase = 0; phase <= phases; ++phase) {
        const double fraction = static_cast<double>(phase) / static_cast<double>(phases);
        double sum = 0;
        for (size_t tap = 0; tap < taps; ++tap) {
            const double distance = static_cast<double>(tap) - (reach - 1) - fraction;
            const double x = std::numbers::pi * cutoff * distance;
            const double inside = std::max(0.0, 1 - (distance / reach) * (distance / reach));
            set[tap] = (x == 0 ? 1.0 : std::sin(x) / x) * Bessel(WindowShape * std::sqrt(inside)) / top;
            sum += set[tap];
        }
        for (size_t tap = 0; tap < taps; ++tap) {
            weights[phase * taps + tap] = static_cast<float>(set[tap] / sum);
        }
    }
}

bool Resampler::Refill() {
    if (ended) return false;
    left.erase(left.begin(), left.begin() + static_cast<std::ptrdiff_t>(at));
    right.erase(right.begin(), right.begin() + static_cast<std::ptrdiff_t>(at));
    filled -= at;
    at = 0;
    const size_t got = source(block);
    for (size_t i = 0; i < got; ++i) {
        left.push_back(block[2 * i]);
        right.push_back(block[2 * i + 1]);
    }
    filled += got;
    if (got < BlockFrames) {
        ended = true;
        end = filled;
        left.resize(filled + taps, 0.0F);  // silence behind it
        right.resize(filled + taps, 0.0F);
        filled += taps;
    }
    return true;
}

void Resampler::WeightsAt(uint64_t place) {
    const double exact = static_cast<double>(place) * static_cast<double>(phases) / static_cast<double>(up);
    const auto phase = static_cast<size_t>(exact);
    const auto part = static_cast<float>(exact - static_cast<double>(phase));
    const float* const before = weights.data() + phase * taps;
    const float* const after = before + taps;
    for (size_t tap = 0; tap < taps; ++tap) blend[tap] = before[tap] + part * (after[tap] - before[tap]);
}

size_t Resampler::Read(std::span<float> interleaved) {
    const size_t frames = interleaved.size() / 2;
    for (size_t done = 0; done < frames; ++done) {
        while (at + taps > filled) {
            if (!Refill()) return done;
        }
        // The signal is over when the next output frame would lie behind its last one.
        if (ended && at + half - 1 >= end) return done;
        const float* set = blend.data();
        if (blended) {
            WeightsAt(position);
        } else {
            set = weights.data() + position * taps;
        }
        interleaved[2 * done] = Product(left.data() + at, set, taps);
        interleaved[2 * done + 1] = Product(right.data() + at, set, taps);
        position += down;
        at += static_cast<size_t>(position / up);
        position %= up;
    }
    return frames;
}

}  // namespace Corvetape
