#include "audio/talk_search.h"

#include <gtest/gtest.h>

#include <cmath>

namespace Corvetape::Test {
namespace {

constexpr int64_t Change = 400;
constexpr EdgeRange Everywhere{FirstEdge, LastEdge};

/// How a stretch of slots sounds.
struct Piece {
    int32_t Slots = 0;
    float Width = -1;          ///< of the stereo image, in powers of ten
    bool Interrupted = false;  ///< every fourth slot is a hundred times quieter
};

constexpr Piece Music{300};
constexpr Piece Speech{80, -3, true};

FeatureHistory Heard(std::initializer_list<Piece> pieces) {
    FeatureHistory history(1000);
    for (const Piece& piece : pieces) {
        for (int32_t slot = 0; slot < piece.Slots; ++slot) {
            SlotFeatures features;
            if (piece.Interrupted && slot % 4 == 2) features.Mel.fill(-2);
            features.Sound[MelCoefficients] = piece.Width * std::sqrt(8.0F);
            history.Add(features);
        }
    }
    return history;
}

TEST(FindTalk, AVoiceBetweenTwoSongsIsFoundToTheSlot) {
    EXPECT_EQ(FindTalk(Heard({Music, Speech, Music}), Change, Everywhere), (EdgeRange{-100, -20}));
}

TEST(FindTalk, SongsThatFollowOneAnotherHaveNone) {
    EXPECT_EQ(FindTalk(Heard({Music, Music}), Change, Everywhere), std::nullopt);
}

TEST(FindTalk, WhatIsNarrowAndDenseIsMusic) {
    EXPECT_EQ(FindTalk(Heard({Music, {80, -3, false}, Music}), Change, Everywhere), std::nullopt);
}

TEST(FindTalk, WhatIsWideAndInterruptedIsMusic) {
    EXPECT_EQ(FindTalk(Heard({Music, {80, -1, true}, Music}), Change, Everywhere), std::nullopt);
}

TEST(FindTalk, AStationInMonoHasNoneThatCouldBeFound) {
    const Piece mono{300, -3, false};
    EXPECT_EQ(FindTalk(Heard({mono, Speech, mono}), Change, Everywhere), std::nullopt);
    EXPECT_EQ(FindTalk(Heard({Music, Speech, mono}), Change, Everywhere), std::nullopt);
}

TEST(FindTalk, AWordIsNoTalk) {
    EXPECT_EQ(FindTalk(Heard({Music, {28, -3, true}, Music}), Change, Everywhere), std::nullopt);
}

TEST(FindTalk, BothEndsHaveToBeWithinReach) {
    const FeatureHistory history = Heard({Music, Speech, Music});
    EXPECT_EQ(FindTalk(history, Change, {-101, -19}), (EdgeRange{-100, -20}));
    EXPECT_EQ(FindTalk(history, Change, {-99, 60}), std::nullopt);
    EXPECT_EQ(FindTalk(history, Change, {-170, -21}), std::nullopt);
}

}  // namespace
}  // namespace Corvetape::Test
