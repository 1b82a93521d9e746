#include "audio/cut_prior.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <numeric>

namespace Corvetape {

namespace {

constexpr size_t Joins = FadeCount * EdgeCount;
constexpr float Even = 1.0F / Joins;

/// Jitter is mostly that of the poll; now and then a title is much later.
constexpr double PollShare = 0.95;
constexpr double LateSlots = 8;
constexpr size_t LateReach = 40;  ///< farther ones are as rare as other surprises

constexpr float SurpriseShare = 0.01F;     ///< of a join where nothing was learned
constexpr float DoubtShare = 0.2F;         ///< of a song that says nothing about the delay
constexpr float ForgettingShare = 0.005F;  ///< what every song takes off all that was learned before

/// Of the songs before it, what a song takes off the count of each kind: stations change their ways.
constexpr float KeptKinds = 0.98F;

/// Jitters that are kept apart, as multiples of the usual one: polls may be slower, and stations add theirs.
constexpr std::array<double, 3> JitterTimes = {1, 1.45, 2.2};

constexpr float LikelyTail = 0.01F;

constexpr std::string_view TextName = "cut-prior";
constexpr uint64_t TextVersion = 2;
constexpr uint64_t TextUnits = 1'000'000'000;
constexpr uint64_t KindUnits = 1000;
constexpr uint64_t MostOfKind = 1'000'000;
constexpr uint64_t MostSongs = 1'000'000'000;

template <typename Rows>
double SumOf(const Rows& rows) {
    double sum = 0;
    for (const EdgeRow& row : rows) sum = std::accumulate(row.begin(), row.end(), sum);
    return sum;
}

/// Scales to a sum of 1, with a share of it the same everywhere.
void Normalize(EdgeTable& table, float evenShare) {
    const auto scale = static_cast<float>((1 - evenShare) / SumOf(table));
    for (EdgeRow& row : table) {
        for (float& value : row) value = value * scale + evenShare * Even;
    }
}

/// How far the middle of a fade is after what the title means.
size_t MiddleAfter(size_t meaning, size_t fade) {
    return meaning == 0 ? 0 : static_cast<size_t>(FadeSlots[fade] / 2);
}

/// The words of a text, one after the other. A word that is no number, or too large, is nothing.
class Words {
 public:
    explicit Words(std::string_view text) : Left(text) {}

    std::string_view Next() {
        const size_t end = std::min(Left.find_first_of(" \n"), Left.size());
        const std::string_view word = Left.substr(0, end);
        Left.remove_prefix(std::min(end + 1, Left.size()));
        return word;
    }

    std::optional<uint64_t> Number(uint64_t most) {
        const std::string_view word = Next();
        uint64_t number = 0;
        const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
        if (error != std::errc{} || end != word.data() + word.size() || number > most) return std::nullopt;
        return number;
    }

    bool Empty() const { return Left.empty(); }

