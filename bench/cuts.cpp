// How far the cuts are from the true boundaries of made-up hours, by silence and by titles that come late.
//
//   bench-cuts [HOURS]
#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <vector>

#include "platform/virtual/sim_random.h"
#include "support/found_songs.h"
#include "support/made_hour.h"
#include "support/measured_process.h"
#include "support/work_folder.h"

namespace Corvetape::Bench {
namespace {

constexpr const char* Program = CORVETAPE_BINARY_DIR "/bin/corvetape-cli";

/// What the cuts of all hours of one way come to. Milliseconds; positive where silence was kept with a song,
/// negative where music is missing.
struct Errors {
    size_t Songs = 0;
    size_t Missed = 0;    ///< boundaries that no cut is at
    size_t Invented = 0;  ///< cuts where there is no boundary
    std::vector<double> Begins;
    std::vector<double> Ends;
};

struct Way {
    const char* Name;
    std::vector<std::string> Settings;
    bool ByTitles = false;
};

std::vector<Way> Ways() {
    // The amplitudes are those of the calibration at this noise floor.
    const std::vector<std::string> calibrated = {
        "--set", "Source.SilenceAmplitude=30",   "--set", "Source.EndOfSilenceAmplitude=36",
        "--set", "Source.DetectSilenceByPeak=0", "--set", "Source.LengthOfPause=500"};
    return {
        {"by silence, calibrated, pauses from 0.5 s on", calibrated},
        {"by silence, defaults but pauses from 0.5 s on", {"--set", "Source.LengthOfPause=500"}},
        {"by titles, 0 to 2.5 s late", {"--set", "Source.EndOfSongDetection=1"}, true},
    };
}

/// Titles as a station sends them: each a little after its song has begun.
void WriteTitles(const RadioTimeline& hour, uint64_t seed, const std::string& path) {
    SimRandom random(seed);
    std::ofstream table(path);
    for (const ScriptedSong& song : hour.Songs()) {
        const double at = static_cast<double>(song.Begin) / HourRate + random.Between(0.0, 2.5);
        table << fmt::format("{:.3f},{},{},{}\n", at, song.Media.StationName, song.Media.Artist,
                             song.Media.Song);
    }
}

/// Adds the errors of one hour: each found song belongs to the true one that its middle is in.
void Count(const RadioTimeline& hour, const std::vector<FoundSong>& found, Errors& errors) {
    std::vector<std::vector<FoundSong>> bySong(hour.Songs().size());
    for (const FoundSong& song : found) {
        const double middle = (song.Begin + song.End) / 2 * HourRate;
        for (size_t i = 0; i < bySong.size(); ++i) {
            const ScriptedSong& truth = hour.Songs()[i];
            if (middle >= static_cast<double>(truth.Begin) && middle < static_cast<double>(truth.End)) {
                bySong[i].push_back(song);
            }
        }
    }
    errors.Songs += bySong.size();
    for (size_t i = 0; i < bySong.size(); ++i) {
        if (bySong[i].empty()) {
            ++errors.Missed;
            continue;
        }
        errors.Invented += bySong[i].size() - 1;
        const ScriptedSong& truth = hour.Songs()[i];
        errors.Begins.push_back(1000 *
                                (static_cast<double>(truth.Begin) / HourRate - bySong[i].front().Begin));
        errors.Ends.push_back(1000 * (bySong[i].back().End - static_cast<double>(truth.End) / HourRate));
    }
}

bool SplitOneHour(const WorkFolder& folder, const Way& way, const RadioTimeline& hour, Errors& errors) {
    MeasuredCommand command{{Program, "split", "hour.wav", "--out", "out", "--home", "home", "--json",
                             "--set", "Options.EncodeOffline=1"},
                            folder.Path(),
                            folder / "printed"};
    command.Words.insert(command.Words.end(), way.Settings.begin(), way.Settings.end());
    if (way.ByTitles) command.Words.insert(command.Words.end(), {"--media", "titles.csv"});
    const Cost cost = Measure(command);
    std::filesystem::remove_all(folder / "out");
    if (cost.ExitCode != 0) return false;
    Count(hour, SongsIn(folder / "printed"), errors);
    return true;
}

void PrintErrors(const char* name, const char* place, std::vector<double> errors) {
    std::ranges::sort(errors);
    fmt::print("| {} | {} | {:+.0f} | {:+.0f} | {:+.0f} |\n", name, place, errors.front(),
               errors[errors.size() / 2], errors.back());
}

int Main(uint64_t hours) {
    const WorkFolder folder;
    std::filesystem::create_directory(folder / "home");
    const std::vector<Way> ways = Ways();
    std::vector<Errors> results(ways.size());
    for (uint64_t seed = 1; seed <= hours; ++seed) {
        const auto hour = MakeHour({.Seed = seed, .Rests = true});
        if (!WriteHour(hour, folder / "hour.wav")) return 1;
        WriteTitles(*hour, seed, folder / "titles.csv");
        for (size_t i = 0; i < ways.size(); ++i) {
            if (!SplitOneHour(folder, ways[i], *hour, results[i])) return 1;
        }
    }
    fmt::print(
        "{} made-up hours of 18 songs each, gaps of 1.0 to 2.5 s at -70 dBFS, rests of 0.1 to 0.4 s inside\n"
        "the songs. Milliseconds at the beginnings and ends of songs: above 0 is silence that was kept,\n"
        "below 0 is music that is missing.\n\n",
        hours);
    fmt::print("| end of song | place | least | median | most |\n|---|---|---|---|---|\n");
    for (size_t i = 0; i < ways.size(); ++i) {
        PrintErrors(ways[i].Name, "begin", results[i].Begins);
        PrintErrors(ways[i].Name, "end", results[i].Ends);
    }
    fmt::print("\n| end of song | songs | missed boundaries | invented cuts |\n|---|---|---|---|\n");
    for (size_t i = 0; i < ways.size(); ++i) {
        fmt::print("| {} | {} | {} | {} |\n", ways[i].Name, results[i].Songs, results[i].Missed,
                   results[i].Invented);
    }
    return 0;
}

}  // namespace
}  // namespace Corvetape::Bench

int main(int count, char** words) {
    return Corvetape::Bench::Main(count > 1 ? std::strtoull(words[1], nullptr, 10) : 5);
}
