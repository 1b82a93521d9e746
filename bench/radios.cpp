// How far the cuts of the whole recorder lie from the true joins of real songs, with the end of song
// "Automatic": a radio as a sound file, its titles through the same polls as those of a live source. Titles
// are late by a delay of the radio's own, -1 to 6 s, and by up to 0.8 s of jitter.
//
//   bench-radios [FOLDER OF MUSIC] [RADIOS OF EACH KIND]
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <numbers>
#include <span>
#include <vector>

#include "audio/wav_file.h"
#include "platform/linux/files/linux_files.h"
#include "support/found_songs.h"
#include "support/joined_music.h"
#include "support/measured_process.h"

namespace Corvetape::Bench {
namespace {

constexpr const char* Program = CORVETAPE_BINARY_DIR "/bin/corvetape-cli";
constexpr const char* UsualFolder = "/usr/share/games/wesnoth/1.16/data/core/music";
constexpr size_t SongsOfRadio = 31;
constexpr double LeadIn = 3;

/// A join without a cut nearer than this was missed.
constexpr double NearestCut = 10;

constexpr JoinKind Kinds[] = {{"hard join"},      {"fade 1 s", 1, 0},    {"fade 3 s", 3, 0},
                              {"fade 6 s", 6, 0}, {"gap 0.2 s", 0, 0.2}, {"gap 1 s", 0, 1}};

struct Join {
    double At = 0;  ///< seconds: the middle of the fade or the gap
    JoinKind Kind;
};

struct Radio {
    std::vector<Frame> Sound;
    std::vector<Join> Joins;
};

int16_t Mixed(double one, double other) {
    return static_cast<int16_t>(std::clamp(one + other, -32768.0, 32767.0));
}

/// A song joins what was played before.
void Append(Radio& radio, std::span<const Frame> song, const JoinKind& kind, SimRandom& random) {
    const auto gap = static_cast<size_t>(kind.Gap * JoinedRate);
    for (size_t i = 0; i < gap; ++i) {
        const auto noise = [&] { return static_cast<int16_t>(random.Between(int64_t{-18}, int64_t{18})); };
        radio.Sound.push_back({noise(), noise()});
    }
    const size_t overlap = static_cast<size_t>(kind.Fade * JoinedRate);
    const size_t begin = radio.Sound.size() - overlap;
    const double middle = static_cast<double>(radio.Sound.size()) - static_cast<double>(gap + overlap) / 2;
    radio.Joins.push_back({middle / JoinedRate, kind});
    for (size_t i = 0; i < overlap; ++i) {
        const double angle = std::numbers::pi / 2 * static_cast<double>(i) / static_cast<double>(overlap);
        Frame& frame = radio.Sound[begin + i];
        frame.Left = Mixed(std::cos(angle) * frame.Left, std::sin(angle) * song[i].Left);
        frame.Right = Mixed(std::cos(angle) * frame.Right, std::sin(angle) * song[i].Right);
    }
    radio.Sound.insert(radio.Sound.end(), song.begin() + static_cast<std::ptrdiff_t>(overlap), song.end());
}

/// Songs of 30 to 42 s, each joined in the middle of its sound. No kind: each join is of any.
Radio Compose(const MusicShelf& shelf, const JoinKind* kind, SimRandom& random) {
    Radio radio;
    radio.Sound.resize(static_cast<size_t>(LeadIn * JoinedRate));
    size_t before = shelf.Size();
    for (size_t number = 0; number < SongsOfRadio;) {
        const size_t next = random.Below(shelf.Size());
        if (next == before) continue;
        before = next;
        std::vector<Frame> song = shelf.Beginning(next);
        const auto length = static_cast<size_t>(random.Between(30.0, 42.0) * JoinedRate);
        if (song.size() < length) continue;
        song.resize(length);
        if (number++ == 0) {
            radio.Sound.insert(radio.Sound.end(), song.begin(), song.end());
        } else {
            Append(radio, song, kind == nullptr ? Kinds[random.Below(std::size(Kinds))] : *kind, random);
        }
    }
    return radio;
}

bool WriteSound(const Radio& radio, const std::string& path) {
    LinuxFiles disk;
    const std::unique_ptr<WavFile> file = WavFile::Create(disk, path, MakeWaveFormat(JoinedRate));
    constexpr size_t block = 65'536;
    for (size_t at = 0; file && at < radio.Sound.size(); at += block) {
        const size_t count = std::min(block, radio.Sound.size() - at);
        if (!file->Write(std::span(radio.Sound).subspan(at, count))) return false;
    }
    return file && file->FinishData() && file->FinishRiff() && file->Close();
}

void WriteTitles(const Radio& radio, SimRandom& random, const std::string& path) {
    const double delay = random.Between(-1.0, 6.0);
    std::ofstream table(path);
    for (size_t song = 0; song <= radio.Joins.size(); ++song) {
        const double begin = song == 0 ? LeadIn : radio.Joins[song - 1].At;
        const double at = std::max(begin + delay + random.Between(0.0, 0.8), 0.0);
        table << fmt::format("{:.3f},Radio,Artist {},Title {}\n", at, song, song);
    }
}

/// Errors in seconds: of the first five joins of a radio, up to the twentieth, and from then on.
struct Errors {
    std::array<std::vector<double>, 3> Cuts;
    std::array<size_t, 3> Missed{};
    size_t Near = 0;    ///< of the last ones, within 200 ms
    size_t Inside = 0;  ///< of the last ones, inside the fade or the gap
};

void Count(const Radio& radio, const std::vector<FoundSong>& found, Errors& errors) {
    for (size_t song = 0; song < radio.Joins.size(); ++song) {
        const Join& join = radio.Joins[song];
        double best = NearestCut;
        for (size_t i = 1; i < found.size(); ++i) {
            best = std::min(best, std::abs((found[i - 1].End + found[i].Begin) / 2 - join.At));
        }
        const size_t group = song < 5 ? 0 : song < 20 ? 1 : 2;
        if (best >= NearestCut) {
            ++errors.Missed[group];
            continue;
        }
        errors.Cuts[group].push_back(best);
        if (group < 2) continue;
        if (best <= 0.2) ++errors.Near;
        if (best <= std::max(join.Kind.Fade, join.Kind.Gap) / 2 + 0.05) ++errors.Inside;
    }
}

bool Play(const WorkFolder& folder, const Radio& radio, SimRandom& random, Errors& errors) {
    WriteTitles(radio, random, folder / "titles.csv");
    if (!WriteSound(radio, folder / "radio.wav")) return false;
    std::filesystem::create_directory(folder / "home");
    const Cost cost = Measure(
        {{Program, "split", "radio.wav", "--media", "titles.csv", "--out", "out", "--home", "home", "--json",
          "--mode", "auto", "--set", "Options.EncodeOffline=1", "--set", "Source.IgnoreShortSongs=5"},
         folder.Path(),
         folder / "printed"});
    std::filesystem::remove_all(folder / "out");
    std::filesystem::remove_all(folder / "home");  // with all that was learned
    if (cost.ExitCode != 0) return false;
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
    fmt::print(" {:.0f} % | {:.0f} % |\n", shareOf(errors.Near), shareOf(errors.Inside));
    std::fflush(stdout);
}

int Main(const std::string& music, uint64_t radios) {
    const WorkFolder shelfFolder;
    const WorkFolder folder;
    const MusicShelf shelf(music, shelfFolder);
    if (shelf.Size() < 2) {
        fmt::print("No music below {}: install the Debian package wesnoth-1.16-music, or name a folder.\n",
                   music);
        return 0;
    }
    fmt::print("{} songs, {} radios of {} joins for each kind. Error in ms, median/90 %.\n\n", shelf.Size(),
               radios, SongsOfRadio - 1);
    fmt::print("| join | first 5 | 6 to 20 | from 21 on | of these within 200 ms | inside the join |\n");
    fmt::print("|---|---|---|---|---|---|\n");
    uint64_t seed = 0;
    for (size_t kind = 0; kind <= std::size(Kinds); ++kind) {
        const JoinKind* const only = kind < std::size(Kinds) ? &Kinds[kind] : nullptr;
        Errors errors;
        for (uint64_t radio = 0; radio < radios; ++radio) {
            SimRandom random(++seed);
            if (!Play(folder, Compose(shelf, only, random), random, errors)) return 1;
        }
        Print(only == nullptr ? "all mixed" : only->Name, errors);
    }
    return 0;
}

}  // namespace
}  // namespace Corvetape::Bench

int main(int count, char** words) {
    return Corvetape::Bench::Main(count > 1 ? words[1] : Corvetape::Bench::UsualFolder,
                                  count > 2 ? std::strtoull(words[2], nullptr, 10) : 4);
}
