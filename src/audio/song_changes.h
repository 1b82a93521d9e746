#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "audio/slot_features.h"
#include "audio/texture_spread.h"

namespace Corvetape {

/// A place where another song may begin, by the sound alone.
struct SongChange {
    static constexpr size_t SignCount = 7;

    int64_t Slot = 0;                      ///< the first of the new song
    float Evidence = 0;                    ///< logarithm of how much more likely it is than not
    std::array<float, SignCount> Signs{};  ///< what the evidence is the weighted sum of
};

/// Finds where another song begins in music whose titles nobody reports. Music changes within a song as
/// much as between two, so seconds round a place say little; half a minute on each side says more: its
/// timbre, its stereo image, and above all its rhythm go on within a song.
///
/// Nothing is allocated but in the constructor, which takes some 1.3 megabytes.
class SongChanges {
 public:
    /// A place is known when so many slots have followed it.
    static constexpr int32_t SlotsAfter = 620;

    /// With this much, nearly half of the changes are found, and one or two more an hour that are none.
    static constexpr float LeastEvidence = 1.2F;

    SongChanges();

    /// Forgets all. The next slot has the number `slot`, 0 or more.
    void Restart(int64_t slot);

    /// The next slot. Its place among those that are weighed, if it is one: never more than one for a slot.
    std::optional<SongChange> Add(const SlotFeatures& features);

    int64_t End() const { return Next; }  ///< one more than the newest slot

 private:
    struct Slot {
        TextureSums Before;  ///< of all slots before it
        float Flux = 0;
        float Shift = 0;  ///< how much the sound changes in front of it; 0 where that was not measured
    };

    /// Slots before a place, or after it.
    struct Side {
        int64_t Begin = 0;
        int64_t End = 0;
    };

    static constexpr size_t Rhythms = 40;
    using Rhythm = std::array<float, Rhythms>;

    const Slot& At(int64_t slot) const { return Kept[static_cast<size_t>(slot) % Kept.size()]; }
    Slot& At(int64_t slot) { return Kept[static_cast<size_t>(slot) % Kept.size()]; }
    Side LeftOf(int64_t place, int32_t slots, int32_t apart) const;
    static Side RightOf(int64_t place, int32_t slots, int32_t apart);
    TextureStretch StretchOf(Side side) const;
    float ShiftAt(int64_t place, int32_t slots, int32_t apart,
                  Loudnesses loudness = Loudnesses::Compared) const;
    float NearShift(int64_t place) const;
    bool IsStrongest(int64_t place) const;
    Rhythm RhythmOf(Side side) const;
    float StereoShift(size_t coefficient, Side left, Side right) const;
    SongChange Weigh(int64_t place) const;

    std::vector<Slot> Kept;
    int64_t First = 0;
    int64_t Next = 0;
};

}  // namespace Corvetape
