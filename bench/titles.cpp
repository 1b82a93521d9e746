// How far the cuts are from the true boundaries of a made-up radio when titles tell of them: titles that come
// early, on time, late or now so, now so, and songs with gaps, without, and cross-faded.
//
//   bench-titles [RADIOS]
#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <vector>

#include "platform/virtual/sim_random.h"
#include "support/found_songs.h"
#include "support/made_music.h"
#include "support/measured_process.h"
#include "support/work_folder.h"

namespace Corvetape::Bench {
namespace {

constexpr const char* Program = CORVETAPE_BINARY_DIR "/bin/corvetape-cli";
constexpr double Rate = 44100;

/// From here on a cut has damaged a song, in seconds. Two buffers, which no ear tells from none.
constexpr double Damage = 0.1;

struct Join {
    const char* Name;
    double GapSeconds;
    double OverlapSeconds;
};

/// When titles come, in seconds after the beginning of their songs, with the window that fits: how far
/// before and after the change the cut is looked for, in milliseconds.
struct Timing {
    const char* Name;
    double Least;
    double Most;
    int Before;
    int After;
};

constexpr Join Joins[] = {
    {"gaps of 1 s", 1, 0}, {"gaps of 0.2 s", 0.2, 0}, {"no gaps", 0, 0}, {"cross-fades of 3 s", 0, 3}};

// A change is seen up to half a second after it was made.
constexpr Timing Timings[] = {{"up to 2 s early", -2, 0, 1000, 2500},
                              {"on time", 0, 0, 1000, 500},
                              {"up to 5 s late", 0, 5, 5000, 500},
                              {"up to 0.8 s early or late", -0.8, 0.8, 1500, 1500}};

constexpr int UsualReach = 3000;

/// The place between two songs, in seconds. A cut between From and To is right, one between Free and Alone
/// does no harm: only there both songs or none of them sound.
struct Boundary {
    double From = 0;
    double To = 0;
    double Free = 0;
    double Alone = 0;
};

Boundary BoundaryBefore(const RadioTimeline& radio, size_t song) {
    const double begin = static_cast<double>(radio.Songs()[song].Begin) / Rate;
    const double end = song == 0 ? 0 : static_cast<double>(radio.Songs()[song - 1].End) / Rate;
    if (end <= begin) return {end, begin, end, begin};
    const double middle = (begin + end) / 2;
    return {middle, middle, begin, end};
}

/// What came of all boundaries of one kind.
struct Outcome {
    std::vector<double> Errors;  ///< seconds, of the worse edge of each cut
    size_t Missed = 0;           ///< boundaries without a cut
    size_t Songs = 0;
    size_t Damaged = 0;
};

double Outside(double place, double from, double to) {
    return std::max({from - place, place - to, 0.0});
}

/// Each boundary belongs to the cut that is nearest to it; none within this time: it was missed.
constexpr double NearestCut = 10;

void Count(const RadioTimeline& radio, const std::vector<FoundSong>& found, Outcome& outcome) {
    std::vector<bool> damaged(radio.Songs().size());
    for (size_t song = 0; song < damaged.size(); ++song) {
        const Boundary truth = BoundaryBefore(radio, song);
        double best = NearestCut;
        double harm = 0;
        for (size_t i = 1; i < found.size(); ++i) {
            const double end = found[i - 1].End;
            const double begin = found[i].Begin;
            const double error =
                std::max(Outside(end, truth.From, truth.To), Outside(begin, truth.From, truth.To));
            if (error >= best) continue;
            best = error;
            harm = std::max(Outside(end, truth.Free, truth.Alone), Outside(begin, truth.Free, truth.Alone));
        }
        const bool missed = best >= NearestCut;
        if (!missed) outcome.Errors.push_back(best);
        outcome.Missed += missed ? 1 : 0;
        if (!missed && harm <= Damage) continue;
        damaged[song] = true;
        if (song > 0) damaged[song - 1] = true;
    }
    outcome.Songs += damaged.size();
    outcome.Damaged += static_cast<size_t>(std::ranges::count(damaged, true));
}

void WriteTitles(const RadioTimeline& radio, const Timing& timing, uint64_t seed, const std::string& path) {
    SimRandom random(seed);
    std::ofstream table(path);
    for (size_t song = 0; song < radio.Songs().size(); ++song) {
        const SourceMedia& media = radio.Songs()[song].Media;
        const double at = BoundaryBefore(radio, song).To + random.Between(timing.Least, timing.Most);
        table << fmt::format("{:.3f},{},{},{}\n", at, media.StationName, media.Artist, media.Song);
    }
}

bool Split(const WorkFolder& folder, const RadioTimeline& radio, int before, int after, Outcome& outcome) {
    const Cost cost =
        Measure({{Program, "split", "radio.wav", "--media", "titles.csv", "--out", "out", "--home", "home",
                  "--json", "--set", "Options.EncodeOffline=1", "--set", "Source.EndOfSongDetection=1",
                  "--set", fmt::format("Source.EndOfSongThreshold0={}", before), "--set",
                  fmt::format("Source.EndOfSongThreshold1={}", after)},
                 folder.Path(),
                 folder / "printed"});
    std::filesystem::remove_all(folder / "out");
    if (cost.ExitCode != 0) return false;
    Count(radio, SongsIn(folder / "printed"), outcome);
    return true;
}

struct Row {
    Outcome Usual;  ///< with the window that the program begins with
    Outcome Fitted;
};

std::string Cells(Outcome& outcome) {
    std::ranges::sort(outcome.Errors);
    const auto ms = [&](size_t place) {
        return outcome.Errors.empty() ? std::numeric_limits<double>::quiet_NaN()
                                      : 1000 * outcome.Errors[place];
    };
    return fmt::format("{:.0f} | {:.0f} | {} | {:.0f} %", ms(outcome.Errors.size() / 2),
                       ms(outcome.Errors.empty() ? 0 : outcome.Errors.size() - 1), outcome.Missed,
                       100.0 * static_cast<double>(outcome.Damaged) / static_cast<double>(outcome.Songs));
}

void Print(std::vector<std::vector<Row>>& rows) {
    fmt::print(
        "Error of a cut in milliseconds: how far the worse of its two edges is outside the gap, or from\n"
        "the middle of the cross-fade. A song is damaged if more than {:.0f} ms of it are missing, or of "
        "its\n"
        "neighbour are in its file. {} songs a row.\n\n"
        "| titles | songs with | window s | median | worst | missed | damaged "
        "|\n|---|---|---|---|---|---|---|\n",
        1000 * Damage, rows[0][0].Usual.Songs);
    for (size_t t = 0; t < std::size(Timings); ++t) {
        const Timing& timing = Timings[t];
        for (size_t j = 0; j < std::size(Joins); ++j) {
            fmt::print("| {} | {} | -3 to 3 | {} |\n", timing.Name, Joins[j].Name, Cells(rows[j][t].Usual));
            fmt::print("| {} | {} | {:.1f} to {:.1f} | {} |\n", timing.Name, Joins[j].Name,
                       -timing.Before / 1000.0, timing.After / 1000.0, Cells(rows[j][t].Fitted));
        }
    }
}

int Main(uint64_t radios) {
    const WorkFolder folder;
    std::filesystem::create_directory(folder / "home");
    std::vector<std::vector<Row>> rows(std::size(Joins), std::vector<Row>(std::size(Timings)));
    for (uint64_t seed = 1; seed <= radios; ++seed) {
        for (size_t j = 0; j < std::size(Joins); ++j) {
            const auto radio = MakeMusic({seed, 60, Joins[j].GapSeconds, Joins[j].OverlapSeconds});
            if (!WriteMusic(*radio, folder / "radio.wav")) return 1;
            for (size_t t = 0; t < std::size(Timings); ++t) {
                const Timing& timing = Timings[t];
                WriteTitles(*radio, timing, MixSeed(seed, t), folder / "titles.csv");
                const bool done = Split(folder, *radio, UsualReach, UsualReach, rows[j][t].Usual) &&
                                  Split(folder, *radio, timing.Before, timing.After, rows[j][t].Fitted);
                if (!done) return 1;
            }
        }
    }
    Print(rows);
    return 0;
}

}  // namespace
}  // namespace Corvetape::Bench

int main(int count, char** words) {
    return Corvetape::Bench::Main(count > 1 ? std::max(std::strtoull(words[1], nullptr, 10), 1ULL) : 3);
}
