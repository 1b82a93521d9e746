#include "audio/cut_prior.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <numeric>

namespace Corvetape {

namespace {

constexpr size_t Joins = FadeCount * EdgeCount;
constexpr float Even = 1.0F / Joins;

// A kind of join mostly keeps to itself, but the delay of the titles is the same for all kinds.
constexpr float OwnShare = 0.7F;
constexpr float CommonShare = 0.3F;

/// Jitter is mostly that of the poll; now and then a title is much later.
constexpr double PollShare = 0.95;
constexpr double LateSlots = 8;
constexpr size_t LateReach = 40;  ///< farther ones are as rare as other surprises

constexpr float SurpriseShare = 0.01F;     ///< of a join where nothing was learned
constexpr float DoubtShare = 0.05F;        ///< of a song that says nothing about the delay
constexpr float ForgettingShare = 0.005F;  ///< what every song takes off all that was learned before

constexpr float LikelyTail = 0.01F;

constexpr std::string_view TextName = "cut-prior";
constexpr uint64_t TextVersion = 1;
constexpr uint64_t TextUnits = 1'000'000'000;
constexpr uint64_t MostSongs = 1'000'000'000;

double SumOf(const EdgeTable& table) {
    double sum = 0;
    for (const EdgeRow& row : table) sum = std::accumulate(row.begin(), row.end(), sum);
    return sum;
}

/// Scales to a sum of 1, with a share of it the same everywhere.
void Normalize(EdgeTable& table, float evenShare) {
    const auto scale = static_cast<float>((1 - evenShare) / SumOf(table));
    for (EdgeRow& row : table) {
        for (float& value : row) value = value * scale + evenShare * Even;
    }
}

EdgeRow SumOfRows(const EdgeTable& table) {
    EdgeRow sums{};
    for (const EdgeRow& row : table) {
        for (size_t i = 0; i < EdgeCount; ++i) sums[i] += row[i];
    }
    return sums;
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

CutPrior::CutPrior(int32_t jitterSlots) {
    const auto jitter = static_cast<double>(std::clamp(jitterSlots, 1, MostJitter));
    std::array<double, MostReach + 1> polls{};
    std::array<double, MostReach + 1> late{};
    double pollSum = 0;
    double lateSum = 0;
    Reach = std::max(static_cast<size_t>(jitter) + 1, LateReach);
    for (size_t i = 0; i <= Reach; ++i) {
        const auto distance = static_cast<double>(i);
        const int sides = i == 0 ? 1 : 2;
        polls[i] = std::clamp((jitter + 2 - distance) / 3, 0.0, 1.0);
        late[i] = std::exp(-distance / LateSlots);
        pollSum += sides * polls[i];
        lateSum += sides * late[i];
    }
    for (size_t i = 0; i <= Reach; ++i) {
        Kernel[i] = static_cast<float>(PollShare * polls[i] / pollSum + (1 - PollShare) * late[i] / lateSum);
    }
    for (EdgeRow& row : Delays) row.fill(Even);
    Expect();
}

EdgeRow CutPrior::Spread(const EdgeRow& row) const {
    EdgeRow result{};
    for (size_t to = 0; to < EdgeCount; ++to) {
        const size_t first = to - std::min(to, Reach);
        const size_t last = std::min(to + Reach, EdgeCount - 1);
        for (size_t from = first; from <= last; ++from) {
            result[to] += row[from] * Kernel[from < to ? to - from : from - to];
        }
    }
    return result;
}

void CutPrior::Expect() {
    const EdgeRow common = Spread(SumOfRows(Delays));
    for (size_t fade = 0; fade < FadeCount; ++fade) {
        const EdgeRow own = Spread(Delays[fade]);
        for (size_t i = 0; i < EdgeCount; ++i) {
            Prior[fade][i] = OwnShare * own[i] + CommonShare / FadeCount * common[i];
        }
    }
    Normalize(Prior, SurpriseShare);
}

void CutPrior::Absorb(const EdgeTable& heard) {
    // Both weights make a song that says nothing, equally likely everywhere, leave all as it is.
    constexpr float ownWeight = OwnShare * FadeCount * EdgeCount;
    constexpr float commonWeight = CommonShare * EdgeCount;
    const EdgeRow common = Spread(SumOfRows(heard));
    for (size_t fade = 0; fade < FadeCount; ++fade) {
        const EdgeRow own = Spread(heard[fade]);
        for (size_t i = 0; i < EdgeCount; ++i) {
            const float support = ownWeight * own[i] + commonWeight * common[i];
            Delays[fade][i] *= DoubtShare + (1 - DoubtShare) * support;
        }
    }
    Normalize(Delays, ForgettingShare);
}

void CutPrior::Learn(const EdgeTable& scores) {
    const EdgeTable heard = ProbabilitiesOf(scores);
    if (SumOf(heard) <= 0) return;
    Absorb(heard);
    ++LearnedSongs;
    Expect();
}

void CutPrior::LearnGap(EdgeRange gap) {
    const int32_t first = std::max(gap.First, FirstEdge);
    const int32_t last = std::min(gap.Last, LastEdge);
    if (first > last) return;
    EdgeTable heard{};
    const float each = 1.0F / (static_cast<float>(last - first + 1) * FadeCount);
    for (EdgeRow& row : heard) {
        for (int32_t edge = first; edge <= last; ++edge) row[IndexOfEdge(edge)] = each;
    }
    Absorb(heard);
    ++LearnedSongs;
    Expect();
}

void CutPrior::LearnCorrection(int32_t edge) {
    for (uint32_t song = 0; song < SongsOfCorrection; ++song) LearnGap({edge, edge});
}

EdgeRange CutPrior::LikelyEdges() const {
    const EdgeRow edges = SumOfRows(Prior);
    const auto reaching = [&](float share) {
        float sum = 0;
        for (size_t i = 0; i < EdgeCount; ++i) {
            sum += edges[i];
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
    for (const EdgeRow& row : Delays) {
        for (size_t i = 0; i < EdgeCount; ++i) {
            text += std::to_string(std::llround(static_cast<double>(row[i]) * TextUnits));
            text += i + 1 < EdgeCount ? ' ' : '\n';
        }
    }
    return text;
}

std::optional<CutPrior> CutPrior::FromText(std::string_view text, int32_t jitterSlots) {
    Words words(text);
    if (words.Next() != TextName || words.Number(TextVersion) != TextVersion) return std::nullopt;
    if (words.Number(FadeCount) != FadeCount || words.Number(EdgeCount) != EdgeCount) return std::nullopt;
    const std::optional<uint64_t> songs = words.Number(MostSongs);
    if (!songs) return std::nullopt;
    EdgeTable delays{};
    uint64_t sum = 0;
    for (EdgeRow& row : delays) {
        for (float& value : row) {
            const std::optional<uint64_t> number = words.Number(TextUnits);
            if (!number || *number == 0) return std::nullopt;  // all that is learned leaves something
            sum += *number;
            value = static_cast<float>(static_cast<double>(*number) / TextUnits);
        }
    }
    // Each number was rounded, and the table adds up to 1 within the precision of its values.
    constexpr uint64_t tolerance = TextUnits / 10'000;
    const bool whole = sum >= TextUnits - tolerance && sum <= TextUnits + tolerance;
    if (!whole || !words.Empty()) return std::nullopt;
    CutPrior prior(jitterSlots);
    prior.Delays = delays;
    prior.LearnedSongs = static_cast<uint32_t>(*songs);
    prior.Expect();
    return prior;
}

}  // namespace Corvetape
