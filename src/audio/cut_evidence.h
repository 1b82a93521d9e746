#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "audio/cut_range.h"
#include "audio/slot_features.h"
#include "audio/texture_spread.h"

namespace Corvetape {

/// The score of an edge that cannot be cut at, because the sound on one side of it is not there.
inline constexpr float NoEvidence = -std::numeric_limits<float>::infinity();

/// Slots that a history must keep for a decision that is made up to two seconds later than it could be.
inline constexpr size_t HistorySlots = SlotsAfterChange - FirstSlotOfSearch + 40;

/// What the sound says about where one song becomes another: the logarithm of how much more likely it is at
/// an edge, and over such a fade, than if nothing happened there. Of no scale that means anything alone; it
/// was fitted to radios made of real music.
///
/// Nothing is allocated but in the constructor, which takes about a megabyte.
class CutEvidence {
 public:
    CutEvidence();

    /// Scores every edge round a title change, for every length of fade. `change` is the slot of the change.
    /// Slots that the history no longer or not yet has are done without. The table stays until the next call.
    const EdgeTable& Score(const FeatureHistory& history, int64_t change);

 private:
    static constexpr size_t FadePoints = 20;
    static constexpr size_t Positions = SlotsAfterChange - FirstSlotOfSearch + 1;

    using Points = std::array<float, FadePoints>;

    /// Sums over all slots up to a position.
    struct Sums {
        TextureSums Texture;
        std::array<double, MelBands> Mel{};
    };

    /// Slots from a position up to another.
    struct Stretch {
        int32_t Begin = 0;
        int32_t End = 0;
    };

    void AddUp(const FeatureHistory& history, int64_t change);
    int32_t Clamped(int32_t slot) const;
    Stretch LeftOf(int32_t edge, int32_t fade, int32_t length) const;
    Stretch RightOf(int32_t edge, int32_t fade, int32_t length) const;
    const Sums& At(int32_t slot) const { return Running[static_cast<size_t>(slot - FirstSlotOfSearch)]; }
    bool Measure(Stretch left, Stretch right, TextureSides& sides) const;
    float FadeGain(const FeatureHistory& history, int64_t change, int32_t edge, int32_t fade);
    void MixSongs(Stretch left, Stretch right, const TextureSides& sides);
    float Onset(const FeatureHistory& history, int64_t change, int32_t edge) const;
    float ScoreOf(const FeatureHistory& history, int64_t change, int32_t edge, size_t fade);

    std::vector<Sums> Running;  ///< by slot from FirstSlotOfSearch on; the slot itself is not in its sum
    int32_t Begin = 0;          ///< first slot that there is, counted from the change
    int32_t End = 0;            ///< one more than the last
    std::array<Points, TextureSize> Mixed{};  ///< textures that a fade between two sides would have
    std::array<Points, TextureSize> Heard{};  ///< those that were heard
    EdgeTable Table{};
};

}  // namespace Corvetape
