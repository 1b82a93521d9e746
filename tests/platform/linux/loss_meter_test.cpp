#include "platform/linux/sound/loss_meter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

namespace Corvetape {
namespace {

constexpr int64_t Ms = 1'000'000;
constexpr int64_t Second = 1000 * Ms;
constexpr double Rate = 44100;

/// A sound card whose clock may drift, a server that delivers in blocks of 50 ms with jitter, and stalls
/// after which the backlog comes at once.
class Stream {
 public:
    explicit Stream(double drift = 0, uint32_t seed = 1) : cardRate(Rate * (1 + drift)), random(seed) {
        meter.Start(now);
    }

    /// Runs for a while with random jitter below 45 ms.
    void Run(int64_t duration) {
        std::uniform_int_distribution<int64_t> jitter(0, 45 * Ms);
        for (const int64_t end = now + duration; now < end;) {
            now += 50 * Ms;
            Deliver(now + jitter(random));
        }
    }

    /// Nothing is delivered for a while, but nothing is lost either.
    void Stall(int64_t duration) { now += duration; }

    /// The card's frames of the last `duration` are thrown away.
    void Lose(int64_t duration) {
        now += duration;
        delivered += static_cast<double>(duration) / 1e9 * cardRate;
    }

    void Interrupt(WaveInIncidentKind kind, bool certain) { meter.Interrupted(kind, certain); }

    std::vector<LossMeter::Loss> Losses;

 private:
    void Deliver(int64_t arrival) {
        const double made = std::floor(static_cast<double>(now - Second) / 1e9 * cardRate);
        const auto frames = static_cast<uint64_t>(made - std::floor(delivered));
        delivered = made;
        if (const auto loss = meter.Arrived(arrival, frames)) Losses.push_back(*loss);
    }

