// How far the cuts of the whole recorder are from the true joins of real songs, with the end of song
// "Automatic": radios as sound files, half of them through MP3, half through slow gain control, all through a
// limiter. Titles reach the recorder through the same polls as those of a live source; they are late by a
// delay of the radio's own, -1 to 6 s, and by up to 0.8 s of jitter, and mean the middle of the join or the
// beginning of the new song. Each radio is a source that nothing is known of at first.
//
//   bench-radios [FOLDERS OF MUSIC, SEPARATED BY COLONS] [RADIOS OF EACH KIND] [ONLY THIS KIND]
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <vector>

#include "support/found_songs.h"
#include "support/made_radio.h"
#include "support/measured_process.h"

namespace Corvetape::Bench {
namespace {

constexpr const char* Program = CORVETAPE_BINARY_DIR "/bin/corvetape-cli";
constexpr const char* UsualFolders =
    "/usr/share/games/wesnoth/1.16/data/core/music:"
    "/usr/share/games/warzone2100/music";
constexpr size_t JoinsOfRadio = 30;
constexpr uint64_t RadiosOfMixed = 3;  ///< for each one of a single kind

/// Errors in seconds: of the first five joins of a radio, up to the twentieth, and from then on.
struct Errors {
    std::array<std::vector<double>, 3> Cuts;
    std::array<size_t, 3> Missed{};
    std::array<size_t, 3> Near{};    ///< within 200 ms
    std::array<size_t, 3> Inside{};  ///< inside the fade, the gap or the talk
};

void Count(const MadeRadio& radio, const std::vector<FoundSong>& found, Errors& errors) {
    for (size_t song = 0; song < radio.Joins.size(); ++song) {
        const RadioJoin& join = radio.Joins[song];
        const double error = NearestError(found, join);
        const size_t group = song < 5 ? 0 : song < 20 ? 1 : 2;
        if (error >= FarthestCut) {
            ++errors.Missed[group];
            continue;
        }
        errors.Cuts[group].push_back(error);
        if (error <= 0.2) ++errors.Near[group];
        const bool talk = join.Kind.Spoken == Talk::Between;
        const double inside = talk ? 0.1 : std::abs(join.OldEnd - join.NewBegin) / 2 + 0.05;
        if (error <= inside) ++errors.Inside[group];
    }
}

/// Sends a radio through the recorder. Nothing but a message if that fails.
bool Play(const WorkFolder& folder, const MadeRadio& radio, StationSound station, SimRandom& random,
          Errors& errors) {
    TitleDelay delay;
    delay.Means = random.Chance(0.5) ? TitleDelay::Meaning::Middle : TitleDelay::Meaning::NewBegin;
    delay.Delay = random.Between(-1.0, 6.0);
    const bool written = WriteTitles(TitleTimes(radio, delay, random), folder / "titles.csv") &&
                         WriteRadio(radio, station, folder, folder / "made.wav");
    if (!written) {
        fmt::print("A radio could not be made: ffmpeg, its MP3 encoder or room on the disk is missing.\n");
        return false;
    }
    const Cost cost = Measure(
        {{Program, "split", "made.wav", "--media", "titles.csv", "--out", "out", "--home", "home", "--json",
          "--mode", "auto", "--set", "Options.EncodeOffline=1", "--set", "Source.IgnoreShortSongs=5"},
         folder.Path(),
         folder / "printed"});
    std::filesystem::remove_all(folder / "out");
    std::filesystem::remove_all(folder / "home");  // with all that was learned
    if (cost.ExitCode != 0) {
        fmt::print("The recorder ended with {}.\n", cost.ExitCode);
        return false;
    }
    Count(radio, SongsIn(folder / "printed"), errors);
    return true;
}

std::string Summary(std::vector<double>& errors, size_t missed) {
    if (errors.empty()) return "-";
    std::ranges::sort(errors);
    const std::string text =
        fmt::format("{:.0f}/{:.0f}", 1000 * errors[errors.size() / 2], 1000 * errors[errors.size() * 9 / 10]);
    return missed == 0 ? text : fmt::format("{}, {} missed", text, missed);
}

void Print(const char* name, Errors& errors) {
    const auto shareOf = [&](size_t count) {
        const size_t all = errors.Cuts[2].size() + errors.Missed[2];
        return all == 0 ? 0.0 : 100.0 * static_cast<double>(count) / static_cast<double>(all);
    };
    fmt::print("| {} |", name);
    for (size_t group = 0; group < errors.Cuts.size(); ++group) {
        fmt::print(" {} |", Summary(errors.Cuts[group], errors.Missed[group]));
    }
    fmt::print(" {:.0f} % | {:.0f} % |\n", shareOf(errors.Near[2]), shareOf(errors.Inside[2]));
    std::fflush(stdout);
}

int Main(const std::string& music, uint64_t radios, std::string_view onlyThis) {
    const WorkFolder shelfFolder;
    const WorkFolder folder;
    const MusicShelf shelf(music, shelfFolder);
    const SpeechShelf speech(shelfFolder);
    if (shelf.Size() < 2 || speech.Size() == 0) {
        fmt::print(
            "Not enough music below {}, or no espeak-ng: install the Debian packages wesnoth-1.16-music, "
            "warzone2100-music and espeak-ng, or name other folders.\n",
            music);
        return 0;
    }
    fmt::print(
        "{} songs, {} radios of {} joins for each kind, {} times as many of mixed ones. Error in ms, "
        "median/90 %.\n\n",
        shelf.Size(), radios, JoinsOfRadio, RadiosOfMixed);
    fmt::print("| join | first 5 | 6 to 20 | from 21 on | of these within 200 ms | inside the join |\n");
    fmt::print("|---|---|---|---|---|---|\n");
    const std::span<const JoinKind> kinds = RadioKinds();
    for (size_t kind = 0; kind <= kinds.size(); ++kind) {
        const bool mixed = kind == kinds.size();
        const char* const name = mixed ? "all mixed" : kinds[kind].Name;
        if (!onlyThis.empty() && onlyThis != name) continue;
        const std::span<const JoinKind> played = mixed ? kinds : kinds.subspan(kind, 1);
        Errors errors;
        for (uint64_t radio = 0; radio < radios * (mixed ? RadiosOfMixed : 1); ++radio) {
            SimRandom random(1 + 100 * kind + radio);
            const MadeRadio made = ComposeRadio({shelf, speech}, JoinsOfRadio, played, random);
            const StationSound station{radio % 2 == 1, (radio / 2 + kind) % 2 == 1};
            if (!Play(folder, made, station, random, errors)) return 1;
        }
        Print(name, errors);
    }
    return 0;
}

}  // namespace
}  // namespace Corvetape::Bench

int main(int count, char** words) {
    return Corvetape::Bench::Main(count > 1 ? words[1] : Corvetape::Bench::UsualFolders,
                                  count > 2 ? std::strtoull(words[2], nullptr, 10) : 2,
                                  count > 3 ? words[3] : "");
}
