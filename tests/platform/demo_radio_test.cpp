#include "platform/virtual/demo_radio.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <numeric>
#include <set>
#include <vector>

#include "sim/content_hash.h"

namespace Corvetape {
namespace {

std::vector<Frame> ReadFrames(SoundSource& source, uint64_t count) {
    std::vector<Frame> frames(static_cast<size_t>(count));
    EXPECT_EQ(source.Read(frames), frames.size());
    return frames;
}

int32_t PeakOf(std::span<const Frame> frames) {
    int32_t peak = 0;
    for (const Frame& frame : frames) {
        peak = std::max({peak, std::abs(int32_t{frame.Left}), std::abs(int32_t{frame.Right})});
    }
    return peak;
}

TEST(DemoRadio, SongsLast40To70SecondsWithPausesOf1To2AndAHalf) {
    for (const uint64_t seed : {1ULL, 2ULL, 99ULL}) {
        const DemoRadio radio(seed);
        uint64_t lastEnd = 0;
        for (uint64_t number = 0; number < 60; ++number) {
            const DemoSong song = radio.Song(number);
            const double seconds = static_cast<double>(song.End - song.Begin) / 44100;
            const double pause = static_cast<double>(song.Begin - lastEnd) / 44100;
            EXPECT_GE(seconds, 40) << "seed " << seed << " song " << number;
            EXPECT_LE(seconds, 70) << "seed " << seed << " song " << number;
            EXPECT_GE(pause, 0.99999);
            EXPECT_LE(pause, 2.50001);
            lastEnd = song.End;
        }
    }
}

TEST(DemoRadio, ASongIsNeverSilentAndNeverClips) {
    DemoRadio radio(3);
    uint64_t at = 0;
    for (uint64_t number = 0; number < 6; ++number) {
        const DemoSong song = radio.Song(number);
        const std::vector<Frame> pause = ReadFrames(radio, song.Begin - at);
        EXPECT_EQ(PeakOf(pause), 10);
        const std::vector<Frame> frames = ReadFrames(radio, song.End - song.Begin);
        at = song.End;
        EXPECT_LE(PeakOf(frames), 30000);
        EXPECT_GT(PeakOf(frames), 12000);
        // Up to its last half second, and from its first 50 ms on, far above any threshold of silence.
        for (size_t begin = 0; begin + 2205 + 30000 < frames.size(); begin += 2205) {
            ASSERT_GT(PeakOf(std::span(frames).subspan(begin, 2205)), 500) << number << " at " << begin;
        }
        EXPECT_GT(PeakOf(std::span(frames).last(4410)), 100);
        EXPECT_LT(PeakOf(std::span(frames).last(10)), 10);
    }
}

TEST(DemoRadio, ThePauseHasANoiseFloorAtMinus70Decibels) {
    DemoRadio radio(5);
    const std::vector<Frame> pause = ReadFrames(radio, radio.Song(0).Begin);
    double sum = 0;
    std::set<int16_t> values;
    for (const Frame& frame : pause) {
        sum += frame.Left;
        values.insert(frame.Left);
    }
    EXPECT_EQ(values.size(), 21U);
    EXPECT_EQ(*values.begin(), -10);
    EXPECT_EQ(*values.rbegin(), 10);
    EXPECT_NEAR(sum / static_cast<double>(pause.size()), 0, 0.2);
}

TEST(DemoRadio, TheSameSeedGivesTheSameFramesInWhateverPortions) {
    for (const uint32_t rate : {44100U, 48000U}) {
        DemoRadio first(7, rate);
        DemoRadio second(7, rate);
        ContentHash whole;
        ContentHash pieces;
        whole.Add(std::span<const Frame>(ReadFrames(first, rate * 65)));
        uint64_t left = rate * 65;
        for (uint64_t part = 1; left > 0; part = part * 7 % 4001 + 1) {
            const uint64_t count = std::min(part, left);
            pieces.Add(std::span<const Frame>(ReadFrames(second, count)));
            left -= count;
        }
        EXPECT_EQ(whole.Value(), pieces.Value());
        DemoRadio other(8, rate);
        EXPECT_NE(HashOf(std::span<const Frame>(ReadFrames(other, rate * 65))), whole.Value());
    }
}

TEST(DemoRadio, IsTheSameMusicAtBothRates) {
    const DemoRadio at44(7, 44100);
    const DemoRadio at48(7, 48000);
    EXPECT_EQ(at48.FramesPerSecond(), 48000U);
    for (uint64_t number = 0; number < 5; ++number) {
        EXPECT_EQ(at44.Song(number).Media, at48.Song(number).Media);
        EXPECT_NEAR(static_cast<double>(at44.Song(number).Begin) / 44100,
                    static_cast<double>(at48.Song(number).Begin) / 48000, 0.001);
    }
}

TEST(DemoRadio, ReportsWhatPlays) {
    DemoRadio radio(1);
    EXPECT_EQ(radio.NowPlaying().Song, "");
    EXPECT_FALSE(radio.NowPlaying().StationName.empty());
    const DemoSong first = radio.Song(0);
    const DemoSong second = radio.Song(1);
    ReadFrames(radio, first.Begin - 1);
    EXPECT_EQ(radio.NowPlaying().Song, "");
    ReadFrames(radio, 1);
    EXPECT_EQ(radio.NowPlaying(), first.Media);
    ReadFrames(radio, second.Begin - first.Begin - 1);
    EXPECT_EQ(radio.NowPlaying(), first.Media);
    ReadFrames(radio, 1);
    EXPECT_EQ(radio.NowPlaying(), second.Media);
    for (const std::string& text : {first.Media.Artist, first.Media.Song, first.Media.Album}) {
        EXPECT_FALSE(text.empty());
    }
}

constexpr std::array BandSteps = {0.01, 0.03, 0.08, 0.2, 0.5};
using Colour = std::array<double, BandSteps.size() + 1>;

/// How strong a song is in its bands, from deep to high, as shares of the whole.
Colour ColourOf(std::span<const Frame> frames) {
    Colour bands{};
    std::array<double, BandSteps.size()> below{};
    for (const Frame& frame : frames) {
        double deeper = 0;
        for (size_t band = 0; band < BandSteps.size(); ++band) {
            below[band] += (frame.Left - below[band]) * BandSteps[band];
            bands[band] += (below[band] - deeper) * (below[band] - deeper);
            deeper = below[band];
        }
        bands.back() += (frame.Left - deeper) * (frame.Left - deeper);
    }
    const double sum = std::accumulate(bands.begin(), bands.end(), 0.0);
    for (double& band : bands) band /= sum;
    return bands;
}

TEST(DemoRadio, SixSongsInARowAreBySixBandsAndSoundDifferent) {
    DemoRadio radio(1);
    std::set<std::string> artists;
    std::vector<Colour> colours;
    uint64_t at = 0;
    for (uint64_t number = 0; number < 6; ++number) {
        const DemoSong song = radio.Song(number);
        artists.insert(song.Media.Artist);
        radio.Skip(song.Begin - at);
        colours.push_back(ColourOf(ReadFrames(radio, song.End - song.Begin)));
        at = song.End;
    }
    EXPECT_EQ(artists.size(), 6U);
    for (size_t a = 0; a < colours.size(); ++a) {
        for (size_t b = a + 1; b < colours.size(); ++b) {
            double distance = 0;
            for (size_t band = 0; band < colours[a].size(); ++band) {
                distance += std::abs(colours[a][band] - colours[b][band]);
            }
            EXPECT_GT(distance, 0.05) << a << " and " << b;
        }
    }
}

TEST(DemoRadio, SkippingLeadsToTheSameFramesAsReading) {
    DemoRadio read(2);
    DemoRadio skipped(2);
    ReadFrames(read, 44100 * 70);
    skipped.Skip(44100 * 70);
    EXPECT_EQ(ReadFrames(read, 1000), ReadFrames(skipped, 1000));
}

}  // namespace
}  // namespace Corvetape
