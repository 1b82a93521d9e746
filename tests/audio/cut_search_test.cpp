#include "audio/cut_search.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "platform/virtual/sim_random.h"

namespace Corvetape::Test {

namespace {

using Levels = std::vector<int32_t>;

std::optional<QuietStretch> Find(const Levels& levels, size_t start, size_t end) {
    return FindQuietStretch(levels, start, end);
}

/// The search in its plain words: one walk back for the quietest slot, one forward and one back to it.
std::optional<QuietStretch> PlainFind(const Levels& levels, size_t start, size_t end) {
    const size_t size = levels.size();
    int32_t lowest = 32767;
    std::optional<size_t> quietest;
    for (size_t slot = end;; slot = (slot + size - 1) % size) {
        if (levels[slot] < lowest) {
            lowest = levels[slot];
            quietest = slot;
        }
        if (slot == start) break;
    }
    if (!quietest) return std::nullopt;
    const int32_t limit = std::max((lowest * 12 + 5) / 10, 164);
    size_t oldEnd = size;  // size: not set
    for (size_t slot = start;; slot = (slot + 1) % size) {
        if (levels[slot] > limit) {
            oldEnd = size;
        } else if (oldEnd == size) {
            oldEnd = slot;
        }
        if (slot == *quietest) break;
    }
    size_t newStart = size;
    for (size_t slot = end;; slot = (slot + size - 1) % size) {
        if (levels[slot] > limit) {
            newStart = size;
        } else if (newStart == size) {
            newStart = slot;
        }
        if (slot == *quietest) break;
    }
    return QuietStretch{oldEnd, newStart};
}

}  // namespace

TEST(QuietLimit, Is1Point2TimesTheLowestLevelRoundedAndAtLeast164) {
    EXPECT_EQ(QuietLimit(0), 164);
    EXPECT_EQ(QuietLimit(136), 164);
    EXPECT_EQ(QuietLimit(137), 164);
    EXPECT_EQ(QuietLimit(138), 166);
    EXPECT_EQ(QuietLimit(1000), 1200);
    EXPECT_EQ(QuietLimit(1002), 1202);
    EXPECT_EQ(QuietLimit(1003), 1204);
    EXPECT_EQ(QuietLimit(32766), 39319);
}

TEST(FindQuietStretch, FindsTheStretchRoundTheQuietestSlot) {
    const Levels levels = {9000, 9000, 150, 20, 160, 9000, 9000, 9000};
    EXPECT_EQ(Find(levels, 0, 7), (QuietStretch{2, 4}));
}

TEST(FindQuietStretch, ALevelEqualToTheLimitBelongsToTheStretch) {
    const Levels levels = {9000, 1201, 1200, 1000, 1200, 1201, 9000};
    EXPECT_EQ(Find(levels, 0, 6), (QuietStretch{2, 4}));
}

TEST(FindQuietStretch, OfEqualMinimaTheOneNearestToTheEndWins) {
    const Levels levels = {9000, 50, 9000, 50, 9000};
    EXPECT_EQ(Find(levels, 0, 4), (QuietStretch{3, 3}));
}

TEST(FindQuietStretch, TheQuietestSlotAloneIsEnough) {
    const Levels levels = {9000, 8000, 5000, 8000, 9000};
    EXPECT_EQ(Find(levels, 0, 4), (QuietStretch{2, 2}));
}

TEST(FindQuietStretch, BothEndsOfTheWindowBelongToIt) {
    const Levels levels = {10, 9000, 9000, 9000, 20};
    EXPECT_EQ(Find(levels, 0, 4), (QuietStretch{0, 0}));
    EXPECT_EQ(Find(levels, 1, 4), (QuietStretch{4, 4}));
    EXPECT_EQ(Find(levels, 1, 3), (QuietStretch{1, 3})) << "slots of one level are one stretch";
}

TEST(FindQuietStretch, TheStretchEndsAtTheWindow) {
    const Levels levels = {0, 0, 0, 0, 0, 0};
    EXPECT_EQ(Find(levels, 1, 4), (QuietStretch{1, 4}));
}

TEST(FindQuietStretch, TheWindowMayPassTheEndOfTheRing) {
    const Levels levels = {30, 9000, 9000, 9000, 9000, 40};
    EXPECT_EQ(Find(levels, 4, 1), (QuietStretch{5, 0}));
}

TEST(FindQuietStretch, AWindowOfOneSlotIsThatSlot) {
    const Levels levels = {9000, 32766, 9000};
    EXPECT_EQ(Find(levels, 1, 1), (QuietStretch{1, 1}));
}

TEST(FindQuietStretch, FullScaleIsNeverTakenForAPause) {
    EXPECT_EQ(Find({32767, 32768, 32767}, 0, 2), std::nullopt);
    EXPECT_EQ(Find({32767, 32766, 32768}, 0, 2), (QuietStretch{0, 2}))
        << "beside a slot just below it, the limit takes it in";
}

TEST(FindQuietStretch, ARingWithoutTheSlotsHasNoStretch) {
    EXPECT_EQ(Find({}, 0, 0), std::nullopt);
    EXPECT_EQ(Find({1, 2}, 2, 0), std::nullopt);
    EXPECT_EQ(Find({1, 2}, 0, 2), std::nullopt);
}

TEST(FindQuietStretch, AgreesWithThePlainWalksOnRandomLevels) {
    for (uint64_t seed = 1; seed <= 3000; ++seed) {
        SimRandom random(seed);
        Levels levels(static_cast<size_t>(random.Between(int64_t{1}, int64_t{40})));
        const int64_t highest = random.Pick(std::vector<int64_t>{3, 200, 400, 32768});
        for (int32_t& level : levels) level = static_cast<int32_t>(random.Between(int64_t{0}, highest));
        const size_t start = random.Below(levels.size());
        const size_t end = random.Below(levels.size());
        ASSERT_EQ(Find(levels, start, end), PlainFind(levels, start, end)) << "seed " << seed;
    }
}

TEST(SlotsOf, CountsWholeBuffersOfFiftyMilliseconds) {
    EXPECT_EQ(SlotsOf(3000), 60);
    EXPECT_EQ(SlotsOf(3049), 60);
    EXPECT_EQ(SlotsOf(49), 0);
    EXPECT_EQ(SlotsOf(-3000), 0);
}

TEST(ReachOf, NothingThatIsWrittenAlreadyCanBeCut) {
    EXPECT_EQ(ReachOf({60, 60}, 10, 100), (CutReach{10, 60}));
    EXPECT_EQ(ReachOf({60, 60}, 60, 100), (CutReach{60, 60}));
    EXPECT_EQ(ReachOf({60, 60}, 0, 100), (CutReach{0, 60}));
    EXPECT_EQ(ReachOf({60, 60}, 200, 100), (CutReach{60, 60}));
}

TEST(ReachOf, TheWindowEndsAtTheNewestSlot) {
    EXPECT_EQ(ReachOf({60, 60}, 100, 61), (CutReach{60, 60}));
    EXPECT_EQ(ReachOf({60, 60}, 100, 60), (CutReach{60, 59}));
    EXPECT_EQ(ReachOf({60, 60}, 100, 0), (CutReach{60, -1}));
}

}  // namespace Corvetape::Test