 private:
    std::string_view Left;
};

}  // namespace

EdgeTable ProbabilitiesOf(const EdgeTable& scores) {
    EdgeTable result{};
    float best = scores[0][0];
    for (const EdgeRow& row : scores) best = std::max(best, *std::ranges::max_element(row));
    if (!std::isfinite(best)) return result;
    for (size_t fade = 0; fade < FadeCount; ++fade) {
        for (size_t i = 0; i < EdgeCount; ++i) result[fade][i] = std::exp(scores[fade][i] - best);
    }
    Normalize(result, 0);
    return result;
}

CutPrior::Kernel CutPrior::KernelOf(double jitter) {
    Kernel kernel;
    std::array<double, MostReach + 1> polls{};
    std::array<double, MostReach + 1> late{};
    double pollSum = 0;
    double lateSum = 0;
    kernel.Reach = std::max(static_cast<size_t>(jitter) + 1, LateReach);
    for (size_t i = 0; i <= kernel.Reach; ++i) {
        const auto distance = static_cast<double>(i);
        const int sides = i == 0 ? 1 : 2;
        polls[i] = std::clamp((jitter + 2 - distance) / 3, 0.0, 1.0);
        late[i] = std::exp(-distance / LateSlots);
        pollSum += sides * polls[i];
        lateSum += sides * late[i];
    }
    for (size_t i = 0; i <= kernel.Reach; ++i) {
        kernel.Weights[i] =
            static_cast<float>(PollShare * polls[i] / pollSum + (1 - PollShare) * late[i] / lateSum);
    }
    return kernel;
}

CutPrior::CutPrior(int32_t jitterSlots) {
    static_assert(JitterTimes.size() == Jitters);
    const double usual = std::clamp(jitterSlots, 1, MostJitter);
    for (size_t i = 0; i < Jitters; ++i) {
        Kernels[i] = KernelOf(std::min<double>(std::round(usual * JitterTimes[i]), MostJitter));
    }
    for (auto& jitters : Known) {
        for (EdgeRow& row : jitters) row.fill(1.0F / (Meanings * Jitters * EdgeCount));
    }
    Kinds.fill(1);
    Expect();
}

EdgeRow CutPrior::Spread(const EdgeRow& row, const Kernel& kernel) {
    EdgeRow result{};
    for (size_t to = 0; to < EdgeCount; ++to) {
        const size_t first = to - std::min(to, kernel.Reach);
        const size_t last = std::min(to + kernel.Reach, EdgeCount - 1);
        for (size_t from = first; from <= last; ++from) {
            result[to] += row[from] * kernel.Weights[from < to ? to - from : from - to];
        }
    }
    return result;
}

float CutPrior::ShareOf(size_t fade) const {
    return Kinds[fade] / std::accumulate(Kinds.begin(), Kinds.end(), 0.0F);
}

void CutPrior::Expect() {
    Prior = {};
    GapPrior = {};
    for (size_t meaning = 0; meaning < Meanings; ++meaning) {
        EdgeRow places{};
        for (size_t jitter = 0; jitter < Jitters; ++jitter) {
            const EdgeRow spread = Spread(Known[meaning][jitter], Kernels[jitter]);
            for (size_t i = 0; i < EdgeCount; ++i) places[i] += spread[i];
        }
        for (size_t i = 0; i < EdgeCount; ++i) GapPrior[i] += places[i];
        for (size_t fade = 0; fade < FadeCount; ++fade) {
            const size_t after = MiddleAfter(meaning, fade);
            const float share = ShareOf(fade);
            for (size_t i = after; i < EdgeCount; ++i) Prior[fade][i] += share * places[i - after];
        }
    }
    Normalize(Prior, SurpriseShare);
    const float sum = std::accumulate(GapPrior.begin(), GapPrior.end(), 0.0F);
    for (float& chance : GapPrior) chance = (1 - SurpriseShare) * chance / sum + SurpriseShare / EdgeCount;
}

/// `support` is 1 where a song says neither one thing nor the other.
void CutPrior::Absorb(const Delays& support) {
    double sum = 0;
    for (size_t meaning = 0; meaning < Meanings; ++meaning) {
        for (size_t jitter = 0; jitter < Jitters; ++jitter) {
            EdgeRow& row = Known[meaning][jitter];
            for (size_t i = 0; i < EdgeCount; ++i) {
                row[i] *= DoubtShare + (1 - DoubtShare) * support[meaning][jitter][i];
            }
        }
        sum += SumOf(Known[meaning]);
    }
    const auto scale = static_cast<float>((1 - ForgettingShare) / sum);
    for (auto& jitters : Known) {
        for (EdgeRow& row : jitters) {
            for (float& value : row) {
                value = value * scale + ForgettingShare / (Meanings * Jitters * EdgeCount);
            }
        }
    }
    ++LearnedSongs;
}

/// What was heard, where it was expected, says how the song followed.
void CutPrior::CountKinds(const EdgeTable& heard) {
    std::array<float, FadeCount> likely{};
    for (size_t fade = 0; fade < FadeCount; ++fade) {
        likely[fade] = std::inner_product(heard[fade].begin(), heard[fade].end(), Prior[fade].begin(), 0.0F);
    }
    const float sum = std::accumulate(likely.begin(), likely.end(), 0.0F);
    if (sum <= 0) return;
    // The song that each kind began with stays: no kind is ruled out.
    for (size_t fade = 0; fade < FadeCount; ++fade) {
        Kinds[fade] = 1 + KeptKinds * (Kinds[fade] - 1) + likely[fade] / sum;
    }
}

void CutPrior::Learn(const EdgeTable& scores) {
    const EdgeTable heard = ProbabilitiesOf(scores);
    if (SumOf(heard) <= 0) return;
    CountKinds(heard);
    Delays support{};
    for (size_t jitter = 0; jitter < Jitters; ++jitter) {
        for (size_t fade = 0; fade < FadeCount; ++fade) {
            const EdgeRow spread = Spread(heard[fade], Kernels[jitter]);
            const float share = Joins * ShareOf(fade);
            for (size_t meaning = 0; meaning < Meanings; ++meaning) {
                const size_t after = MiddleAfter(meaning, fade);
                EdgeRow& row = support[meaning][jitter];
                for (size_t i = after; i < EdgeCount; ++i) row[i - after] += share * spread[i];
            }
        }
    }
    Absorb(support);
    Expect();
}

void CutPrior::LearnGap(EdgeRange gap) {
    const int32_t first = std::max(gap.First, FirstEdge);
    const int32_t last = std::min(gap.Last, LastEdge);
    if (first > last) return;
    EdgeRow heard{};
    const float each = EdgeCount / static_cast<float>(last - first + 1);
    for (int32_t edge = first; edge <= last; ++edge) heard[IndexOfEdge(edge)] = each;
    Delays support{};
    for (auto& jitters : support) {
        for (size_t jitter = 0; jitter < Jitters; ++jitter) jitters[jitter] = Spread(heard, Kernels[jitter]);
    }
    Absorb(support);
    Expect();
}

void CutPrior::LearnCorrection(int32_t edge) {
    for (uint32_t song = 0; song < SongsOfCorrection; ++song) LearnGap({edge, edge});
}

EdgeRange CutPrior::LikelyEdges() const {
    const auto reaching = [&](float share) {
        float sum = 0;
        for (size_t i = 0; i < EdgeCount; ++i) {
            sum += GapPrior[i];
            if (sum >= share) return EdgeAt(i);
        }
        return LastEdge;
    };
    return {reaching(LikelyTail), reaching(1 - LikelyTail)};
}

std::string CutPrior::Text() const {
    std::string text = std::string(TextName) + ' ' + std::to_string(TextVersion) + ' ' +
                       std::to_string(FadeCount) + ' ' + std::to_string(EdgeCount) + ' ' +
                       std::to_string(std::min<uint64_t>(LearnedSongs, MostSongs)) + '\n';
    const auto addNumbers = [&](const auto& numbers, uint64_t units) {
        for (const float number : numbers) {
            text += std::to_string(std::llround(static_cast<double>(number) * static_cast<double>(units)));
            text += ' ';
        }
        text.back() = '\n';
    };
    addNumbers(Kinds, KindUnits);
    for (const auto& jitters : Known) {
        for (const EdgeRow& row : jitters) addNumbers(row, TextUnits);
    }
    return text;
}

bool CutPrior::IsOfLaterVersion(std::string_view text) {
    Words words(text);
    if (words.Next() != TextName) return false;
    return words.Number(std::numeric_limits<uint64_t>::max()).value_or(0) > TextVersion;
}

std::optional<CutPrior> CutPrior::FromText(std::string_view text, int32_t jitterSlots) {
    Words words(text);
    if (words.Next() != TextName || words.Number(TextVersion) != TextVersion) return std::nullopt;
    if (words.Number(FadeCount) != FadeCount || words.Number(EdgeCount) != EdgeCount) return std::nullopt;
    const std::optional<uint64_t> songs = words.Number(MostSongs);
    if (!songs) return std::nullopt;
    CutPrior prior(jitterSlots);
    for (float& kind : prior.Kinds) {
        const std::optional<uint64_t> number = words.Number(MostOfKind);
        if (!number || *number < KindUnits) return std::nullopt;  // each began with a song
        kind = static_cast<float>(*number) / KindUnits;
    }
    uint64_t sum = 0;
    for (auto& jitters : prior.Known) {
        for (EdgeRow& row : jitters) {
            for (float& value : row) {
                const std::optional<uint64_t> number = words.Number(TextUnits);
                if (!number || *number == 0) return std::nullopt;  // all that is learned leaves something
                sum += *number;
                value = static_cast<float>(static_cast<double>(*number) / TextUnits);
            }
        }
    }
    // Each number was rounded, and the table adds up to 1 within the precision of its values.
    constexpr uint64_t tolerance = TextUnits / 10'000;
    const bool whole = sum >= TextUnits - tolerance && sum <= TextUnits + tolerance;
    if (!whole || !words.Empty()) return std::nullopt;
    prior.LearnedSongs = static_cast<uint32_t>(*songs);
    prior.Expect();
    return prior;
}

}  // namespace Corvetape
