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

/// What was learned of a source: how late its titles come, what they mean, how much they jitter, and how its
/// songs follow one another.
///
/// Titles of a source come late by a delay that hardly changes, and by a jitter, most of it from the time
/// between two polls. They mean the middle of a fade or the beginning of the new song: at a source whose
/// songs follow one another in several ways these are seconds apart. The delay is the same for all kinds of
/// joins, and how common each kind is, is learned by itself. A new source may have any delay.
class CutPrior {
 public:
    /// Half of the jitter of titles that are polled every 0.8 s, rounded up.
    static constexpr int32_t UsualJitter = 9;
    static constexpr int32_t MostJitter = 60;

    /// How many songs the correction of one by hand counts as.
    static constexpr uint32_t SongsOfCorrection = 10;

    /// Nothing is known yet. Titles come up to `jitterSlots` earlier or later than the delay says, or up to
    /// some twice as much, which is learned; a number outside 1 to MostJitter is taken as the nearer end.
    explicit CutPrior(int32_t jitterSlots = UsualJitter);

    /// How likely each join is before anything was heard; all sum up to 1 and none is 0.
    const EdgeTable& Expected() const { return Prior; }

    /// The edges that are neither among the first nor among the last 1 % of where a gap is expected, or a
    /// hard join. Fades may be later, but have no gap.
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

    /// All of it as text, some 10 KB, the same on every machine: a line with the version and the sizes, one
    /// with the songs that followed in each kind of join, in thousandths, and one for each meaning and jitter
    /// of the titles with a number for each delay, in billionths.
    std::string Text() const;

    /// Whether a text is of a later version of it, which an earlier program must not write over.
    static bool IsOfLaterVersion(std::string_view text);

    /// Reads such a text. Nothing if it is damaged in any way or of another version; the jitter is not in it.
    static std::optional<CutPrior> FromText(std::string_view text, int32_t jitterSlots = UsualJitter);

 private:
    static constexpr size_t MostReach = MostJitter + 1;
    static constexpr size_t Jitters = 3;

    /// What a change of title means: the middle of the join, or the beginning of the new song.
    static constexpr size_t Meanings = 2;

    /// By distance; both directions sum up to 1.
    struct Kernel {
        size_t Reach = 0;
        std::array<float, MostReach + 1> Weights{};
    };

    /// One value for each meaning, jitter and delay.
    using Delays = std::array<std::array<EdgeRow, Jitters>, Meanings>;

    static Kernel KernelOf(double jitter);
    static EdgeRow Spread(const EdgeRow& row, const Kernel& kernel);
    void Absorb(const Delays& support);
    void CountKinds(const EdgeTable& heard);
    float ShareOf(size_t fade) const;
    void Expect();

    std::array<Kernel, Jitters> Kernels;
    Delays Known{};                        ///< how likely each is; sums up to 1
    std::array<float, FadeCount> Kinds{};  ///< songs of each kind of join, and one for each of a new source
    EdgeTable Prior{};
    EdgeRow GapPrior{};  ///< where gaps are expected; sums up to 1
    uint32_t LearnedSongs = 0;
};

}  // namespace Corvetape
