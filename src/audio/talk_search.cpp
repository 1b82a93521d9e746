#include "audio/talk_search.h"

#include <algorithm>
#include <cmath>

namespace Corvetape {

namespace {

// Found on speech between real songs, and on joins of real songs without any: bench/talk.cpp.

/// A slot is narrow if its sides have a hundredth of the power of its middle.
constexpr float Narrow = -2;

/// Speech is interrupted: so much of it has less than a tenth of its mean power. Dense music has none of
/// that.
constexpr float LowPower = 0.1F;
constexpr double LeastPauses = 0.08;

constexpr int32_t LeastTalk = 30;  ///< slots; less is a word in a song
constexpr int32_t Neighbour = 60;  ///< slots of music that are looked at on each side
constexpr int32_t LeastNeighbour = 20;
constexpr double MostNarrow = 0.2;  ///< of the slots of a neighbour

/// The mean of the bands' stereo width: how many powers of ten the sides are below the middle.
float WidthOf(const SlotFeatures& slot) {
    static const float bands = std::sqrt(8.0F);
    return slot.Sound[MelCoefficients] / bands;
}

float PowerOf(const SlotFeatures& slot) {
    float power = 0;
    for (const float band : slot.Mel) power += std::pow(10.0F, band);
    return power;
}

/// Slots from First up to, not including, End.
struct Stretch {
    int64_t First = 0;
    int64_t End = 0;

    int64_t Length() const { return End - First; }
};

float MeanPower(const FeatureHistory& history, Stretch stretch) {
    float sum = 0;
    for (int64_t slot = stretch.First; slot < stretch.End; ++slot) sum += PowerOf(history[slot]);
    return sum / static_cast<float>(std::max<int64_t>(stretch.Length(), 1));
}

template <typename Holds>
double ShareOf(const FeatureHistory& history, Stretch stretch, const Holds& holds) {
    int64_t count = 0;
    for (int64_t slot = stretch.First; slot < stretch.End; ++slot) count += holds(history[slot]) ? 1 : 0;
    return static_cast<double>(count) / static_cast<double>(std::max<int64_t>(stretch.Length(), 1));
}

bool IsWide(const FeatureHistory& history, Stretch music) {
    const auto narrow = [](const SlotFeatures& slot) { return WidthOf(slot) < Narrow; };
    return music.Length() >= LeastNeighbour && ShareOf(history, music, narrow) <= MostNarrow;
}

bool IsSpeech(const FeatureHistory& history, Stretch stretch) {
    if (stretch.Length() < LeastTalk) return false;
    const float low = LowPower * MeanPower(history, stretch);
    const auto isLow = [low](const SlotFeatures& slot) { return PowerOf(slot) < low; };
    if (ShareOf(history, stretch, isLow) < LeastPauses) return false;
    return IsWide(history, {std::max(stretch.First - Neighbour, history.First()), stretch.First}) &&
           IsWide(history, {stretch.End, std::min(stretch.End + Neighbour, history.End())});
}

}  // namespace

std::optional<EdgeRange> FindTalk(const FeatureHistory& history, int64_t change, EdgeRange reach) {
    const Stretch all = {std::max(change + reach.First, history.First()),
                         std::min(change + reach.Last, history.End())};
    // In a pause of the speaker there is hardly anything that could be narrow or wide.
    const float pause = LowPower * LowPower * MeanPower(history, all);
    std::optional<Stretch> best;
    Stretch run = {all.First, all.First};
    for (int64_t slot = all.First; slot <= all.End; ++slot) {
        const bool narrow = slot < all.End && WidthOf(history[slot]) < Narrow;
        const bool inPause = slot < all.End && PowerOf(history[slot]) < pause;
        if (narrow) {
            if (run.Length() == 0) run.First = slot;
            run.End = slot + 1;
        } else if (!inPause) {
            const bool complete = run.First > all.First && run.End < all.End;
            const bool longer = !best || run.Length() > best->Length();
            if (complete && longer && IsSpeech(history, run)) best = run;
            run = {slot + 1, slot + 1};
        }
    }
    if (!best) return std::nullopt;
    return EdgeRange{static_cast<int32_t>(best->First - change), static_cast<int32_t>(best->End - change)};
}

}  // namespace Corvetape
