#include "audio/cut_prior.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

#include "platform/virtual/sim_random.h"

namespace Corvetape::Test {
namespace {

EdgeTable Flat(float score) {
    EdgeTable table;
    for (EdgeRow& row : table) row.fill(score);
    return table;
}

double SumOf(const EdgeTable& table) {
    double sum = 0;
    for (const EdgeRow& row : table) {
        for (const float value : row) sum += value;
    }
    return sum;
}

/// How much is expected from `first` to `last`, for all joins together.
double Expected(const CutPrior& prior, int32_t first, int32_t last) {
    double sum = 0;
    for (const EdgeRow& row : prior.Expected()) {
        for (int32_t edge = first; edge <= last; ++edge) sum += row[IndexOfEdge(edge)];
    }
    return sum;
}

/// How much is expected of one length of fade.
double OfKind(const CutPrior& prior, size_t fade) {
    const EdgeRow& row = prior.Expected()[fade];
    return std::accumulate(row.begin(), row.end(), 0.0);
}

/// One join heard clearly.
EdgeTable JoinAt(int32_t edge, size_t fade) {
    EdgeTable table = Flat(0);
    table[fade][IndexOfEdge(edge)] = 12;
    return table;
}

EdgeTable HardJoinAt(int32_t edge) {
    return JoinAt(edge, 0);
}

/// What is heard round a change that comes 3 s late, give or take the jitter, with a place in the music that
/// sounds more like a boundary than the boundary.
EdgeTable MisleadingSong(SimRandom& random) {
    EdgeTable table = Flat(0);
    const auto truth = static_cast<int32_t>(random.Between(int64_t{-68}, int64_t{-52}));
    const auto other = static_cast<int32_t>(random.Between(int64_t{FirstEdge}, int64_t{LastEdge}));
    table[0][IndexOfEdge(truth)] = 10;
    table[0][IndexOfEdge(other)] = 11;
    return table;
}

TEST(ProbabilitiesOf, ScoresAreLogarithmsAndOneThatIsImpossibleHasNone) {
    EdgeTable scores = Flat(-std::numeric_limits<float>::infinity());
    EXPECT_EQ(SumOf(ProbabilitiesOf(scores)), 0);
    scores[0][3] = 500;
    scores[2][7] = 500 + std::log(3.0F);
    const EdgeTable chances = ProbabilitiesOf(scores);
    EXPECT_NEAR(chances[0][3], 0.25, 1e-4);
    EXPECT_NEAR(chances[2][7], 0.75, 1e-4);
    EXPECT_NEAR(SumOf(chances), 1, 1e-6);
}

TEST(CutPrior, OfANewSourceExpectsAllPlacesAndJoinsAlike) {
    const CutPrior prior;
    EXPECT_NEAR(SumOf(prior.Expected()), 1, 1e-5);
    // The middle of a long fade is after the beginning of its song, so that fewer of them are among the
    // first.
    for (size_t fade = 0; fade < FadeCount; ++fade) EXPECT_NEAR(OfKind(prior, fade), 1.0 / 6, 0.03) << fade;
    EXPECT_NEAR(Expected(prior, -100, -81), 20.0 / EdgeCount, 0.01);
    EXPECT_NEAR(Expected(prior, 0, 19), 20.0 / EdgeCount, 0.01);
    EXPECT_LT(prior.LikelyEdges().First, FirstEdge + 10);
    EXPECT_GT(prior.LikelyEdges().Last, LastEdge - 10);
    EXPECT_EQ(prior.Songs(), 0U);
}

TEST(CutPrior, ASongThatSaysNothingTeachesNothingOfTheDelay) {
    CutPrior prior;
    prior.Learn(Flat(3));
    EXPECT_NEAR(Expected(prior, -100, -81), 20.0 / EdgeCount, 0.02);
    EXPECT_EQ(prior.Songs(), 1U);
    const EdgeTable before = prior.Expected();
    prior.Learn(Flat(-std::numeric_limits<float>::infinity()));
    EXPECT_EQ(prior.Expected(), before);
    EXPECT_EQ(prior.Songs(), 1U);
}

TEST(CutPrior, LearnsAConstantDelayWithinFiveSongs) {
    for (uint64_t seed = 1; seed <= 10; ++seed) {
        SimRandom random(seed);
        CutPrior prior;
        for (int song = 0; song < 5; ++song) prior.Learn(MisleadingSong(random));
        EXPECT_GT(Expected(prior, -85, -30), 0.75) << "seed " << seed;
        EXPECT_NEAR(SumOf(prior.Expected()), 1, 1e-5);
    }
}

TEST(CutPrior, FollowsADelayThatChanges) {
    CutPrior prior;
    for (int song = 0; song < 30; ++song) prior.Learn(HardJoinAt(-100));
    EXPECT_GT(Expected(prior, -115, -85), 0.9);
    for (int song = 0; song < 5; ++song) prior.Learn(HardJoinAt(10));
    EXPECT_GT(Expected(prior, -5, 25), 0.8);
}

TEST(CutPrior, NeverRulesAnythingOut) {
    CutPrior prior;
    for (int song = 0; song < 300; ++song) prior.Learn(HardJoinAt(-100));
    for (const EdgeRow& row : prior.Expected()) EXPECT_GT(*std::ranges::min_element(row), 5e-6);
}

TEST(CutPrior, LearnsWhichJoinsASourceHasAndTheDelayForAllOfThem) {
    CutPrior prior;
    for (int song = 0; song < 10; ++song) prior.Learn(HardJoinAt(-30));
    const auto expected = [&](size_t fade) {
        double sum = 0;
        for (int32_t edge = -45; edge <= -15; ++edge) sum += prior.Expected()[fade][IndexOfEdge(edge)];
        return sum;
    };
    EXPECT_GT(expected(0), 5 * expected(3));
    EXPECT_GT(expected(3), 0.02);  // 31 of 231 edges would be 0.022 of an even sixth
}

TEST(CutPrior, KnowsTheDelayOfAJoinOfAnotherKindFromAllOthers) {
    CutPrior prior;
    for (int song = 0; song < 12; ++song) prior.Learn(JoinAt(-30, song % 2 == 0 ? 0 : 1));
    // A fade of 2 s has not been heard yet. Its middle is where the others are, or half of it later.
    const EdgeRow& row = prior.Expected()[2];
    const double near = std::accumulate(row.begin() + IndexOfEdge(-45), row.begin() + IndexOfEdge(10), 0.0);
    EXPECT_GT(near, 0.8 * OfKind(prior, 2));
}

TEST(CutPrior, LearnsThatTitlesMeanTheBeginningOfTheNewSong) {
    CutPrior begins;
    CutPrior middles;
    for (int song = 0; song < 12; ++song) {
        const size_t fade = song % 2 == 0 ? 0 : 5;
        begins.Learn(JoinAt(-80 + FadeSlots[fade] / 2, fade));
        middles.Learn(JoinAt(-80, fade));
    }
    const auto at = [](const CutPrior& prior, int32_t edge) {
        double sum = 0;
        for (int32_t each = edge - 15; each <= edge + 15; ++each)
            sum += prior.Expected()[5][IndexOfEdge(each)];
        return sum;
    };
    EXPECT_GT(at(begins, -20), 10 * at(begins, -80));
    EXPECT_GT(at(middles, -80), 10 * at(middles, -20));
}

TEST(CutPrior, LearnsHowMuchTheTitlesJitter) {
    const auto spread = [](int32_t most) {
        CutPrior prior;
        SimRandom random(5);
        for (int song = 0; song < 40; ++song) {
            prior.Learn(
                HardJoinAt(static_cast<int32_t>(random.Between(int64_t{-60} - most, int64_t{-60} + most))));
        }
        return Expected(prior, -80, -72) + Expected(prior, -48, -40);
    };
    EXPECT_GT(spread(20), 4 * spread(5));
}

TEST(CutPrior, AStationMayChangeHowItsSongsFollow) {
    CutPrior prior;
    for (int song = 0; song < 300; ++song) prior.Learn(HardJoinAt(-30));
    for (int song = 0; song < 50; ++song) prior.Learn(JoinAt(-30, 3));
    EXPECT_GT(OfKind(prior, 3), OfKind(prior, 0));
}

TEST(CutPrior, AWiderJitterIsExpectedWider) {
    CutPrior narrow(4);
    CutPrior wide(40);
    for (int song = 0; song < 10; ++song) {
        narrow.LearnGap({-60, -60});
        wide.LearnGap({-60, -60});
    }
    const auto width = [](const CutPrior& prior) {
        return prior.LikelyEdges().Last - prior.LikelyEdges().First;
    };
    EXPECT_GT(Expected(narrow, -66, -54), 0.5);
    EXPECT_LT(Expected(wide, -66, -54), 0.3);
    EXPECT_GT(width(wide), 60);
    CutPrior(-5).LearnGap({0, 0});  // taken as 1
    CutPrior(1 << 30).LearnGap({0, 0});
}

TEST(CutPrior, AGapSaysWhenAndNotHow) {
    CutPrior prior;
    for (int song = 0; song < 5; ++song) prior.LearnGap({-50, -40});
    const EdgeRow& hard = prior.Expected()[0];
    const double near =
        std::accumulate(hard.begin() + IndexOfEdge(-70), hard.begin() + IndexOfEdge(-20), 0.0);
    EXPECT_GT(near, 0.9 * OfKind(prior, 0));
    for (size_t fade = 0; fade < FadeCount; ++fade) EXPECT_NEAR(OfKind(prior, fade), 1.0 / 6, 0.01) << fade;
}

TEST(CutPrior, AGapOutsideTheEdgesTeachesNothing) {
    CutPrior prior;
    const EdgeTable before = prior.Expected();
    prior.LearnGap({LastEdge + 1, LastEdge + 100});
    prior.LearnGap({FirstEdge - 100, FirstEdge - 1});
    prior.LearnGap({10, 5});
    prior.LearnCorrection(FirstEdge - 1);
    EXPECT_EQ(prior.Expected(), before);
    EXPECT_EQ(prior.Songs(), 0U);
    prior.LearnGap({-10'000, 10'000});
    EXPECT_EQ(prior.Songs(), 1U);
}

TEST(CutPrior, ACorrectionCountsAsTenSongs) {
    CutPrior corrected;
    corrected.LearnCorrection(-20);
    CutPrior heard;
    for (int song = 0; song < 10; ++song) heard.LearnGap({-20, -20});
    EXPECT_EQ(corrected.Expected(), heard.Expected());
    EXPECT_EQ(corrected.Songs(), 10U);
    // It stands against some songs that were cut in the wrong place.
    CutPrior wrong;
    for (int song = 0; song < 8; ++song) wrong.Learn(HardJoinAt(-100));
    wrong.LearnCorrection(-20);
    EXPECT_GT(Expected(wrong, -35, -5), 0.75);
}

class CutPriorText : public ::testing::Test {
 protected:
    CutPriorText() {
        SimRandom random(3);
        for (int song = 0; song < 12; ++song) Prior.Learn(MisleadingSong(random));
        Text = Prior.Text();
    }

