#include "audio/slot_features.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

#include "platform/virtual/sim_random.h"

namespace Corvetape::Test {
namespace {

class AtBothRates : public ::testing::TestWithParam<uint32_t> {
 protected:
    std::vector<Frame> Sine(double hertz, double amplitude) const {
        std::vector<Frame> frames(GetParam() / 20);
        for (size_t i = 0; i < frames.size(); ++i) {
            const double turns = hertz * static_cast<double>(i) / GetParam();
            const auto sample = static_cast<int16_t>(amplitude * std::sin(2 * std::numbers::pi * turns));
            frames[i] = {sample, sample};
        }
        return frames;
    }

    /// Two channels of noise that have nothing in common.
    std::vector<Frame> Noise(double amplitude) const {
        SimRandom random(7);
        std::vector<Frame> frames(GetParam() / 20);
        for (Frame& frame : frames) {
            frame.Left = static_cast<int16_t>(amplitude * random.Between(-1.0, 1.0));
            frame.Right = static_cast<int16_t>(amplitude * random.Between(-1.0, 1.0));
        }
        return frames;
    }
};

INSTANTIATE_TEST_SUITE_P(Rates, AtBothRates, ::testing::Values(44100U, 48000U));

double MelOf(double hertz) {
    return 2595 * std::log10(1 + hertz / 700);
}

TEST_P(AtBothRates, ASineIsLoudestInTheTriangleWhoseTopIsNearest) {
    const double step = (MelOf(15'000) - MelOf(40)) / 33;
    for (const double hertz : {300.0, 1000.0, 4000.0, 12'000.0}) {
        FeatureMeter meter(GetParam());
        const MelSpectrum mel = meter.Measure(Sine(hertz, 10'000)).Mel;
        const auto loudest = std::ranges::max_element(mel) - mel.begin();
        EXPECT_EQ(loudest, std::lround((MelOf(hertz) - MelOf(40)) / step) - 1) << hertz;
    }
}

TEST_P(AtBothRates, SilenceIsAtTheFloorAndMono) {
    FeatureMeter meter(GetParam());
    const SlotFeatures silent = meter.Measure(std::vector<Frame>(GetParam() / 20));
    for (const float band : silent.Mel) EXPECT_FLOAT_EQ(band, -4);
    EXPECT_NEAR(silent.Sound[MelCoefficients], -3 * std::sqrt(8.0), 1e-4);
    EXPECT_NEAR(silent.Sound[MelCoefficients + 1], 0, 1e-4);
}

TEST_P(AtBothRates, TenTimesTheAmplitudeAddsTwoToEachBandAndChangesTheFirstCoefficientAlone) {
    FeatureMeter meter(GetParam());
    const SlotFeatures soft = meter.Measure(Noise(1000));
    const SlotFeatures loud = meter.Measure(Noise(10'000));
    for (size_t i = 0; i < MelBands; ++i) EXPECT_NEAR(loud.Mel[i] - soft.Mel[i], 2, 0.02) << i;
    EXPECT_NEAR(loud.Flux, 2, 0.01);
    EXPECT_NEAR(loud.Sound[0] - soft.Sound[0], std::sqrt(32.0), 0.05);  // half of 2 * 32 / sqrt(32)
    for (size_t i = 1; i < TextureSize; ++i) EXPECT_NEAR(loud.Sound[i], soft.Sound[i], 0.05) << i;
}

TEST_P(AtBothRates, FluxIsWhatChangedSinceTheSlotBefore) {
    FeatureMeter meter(GetParam());
    EXPECT_EQ(meter.Measure(Noise(5000)).Flux, 0);
    EXPECT_EQ(meter.Measure(Noise(5000)).Flux, 0);
    EXPECT_GT(meter.Measure(Sine(440, 5000)).Flux, 0.5);
    meter.Restart();
    EXPECT_EQ(meter.Measure(Noise(5000)).Flux, 0);
}

TEST_P(AtBothRates, TheImageIsAsWideAsTheSideIsLoud) {
    const auto widthOf = [&](double left, double right) {
        std::vector<Frame> frames = Noise(8000);
        for (Frame& frame : frames) {
            const double sample = frame.Left;
            frame = {static_cast<int16_t>(left * sample), static_cast<int16_t>(right * sample)};
        }
        FeatureMeter meter(GetParam());
        return meter.Measure(frames).Sound[MelCoefficients] / std::sqrt(8.0);
    };
    EXPECT_NEAR(widthOf(1, 1), -3, 1e-3);        // mono
    EXPECT_NEAR(widthOf(1, 0), 0, 1e-3);         // on one side: side and middle are equally loud
    EXPECT_NEAR(widthOf(1, -1), 1, 1e-3);        // nothing in the middle
    EXPECT_NEAR(widthOf(1, 0.5), -0.954, 0.01);  // side to middle as 1 to 3
}

TEST_P(AtBothRates, AShortSlotIsFollowedBySilence) {
    FeatureMeter meter(GetParam());
    std::vector<Frame> frames = Noise(8000);
    frames.resize(Spectrum::Size);
    std::fill(frames.begin() + 600, frames.end(), Frame{});
    const SlotFeatures padded = meter.Measure(frames);
    frames.resize(600);
    meter.Restart();
    const SlotFeatures shorter = meter.Measure(frames);
    EXPECT_EQ(padded.Mel, shorter.Mel);
    EXPECT_EQ(padded.Sound, shorter.Sound);
    meter.Restart();
    EXPECT_FLOAT_EQ(meter.Measure({}).Mel[0], -4);
}

TEST(ShapeOfMel, IsHalfOfAnOrthonormalTransform) {
    const MelShapeTable& table = ShapeOfMel();
    for (size_t a = 0; a < MelCoefficients; ++a) {
        for (size_t b = 0; b <= a; ++b) {
            double product = 0;
            for (size_t band = 0; band < MelBands; ++band) product += table[band][a] * table[band][b];
            EXPECT_NEAR(product, a == b ? 0.25 : 0, 1e-6) << a << ' ' << b;
        }
    }
}

SlotFeatures Numbered(float number) {
    SlotFeatures features;
    features.Flux = number;
    return features;
}

TEST(FeatureHistory, KeepsTheLastSlotsByTheirNumbers) {
    FeatureHistory history(3);
    EXPECT_EQ(history.First(), history.End());
    for (int slot = 0; slot < 5; ++slot) history.Add(Numbered(static_cast<float>(slot)));
    EXPECT_EQ(history.First(), 2);
    EXPECT_EQ(history.End(), 5);
    for (int64_t slot = 2; slot < 5; ++slot) EXPECT_EQ(history[slot].Flux, static_cast<float>(slot));
}

TEST(FeatureHistory, BeginsAnewAtANumber) {
    FeatureHistory history(3);
    history.Add(Numbered(1));
    history.Restart(100);
    EXPECT_EQ(history.First(), 100);
    EXPECT_EQ(history.End(), 100);
    history.Add(Numbered(2));
    EXPECT_EQ(history[100].Flux, 2);
    EXPECT_EQ(history.First(), 100);
}

}  // namespace
}  // namespace Corvetape::Test
