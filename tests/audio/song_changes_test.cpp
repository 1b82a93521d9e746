#include "audio/song_changes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <vector>

#include "platform/virtual/sim_random.h"

namespace Corvetape::Test {
namespace {

/// A song that is made up slot by slot: its mean texture, and an onset in every so many slots.
struct MadeSong {
    float Sound = 0;
    int64_t Beat = 8;
};

/// Slots of noise round a song's mean, louder in every second part of 20 s.
SlotFeatures SlotOf(const MadeSong& song, int64_t slot, SimRandom& random) {
    SlotFeatures features;
    for (float& value : features.Sound) value = song.Sound + static_cast<float>(random.Between(-0.5, 0.5));
    features.Sound[0] += slot / 400 % 2 == 0 ? 0.0F : 2.0F;
    features.Flux = slot % song.Beat == 0 ? 0.6F : 0.1F;
    return features;
}

/// All places that are weighed in songs of so many slots each, numbered from `begin`.
std::vector<SongChange> Weighed(const std::vector<MadeSong>& songs, int64_t slots, int64_t begin = 0) {
    SimRandom random(3);
    SongChanges changes;
    changes.Restart(begin);
    std::vector<SongChange> found;
    for (const MadeSong& song : songs) {
        for (int64_t slot = 0; slot < slots; ++slot) {
            const auto change = changes.Add(SlotOf(song, changes.End(), random));
            if (!change) continue;
            EXPECT_EQ(change->Slot, changes.End() - SongChanges::SlotsAfter) << "as soon as it can be known";
            found.push_back(*change);
        }
    }
    return found;
}

std::vector<int64_t> Found(const std::vector<SongChange>& changes) {
    std::vector<int64_t> slots;
    for (const SongChange& change : changes) {
        if (change.Evidence >= SongChanges::LeastEvidence) slots.push_back(change.Slot);
    }
    return slots;
}

TEST(SongChanges, ASongOfAnotherSoundAndRhythmIsFoundToTheSlot) {
    for (const int64_t begin : {int64_t{0}, int64_t{5000}}) {
        EXPECT_EQ(Found(Weighed({{0, 8}, {1, 11}}, 2000, begin)), std::vector{begin + 2000}) << begin;
    }
}

TEST(SongChanges, ALouderPartOfASongIsNone) {
    const std::vector<SongChange> weighed = Weighed({{0, 8}, {0, 8}}, 2000);
    EXPECT_FALSE(weighed.empty()) << "it is weighed";
    EXPECT_TRUE(Found(weighed).empty());
}

TEST(SongChanges, ARhythmThatGoesOnSpeaksAgainstAnotherSong) {
    const std::vector<SongChange> same = Weighed({{0, 8}, {0.4F, 8}}, 2000);
    const std::vector<SongChange> other = Weighed({{0, 8}, {0.4F, 11}}, 2000);
    const auto evidenceAt = [](const std::vector<SongChange>& changes, int64_t slot) {
        float evidence = -100;
        for (const SongChange& change : changes) {
            if (std::abs(change.Slot - slot) <= 4) evidence = std::max(evidence, change.Evidence);
        }
        return evidence;
    };
    EXPECT_GT(evidenceAt(other, 2000), evidenceAt(same, 2000) + 2);
}

TEST(SongChanges, NothingIsFoundInTheFirstSecondsNorAcrossANewBeginning) {
    EXPECT_TRUE(Found(Weighed({{0, 8}, {1, 11}}, 390)).empty());
    SimRandom random(3);
    SongChanges changes;
    for (const float sound : {0.0F, 1.0F}) {
        changes.Restart(sound > 0 ? 3000 : 0);
        for (int64_t slot = 0; slot < 2000; ++slot) {
            const auto change = changes.Add(SlotOf({sound, 8}, changes.End(), random));
            EXPECT_LT(change ? change->Evidence : 0, SongChanges::LeastEvidence);
        }
    }
}

}  // namespace
}  // namespace Corvetape::Test
