// How far cuts are from the true joins of real songs, through the search for boundaries alone: quick enough
// to try changes of it, which bench/radios.cpp is not. Radios are made and measured once and kept in a
// folder. Then their joins follow one another in many orders, with many delays of the titles, each time at a
// source of which nothing is known at first.
//
//   bench-joins make FOLDER [FOLDERS OF MUSIC, SEPARATED BY COLONS]   some ten minutes
//   bench-joins FOLDER [ORDERS]                                       a minute
//
// Radios are made station by station; what is there when all kinds of one are made can be measured.
//
// A change of the search is tried on music of which none is in the usual folders, and measured once on that.
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <numeric>
#include <string_view>
#include <vector>

#include "audio/evidence_cut.h"
#include "audio/talk_search.h"
#include "recording/automatic/automatic_end.h"
#include "support/measured_radio.h"

namespace Corvetape::Bench {
namespace {

constexpr const char* UsualFolders =
    "/usr/share/games/wesnoth/1.16/data/core/music:"
    "/usr/share/games/warzone2100/music";
constexpr size_t JoinsOfRadio = 30;
constexpr size_t Stations = 4;       ///< with and without MP3 and gain control
constexpr size_t MixedOrders = 4;    ///< for each one of a single kind
constexpr double PollSeconds = 0.6;  ///< that a title waits at most until it is seen
constexpr double SlotSeconds = 0.05;

constexpr StationSound SoundOf(size_t station) {
    return {station % 2 == 1, station / 2 == 1};
}

std::string FileOf(const std::string& folder, size_t kind, size_t station) {
    return fmt::format("{}/{}-{}.slots", folder, kind, station);
}

int Make(const std::string& folder, const std::string& music) {
    const WorkFolder shelfFolder;
    const WorkFolder work;
    const MusicShelf shelf(music, shelfFolder);
    const SpeechShelf speech(shelfFolder);
    fmt::print("{} songs, {} sentences\n", shelf.Size(), speech.Size());
    if (shelf.Size() < 2 || speech.Size() == 0) return 1;
    std::filesystem::create_directories(folder);
    const std::span<const JoinKind> kinds = RadioKinds();
    for (size_t station = 0; station < Stations; ++station) {
        for (size_t kind = 0; kind < kinds.size(); ++kind) {
            if (std::filesystem::exists(FileOf(folder, kind, station))) continue;
            SimRandom random(1 + 100 * kind + station);
            const MadeRadio made =
                ComposeRadio({shelf, speech}, JoinsOfRadio, kinds.subspan(kind, 1), random);
            const MeasuredRadio measured = MeasureRadio(made, SoundOf(station), work);
            if (measured.Slots.empty() || !Keep(measured, FileOf(folder, kind, station))) {
                fmt::print("A radio could not be made: ffmpeg, its MP3 encoder or room is missing.\n");
                return 1;
            }
        }
    }
    return 0;
}

/// One join of a radio, which other joins come before and after.
struct JoinPlace {
    const MeasuredRadio* Radio = nullptr;
    size_t Kind = 0;
    size_t Number = 0;

