#include "audio/cut_evidence.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace Corvetape {

namespace {

/// How much the shift between the sides of an edge counts, by how much of them is looked at.
struct ShiftWeights {
    float Near;
    float Short;
    float Long;
};

// The weights of the evidence were fitted to radios made of recordings of real music: bench/joins.cpp.
constexpr ShiftWeights HardJoin = {23.8F, 26.6F, 27.4F};
constexpr ShiftWeights Fade = {11.6F, 25.8F, 32.1F};
constexpr float FluxWeight = 0.46F;
constexpr float OnsetWeight = 0.77F;
constexpr float HardJoinBonus = 0.56F;    ///< hard joins are more common than any one length of fade
constexpr float LengthWeight = -0.0075F;  ///< of a slot of a fade: it leaves more out on both sides

/// How well the slots of a fade are a mixture of its songs. Neighbouring slots say much the same, so that the
/// sum is worth less than its parts, and no more than so much either way.
constexpr float MixtureWeight = 0.1F;
constexpr float MostMixture = 20;

/// An onset is compared with those of 2 s on each side: a tenth of them is stronger than the usual strong
/// one.
constexpr int32_t OnsetReach = 40;
constexpr float LeastFlux = 0.03F;

/// A side that is shorter says nothing about its song.
constexpr int32_t LeastSideSlots = 20;

/// Solves L y = v in place, element by element for several.
template <size_t Count>
void Whiten(const TextureTriangle& factor, std::array<std::array<float, Count>, TextureSize>& vectors) {
    size_t at = 0;
    for (size_t row = 0; row < TextureSize; ++row) {
        std::array<float, Count> sums = vectors[row];
        for (size_t i = 0; i < row; ++i) {
            const float factorHere = factor[at++];
            for (size_t point = 0; point < Count; ++point) sums[point] -= factorHere * vectors[i][point];
        }
        const float inverse = factor[at++];
        for (size_t point = 0; point < Count; ++point) vectors[row][point] = sums[point] * inverse;
    }
}

/// Where between two songs a point of a fade is, 0 to 1: points are in the middle of equal parts.
template <size_t Count>
float ShareAt(size_t point) {
    return (static_cast<float>(point) + 0.5F) / static_cast<float>(Count);
}

}  // namespace

CutEvidence::CutEvidence() : Running(Positions) {}

void CutEvidence::AddUp(const FeatureHistory& history, int64_t change) {
    const auto clamped = [&](int64_t slot) {
        return static_cast<int32_t>(std::clamp<int64_t>(slot - change, FirstSlotOfSearch, SlotsAfterChange));
    };
    Begin = clamped(history.First());
    End = std::max(Begin, clamped(history.End()));
    size_t position = static_cast<size_t>(Begin - FirstSlotOfSearch);
    Running[position] = {};
    for (int32_t slot = Begin; slot < End; ++slot, ++position) {
        const SlotFeatures& features = history[change + slot];
        const Sums& before = Running[position];
        Sums& after = Running[position + 1];
        after.Texture = before.Texture;
        after.Texture.Add(features.Sound);
        for (size_t band = 0; band < MelBands; ++band) {
            after.Mel[band] = before.Mel[band] + features.Mel[band];
        }
    }
}

int32_t CutEvidence::Clamped(int32_t slot) const {
    return std::clamp(slot, Begin, End);
}

CutEvidence::Stretch CutEvidence::LeftOf(int32_t edge, int32_t fade, int32_t length) const {
    const int32_t end = edge - fade / 2;
    return {Clamped(end - length), Clamped(end)};
}

CutEvidence::Stretch CutEvidence::RightOf(int32_t edge, int32_t fade, int32_t length) const {
    const int32_t begin = edge + fade / 2;
    return {Clamped(begin), Clamped(begin + length)};
}

bool CutEvidence::Measure(Stretch left, Stretch right, TextureSides& sides) const {
    const int32_t leftCount = left.End - left.Begin;
    const int32_t rightCount = right.End - right.Begin;
    if (leftCount < LeastSideSlots || rightCount < LeastSideSlots) return false;
    sides = SidesOf({At(left.Begin).Texture, At(left.End).Texture, leftCount},
                    {At(right.Begin).Texture, At(right.End).Texture, rightCount});
    return true;
}

void CutEvidence::MixSongs(Stretch left, Stretch right, const TextureSides& sides) {
    static const std::array<Points, 2> fading = [] {
        std::array<Points, 2> powers{};  // of the song that ends, and of the one that begins
        for (size_t point = 0; point < FadePoints; ++point) {
            const float angle = ShareAt<FadePoints>(point) * std::numbers::pi_v<float> / 2;
            powers[0][point] = std::cos(angle) * std::cos(angle);
            powers[1][point] = std::sin(angle) * std::sin(angle);
        }
        return powers;
    }();
    const auto powerIn = [this](Stretch stretch, size_t band) {
        const double sum = At(stretch.End).Mel[band] - At(stretch.Begin).Mel[band];
        return static_cast<float>(std::pow(10, sum / (stretch.End - stretch.Begin)));
    };
    const MelShapeTable& shape = ShapeOfMel();
    for (size_t i = 0; i < MelCoefficients; ++i) Mixed[i].fill(0);
    for (size_t band = 0; band < MelBands; ++band) {
        const float leftPower = powerIn(left, band);
        const float rightPower = powerIn(right, band);
        Points mel{};
        for (size_t point = 0; point < FadePoints; ++point) {
            mel[point] = std::log10(fading[0][point] * leftPower + fading[1][point] * rightPower);
        }
        for (size_t i = 0; i < MelCoefficients; ++i) {
            for (size_t point = 0; point < FadePoints; ++point)
                Mixed[i][point] += mel[point] * shape[band][i];
        }
    }
    for (size_t i = MelCoefficients; i < TextureSize; ++i) {
        for (size_t point = 0; point < FadePoints; ++point) {
            const float share = ShareAt<FadePoints>(point);
            Mixed[i][point] = (1 - share) * sides.Left[i] + share * sides.Right[i];
        }
    }
}

