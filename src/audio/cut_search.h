#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace Corvetape {

/// The best place for a cut: slots of a ring.
struct QuietStretch {
    size_t OldEnd = 0;    ///< first slot of the stretch: the old song ends before it
    size_t NewStart = 0;  ///< last slot of the stretch: the new song begins after it

    bool operator==(const QuietStretch&) const = default;
};

/// Levels up to this one count as quiet, however quiet the quietest slot is.
inline constexpr int32_t QuietLevel = 164;

/// Levels from here on are full scale; such a slot is never taken for a pause.
inline constexpr int32_t FullScaleLevel = 32767;

/// The level up to which slots belong to the quiet stretch round a slot of level `lowest`: 1.2 times as
/// much, rounded to the nearest number, and at least QuietLevel.
int32_t QuietLimit(int32_t lowest);

/// Searches [start, end] of the ring, both ends included, for the quietest slot and the stretch of quiet
/// slots round it.
///
/// Levels are 16-bit amplitudes, 0 to 32768, one per 50 ms slot. `start` and `end` are slots of a ring of
/// `levels.size()`, and the walk may pass its end. Of equal minima the one nearest to `end` wins. Returns
/// nothing if every slot is at full scale.
std::optional<QuietStretch> FindQuietStretch(std::span<const int32_t> levels, size_t start, size_t end);

/// Where in the ring a cut may lie, in slots relative to the cut: `Before` slots before it are unwritten and
/// within reach, and the last one that can be looked at is `After` after it.
struct CutReach {
    int32_t Before = 0;
    int32_t After = 0;

    bool operator==(const CutReach&) const = default;
};

/// Slots that a time of so many milliseconds stands for; 0 for a negative one.
int32_t SlotsOf(int32_t milliseconds);

/// The part of the wanted window that is there. `unwritten` slots lie between the read index and the cut:
/// nothing before them can be cut any more. `arrived` slots lie between the cut and the write index: the
/// newest of them is the last that holds new audio; what follows it is as old as the ring is long.
CutReach ReachOf(CutReach wanted, int32_t unwritten, int32_t arrived);

}  // namespace Corvetape