    const RadioJoin& Join() const { return Radio->Joins[Number]; }
};

/// A source: what its titles mean and how late they come, and the order of its joins.
struct Source {
    bool MeansMiddle = false;
    double Delay = 0;
    std::vector<JoinPlace> Joins;
};

struct Outcome {
    JoinPlace Place;
    size_t Station = 0;
    size_t Song = 0;  ///< of its source, from 0
    double Error = 0;
    float Confidence = 0;
    float Evidence = 0;
    bool Gap = false;
    bool ForTalk = false;  ///< talk was found
};

struct Results {
    std::vector<Outcome> Cuts;
    std::vector<float> WithinSongs;  ///< evidence where no song ends
    size_t TalkWithinSongs = 0;
};

int64_t SlotOfTitle(const Source& source, const RadioJoin& join, SimRandom& random) {
    const double meant = source.MeansMiddle ? join.Middle() : join.NewBegin;
    const double at = meant + source.Delay + random.Between(0.0, TitleDelay{}.Jitter);
    return static_cast<int64_t>((at + random.Between(0.0, PollSeconds)) / SlotSeconds);
}

FeatureHistory HistoryAt(const MeasuredRadio& radio, int64_t change) {
    const int64_t begin = std::max<int64_t>(change + FirstSlotOfSearch, 0);
    const int64_t end = std::min(change + SlotsAfterChange, static_cast<int64_t>(radio.Slots.size()));
    FeatureHistory history(HistorySlots);
    history.Restart(begin);
    for (int64_t slot = begin; slot < end; ++slot) history.Add(radio.Slots[static_cast<size_t>(slot)]);
    return history;
}

CutQuestion QuestionAt(const MeasuredRadio& radio, const FeatureHistory& history, int64_t change) {
    return {history, change, radio.Levels, static_cast<size_t>(change), {-FirstEdge, SlotsAfterChange - 1}};
}

/// A cut as the recorder makes it.
Outcome CutAt(const JoinPlace& place, int64_t change, EvidenceCutter& cutter, CutPrior& prior) {
    const FeatureHistory history = HistoryAt(*place.Radio, change);
    Outcome outcome;
    outcome.Place = place;
    outcome.Error = FarthestCut;
    const auto cut = cutter.Decide(QuestionAt(*place.Radio, history, change), prior);
    if (!cut) return outcome;
    outcome.Gap = cut->IsGap();
    outcome.Confidence = cut->Confidence;
    outcome.Evidence = cut->Evidence;
    double oldEnd = static_cast<double>(change + cut->OldEnd) * SlotSeconds;
    double newBegin = static_cast<double>(change + cut->NewBegin) * SlotSeconds;
    const bool enough = cut->Evidence >= AutomaticEnd::LeastEvidence;
    if (!outcome.Gap && enough) {
        if (const auto talk = FindTalk(history, change, {FirstEdge, LastEdge})) {
            outcome.ForTalk = true;
            oldEnd = static_cast<double>(change + talk->First) * SlotSeconds;
            newBegin = static_cast<double>(change + talk->Last) * SlotSeconds;
        }
    }
    outcome.Error = NearestError({{0, oldEnd}, {newBegin, newBegin + 1}}, place.Join());
    if (outcome.Gap || enough) cutter.Teach(prior);
    return outcome;
}

void Play(const Source& source, size_t station, SimRandom& random, Results& results) {
    CutPrior prior;
    EvidenceCutter cutter;
    for (size_t song = 0; song < source.Joins.size(); ++song) {
        const JoinPlace& place = source.Joins[song];
        Outcome outcome = CutAt(place, SlotOfTitle(source, place.Join(), random), cutter, prior);
        outcome.Song = song;
        outcome.Station = station;
        results.Cuts.push_back(outcome);
        if (song < 5 || song % 4 != 0) continue;
        // A title that changes within a song, as far from its beginning as from where its two parts meet.
        const auto change = static_cast<int64_t>((place.Join().NewBegin + 18) / SlotSeconds);
        const FeatureHistory history = HistoryAt(*place.Radio, change);
        const auto none = cutter.Decide(QuestionAt(*place.Radio, history, change), prior);
        if (!none || none->IsGap()) continue;
        results.WithinSongs.push_back(none->Evidence);
        results.TalkWithinSongs += FindTalk(history, change, {FirstEdge, LastEdge}) ? 1 : 0;
    }
}

template <typename Item>
void Shuffle(std::vector<Item>& items, SimRandom& random) {
    for (size_t i = items.size(); i > 1; --i) std::swap(items[i - 1], items[random.Below(i)]);
}

double Quantile(std::vector<double>& sorted, double share) {
    return sorted[std::min(static_cast<size_t>(share * static_cast<double>(sorted.size())),
                           sorted.size() - 1)];
}

/// Median and 90 % of errors in ms, with the ranges that nine of ten samples of as many joins would have: the
/// same join comes in many orders, so joins are drawn, and not cuts.
std::string Summary(const std::vector<Outcome>& cuts, size_t from, size_t end) {
    std::map<std::pair<const MeasuredRadio*, size_t>, std::vector<double>> byJoin;
    std::vector<double> all;
    for (const Outcome& cut : cuts) {
        if (cut.Song < from || cut.Song >= end) continue;
        byJoin[{cut.Place.Radio, cut.Place.Number}].push_back(1000 * cut.Error);
        all.push_back(1000 * cut.Error);
    }
    if (all.empty()) return "-";
    std::vector<const std::vector<double>*> joins;
    for (const auto& [join, errors] : byJoin) joins.push_back(&errors);
    SimRandom random(7);
    std::array<std::vector<double>, 2> drawn;
    for (int round = 0; round < 200; ++round) {
        std::vector<double> sample;
        for (size_t i = 0; i < joins.size(); ++i) {
            const std::vector<double>& errors = *random.Pick(joins);
            sample.insert(sample.end(), errors.begin(), errors.end());
        }
        std::ranges::sort(sample);
        drawn[0].push_back(Quantile(sample, 0.5));
        drawn[1].push_back(Quantile(sample, 0.9));
    }
    for (auto& each : drawn) std::ranges::sort(each);
    std::ranges::sort(all);
    return fmt::format("{:.0f}/{:.0f} ({:.0f}-{:.0f}/{:.0f}-{:.0f})", Quantile(all, 0.5), Quantile(all, 0.9),
                       Quantile(drawn[0], 0.05), Quantile(drawn[0], 0.95), Quantile(drawn[1], 0.05),
                       Quantile(drawn[1], 0.95));
}

/// Within `limit` of the join, or for 0 inside the fade, the gap, or within 100 ms of both ends of the talk.
double ShareWithin(const std::vector<Outcome>& cuts, double limit) {
    size_t all = 0;
    size_t within = 0;
    for (const Outcome& cut : cuts) {
        if (cut.Song < 20) continue;
        const RadioJoin& join = cut.Place.Join();
        const bool talk = join.Kind.Spoken == Talk::Between;
        const double inside = talk ? 0.1 : std::abs(join.OldEnd - join.NewBegin) / 2 + 0.05;
        ++all;
        within += cut.Error <= (limit > 0 ? limit : inside) ? 1 : 0;
    }
    return all == 0 ? 0 : 100.0 * static_cast<double>(within) / static_cast<double>(all);
}

void PrintRow(const std::string& name, const std::vector<Outcome>& cuts) {
    const auto last = std::ranges::count_if(cuts, [](const Outcome& cut) { return cut.Song >= 20; });
    fmt::print("| {} | {} | {} | {} | {} | {:.0f} % | {:.0f} % |\n", name, Summary(cuts, 0, 5),
               Summary(cuts, 5, 20), Summary(cuts, 20, JoinsOfRadio), last, ShareWithin(cuts, 0.2),
               ShareWithin(cuts, 0));
    std::fflush(stdout);
}

void PrintCertainty(const Results& results) {
    constexpr std::array<float, 10> limits = {0, 0.3F, 0.5F, 0.6F, 0.7F, 0.8F, 0.85F, 0.9F, 0.95F, 2};
    fmt::print("\n| confidence | cuts without a gap | within 300 ms |\n|---|---|---|\n");
    for (size_t i = 0; i + 1 < limits.size(); ++i) {
        size_t all = 0;
        size_t near = 0;
        for (const Outcome& cut : results.Cuts) {
            if (cut.Gap || cut.ForTalk || cut.Song < 5) continue;
            if (cut.Confidence < limits[i] || cut.Confidence >= limits[i + 1]) continue;
            ++all;
            near += cut.Error <= 0.3 ? 1 : 0;
        }
        fmt::print("| {:.2f} and more | {} | {:.0f} % |\n", limits[i], all,
                   100.0 * static_cast<double>(near) / static_cast<double>(std::max<size_t>(all, 1)));
    }
    fmt::print(
        "\n| least evidence | changes that are none dropped, of {} | real ones dropped |\n|---|---|---|\n",
        results.WithinSongs.size());
    std::vector<float> real;
    for (const Outcome& cut : results.Cuts)
        if (!cut.Gap && cut.Song >= 5) real.push_back(cut.Evidence);
    const auto below = [](const std::vector<float>& values, float limit) {
        const auto count = std::ranges::count_if(values, [limit](float each) { return each < limit; });
        return 100.0 * static_cast<double>(count) / static_cast<double>(std::max<size_t>(values.size(), 1));
    };
    for (float limit = 0; limit < 6; limit += 0.4F) {
        fmt::print("| {:.1f} | {:.0f} % | {:.1f} % |\n", limit, below(results.WithinSongs, limit),
                   below(real, limit));
    }
    fmt::print("\nTalk found within songs: {}\n", results.TalkWithinSongs);
}

int PlayAll(const std::string& folder, size_t orders) {
    const std::span<const JoinKind> kinds = RadioKinds();
    size_t stations = 0;
    while (stations < Stations && std::filesystem::exists(FileOf(folder, kinds.size() - 1, stations)))
        ++stations;
    if (stations == 0) {
        fmt::print("No radios in {}: make them first.\n", folder);
        return 1;
    }
    std::vector<std::vector<MeasuredRadio>> radios(kinds.size());
    for (size_t kind = 0; kind < kinds.size(); ++kind) {
        for (size_t station = 0; station < stations; ++station) {
            radios[kind].push_back(ReadMeasured(FileOf(folder, kind, station), kinds[kind]));
            if (!radios[kind].back().Slots.empty()) continue;
            fmt::print("{} cannot be read: make it anew.\n", FileOf(folder, kind, station));
            return 1;
        }
    }
    fmt::print("Error in ms, median/90 % (ranges of nine tenths), {} orders of {} joins for each kind\n\n",
               orders * stations, JoinsOfRadio);
    fmt::print("| join | first 5 | 6 to 20 | from 21 on | cuts of these | within 200 ms | inside |\n");
    fmt::print("|---|---|---|---|---|---|---|\n");
    Results all;
    for (size_t kind = 0; kind <= kinds.size(); ++kind) {
        const bool mixed = kind == kinds.size();
        Results results;
        for (size_t order = 0; order < stations * orders * (mixed ? MixedOrders : 1); ++order) {
            const size_t station = order % stations;
            SimRandom random(1000 * kind + order);
            Source source;
            source.MeansMiddle = order / stations % 2 == 0;
            source.Delay = random.Between(-1.0, 6.0);
            for (size_t join = 0; join < JoinsOfRadio; ++join) {
                const size_t which = mixed ? random.Below(kinds.size()) : kind;
                const size_t number = mixed ? random.Below(JoinsOfRadio) : join;
                source.Joins.push_back({&radios[which][station], which, number});
            }
            Shuffle(source.Joins, random);
            Play(source, station, random, results);
        }
        PrintRow(mixed ? "all mixed" : kinds[kind].Name, results.Cuts);
        all.Cuts.insert(all.Cuts.end(), results.Cuts.begin(), results.Cuts.end());
        all.WithinSongs.insert(all.WithinSongs.end(), results.WithinSongs.begin(), results.WithinSongs.end());
        all.TalkWithinSongs += results.TalkWithinSongs;
    }
    for (const bool byMp3 : {false, true}) {
        std::vector<Outcome> sent;
        for (const Outcome& cut : all.Cuts)
            if (SoundOf(cut.Station).ByMp3 == byMp3) sent.push_back(cut);
        PrintRow(byMp3 ? "everything, through MP3" : "everything, as it was made", sent);
    }
    PrintCertainty(all);
    return 0;
}

}  // namespace
}  // namespace Corvetape::Bench

int main(int count, char** words) {
    using namespace Corvetape::Bench;
    const std::vector<std::string> arguments(words + 1, words + count);
    if (arguments.empty()) {
        fmt::print("bench-joins make FOLDER [FOLDERS OF MUSIC] | bench-joins FOLDER [ORDERS]\n");
        return 0;  // part of all measurements, where bench/radios.cpp says more
    }
    if (arguments[0] == "make" && arguments.size() > 1) {
        return Make(arguments[1], arguments.size() > 2 ? arguments[2] : UsualFolders);
    }
    return PlayAll(arguments[0], arguments.size() > 1 ? std::strtoull(words[2], nullptr, 10) : 4);
}
