#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace Corvetape {

/// Places that a cut without a gap may have, all counted in slots of 50 ms from the slot of the title change.
/// An edge is where a slot begins: edge 0 is in front of the slot of the change.
inline constexpr int32_t FirstEdge = -170;  ///< 8.5 s before the change: titles come late
inline constexpr int32_t LastEdge = 60;     ///< 3 s after it: some come early
inline constexpr size_t EdgeCount = 231;
static_assert(LastEdge - FirstEdge + 1 == static_cast<int32_t>(EdgeCount));

/// No slot from here on is looked at: with this many after the change a decision can be made.
inline constexpr int32_t SlotsAfterChange = 200;

/// Lengths of the cross-fades that are kept apart, a hard join first: 0, 1, 2, 3, 4 and 6 s. The edge of a
/// fade is its middle.
inline constexpr std::array<int32_t, 6> FadeSlots = {0, 20, 40, 60, 80, 120};
inline constexpr size_t FadeCount = FadeSlots.size();

/// Slots beside a fade that its two songs are measured by.
inline constexpr int32_t NearSideSlots = 40;
inline constexpr int32_t ShortSideSlots = 80;
inline constexpr int32_t LongSideSlots = 160;

/// No slot before this one is looked at.
inline constexpr int32_t FirstSlotOfSearch = FirstEdge - FadeSlots.back() / 2 - LongSideSlots;

/// One value for every edge.
using EdgeRow = std::array<float, EdgeCount>;

/// One value for every length of fade and every edge.
using EdgeTable = std::array<EdgeRow, FadeCount>;

/// The edge that an index, 0 to EdgeCount - 1, stands for.
constexpr int32_t EdgeAt(size_t index) {
    return FirstEdge + static_cast<int32_t>(index);
}

/// The index of an edge from FirstEdge to LastEdge.
constexpr size_t IndexOfEdge(int32_t edge) {
    return static_cast<size_t>(edge - FirstEdge);
}

}  // namespace Corvetape
