#include "audio/evidence_cut.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "audio/made_songs.h"

namespace Corvetape::Test {
namespace {

constexpr int32_t Change = 400;  // slot of the title change; 20 s
constexpr CutReach AllOfIt = {170, 199};
const MadeSong Dark = {1, 0.9, 0.1, 0.4};
const MadeSong Bright = {2, 0.2, 0.6, 0.3};

/// A join with its ring of levels, all loud, and the question that belongs to it.
class Radio {
 public:
    explicit Radio(const MadeJoin& join) : History(FeaturesOf(FramesOf(join), join.FramesPerSecond)) {}

    CutQuestion Question(CutReach reach = AllOfIt) const { return {History, Change, Levels, Offset, reach}; }

    /// Sets the levels of slots counted from the change.
    void SetLevels(int32_t first, int32_t last, int32_t level) {
        for (int32_t slot = first; slot <= last; ++slot) LevelAt(slot) = level;
    }

    int32_t& LevelAt(int32_t slot) {
        const auto size = static_cast<int32_t>(Levels.size());
        return Levels[static_cast<size_t>((static_cast<int32_t>(Offset) + slot + size) % size)];
    }

    FeatureHistory History;
    std::vector<int32_t> Levels = std::vector<int32_t>(500, 8000);
    size_t Offset = 60;  ///< so that the search passes the ring's end
};

MadeJoin JoinAt(double secondsFromChange, double fade, uint32_t framesPerSecond) {
    return {Dark, Bright, Change * 0.05 + secondsFromChange, fade, 35, framesPerSecond};
}

class EvidenceCutAt : public ::testing::TestWithParam<uint32_t> {};

INSTANTIATE_TEST_SUITE_P(Rates, EvidenceCutAt, ::testing::Values(44100U, 48000U));

TEST_P(EvidenceCutAt, AHardJoinIsFoundToTheSlot) {
    for (const double at : {-7.5, -3.025, 1.25}) {
        const Radio radio(JoinAt(at, 0, GetParam()));
        EvidenceCutter cutter;
        const auto cut = cutter.Decide(radio.Question(), CutPrior());
        ASSERT_TRUE(cut);
        EXPECT_NEAR(cut->OldEnd * 0.05, at, 0.051);
        EXPECT_EQ(cut->NewBegin, cut->OldEnd);
        EXPECT_FALSE(cut->IsGap());
        EXPECT_EQ(cut->FadeSlots, 0);
        EXPECT_GT(cut->Confidence, 0.7);  // of a source of which nothing is known yet
        EXPECT_LE(cut->Confidence, 1);
    }
}

TEST_P(EvidenceCutAt, AFadeIsCutNearItsMiddle) {
    for (const double at : {-6.0, -3.0, 1.0}) {
        MadeJoin join = JoinAt(at, 3, GetParam());
        join.Old = {1, 0.8, 0.3, 0.4};
        join.New = {2, 0.6, 0.5, 0.3};
        const Radio radio(join);
        EvidenceCutter cutter;
        const auto cut = cutter.Decide(radio.Question(), CutPrior());
        ASSERT_TRUE(cut);
        EXPECT_NEAR(cut->OldEnd * 0.05, at, 0.5);
        EXPECT_GT(cut->FadeSlots, 0);  // a hard join would be wrong; lengths sound much alike
    }
}

TEST_P(EvidenceCutAt, AJoinHasMoreEvidenceThanTheMiddleOfASong) {
    const Radio radio(JoinAt(-3, 0, GetParam()));
    MadeJoin song = JoinAt(-3, 0, GetParam());
    song.New = song.Old;
    const Radio same(song);
    EvidenceCutter cutter;
    const auto real = cutter.Decide(radio.Question(), CutPrior());
    const auto wrong = cutter.Decide(same.Question(), CutPrior());
    ASSERT_TRUE(real && wrong);
    EXPECT_GT(real->Evidence, wrong->Evidence + 3);
    EXPECT_LT(wrong->Confidence, 0.5);
}

/// Quiet slots, and what the search by titles makes of the same range.
void ExpectThePresentSearch(Radio& radio, const CutPrior& prior) {
    const EdgeRange range = prior.LikelyEdges();
    const auto size = radio.Levels.size();
    const auto slotOf = [&](int32_t slot) {
        return (radio.Offset + size + static_cast<size_t>(slot + static_cast<int32_t>(size))) % size;
    };
    const auto expected = FindQuietStretch(radio.Levels, slotOf(range.First), slotOf(range.Last));
    ASSERT_TRUE(expected);
    EvidenceCutter cutter;
    const auto cut = cutter.Decide(radio.Question(), prior);
    ASSERT_TRUE(cut);
    EXPECT_TRUE(cut->IsGap());
    EXPECT_EQ(slotOf(cut->OldEnd), expected->OldEnd);
    EXPECT_EQ(slotOf(cut->NewBegin - 1), expected->NewStart);
    EXPECT_EQ(cut->Confidence, 1);
    EXPECT_TRUE(std::isinf(cut->Evidence));
}

TEST(EvidenceCut, AGapIsFoundAsByThePresentSearch) {
    // The join that is heard is far away: a gap comes first.
    Radio radio(JoinAt(-3, 0, 44100));
    radio.SetLevels(-120, -118, 164);
    ExpectThePresentSearch(radio, CutPrior());
    radio.SetLevels(20, 41, 90);
    radio.LevelAt(30) = 3;
    ExpectThePresentSearch(radio, CutPrior());
}

TEST(EvidenceCut, AGapIsDecidedWithoutAnySoundAndNothingElseIs) {
    Radio radio(JoinAt(-3, 0, 44100));
    radio.History.Restart(0);
    EvidenceCutter cutter;
    CutPrior prior;
    EXPECT_FALSE(cutter.DecideGap(radio.Question(), prior));
    cutter.Teach(prior);
    EXPECT_EQ(prior.Songs(), 0U);
    radio.SetLevels(-120, -118, 164);
    const auto cut = cutter.DecideGap(radio.Question(), prior);
    ASSERT_TRUE(cut);
    EXPECT_TRUE(cut->IsGap());
    EXPECT_EQ(cut->OldEnd, -120);
    EXPECT_EQ(cut->NewBegin, -117);
    cutter.Teach(prior);
    EXPECT_EQ(prior.Songs(), 1U);
}

TEST(EvidenceCut, TwoQuietSlotsOrThreeThatAreALittleTooLoudAreNoGap) {
    Radio radio(JoinAt(-3, 0, 44100));
    radio.SetLevels(-120, -119, 10);
    EvidenceCutter cutter;
    EXPECT_FALSE(cutter.Decide(radio.Question(), CutPrior())->IsGap());
    radio.SetLevels(-120, -118, 160);
    radio.LevelAt(-119) = 165;
    const auto cut = cutter.Decide(radio.Question(), CutPrior());
    EXPECT_FALSE(cut->IsGap());
    EXPECT_NEAR(cut->OldEnd, -60, 1);
}

TEST(EvidenceCut, ARestFarFromWhereTheSourceChangesIsNoGap) {
    Radio radio(JoinAt(-3, 0, 44100));
    radio.SetLevels(-20, -10, 0);
    CutPrior prior;
    EvidenceCutter cutter;
    EXPECT_TRUE(cutter.Decide(radio.Question(), prior)->IsGap());
    prior.LearnCorrection(-60);
    const auto cut = cutter.Decide(radio.Question(), prior);
    EXPECT_FALSE(cut->IsGap());
    EXPECT_NEAR(cut->OldEnd, -60, 1);
}

TEST(EvidenceCut, WhatIsOutOfReachIsNeitherGapNorCut) {
    Radio radio(JoinAt(-3, 0, 44100));
    radio.SetLevels(-120, -110, 0);
    EvidenceCutter cutter;
    const auto cut = cutter.Decide(radio.Question({100, 199}), CutPrior());
    ASSERT_TRUE(cut);
    EXPECT_FALSE(cut->IsGap());
    EXPECT_NEAR(cut->OldEnd, -60, 1);
    EXPECT_GE(cutter.Decide(radio.Question({30, 199}), CutPrior())->OldEnd, -30);
    EXPECT_LE(cutter.Decide(radio.Question({170, -90}), CutPrior())->OldEnd, -90);
    EXPECT_FALSE(cutter.Decide(radio.Question({-10, 5}), CutPrior()));
}

TEST(EvidenceCut, WithoutSoundThereIsNoCut) {
    const FeatureHistory empty(100);
    const std::vector<int32_t> levels(500, 8000);
    EvidenceCutter cutter;
    EXPECT_FALSE(cutter.Decide({empty, Change, levels, 60, AllOfIt}, CutPrior()));
    EXPECT_FALSE(cutter.Decide({empty, Change, {}, 0, AllOfIt}, CutPrior()));
    CutPrior prior;
    cutter.Teach(prior);
    EXPECT_EQ(prior.Songs(), 0U);
}

TEST(EvidenceCut, ASourceLearnsFromWhatWasHeardAndFromGaps) {
    const Radio heard(JoinAt(-3, 0, 44100));
    Radio gap(JoinAt(-3, 0, 44100));
    gap.SetLevels(-65, -55, 0);
    for (const Radio* radio : {&heard, static_cast<const Radio*>(&gap)}) {
        EvidenceCutter cutter;
        CutPrior prior;
        for (int song = 0; song < 5; ++song) {
            cutter.Decide(radio->Question(), prior);
            cutter.Teach(prior);
        }
        EXPECT_EQ(prior.Songs(), 5U);
        EXPECT_GT(prior.LikelyEdges().First, -100);
        EXPECT_LT(prior.LikelyEdges().Last, -20);
    }
}

}  // namespace
}  // namespace Corvetape::Test
