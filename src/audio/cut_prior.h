#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "audio/cut_range.h"

namespace Corvetape {

/// The probabilities that scores stand for when nothing else is known: all sum up to 1. All are 0 if no edge
/// is possible.
EdgeTable ProbabilitiesOf(const EdgeTable& scores);

/// Edges, both ends included, counted from the change.
struct EdgeRange {
    int32_t First = 0;
    int32_t Last = 0;

    bool operator==(const EdgeRange&) const = default;
};

/// What was learned of a source: how late its titles come, and how its songs follow one another.
///
/// Titles of a source come late by a delay that hardly changes, and by a jitter, most of it from the time
/// between two polls. A new source may have any delay.
class CutPrior {
 public:
    /// Half of the jitter of titles that are polled every 0.8 s, rounded up.
    static constexpr int32_t UsualJitter = 9;
    static constexpr int32_t MostJitter = 60;

    /// How many songs the correction of one by hand counts as.
    static constexpr uint32_t SongsOfCorrection = 10;

    /// Nothing is known yet. Titles come up to `jitterSlots` earlier or later than the delay says; a number
    /// outside 1 to MostJitter is taken as the nearer end.
    explicit CutPrior(int32_t jitterSlots = UsualJitter);

    /// How likely each join is before anything was heard; all sum up to 1 and none is 0.
    const EdgeTable& Expected() const { return Prior; }

    /// The edges that are neither among the first nor among the last 1 % of what is expected.
    EdgeRange LikelyEdges() const;

    /// Learns one song from what was heard at its beginning.
    void Learn(const EdgeTable& scores);

    /// Learns one song from a gap, anywhere in which the titles may mean the change. `gap` may reach beyond
    /// the edges; one that has none of them teaches nothing. The gap says nothing about fades.
    void LearnGap(EdgeRange gap);

    /// Learns that the right cut was at `edge`, as said by the user. An edge outside FirstEdge to LastEdge
    /// teaches nothing.
    void LearnCorrection(int32_t edge);

    /// Songs learned so far.
    uint32_t Songs() const { return LearnedSongs; }

    /// All of it as text, some 6 KB, the same on every machine: a line with the version and the sizes, then a
    /// line for each length of fade with a number for each edge, in billionths.
    std::string Text() const;

    /// Reads such a text. Nothing if it is damaged in any way or of another version; the jitter is not in it.
    static std::optional<CutPrior> FromText(std::string_view text, int32_t jitterSlots = UsualJitter);

 private:
    static constexpr size_t MostReach = MostJitter + 1;

    EdgeRow Spread(const EdgeRow& row) const;
    void Absorb(const EdgeTable& heard);
    void Expect();

    size_t Reach = 0;                           ///< farthest edge that the kernel spreads to
    std::array<float, MostReach + 1> Kernel{};  ///< by distance; both directions sum up to 1
    EdgeTable Delays{};                         ///< how likely each delay is, by kind of join; sums up to 1
    EdgeTable Prior{};
    uint32_t LearnedSongs = 0;
};

}  // namespace Corvetape
