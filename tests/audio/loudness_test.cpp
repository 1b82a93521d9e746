#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <vector>

#include "audio/analyze.h"
#include "platform/virtual/sim_random.h"

namespace Corvetape::Test {

namespace {

constexpr std::array<int16_t, 12> Edges = {-32768, -32767, -20000, -328, -100,  -1,
                                           0,      1,      100,    327,  20000, 32767};

/// Plain words for the same rules, frame by frame, to hold the fast loops against.
Loudness PlainMeasure(std::span<const Frame> frames) {
    Loudness result;
    for (const Frame frame : frames) {
        const int32_t left = frame.Left < 0 ? -int32_t{frame.Left} : frame.Left;
        const int32_t right = frame.Right < 0 ? -int32_t{frame.Right} : frame.Right;
        if (left > result.MaxLeft) result.MaxLeft = left;
        if (right > result.MaxRight) result.MaxRight = right;
        result.SumLeft += static_cast<uint32_t>(left);
        result.SumRight += static_cast<uint32_t>(right);
    }
    return result;
}

void PlainClamp(Frame& frame) {
    if (frame.Left > 0) {
        frame.Left = 32767;
    } else if (frame.Left < 0) {
        frame.Left = -32768;
    }
    frame.Right = frame.Right >= 0 ? 32767 : -32768;
}

Frame PlainAmplify(Frame frame, int64_t gain) {
    const int64_t left = frame.Left * gain / 100;
    if (left < -32768 || left > 32767) {
        PlainClamp(frame);
    } else {
        frame.Left = static_cast<int16_t>(left);
    }
    const int64_t right = frame.Right * gain / 100;
    if (right < -32768 || right > 32767) {
        PlainClamp(frame);
    } else {
        frame.Right = static_cast<int16_t>(right);
    }
    return frame;
}

std::vector<Frame> EdgeFrames() {
    std::vector<Frame> frames;
    for (const int16_t left : Edges) {
        for (const int16_t right : Edges) frames.push_back({left, right});
    }
    return frames;
}

std::vector<Frame> RandomFrames(SimRandom& random, size_t count, int64_t reach) {
    std::vector<Frame> frames(count);
    for (Frame& frame : frames) {
        frame.Left = static_cast<int16_t>(random.Between(-reach, reach - 1));
        frame.Right = static_cast<int16_t>(random.Between(-reach, reach - 1));
    }
    return frames;
}

void ExpectAmplified(std::vector<Frame> frames, int32_t gain) {
    std::vector<Frame> expected = frames;
    for (Frame& frame : expected) frame = PlainAmplify(frame, gain);
    Amplify(frames, gain);
    for (size_t i = 0; i < frames.size(); ++i) {
        ASSERT_EQ(frames[i].Left, expected[i].Left) << "left of frame " << i << ", gain " << gain;
        ASSERT_EQ(frames[i].Right, expected[i].Right) << "right of frame " << i << ", gain " << gain;
    }
}

Frame Amplified(Frame frame, int32_t gain) {
    Amplify(std::span(&frame, 1), gain);
    return frame;
}

}  // namespace

TEST(MeasureAll, TheMagnitudeOfTheLowestSampleIs32768) {
    const std::vector<Frame> frames = {{-32768, 0}, {0, -32768}};
    EXPECT_EQ(MeasureAll(frames), (Loudness{32768, 32768, 32768, 32768}));
    EXPECT_EQ(MeasurePeaks(frames), (Loudness{32768, 32768, 0, 0}));
}

TEST(MeasureAll, ASumOfALoudBufferFitsInto32Bits) {
    const std::vector<Frame> frames(65535, Frame{-32768, -32768});
    EXPECT_EQ(MeasureAll(frames).SumLeft, 65535U * 32768U);
    EXPECT_EQ(MeasureAll(frames).SumRight, 65535U * 32768U);
}

TEST(MeasureAll, NoFramesHaveNoLoudness) {
    EXPECT_EQ(MeasureAll({}), Loudness{});
    EXPECT_EQ(MeasurePeaks({}), Loudness{});
}

TEST(MeasureAll, AgreesWithThePlainWayForAllLengthsAndEdges) {
    const std::vector<Frame> edges = EdgeFrames();
    SimRandom random(1);
    for (size_t length = 0; length < 300; ++length) {
        const std::vector<Frame> frames =
            length <= edges.size()
                ? std::vector(edges.begin(), edges.begin() + static_cast<std::ptrdiff_t>(length))
                : RandomFrames(random, length, 32768);
        const Loudness plain = PlainMeasure(frames);
        ASSERT_EQ(MeasureAll(frames), plain) << length;
        ASSERT_EQ(MeasurePeaks(frames), (Loudness{plain.MaxLeft, plain.MaxRight, 0, 0})) << length;
    }
}

TEST(MeasureAll, AgreesWithThePlainWayForRandomBuffers) {
    for (uint64_t seed = 1; seed <= 200; ++seed) {
        SimRandom random(seed);
        const std::vector<Frame> frames =
            RandomFrames(random, 2205, random.Between(int64_t{1}, int64_t{32768}));
        ASSERT_EQ(MeasureAll(frames), PlainMeasure(frames)) << "seed " << seed;
    }
}

TEST(Amplify, MultipliesPerCentAndTruncatesTowardZero) {
    EXPECT_EQ(Amplified({199, -199}, 50), (Frame{99, -99}));
    EXPECT_EQ(Amplified({1, -1}, 99), (Frame{0, 0}));
    EXPECT_EQ(Amplified({100, -100}, 250), (Frame{250, -250}));
    EXPECT_EQ(Amplified({12345, -12345}, 0), (Frame{0, 0}));
}

TEST(Amplify, AnOverflowSendsBothChannelsToFullScaleInTheirOwnDirection) {
    EXPECT_EQ(Amplified({20000, 5}, 200), (Frame{32767, 32767}));
    EXPECT_EQ(Amplified({20000, -5}, 200), (Frame{32767, -32768}));
    EXPECT_EQ(Amplified({-20000, 5}, 200), (Frame{-32768, 32767}));
    EXPECT_EQ(Amplified({5, 20000}, 200), (Frame{32767, 32767}));
    EXPECT_EQ(Amplified({-5, 20000}, 200), (Frame{-32768, 32767}));
}

TEST(Amplify, OnAnOverflowARightZeroGoesUpAndALeftZeroStays) {
    EXPECT_EQ(Amplified({20000, 0}, 200), (Frame{32767, 32767}));
    EXPECT_EQ(Amplified({-20000, 0}, 200), (Frame{-32768, 32767}));
    EXPECT_EQ(Amplified({0, 20000}, 200), (Frame{0, 32767}));
    EXPECT_EQ(Amplified({0, -20000}, 200), (Frame{0, -32768}));
}

TEST(Amplify, TheSignThatDecidesIsThatOfTheFrameAsItStands) {
    // The gain has turned the left sample round by then.
    EXPECT_EQ(Amplified({1, -32768}, -101), (Frame{-32768, -32768}));
    EXPECT_EQ(Amplified({0, -32768}, -101), (Frame{0, -32768}));
    // After an overflow on the left the right sample stands at full scale and is multiplied again.
    EXPECT_EQ(Amplified({-32768, 7}, -100), (Frame{-32768, -32767}));
}

TEST(Amplify, TheLargestResultsThatFitAreKept) {
    EXPECT_EQ(Amplified({32767, -32768}, 100), (Frame{32767, -32768}));
    EXPECT_EQ(Amplified({16383, -16384}, 200), (Frame{32766, -32768}));
    EXPECT_EQ(Amplified({16384, 1}, 200), (Frame{32767, 32767}));
    // 3276799 per cent truncates to 32767: it fits.
    EXPECT_EQ(Amplified({1, -1}, 3276799), (Frame{32767, -32767}));
    EXPECT_EQ(Amplified({-1, -1}, 3276899), (Frame{-32768, -32768}));
    EXPECT_EQ(Amplified({0, -1}, 3276899), (Frame{0, -32768}));
    EXPECT_EQ(Amplified({1, -1}, 3276800), (Frame{32767, -32768}));
}

TEST(Amplify, AgreesWithThePlainWayForAllSamplesAtCommonGains) {
    std::vector<Frame> frames;
    for (int32_t sample = -32768; sample <= 32767; ++sample) {
        frames.push_back({static_cast<int16_t>(sample), static_cast<int16_t>(-1 - sample)});
    }
    for (const int32_t gain : {1, 33, 50, 99, 101, 150, 199, 200, 400, 1000}) ExpectAmplified(frames, gain);
}

TEST(Amplify, AgreesWithThePlainWayForAllSamplesThatFitAtManyGains) {
    for (int32_t gain = 1; gain <= 65'536; gain += 13) {
        const int32_t most = std::min(3'276'899 / gain + 2, 32767);
        std::vector<Frame> frames;
        for (int32_t sample = -most; sample <= most; ++sample) {
            frames.push_back({static_cast<int16_t>(sample), 0});
            frames.push_back({0, static_cast<int16_t>(sample)});
        }
        ExpectAmplified(std::move(frames), gain);
    }
}

TEST(Amplify, AgreesWithThePlainWayForAllEdgesAtAnyGain) {
    const std::vector<Frame> edges = EdgeFrames();
    for (const int32_t gain : {-2147483647 - 1,
                               -3276900,
                               -3276899,
                               -3276800,
                               -3276799,
                               -200,
                               -100,
                               -1,
                               0,
                               1,
                               99,
                               100,
                               101,
                               32767,
                               65535,
                               65536,
                               3276799,
                               3276800,
                               3276899,
                               3276900,
                               2147483647}) {
        ExpectAmplified(edges, gain);
        for (const Frame frame : edges) ExpectAmplified({frame}, gain);
    }
}

TEST(Amplify, AgreesWithThePlainWayForRandomAudioWithFewAndManyOverflows) {
    for (uint64_t seed = 1; seed <= 300; ++seed) {
        SimRandom random(seed);
        const auto gain = static_cast<int32_t>(random.Between(int64_t{-50}, int64_t{600}));
        const auto length = static_cast<size_t>(random.Between(int64_t{1}, int64_t{2400}));
        SCOPED_TRACE("seed " + std::to_string(seed));
        ExpectAmplified(RandomFrames(random, length, random.Between(int64_t{1}, int64_t{32768})), gain);
    }
}

TEST(CountFullScale, CountsBothEndsOfTheScaleOnBothChannels) {
    const std::vector<Frame> frames = {{32767, 32766}, {-32768, -32767}, {0, 32767}, {32767, -32768}};
    EXPECT_EQ(CountFullScale(frames), 5U);
    EXPECT_EQ(CountFullScale({}), 0U);
}

}  // namespace Corvetape::Test