    double cardRate;
    std::mt19937 random;
    LossMeter meter{44100};
    int64_t now = Second;
    double delivered = 0;
};

double Seconds(const LossMeter::Loss& loss) {
    return static_cast<double>(loss.Frames) / Rate;
}

TEST(LossMeter, ADayOfJitterReportsNothing) {
    for (uint32_t seed = 1; seed <= 3; ++seed) {
        Stream stream(0, seed);
        stream.Run(24 * 3600 * Second);
        EXPECT_TRUE(stream.Losses.empty()) << "seed " << seed;
    }
}

TEST(LossMeter, ASoundCardThatRunsFastOrSlowReportsNothing) {
    for (const double drift : {-0.001, -0.0003, 0.0003, 0.001}) {
        Stream stream(drift);
        stream.Run(24 * 3600 * Second);
        EXPECT_TRUE(stream.Losses.empty()) << "drift " << drift;
    }
}

TEST(LossMeter, StallsWhoseBacklogComesLaterReportNothing) {
    Stream stream;
    stream.Run(5 * Second);
    for (int64_t length = 100 * Ms; length < 20 * Second; length = length * 3 / 2) {
        stream.Stall(length);
        stream.Run(length % (7 * Second));
    }
    stream.Run(5 * Second);
    EXPECT_TRUE(stream.Losses.empty());
}

TEST(LossMeter, LostFramesWithoutAReasonAreReportedOnceWithTheirLength) {
    for (const int64_t lost : {150 * Ms, 300 * Ms, 2 * Second, 12 * Second}) {
        Stream stream(0.0002);
        stream.Run(60 * Second);
        stream.Lose(lost);
        stream.Run(60 * Second);
        ASSERT_EQ(stream.Losses.size(), 1u) << lost;
        EXPECT_EQ(stream.Losses[0].Kind, WaveInIncidentKind::ClockDrift);
        EXPECT_NEAR(Seconds(stream.Losses[0]), static_cast<double>(lost) / 1e9, 0.05);
    }
}

TEST(LossMeter, SeveralLossesAreReportedOneByOne) {
    Stream stream;
    stream.Run(10 * Second);
    for (int i = 0; i < 5; ++i) {
        stream.Lose(400 * Ms);
        stream.Run(10 * Second);
    }
    ASSERT_EQ(stream.Losses.size(), 5u);
    for (const LossMeter::Loss& loss : stream.Losses) EXPECT_NEAR(Seconds(loss), 0.4, 0.05);
}

TEST(LossMeter, ALossAfterAStallLongerThanTheServerKeepsIsAnOverrun) {
    Stream stream;
    stream.Run(10 * Second);
    stream.Stall(22 * Second);
    stream.Lose(8 * Second);
    stream.Run(10 * Second);
    ASSERT_EQ(stream.Losses.size(), 1u);
    EXPECT_EQ(stream.Losses[0].Kind, WaveInIncidentKind::Overrun);
    EXPECT_NEAR(Seconds(stream.Losses[0]), 8, 0.05);
}

TEST(LossMeter, AnInterruptionIsReportedAfterItHasEnded) {
    Stream stream;
    stream.Run(10 * Second);
    stream.Interrupt(WaveInIncidentKind::ServerLost, true);
    stream.Lose(3 * Second);
    stream.Run(900 * Ms);
    EXPECT_TRUE(stream.Losses.empty());
    stream.Run(10 * Second);
    ASSERT_EQ(stream.Losses.size(), 1u);
    EXPECT_EQ(stream.Losses[0].Kind, WaveInIncidentKind::ServerLost);
    EXPECT_NEAR(Seconds(stream.Losses[0]), 3, 0.05);
}

TEST(LossMeter, ACertainInterruptionIsReportedHoweverShortItWas) {
    Stream stream;
    stream.Run(10 * Second);
    stream.Interrupt(WaveInIncidentKind::DeviceLost, true);
    stream.Lose(20 * Ms);
    stream.Run(10 * Second);
    ASSERT_EQ(stream.Losses.size(), 1u);
    EXPECT_LT(Seconds(stream.Losses[0]), 0.07);
}

TEST(LossMeter, AnUncertainInterruptionWithoutALossReportsNothing) {
    Stream stream;
    stream.Run(10 * Second);
    stream.Interrupt(WaveInIncidentKind::DeviceLost, false);
    stream.Stall(3 * Second);
    stream.Run(10 * Second);
    EXPECT_TRUE(stream.Losses.empty());
}

TEST(LossMeter, InterruptionsThatFollowEachOtherAreOneIncidentOfTheGravestKind) {
    Stream stream;
    stream.Run(10 * Second);
    stream.Interrupt(WaveInIncidentKind::ServerLost, true);
    stream.Lose(2 * Second);
    stream.Run(500 * Ms);
    stream.Interrupt(WaveInIncidentKind::DeviceLost, true);
    stream.Lose(Second);
    stream.Run(10 * Second);
    ASSERT_EQ(stream.Losses.size(), 1u);
    EXPECT_EQ(stream.Losses[0].Kind, WaveInIncidentKind::ServerLost);
    EXPECT_NEAR(Seconds(stream.Losses[0]), 3, 0.05);
}

TEST(LossMeter, TimeCountsFromTheStartIfTheDeviceWasAwayThen) {
    Stream stream;
    stream.Interrupt(WaveInIncidentKind::DeviceLost, true);
    stream.Lose(4 * Second);
    stream.Run(5 * Second);
    ASSERT_EQ(stream.Losses.size(), 1u);
    EXPECT_NEAR(Seconds(stream.Losses[0]), 4, 0.1);
}

TEST(LossMeter, AStreamThatDeliversLaterAndLaterWhileItBeginsReportsNothing) {
    LossMeter meter(44100);
    meter.Start(0);
    int64_t now = 10 * Ms;  // the first block comes early
    EXPECT_FALSE(meter.Arrived(now, 2205));
    now += 300 * Ms;
    for (int i = 0; i < 400; ++i, now += 50 * Ms) EXPECT_FALSE(meter.Arrived(now, 2205)) << i;
}

}  // namespace
}  // namespace Corvetape
