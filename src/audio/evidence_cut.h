#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "audio/cut_evidence.h"
#include "audio/cut_prior.h"
#include "audio/cut_search.h"

namespace Corvetape {

/// A title change, and what is known of the sound round it.
struct CutQuestion {
    const FeatureHistory& History;
    int64_t Change = 0;               ///< slot of the change, as the history counts
    std::span<const int32_t> Levels;  ///< of a ring, as FindQuietStretch takes them
    size_t ChangeLevel = 0;           ///< slot of the change, as the ring counts
    CutReach Reach;                   ///< what of the ring can still be cut
};

/// Where one song ends and the next begins: edges, counted from the change. Between them is a gap that is in
/// neither; without a gap they are the same.
struct EvidenceCut {
    int32_t OldEnd = 0;
    int32_t NewBegin = 0;
    int32_t FadeSlots = 0;  ///< most likely length of a fade, with the cut in its middle
    float Confidence = 0;   ///< 0 to 1: how likely it is that the cut is right to 150 ms; 1 for a gap
    float Evidence = 0;     ///< logarithm: that there is a boundary at all; infinite for a gap

    bool IsGap() const { return NewBegin > OldEnd; }
};

/// Finds the place for a cut by all that is known: a gap where the source may have one, which is searched as
/// ever; else what the sound says together with what was learned of the source.
///
/// Nothing is allocated but in the constructor.
class EvidenceCutter {
 public:
    /// Decides for one change. Nothing if there is no gap and no edge within reach that has sound on both
    /// of its sides.
    std::optional<EvidenceCut> Decide(const CutQuestion& question, const CutPrior& prior);

    /// Decides if there is a gap, and nothing otherwise: all that can be said before the sound after the
    /// change is there. The history is not looked at, so that this costs next to nothing.
    std::optional<EvidenceCut> DecideGap(const CutQuestion& question, const CutPrior& prior);

    /// Lets a source learn what the last decision went by. Not for a change that is taken for a false one.
    void Teach(CutPrior& prior) const;

 private:
    std::optional<EvidenceCut> FindGap(const CutQuestion& question, const CutPrior& prior) const;

    CutEvidence Sound;
    EdgeTable Heard{};  ///< scores of the last decision, where nothing was out of reach
    std::optional<EvidenceCut> Last;
};

}  // namespace Corvetape
