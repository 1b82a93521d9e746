#include "platform/linux/sound/resampler.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace Corvetape {
namespace {

constexpr double Pi = std::numbers::pi;

/// A sine on the left and half of it, upside down, on the right.
std::vector<float> Convert(uint32_t from, uint32_t to, double frequency, size_t inputFrames) {
    size_t at = 0;
    Resampler resampler(from, to, [&](std::span<float> out) {
        size_t done = 0;
        for (; done < out.size() / 2 && at < inputFrames; ++done, ++at) {
            const double value = 0.9 * std::sin(2 * Pi * frequency * static_cast<double>(at) / from);
            out[2 * done] = static_cast<float>(value);
            out[2 * done + 1] = static_cast<float>(-0.5 * value);
        }
        return done;
    });
    std::vector<float> result;
    std::vector<float> part(2 * 777);
    for (size_t got = 777; got == 777;) {
        got = resampler.Read(part);
        result.insert(result.end(), part.begin(), part.begin() + static_cast<std::ptrdiff_t>(2 * got));
    }
    return result;
}

struct Rates {
    uint32_t From;
    uint32_t To;
};

/// The strongest deviation from the sine that it should be, in dB below full scale, away from the ends.
double Deviation(const std::vector<float>& frames, Rates rates, double frequency) {
    const uint32_t rate = rates.To;
    const size_t ends = 90 * (1 + rates.To / rates.From);  // the silence around the signal reaches so far
    double worst = 1e-12;
    const size_t count = frames.size() / 2;
    for (size_t i = ends; i + ends < count; ++i) {
        const double wanted = 0.9 * std::sin(2 * Pi * frequency * static_cast<double>(i) / rate);
        worst = std::max(worst, std::abs(frames[2 * i] - wanted));
        worst = std::max(worst, std::abs(frames[2 * i + 1] + 0.5 * wanted));
    }
    return 20 * std::log10(worst);
}

class ResamplerTest : public testing::TestWithParam<Rates> {};

TEST_P(ResamplerTest, ASineStaysThatSine) {
    const auto [from, to] = GetParam();
    const double highest = 0.9 * std::min(from, to) / 2.0;
    for (const double part : {0.001, 0.05, 0.45, 1.0}) {
        const std::vector<float> out = Convert(from, to, part * highest, from);
        EXPECT_LT(Deviation(out, GetParam(), part * highest), -90) << part * highest << " Hz";
    }
}

TEST_P(ResamplerTest, ASecondStaysASecond) {
    const auto [from, to] = GetParam();
    EXPECT_EQ(Convert(from, to, 100, from).size() / 2, to);
    EXPECT_EQ(Convert(from, to, 100, 1).size() / 2, (to + from - 1) / from);
    EXPECT_EQ(Convert(from, to, 100, 0).size() / 2, 0u);
}

TEST_P(ResamplerTest, TheSameInputGivesTheSameOutput) {
    const auto [from, to] = GetParam();
    EXPECT_EQ(Convert(from, to, 1234.5, 5000), Convert(from, to, 1234.5, 5000));
}

INSTANTIATE_TEST_SUITE_P(Rates, ResamplerTest,
                         testing::Values(Rates{44100, 48000}, Rates{48000, 44100}, Rates{22050, 44100},
                                         Rates{8000, 44100}, Rates{32000, 48000}, Rates{96000, 44100},
                                         Rates{192000, 48000}, Rates{44056, 44100}, Rates{47999, 48000},
                                         Rates{44101, 44100}, Rates{1000, 44100}),
                         [](const testing::TestParamInfo<Rates>& rates) {
                             return std::to_string(rates.param.From) + "to" + std::to_string(rates.param.To);
                         });

TEST(Resampler, WhatTheNewRateCannotHoldIsKeptOut) {
    for (const double frequency : {22100.0, 23000.0, 30000.0, 47000.0}) {
        const std::vector<float> out = Convert(96000, 44100, frequency, 96000);
        double worst = 1e-12;
        for (size_t i = 1000; i + 1000 < out.size(); ++i) worst = std::max(worst, std::abs(double{out[i]}));
        EXPECT_LT(20 * std::log10(worst), -90) << frequency;
    }
}

}  // namespace
}  // namespace Corvetape
