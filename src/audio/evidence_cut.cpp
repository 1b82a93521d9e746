#include "audio/evidence_cut.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace Corvetape {

namespace {

/// Fewer quiet slots are a rest in the music.
constexpr int32_t LeastGapSlots = 3;

/// Neighbouring edges that count as one place: 150 ms to each side.
constexpr size_t PlaceEdges = 7;

/// A place for the cut among the edges.
struct Place {
    size_t First = 0;   ///< the first of its edges
    size_t Median = 0;  ///< half of its mass is up to here
    float Mass = 0;
};

Place BestPlace(const EdgeRow& chances) {
    Place best;
    for (size_t first = 0; first + PlaceEdges <= EdgeCount; ++first) {
        float mass = 0;
        for (size_t i = first; i < first + PlaceEdges; ++i) mass += chances[i];
        if (mass > best.Mass) best = {first, first, mass};
    }
    float sum = chances[best.First];
    while (sum < best.Mass / 2 && best.Median + 1 < best.First + PlaceEdges) sum += chances[++best.Median];
    return best;
}

size_t RingSlot(const CutQuestion& question, int32_t slot) {
    const auto size = static_cast<int64_t>(question.Levels.size());
    const int64_t at = (static_cast<int64_t>(question.ChangeLevel) + slot) % size;
    return static_cast<size_t>(at < 0 ? at + size : at);
}

}  // namespace

std::optional<EvidenceCut> EvidenceCutter::FindGap(const CutQuestion& question, const CutPrior& prior) const {
    const EdgeRange likely = prior.LikelyEdges();
    const int32_t first = std::max(likely.First, -question.Reach.Before);
    const int32_t last = std::min(likely.Last, question.Reach.After);
    const auto size = static_cast<int32_t>(question.Levels.size());
    if (first > last || last - first >= size) return std::nullopt;
    const size_t start = RingSlot(question, first);
    const auto found = FindQuietStretch(question.Levels, start, RingSlot(question, last));
    if (!found) return std::nullopt;
    const auto slotsUpTo = [&](size_t slot) {
        return static_cast<int32_t>((slot + question.Levels.size() - start) % question.Levels.size());
    };
    const int32_t oldEnd = first + slotsUpTo(found->OldEnd);
    const int32_t newBegin = first + slotsUpTo(found->NewStart) + 1;
    if (newBegin - oldEnd < LeastGapSlots) return std::nullopt;
    for (int32_t slot = oldEnd; slot < newBegin; ++slot) {
        if (question.Levels[RingSlot(question, slot)] > QuietLevel) return std::nullopt;
    }
    return EvidenceCut{oldEnd, newBegin, 0, 1, std::numeric_limits<float>::infinity()};
}

std::optional<EvidenceCut> EvidenceCutter::DecideGap(const CutQuestion& question, const CutPrior& prior) {
    Last = FindGap(question, prior);
    return Last;
}

std::optional<EvidenceCut> EvidenceCutter::Decide(const CutQuestion& question, const CutPrior& prior) {
    if (DecideGap(question, prior)) return Last;
    Heard = Sound.Score(question.History, question.Change);

    EdgeTable scores = Heard;
    float best = NoEvidence;
    for (size_t fade = 0; fade < FadeCount; ++fade) {
        for (size_t i = 0; i < EdgeCount; ++i) {
            float& score = scores[fade][i];
            const int32_t edge = EdgeAt(i);
            const bool within = edge >= -question.Reach.Before && edge <= question.Reach.After;
            score = within ? score + std::log(prior.Expected()[fade][i]) : NoEvidence;
            best = std::max(best, score);
        }
    }
    if (!std::isfinite(best)) return std::nullopt;
    const EdgeTable chances = ProbabilitiesOf(scores);
    EdgeRow edges{};
    for (const EdgeRow& row : chances) {
        for (size_t i = 0; i < EdgeCount; ++i) edges[i] += row[i];
    }
    double weight = 0;
    for (const EdgeRow& row : scores) {
        for (const float score : row) weight += std::exp(score - best);
    }

    const Place place = BestPlace(edges);
    size_t fade = 0;
    float fadeMass = 0;
    for (size_t each = 0; each < FadeCount; ++each) {
        float mass = 0;
        for (size_t i = place.First; i < place.First + PlaceEdges; ++i) mass += chances[each][i];
        if (mass <= fadeMass) continue;
        fade = each;
        fadeMass = mass;
    }
    const int32_t edge = EdgeAt(place.Median);
    const float evidence = best + static_cast<float>(std::log(weight));
    Last = EvidenceCut{edge, edge, FadeSlots[fade], std::min(place.Mass, 1.0F), evidence};
    return Last;
}

void EvidenceCutter::Teach(CutPrior& prior) const {
    if (!Last) return;
    if (Last->IsGap()) {
        prior.LearnGap({Last->OldEnd, Last->NewBegin});
    } else {
        prior.Learn(Heard);
    }
}

}  // namespace Corvetape