float CutEvidence::FadeGain(const FeatureHistory& history, int64_t change, int32_t edge, int32_t fade) {
    const Stretch left = LeftOf(edge, fade, LongSideSlots);
    const Stretch right = RightOf(edge, fade, LongSideSlots);
    TextureSides sides;
    if (!Measure(left, right, sides)) return 0;
    MixSongs(left, right, sides);
    for (size_t point = 0; point < FadePoints; ++point) {
        const auto step = static_cast<int32_t>(static_cast<float>(fade) * ShareAt<FadePoints>(point));
        const Texture& sound = history[change + edge - fade / 2 + step].Sound;
        for (size_t i = 0; i < TextureSize; ++i) {
            Heard[i][point] = sound[i];
            Mixed[i][point] = sound[i] - Mixed[i][point];
        }
    }
    Whiten(sides.Factor, Heard);
    Whiten(sides.Factor, Mixed);
    Whiten(sides.Factor, sides.Left);
    Whiten(sides.Factor, sides.Right);
    Points fromLeft{};
    Points fromRight{};
    Points fromMixed{};
    for (size_t i = 0; i < TextureSize; ++i) {
        for (size_t point = 0; point < FadePoints; ++point) {
            const float left1 = Heard[i][point] - sides.Left[i];
            const float right1 = Heard[i][point] - sides.Right[i];
            fromLeft[point] += left1 * left1;
            fromRight[point] += right1 * right1;
            fromMixed[point] += Mixed[i][point] * Mixed[i][point];
        }
    }
    float mixture = 0;
    for (size_t point = 0; point < FadePoints; ++point) {
        mixture += (std::min(fromLeft[point], fromRight[point]) - fromMixed[point]) / 2;
    }
    return Fade.Long * sides.Shift + MixtureWeight * std::clamp(mixture, -MostMixture, MostMixture);
}

/// How much stronger the onset at an edge is than the strong ones beside it.
float CutEvidence::Onset(const FeatureHistory& history, int64_t change, int32_t edge) const {
    std::array<float, size_t{2} * OnsetReach> beside{};
    size_t count = 0;
    // The first slot follows something that is not known.
    const int32_t first = std::max(edge - OnsetReach, Begin + 1);
    const int32_t last = std::min(edge + OnsetReach, End - 1);
    for (int32_t slot = first; slot <= last; ++slot) {
        if (slot != edge) beside[count++] = history[change + slot].Flux;
    }
    float strong = 0;
    if (count > 0) {
        const auto place = beside.begin() + static_cast<std::ptrdiff_t>(count * 9 / 10);
        std::nth_element(beside.begin(), place, beside.begin() + static_cast<std::ptrdiff_t>(count));
        strong = *place;
    }
    return std::log((history[change + edge].Flux + LeastFlux) / (strong + LeastFlux));
}

float CutEvidence::ScoreOf(const FeatureHistory& history, int64_t change, int32_t edge, size_t fade) {
    const int32_t slots = FadeSlots[fade];
    const auto shift = [&](int32_t length) {
        TextureSides sides;
        const bool known = Measure(LeftOf(edge, slots, length), RightOf(edge, slots, length), sides);
        return known ? sides.Shift : 0.0F;
    };
    if (slots > 0) {
        return Fade.Near * shift(NearSideSlots) + Fade.Short * shift(ShortSideSlots) +
               FadeGain(history, change, edge, slots) + LengthWeight * static_cast<float>(slots);
    }
    return HardJoin.Near * shift(NearSideSlots) + HardJoin.Short * shift(ShortSideSlots) +
           HardJoin.Long * shift(LongSideSlots) + FluxWeight * history[change + edge].Flux +
           OnsetWeight * Onset(history, change, edge) + HardJoinBonus;
}

const EdgeTable& CutEvidence::Score(const FeatureHistory& history, int64_t change) {
    AddUp(history, change);
    for (size_t fade = 0; fade < FadeCount; ++fade) {
        for (size_t index = 0; index < EdgeCount; ++index) {
            const int32_t edge = EdgeAt(index);
            const bool possible = edge - FadeSlots[fade] / 2 > Begin && edge + FadeSlots[fade] / 2 < End;
            Table[fade][index] = possible ? ScoreOf(history, change, edge, fade) : NoEvidence;
        }
    }
    return Table;
}

}  // namespace Corvetape