    static bool Reads(std::string_view text) { return CutPrior::FromText(text).has_value(); }

    std::string With(std::string_view from, std::string_view to) const {
        std::string text = Text;
        const size_t at = text.find(from);
        EXPECT_NE(at, std::string::npos);
        return text.replace(at, from.size(), to);
    }

    CutPrior Prior;
    std::string Text;
};

TEST_F(CutPriorText, IsReadAsItWasWritten) {
    const auto read = CutPrior::FromText(Text);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->Text(), Text);
    EXPECT_EQ(read->Songs(), 12U);
    for (size_t fade = 0; fade < FadeCount; ++fade) {
        for (size_t i = 0; i < EdgeCount; ++i) {
            EXPECT_NEAR(read->Expected()[fade][i], Prior.Expected()[fade][i], 1e-6);
        }
    }
    EXPECT_EQ(CutPrior::FromText(CutPrior().Text())->Text(), CutPrior().Text());
}

TEST_F(CutPriorText, GoesOnLearningWhereItStood) {
    auto read = CutPrior::FromText(Text);
    ASSERT_TRUE(read);
    read->Learn(HardJoinAt(-10));
    Prior.Learn(HardJoinAt(-10));
    EXPECT_NEAR(Expected(*read, -25, 5), Expected(Prior, -25, 5), 1e-4);
}

TEST_F(CutPriorText, IsRefusedWhereItIsCutOff) {
    for (size_t length = 0; length + 1 < Text.size(); length += 7) {
        // What is left of a last number may be less by no more than the rounding allows for.
        const bool inLastNumber = Text.find(' ', length) == std::string::npos;
        if (inLastNumber) continue;
        EXPECT_FALSE(Reads(Text.substr(0, length))) << length;
    }
    EXPECT_FALSE(Reads(Text + "1"));
    EXPECT_FALSE(Reads(Text + "\n"));
}

TEST_F(CutPriorText, IsRefusedOfAnotherVersionOrSize) {
    EXPECT_TRUE(Reads(With("cut-prior 2 6 231 12\n", "cut-prior 2 6 231 13\n")));
    EXPECT_FALSE(Reads(With("cut-prior 2 ", "cut-prior 1 ")));
    EXPECT_FALSE(Reads(With("cut-prior 2 ", "cut-posterior 2 ")));
    EXPECT_FALSE(Reads(With(" 6 231 ", " 5 231 ")));
    EXPECT_FALSE(Reads(With(" 6 231 ", " 6 230 ")));
    EXPECT_FALSE(Reads(With(" 6 231 12\n", " 6 231 -1\n")));
    EXPECT_FALSE(Reads(With(" 6 231 12\n", " 6 231 99999999999999999999999\n")));
}

TEST_F(CutPriorText, IsRefusedWithANumberThatCannotBe) {
    const size_t kinds = Text.find('\n') + 1;
    for (const size_t begin : {kinds, Text.find('\n', kinds) + 1}) {
        const size_t end = Text.find(' ', begin);
        for (const std::string_view bad :
             {"0", "-5", "1e9", "nan", "", "1000000001", "99999999999999999999", "500000000"}) {
            std::string text = Text;
            text.replace(begin, end - begin, bad);
            EXPECT_FALSE(Reads(text)) << bad << " at " << begin;
        }
    }
}

TEST_F(CutPriorText, OfAnyBytesGivesProbabilitiesOrNothing) {
    SimRandom random(11);
    int readable = 0;
    for (int round = 0; round < 200; ++round) {
        std::string text = Text;
        for (uint64_t change = 0; change < 1 + random.Below(4); ++change) {
            text[random.Below(text.size())] = static_cast<char>(random.Below(256));
        }
        const auto read = CutPrior::FromText(text);
        if (!read) continue;
        ++readable;
        EXPECT_NEAR(SumOf(read->Expected()), 1, 1e-4) << "round " << round;
    }
    EXPECT_LT(readable, 70);
}

}  // namespace
}  // namespace Corvetape::Test
