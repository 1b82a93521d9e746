#include "audio/slot_features.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace Corvetape {

namespace {

constexpr double LowestHertz = 40;
constexpr double HighestHertz = 15'000;

/// Added to a power before its logarithm is taken: 94 dB below a sine at full scale, where the noise of
/// 16 bits begins to decide what a silent slot sounds like.
constexpr float PowerFloor = 1e-4F;

constexpr size_t StereoBands = 8;
constexpr float NarrowestStereo = -3;  ///< log10 of side to middle; below it counts as mono
constexpr float WidestStereo = 1;
constexpr float SampleScale = 1.0F / 32768;

double MelOf(double hertz) {
    return 2595 * std::log10(1 + hertz / 700);
}

double HertzOf(double mel) {
    return 700 * (std::pow(10, mel / 2595) - 1);
}

/// Rows of the orthonormal cosine transform of `Size` values, each times `scale`, laid out so that the
/// coefficients of one value are neighbours.
template <size_t Size, size_t Rows>
std::array<std::array<float, Rows>, Size> CosineTable(double scale) {
    std::array<std::array<float, Rows>, Size> table{};
    for (size_t value = 0; value < Size; ++value) {
        for (size_t row = 0; row < Rows; ++row) {
            const double norm = std::sqrt((row == 0 ? 1.0 : 2.0) / Size);
            const double turn = std::numbers::pi * static_cast<double>(row) / Size;
            table[value][row] =
                static_cast<float>(scale * norm * std::cos(turn * (static_cast<double>(value) + 0.5)));
        }
    }
    return table;
}

template <size_t Size, size_t Rows>
std::array<float, Rows> Transformed(const std::array<float, Size>& values,
                                    const std::array<std::array<float, Rows>, Size>& table) {
    std::array<float, Rows> sums{};
    for (size_t value = 0; value < Size; ++value) {
        for (size_t row = 0; row < Rows; ++row) sums[row] += values[value] * table[value][row];
    }
    return sums;
}

/// How wide the image is in each part of the spectrum, as the two coefficients of a texture. Silence is mono.
std::array<float, StereoCoefficients> StereoShape(const std::array<float, MelBands>& middle,
                                                  const std::array<float, MelBands>& side) {
    static const auto table = CosineTable<StereoBands, StereoCoefficients>(1);
    constexpr size_t together = MelBands / StereoBands;
    std::array<float, StereoBands> ratios{};
    for (size_t band = 0; band < StereoBands; ++band) {
        float middleSum = PowerFloor;
        float sideSum = 0;
        for (size_t i = band * together; i < (band + 1) * together; ++i) {
            middleSum += middle[i];
            sideSum += side[i];
        }
        const float ratio = std::log10(std::max(sideSum / middleSum, 1e-6F));
        ratios[band] = std::clamp(ratio, NarrowestStereo, WidestStereo);
    }
    return Transformed(ratios, table);
}

}  // namespace

const MelShapeTable& ShapeOfMel() {
    static const MelShapeTable table = CosineTable<MelBands, MelCoefficients>(0.5);
    return table;
}

FeatureMeter::FeatureMeter(uint32_t framesPerSecond) {
    for (size_t i = 0; i < Window.size(); ++i) {
        const double turn =
            2 * std::numbers::pi * static_cast<double>(i) / static_cast<double>(Window.size());
        Window[i] = static_cast<float>(0.5 - 0.5 * std::cos(turn)) * SampleScale;
    }
    const double lowest = MelOf(LowestHertz);
    const double step = (MelOf(HighestHertz) - lowest) / (MelBands + 1);
    const double binsPerHertz = static_cast<double>(Spectrum::Size) / framesPerSecond;
    for (size_t band = 0; band < MelBands; ++band) {
        const auto place = [&](size_t corner) {
            return HertzOf(lowest + step * static_cast<double>(band + corner)) * binsPerHertz;
        };
        const double left = place(0);
        const double top = place(1);
        const double right = place(2);
        const auto first = static_cast<size_t>(std::ceil(left));
        const size_t end = std::min(static_cast<size_t>(std::ceil(right)), Spectrum::Bins);
        Triangle& triangle = Triangles[band];
        triangle.FirstBin = first;
        for (size_t bin = first; bin < end; ++bin) {
            const auto at = static_cast<double>(bin);
            const double weight = at < top ? (at - left) / (top - left) : (right - at) / (right - top);
            triangle.Weights.push_back(static_cast<float>(weight));
        }
    }
}

FeatureMeter::BandPowers FeatureMeter::Bands() {
    const std::span<const float, Spectrum::Bins> power = Fourier.Power();
    BandPowers bands{};
    for (size_t band = 0; band < MelBands; ++band) {
        const Triangle& triangle = Triangles[band];
        for (size_t i = 0; i < triangle.Weights.size(); ++i) {
            bands[band] += power[triangle.FirstBin + i] * triangle.Weights[i];
        }
    }
    return bands;
}

SlotFeatures FeatureMeter::Measure(std::span<const Frame> frames) {
    const size_t count = std::min(frames.size(), Spectrum::Size);
    const std::span<const Frame> looked = frames.subspan((frames.size() - count) / 2, count);
    const std::span<float, Spectrum::Size> samples = Fourier.Samples();
    std::ranges::fill(samples, 0.0F);
    for (size_t i = 0; i < count; ++i) {
        const int32_t sum = int32_t{looked[i].Left} + looked[i].Right;
        samples[i] = static_cast<float>(sum) * 0.5F * Window[i];
    }
    const BandPowers middle = Bands();
    for (size_t i = 0; i < count; ++i) {
        const int32_t difference = int32_t{looked[i].Left} - looked[i].Right;
        samples[i] = static_cast<float>(difference) * 0.5F * Window[i];
    }
    const BandPowers side = Bands();

    SlotFeatures features;
    for (size_t band = 0; band < MelBands; ++band) {
        features.Mel[band] = std::log10(middle[band] + PowerFloor);
        if (Before) features.Flux += std::abs(features.Mel[band] - (*Before)[band]) / MelBands;
    }
    const auto shape = Transformed(features.Mel, ShapeOfMel());
    const auto stereo = StereoShape(middle, side);
    std::ranges::copy(shape, features.Sound.begin());
    std::ranges::copy(stereo, features.Sound.begin() + MelCoefficients);
    Before = features.Mel;
    return features;
}

FeatureHistory::FeatureHistory(size_t slots) : Kept(std::max<size_t>(slots, 1)) {}

void FeatureHistory::Add(const SlotFeatures& features) {
    Kept[static_cast<size_t>(Next) % Kept.size()] = features;
    ++Next;
    Oldest = std::max(Oldest, Next - static_cast<int64_t>(Kept.size()));
}

void FeatureHistory::Restart(int64_t slot) {
    Oldest = slot;
    Next = slot;
}

}  // namespace Corvetape
