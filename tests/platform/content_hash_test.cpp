#include "sim/content_hash.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "platform/virtual/sim_random.h"

namespace Corvetape {
namespace {

std::string RandomText(uint64_t seed, size_t length) {
    SimRandom random(seed);
    std::string text(length, ' ');
    for (char& letter : text) letter = static_cast<char>(random.Below(256));
    return text;
}

TEST(ContentHash, DoesNotDependOnThePortions) {
    const std::string text = RandomText(1, 5000);
    const uint64_t whole = HashOf(std::string_view(text));
    SimRandom random(2);
    for (int round = 0; round < 50; ++round) {
        ContentHash hash;
        for (size_t at = 0; at < text.size();) {
            const auto part = static_cast<size_t>(random.Below(100));
            hash.Add(std::string_view(text).substr(at, part));
            at += part;
        }
        EXPECT_EQ(hash.Value(), whole);
    }
}

TEST(ContentHash, ChangesWithEveryByteAndWithTheLength) {
    const std::string text = RandomText(3, 100);
    std::set<uint64_t> values = {HashOf(std::string_view(text))};
    for (size_t at = 0; at < text.size(); ++at) {
        std::string changed = text;
        changed[at] = static_cast<char>(changed[at] ^ 1);
        values.insert(HashOf(std::string_view(changed)));
        values.insert(HashOf(std::string_view(text).substr(0, at)));
    }
    values.insert(HashOf(std::string_view(text + '\0')));
    EXPECT_EQ(values.size(), 202U);
}

TEST(ContentHash, TellsTheOrderOfBlocksApart) {
    const std::string a = RandomText(4, 32);
    const std::string b = RandomText(5, 32);
    EXPECT_NE(HashOf(std::string_view(a + b)), HashOf(std::string_view(b + a)));
}

TEST(ContentHash, GoesOnAfterItsValueWasTaken) {
    ContentHash hash;
    hash.Add(std::string_view("abc"));
    EXPECT_EQ(hash.Value(), HashOf(std::string_view("abc")));
    hash.Add(std::string_view("def"));
    EXPECT_EQ(hash.Value(), HashOf(std::string_view("abcdef")));
}

TEST(SimRandom, StaysWithinItsLimitsAndMeetsBoth) {
    SimRandom random(1);
    std::set<int64_t> seen;
    for (int draw = 0; draw < 1000; ++draw) {
        seen.insert(random.Between(int64_t{-3}, int64_t{3}));
        const double unit = random.Unit();
        EXPECT_GE(unit, 0);
        EXPECT_LT(unit, 1);
    }
    EXPECT_EQ(seen, (std::set<int64_t>{-3, -2, -1, 0, 1, 2, 3}));
    EXPECT_EQ(random.Below(0), 0U);
}

TEST(SimRandom, IsDecidedByItsSeed) {
    SimRandom first(7);
    SimRandom second(7);
    SimRandom other(8);
    std::vector<uint64_t> a;
    std::vector<uint64_t> b;
    std::vector<uint64_t> c;
    for (int draw = 0; draw < 20; ++draw) {
        a.push_back(first.Next());
        b.push_back(second.Next());
        c.push_back(other.Next());
    }
    EXPECT_EQ(a, b);
    EXPECT_NE(a, c);
}

TEST(SimRandom, AChanceComesAboutAsOftenAsItSays) {
    SimRandom random(3);
    int hits = 0;
    for (int draw = 0; draw < 10000; ++draw) hits += random.Chance(0.3) ? 1 : 0;
    EXPECT_NEAR(hits, 3000, 150);
}

}  // namespace
}  // namespace Corvetape
