#include "audio/cut_evidence.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <numbers>

namespace Corvetape::Test {
namespace {

constexpr int64_t Change = 400;
constexpr float Bonus = 0.56F;                 // of a hard join
constexpr double Shifts = 23.8 + 26.6 + 27.4;  // weights of a shift that is the same near and far

/// A history of made-up slots, numbered from 0, whose textures are given by their distance to the change.
FeatureHistory HistoryOf(int32_t slots, const std::function<SlotFeatures(int32_t)>& make) {
    FeatureHistory history(static_cast<size_t>(slots));
    for (int32_t slot = 0; slot < slots; ++slot) {
        history.Add(make(slot - static_cast<int32_t>(Change)));
    }
    return history;
}

SlotFeatures WithSound(size_t coefficient, float value) {
    SlotFeatures features;
    features.Sound[coefficient] = value;
    return features;
}

struct Best {
    size_t Fade = 0;
    int32_t Edge = 0;
};

Best BestOf(const EdgeTable& table) {
    Best best;
    float score = NoEvidence;
    for (size_t fade = 0; fade < FadeCount; ++fade) {
        for (size_t i = 0; i < EdgeCount; ++i) {
            if (table[fade][i] <= score) continue;
            score = table[fade][i];
            best = {fade, EdgeAt(i)};
        }
    }
    return best;
}

TEST(CutEvidence, AStepOfTheMeanCountsForTheSpreadThatIsLeast) {
    constexpr int32_t join = -40;
    for (const size_t coefficient : {size_t{0}, size_t{5}, size_t{13}}) {
        const FeatureHistory history =
            HistoryOf(700, [&](int32_t slot) { return WithSound(coefficient, slot < join ? 1.0F : 3.0F); });
        CutEvidence evidence;
        const EdgeTable& table = evidence.Score(history, Change);
        const double shift = std::log(1 + 2.0 * 2.0 / 0.08 / 4) / 14;
        EXPECT_NEAR(table[0][IndexOfEdge(join)], Shifts * shift + Bonus, 1e-3);
        EXPECT_EQ(BestOf(table).Edge, join);
    }
}

TEST(CutEvidence, AStepIsMeasuredByTheSpreadOfBothSides) {
    constexpr int32_t join = 0;
    // Up and down by 0.5 from slot to slot: a variance of 0.25 on both sides.
    const FeatureHistory history = HistoryOf(700, [&](int32_t slot) {
        return WithSound(2, (slot < join ? 1.0F : 3.0F) + (slot % 2 == 0 ? 0.5F : -0.5F));
    });
    CutEvidence evidence;
    const double shift = std::log(1 + 2.0 * 2.0 / (0.25 + 0.08) / 4) / 14;
    EXPECT_NEAR(evidence.Score(history, Change)[0][IndexOfEdge(join)], Shifts * shift + Bonus, 1e-2);
}

TEST(CutEvidence, CoefficientsThatGoTogetherCountOnce) {
    const FeatureHistory history = HistoryOf(700, [&](int32_t slot) {
        SlotFeatures features = WithSound(3, (slot < 0 ? 1.0F : 3.0F) + (slot % 2 == 0 ? 0.5F : -0.5F));
        features.Sound[4] = features.Sound[3];
        return features;
    });
    CutEvidence evidence;
    // The matrix is 0.25 everywhere and 0.08 more on the diagonal; along (1, 1) it is 0.58.
    const double shift = std::log(1 + 2 * 2.0 * 2.0 / 0.58 / 4) / 14;
    EXPECT_NEAR(evidence.Score(history, Change)[0][IndexOfEdge(0)], Shifts * shift + Bonus, 1e-2);
}

TEST(CutEvidence, NothingThatChangesIsNoEvidenceAndTheFluxIsWhatIsLeft) {
    const FeatureHistory history = HistoryOf(700, [](int32_t slot) {
        SlotFeatures features;
        features.Flux = slot == 20 ? 2.0F : 0.0F;
        return features;
    });
    CutEvidence evidence;
    const EdgeTable& table = evidence.Score(history, Change);
    EXPECT_NEAR(table[0][IndexOfEdge(-100)], Bonus, 1e-3);
    EXPECT_NEAR(table[0][IndexOfEdge(20)], Bonus + 0.46 * 2 + 0.77 * std::log(2.03 / 0.03), 1e-3);
    for (size_t fade = 1; fade < FadeCount; ++fade) {
        EXPECT_NEAR(table[fade][0], -0.0075 * FadeSlots[fade], 1e-2) << fade;
    }
}

TEST(CutEvidence, AnOnsetCountsForAsMuchAsItIsStrongerThanThoseBesideIt) {
    // Beats of 1 in every fifth slot. The one that is looked at is 2.
    const FeatureHistory history = HistoryOf(700, [](int32_t slot) {
        SlotFeatures features;
        features.Flux = slot == -50 ? 2.0F : slot % 5 == 0 ? 1.0F : 0.1F;
        return features;
    });
    CutEvidence evidence;
    const EdgeTable& table = evidence.Score(history, Change);
    EXPECT_NEAR(table[0][IndexOfEdge(-50)], Bonus + 0.46 * 2 + 0.77 * std::log(2.03 / 1.03), 1e-3);
    EXPECT_NEAR(table[0][IndexOfEdge(-150)], Bonus + 0.46 * 1, 1e-3);
    EXPECT_NEAR(table[0][IndexOfEdge(-151)], Bonus + 0.46 * 0.1 + 0.77 * std::log(0.13 / 1.03), 1e-3);
}

/// Slots that fade with equal power from one spectrum to another: the middle of the fade is at `middle`.
FeatureHistory FadeOf(int32_t middle, int32_t fade) {
    return HistoryOf(700, [=](int32_t slot) {
        const double share = (slot + 0.5 - (middle - fade / 2.0)) / fade;
        const double angle = std::clamp(share, 0.0, 1.0) * std::numbers::pi / 2;
        SlotFeatures features;
        for (size_t band = 0; band < MelBands; ++band) {
            const double oldPower = band < 16 ? 1000 : 1;
            const double newPower = band % 4 == 0 ? 3000 : 3;
            const double beat = 0.1 * ((slot % 7 + slot % 3) % 4);  // so that there is some spread
            const double power =
                std::pow(std::cos(angle), 2) * oldPower + std::pow(std::sin(angle), 2) * newPower;
            features.Mel[band] = static_cast<float>(std::log10(power) + (band % 2 == 0 ? beat : -beat));
            for (size_t i = 0; i < MelCoefficients; ++i) {
                features.Sound[i] += features.Mel[band] * ShapeOfMel()[band][i];
            }
        }
        return features;
    });
}

TEST(CutEvidence, AFadeIsFoundWithItsMiddleAndItsLength) {
    for (size_t fade = 1; fade < FadeCount; ++fade) {
        const FeatureHistory history = FadeOf(-50, FadeSlots[fade]);
        CutEvidence evidence;
        const Best best = BestOf(evidence.Score(history, Change));
        EXPECT_EQ(best.Fade, fade);
        EXPECT_NEAR(best.Edge, -50, 2) << fade;
    }
}

TEST(CutEvidence, AnEdgeNeedsSlotsOnBothSides) {
    // 300 slots before the change, 30 after it.
    FeatureHistory history(330);
    history.Restart(Change - 300);
    for (int32_t slot = -300; slot < 30; ++slot) history.Add(WithSound(0, slot < 20 ? 1.0F : 3.0F));
    CutEvidence evidence;
    const EdgeTable& table = evidence.Score(history, Change);
    EXPECT_EQ(table[0][IndexOfEdge(30)], NoEvidence);
    EXPECT_EQ(table[0][IndexOfEdge(LastEdge)], NoEvidence);
    EXPECT_EQ(table[1][IndexOfEdge(20)], NoEvidence);
    // Less than a second of the new song says nothing about it.
    EXPECT_NEAR(table[0][IndexOfEdge(20)], Bonus, 1e-3);
    EXPECT_GT(table[0][IndexOfEdge(10)], Bonus);
}

TEST(CutEvidence, WithoutAnySlotThereIsNoEdge) {
    const FeatureHistory history(10);
    CutEvidence evidence;
    for (const EdgeRow& row : evidence.Score(history, Change)) {
        for (const float score : row) EXPECT_EQ(score, NoEvidence);
    }
}

TEST(CutEvidence, WhatIsTenSecondsAfterTheChangeIsNotAskedFor) {
    const auto scores = [](int32_t slots) {
        const FeatureHistory history = HistoryOf(slots, [](int32_t slot) {
            return WithSound(0, slot < 50 ? 1.0F : slot < SlotsAfterChange ? 2.0F : 9.0F);
        });
        CutEvidence evidence;
        return evidence.Score(history, Change);
    };
    EXPECT_EQ(scores(static_cast<int32_t>(Change) + SlotsAfterChange), scores(1000));
}

}  // namespace
}  // namespace Corvetape::Test
