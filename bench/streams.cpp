// Whole songs out of one stream, by streamripper and by this program. Streamripper takes the stream from a
// server on this machine and cuts it as it does by default; this program gets the same sound and the same
// titles at the same moments, as a player would hand them on, with the end of song "Automatic".
//
//   bench-streams [FOLDERS OF MUSIC, SEPARATED BY COLONS]
#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "support/icy_stream.h"
#include "support/made_radio.h"
#include "support/measured_process.h"

namespace Corvetape::Bench {
namespace {

constexpr const char* Program = CORVETAPE_BINARY_DIR "/bin/corvetape-cli";
constexpr const char* UsualFolders =
    "/usr/share/games/wesnoth/1.16/data/core/music:"
    "/usr/share/games/warzone2100/music";
constexpr size_t JoinsOfRadio = 30;
constexpr double BytesPerSecond = 16'000;  // 128 kbit/s
constexpr size_t Told = 4000;              ///< bytes of music that are found in the stream only once

std::string ReadFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

/// The music of an MP3 file without its tags.
std::string WithoutTags(std::string file) {
    if (file.starts_with("ID3") && file.size() > 10) {
        size_t size = 0;
        for (size_t i = 6; i < 10; ++i) size = size * 128 + static_cast<unsigned char>(file[i]);
        file.erase(0, 10 + size);
    }
    if (file.size() > 128 && file.compare(file.size() - 128, 3, "TAG") == 0) file.resize(file.size() - 128);
    return file;
}

/// Where a song that was copied out of the stream was in it, in seconds.
std::optional<FoundSong> PlaceOf(const std::string& song, const std::string& stream) {
    if (song.size() < 2 * Told) return std::nullopt;
    const size_t begin = stream.find(song.substr(0, Told));
    const size_t end = stream.rfind(song.substr(song.size() - Told));
    if (begin == std::string::npos || end == std::string::npos) return std::nullopt;
    return FoundSong{static_cast<double>(begin) / BytesPerSecond,
                     static_cast<double>(end + Told) / BytesPerSecond};
}

std::vector<FoundSong> Ripped(const WorkFolder& folder, const std::string& stream,
                              const std::vector<StreamTitle>& titles) {
    std::vector<FoundSong> songs;
    std::filesystem::create_directory(folder / "ripped");
    const IcyStream server(stream, titles);
    Measure({{"streamripper", server.Address(), "-d", folder / "ripped", "-s", "-c", "-o", "always"},
             folder.Path(),
             {}});
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder / "ripped")) {
        if (entry.path().extension() != ".mp3") continue;
        if (const auto song = PlaceOf(WithoutTags(ReadFile(entry.path())), stream)) songs.push_back(*song);
    }
    std::filesystem::remove_all(folder / "ripped");
    std::ranges::sort(songs, {}, &FoundSong::Begin);
    return songs;
}

std::vector<FoundSong> Split(const WorkFolder& folder) {
    const Cost cost = Measure(
        {{Program, "split", "stream.mp3", "--media", "titles.csv", "--out", "out", "--home", "home", "--json",
          "--mode", "auto", "--set", "Options.EncodeOffline=1", "--set", "Source.IgnoreShortSongs=5"},
         folder.Path(),
         folder / "printed"});
    std::filesystem::remove_all(folder / "out");
    std::filesystem::remove_all(folder / "home");
    return cost.ExitCode == 0 ? SongsIn(folder / "printed") : std::vector<FoundSong>();
}

/// Both beside each other: how far the cuts are from the joins, and how many songs have both of their edges
/// within 300 ms.
std::string Summary(const MadeRadio& radio, const std::vector<FoundSong>& found) {
    std::vector<double> errors;
    size_t whole = 0;
    size_t missed = 0;
    double before = FarthestCut;
    for (const RadioJoin& join : radio.Joins) {
        const double error = NearestError(found, join);
        if (error <= 0.3 && before <= 0.3) ++whole;
        before = error;
        if (error >= FarthestCut) ++missed;
        errors.push_back(error);
    }
    std::ranges::sort(errors);
    return fmt::format("{:.0f}/{:.0f} | {} | {} of {}", 1000 * errors[errors.size() / 2],
                       1000 * errors[errors.size() * 9 / 10], missed, whole, radio.Joins.size() - 1);
}

bool Play(const WorkFolder& folder, const MadeRadio& radio, const char* name, SimRandom& random) {
    TitleDelay delay;
    delay.Means = TitleDelay::Meaning::NewBegin;
    delay.Delay = random.Between(-1.0, 6.0);
    if (!WriteRadio(radio, {true, false}, folder, folder / "made.wav")) return false;
    const std::string stream = WithoutTags(ReadFile(folder / "radio.mp3"));
    std::ofstream(folder / "stream.mp3", std::ios::binary) << stream;
    std::vector<StreamTitle> titles;
    std::vector<double> times = TitleTimes(radio, delay, random);
    for (size_t song = 0; song < times.size(); ++song) {
        constexpr auto every = static_cast<double>(IcyStream::TitleEvery);
        const double block = std::ceil(times[song] * BytesPerSecond / every) * every;
        titles.push_back({static_cast<size_t>(block), fmt::format("Artist {} - Title {}", song, song)});
        times[song] = block / BytesPerSecond;
    }
    if (!WriteTitles(times, folder / "titles.csv")) return false;
    fmt::print("| {} | {:.1f} s | {} | {} |\n", name, delay.Delay,
               Summary(radio, Ripped(folder, stream, titles)), Summary(radio, Split(folder)));
    std::fflush(stdout);
    return true;
}

int Main(const std::string& music) {
    const WorkFolder shelfFolder;
    const WorkFolder folder;
    const MusicShelf shelf(music, shelfFolder);
    const SpeechShelf speech(shelfFolder);
    if (shelf.Size() < 2 || speech.Size() == 0 || !IsInstalled("streamripper")) {
        fmt::print(
            "Something is missing: install the Debian packages wesnoth-1.16-music, warzone2100-music, "
            "espeak-ng and streamripper.\n");
        return 0;
    }
    fmt::print(
        "Error in ms, median/90 %, joins without a cut, and songs with both edges within 300 ms: first by "
        "streamripper, then by corvetape-cli.\n\n");
    fmt::print("| join | titles late by | error | missed | songs | error | missed | songs |\n");
    fmt::print("|---|---|---|---|---|---|---|---|\n");
    const std::span<const JoinKind> kinds = RadioKinds();
    uint64_t seed = 9000;
    for (size_t kind = 0; kind <= kinds.size(); ++kind) {
        const bool mixed = kind == kinds.size();
        SimRandom random(++seed);
        const auto played = mixed ? kinds : kinds.subspan(kind, 1);
        const MadeRadio radio = ComposeRadio({shelf, speech}, JoinsOfRadio, played, random);
        if (!Play(folder, radio, mixed ? "all mixed" : kinds[kind].Name, random)) return 1;
    }
    return 0;
}

}  // namespace
}  // namespace Corvetape::Bench

int main(int count, char** words) {
    return Corvetape::Bench::Main(count > 1 ? words[1] : Corvetape::Bench::UsualFolders);
}
