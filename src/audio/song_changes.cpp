#include "audio/song_changes.h"

#include <algorithm>
#include <cmath>

namespace Corvetape {

namespace {

constexpr int32_t ShortSide = 80;
constexpr int32_t NearSide = 160;
constexpr int32_t FarSide = 600;

/// What is left out on both sides of a place: a fade, or an onset.
constexpr int32_t NearApart = 30;
constexpr int32_t FarApart = 20;
static_assert(SongChanges::SlotsAfter == FarSide + FarApart);

/// A place is weighed only with as much before it.
constexpr int32_t LeastBefore = 400;

/// Places are weighed where the sound changes by this much, and more than within 2.5 s on each side.
constexpr float LeastShift = 6;
constexpr int32_t StrongestOf = 50;
constexpr float ShortWeight = 26.6F;
constexpr float NearWeight = 27.4F;
constexpr float FluxWeight = 5;
constexpr float FadeWeight = 54;
constexpr float FadeMalus = 4;

constexpr float MostFlux = 1;
constexpr float LeastFlux = 0.03F;

/// Beats follow each other within so many slots.
constexpr int32_t FirstLag = 3;

constexpr double LeastStereoVariance = 0.02;

/// Of the signs, in their order. Fitted to 189 joins of whole songs, in ten hours of real music.
constexpr std::array<float, SongChange::SignCount> Weights = {14.32F, 4.58F, 16.11F, -5.21F,
                                                              0.64F,  0.39F, 0.45F};
constexpr float Bias = -4.32F;

}  // namespace

SongChanges::SongChanges() : Kept(size_t{2} * SlotsAfter + 1) {}

void SongChanges::Restart(int64_t slot) {
    First = Next = slot;
    At(Next) = {};
}

SongChanges::Side SongChanges::LeftOf(int64_t place, int32_t slots, int32_t apart) const {
    return {std::max(place - apart - slots, First), place - apart};
}

SongChanges::Side SongChanges::RightOf(int64_t place, int32_t slots, int32_t apart) {
    return {place + apart, place + apart + slots};
}

TextureStretch SongChanges::StretchOf(Side side) const {
    return {At(side.Begin).Before, At(side.End).Before, static_cast<int32_t>(side.End - side.Begin)};
}

float SongChanges::ShiftAt(int64_t place, int32_t slots, int32_t apart, Loudnesses loudness) const {
    return SidesOf(StretchOf(LeftOf(place, slots, apart)), StretchOf(RightOf(place, slots, apart)), loudness)
        .Shift;
}

/// How much the sound changes at once, or in a fade.
float SongChanges::NearShift(int64_t place) const {
    const float atOnce = ShortWeight * ShiftAt(place, ShortSide, 0) +
                         NearWeight * ShiftAt(place, NearSide, 0) +
                         FluxWeight * std::min(At(place).Flux, MostFlux);
    return std::max(atOnce, FadeWeight * ShiftAt(place, NearSide, NearApart) - FadeMalus);
}

bool SongChanges::IsStrongest(int64_t place) const {
    const float shift = At(place).Shift;
    if (shift < LeastShift) return false;
    for (int64_t slot = place - StrongestOf; slot <= place + StrongestOf; ++slot) {
        if (At(slot).Shift > shift || (At(slot).Shift == shift && slot < place)) return false;
    }
    return true;
}

/// How much onsets are followed by others, for each time between them.
SongChanges::Rhythm SongChanges::RhythmOf(Side side) const {
    const auto flux = [this](int64_t slot) { return std::min(At(slot).Flux, MostFlux); };
    float mean = 0;
    for (int64_t slot = side.Begin; slot < side.End; ++slot) mean += flux(slot);
    mean /= static_cast<float>(side.End - side.Begin);
    float power = 1e-6F;
    for (int64_t slot = side.Begin; slot < side.End; ++slot) {
        power += (flux(slot) - mean) * (flux(slot) - mean);
    }
    Rhythm rhythm{};
    for (size_t i = 0; i < Rhythms; ++i) {
        const int64_t lag = FirstLag + static_cast<int64_t>(i);
        for (int64_t slot = side.Begin; slot < side.End - lag; ++slot) {
            rhythm[i] += (flux(slot) - mean) * (flux(slot + lag) - mean);
        }
        rhythm[i] /= power;
    }
    return rhythm;
}

/// How far a stereo coefficient is from side to side, for the measure of its spread.
float SongChanges::StereoShift(size_t coefficient, Side left, Side right) const {
    const size_t square = coefficient * (coefficient + 1) / 2 + coefficient;
    std::array<double, 2> means{};
    double variance = 0;
    for (const bool second : {false, true}) {
        const TextureStretch stretch = StretchOf(second ? right : left);
        const double mean =
            (stretch.End.Sound[coefficient] - stretch.Begin.Sound[coefficient]) / stretch.Slots;
        means[second ? 1 : 0] = mean;
        variance +=
            (stretch.End.Products[square] - stretch.Begin.Products[square]) / stretch.Slots - mean * mean;
    }
    const double apart = means[1] - means[0];
    return static_cast<float>(std::log1p(apart * apart / (variance / 2 + LeastStereoVariance)));
}

SongChange SongChanges::Weigh(int64_t place) const {
    const Side left = LeftOf(place, FarSide, FarApart);
    const Side right = RightOf(place, FarSide, FarApart);
    const Rhythm before = RhythmOf(left);
    const Rhythm after = RhythmOf(right);
    float alike = 0;
    float beforePower = 1e-6F;
    float afterPower = 1e-6F;
    for (size_t i = 0; i < Rhythms; ++i) {
        alike += before[i] * after[i];
        beforePower += before[i] * before[i];
        afterPower += after[i] * after[i];
    }
    const float near = ShiftAt(place, NearSide, 0);
    const float far = ShiftAt(place, FarSide, FarApart);
    SongChange change;
    change.Slot = place;
    change.Signs = {ShiftAt(place, NearSide, NearApart),
                    ShiftAt(place, FarSide, FarApart, Loudnesses::Ignored),
                    std::min(near, far),
                    alike / std::sqrt(beforePower * afterPower),
                    std::log(At(place).Flux + LeastFlux),
                    StereoShift(MelCoefficients, left, right),
                    StereoShift(MelCoefficients + 1, left, right)};
    change.Evidence = Bias;
    for (size_t i = 0; i < change.Signs.size(); ++i) change.Evidence += Weights[i] * change.Signs[i];
    return change;
}

std::optional<SongChange> SongChanges::Add(const SlotFeatures& features) {
    Slot& slot = At(Next);
    slot.Flux = features.Flux;
    slot.Shift = 0;
    ++Next;
    At(Next).Before = slot.Before;
    At(Next).Before.Add(features.Sound);
    const int64_t near = Next - NearSide - NearApart;
    if (near % 2 == 0 && near >= First + NearSide + NearApart) At(near).Shift = NearShift(near);
    const int64_t place = Next - SlotsAfter;
    if (place < First + LeastBefore || !IsStrongest(place)) return std::nullopt;
    return Weigh(place);
}

}  // namespace Corvetape
