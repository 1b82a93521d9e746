#include "audio/spectrum.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

#include "platform/virtual/sim_random.h"

namespace Corvetape::Test {
namespace {

TEST(Spectrum, OfNothingIsNothing) {
    Spectrum spectrum;
    for (const float power : spectrum.Power()) EXPECT_EQ(power, 0);
}

TEST(Spectrum, ASineHasAllItsPowerInItsBin) {
    constexpr size_t bin = 100;
    Spectrum spectrum;
    for (size_t i = 0; i < Spectrum::Size; ++i) {
        const double turns = static_cast<double>(bin * i) / Spectrum::Size;
        spectrum.Samples()[i] = static_cast<float>(std::sin(2 * std::numbers::pi * turns));
    }
    const auto powers = spectrum.Power();
    EXPECT_NEAR(powers[bin], 1024.0 * 1024, 10);
    for (size_t i = 0; i < Spectrum::Bins; ++i) {
        if (i == bin) continue;
        EXPECT_LT(powers[i], 0.01) << i;
    }
}

TEST(Spectrum, AConstantIsInTheFirstBinAndAnAlternationInTheLast) {
    Spectrum spectrum;
    std::ranges::fill(spectrum.Samples(), 1.0F);
    EXPECT_NEAR(spectrum.Power()[0], 2048.0 * 2048, 10);
    for (size_t i = 0; i < Spectrum::Size; ++i) spectrum.Samples()[i] = i % 2 == 0 ? 1.0F : -1.0F;
    EXPECT_NEAR(spectrum.Power()[Spectrum::Bins - 1], 2048.0 * 2048, 10);
}

TEST(Spectrum, HasThePowerOfItsSamplesAndLeavesThemAsTheyAre) {
    Spectrum spectrum;
    SimRandom random(1);
    double power = 0;
    for (float& sample : spectrum.Samples()) {
        sample = static_cast<float>(random.Between(-1.0, 1.0));
        power += static_cast<double>(sample) * sample;
    }
    const std::vector<float> before(spectrum.Samples().begin(), spectrum.Samples().end());
    const auto powers = spectrum.Power();
    double sum = 0;
    for (size_t i = 0; i < Spectrum::Bins; ++i) {
        const bool ownMirror = i == 0 || i + 1 == Spectrum::Bins;
        sum += (ownMirror ? 1 : 2) * static_cast<double>(powers[i]);
    }
    EXPECT_NEAR(sum / Spectrum::Size, power, power * 1e-5);
    EXPECT_TRUE(std::ranges::equal(before, spectrum.Samples()));
}

}  // namespace
}  // namespace Corvetape::Test
