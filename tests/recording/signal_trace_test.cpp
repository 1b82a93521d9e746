#include "recording/signal_trace.h"

#include <gtest/gtest.h>

#include "platform/virtual/sim_clock.h"

namespace Corvetape::Test {
namespace {

struct Traced {
    void Append(int32_t level, int count = 1) {
        for (int i = 0; i < count; ++i) {
            Signal.History.Append(level);
            Signal.FramesReceived += 2205;
        }
    }

    SimClock Clock;
    SignalState Signal;
    PauseSettings Pause;
    SignalTrace Trace{Signal, Pause, Clock};
};

TEST(SignalTrace, TakesOverWhatIsNewAndNothingTwice) {
    Traced traced;
    traced.Append(1000, 3);
    traced.Trace.Follow();
    traced.Append(2000);
    traced.Trace.Follow();
    traced.Trace.Follow();
    ASSERT_EQ(traced.Trace.Columns().size(), 4U);
    EXPECT_EQ(traced.Trace.Columns()[2].Level, 1000);
    EXPECT_EQ(traced.Trace.Columns()[3].Level, 2000);
}

TEST(SignalTrace, ReachesTwoMinutesBackAndKeepsItsNumbers) {
    Traced traced;
    for (int i = 0; i < 30; ++i) {
        traced.Append(i, 100);
        traced.Trace.Follow();
    }
    EXPECT_EQ(traced.Trace.Columns().size(), SignalTrace::Capacity);
    EXPECT_EQ(traced.Trace.FirstNumber(), 600U);
    EXPECT_EQ(traced.Trace.Columns().front().Level, 6);
}

TEST(SignalTrace, LevelsUpToTheThresholdAreSilent) {
    Traced traced;
    traced.Pause.SilenceAmplitude = 100;
    traced.Append(100);
    traced.Append(101);
    traced.Trace.Follow();
    EXPECT_TRUE(traced.Trace.Columns()[0].Silent);
    EXPECT_FALSE(traced.Trace.Columns()[1].Silent);
}

TEST(SignalTrace, AMarkLeavesThePictureAsItWas) {
    Traced traced;
    traced.Append(1000, 2);
    traced.Signal.History.ReplaceLast(MarkMediaChange);
    traced.Trace.Follow();
    EXPECT_EQ(traced.Trace.Columns()[1].Level, 1000);
    EXPECT_TRUE(traced.Trace.Columns()[1].TitleChange);
    traced.Append(3000);
    traced.Trace.Follow();
    traced.Signal.History.ReplaceLast(MarkMediaChange);  // after it was taken over
    traced.Append(3000);
    traced.Trace.Follow();
    EXPECT_TRUE(traced.Trace.Columns()[2].TitleChange);
}

TEST(SignalTrace, ASongBeginsWhereTheOneBeforeItEnded) {
    Traced traced;
    traced.Append(1000, 100);
    ClosedSong song;
    song.EndFrame = 80 * 2205;
    traced.Trace.SongClosed(song);
    ASSERT_EQ(traced.Trace.SongBegins().size(), 1U);
    EXPECT_EQ(traced.Trace.SongBegins()[0], 80U);
}

TEST(SignalTrace, KnowsWhatIsOfSongsThatWereKept) {
    Traced traced;
    traced.Append(1000, 200);
    ClosedSong song;
    song.Fate = SongFate::Unwanted;
    song.EndFrame = 88200;  // columns 0 to 39
    traced.Trace.SongClosed(song);
    song.Fate = SongFate::Kept;
    song.BeginFrame = 110250;  // columns 50 to 149
    song.EndFrame = 330750;
    traced.Trace.SongClosed(song);
    EXPECT_FALSE(traced.Trace.IsOfKeptSong(20));
    EXPECT_FALSE(traced.Trace.IsOfKeptSong(49));
    EXPECT_TRUE(traced.Trace.IsOfKeptSong(50));
    EXPECT_TRUE(traced.Trace.IsOfKeptSong(149));
    EXPECT_FALSE(traced.Trace.IsOfKeptSong(150));
}

TEST(SignalTrace, ShowsWhereSoundWasLost) {
    Traced traced;
    traced.Append(1000, 2);
    traced.Trace.Follow();
    traced.Signal.FramesLost += 4410;
    traced.Append(1000, 2);
    traced.Trace.Follow();
    EXPECT_FALSE(traced.Trace.Columns()[1].Lost);
    EXPECT_TRUE(traced.Trace.Columns()[2].Lost);
    EXPECT_FALSE(traced.Trace.Columns()[3].Lost);
}

}  // namespace
}  // namespace Corvetape::Test
