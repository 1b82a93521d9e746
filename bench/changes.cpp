// How many songs are found by the sound alone, where nobody reports titles and there is no gap, and how often
// a song is cut in two. Whole songs follow one another in one of several ways; what they sound like is kept
// in a folder, so that the search can be tried again at once.
//
//   bench-changes make FOLDER [FOLDERS OF MUSIC, SEPARATED BY COLONS]   some minutes, with the music twice
//   bench-changes FOLDER
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "audio/song_changes.h"
#include "support/measured_process.h"
#include "support/measured_radio.h"

namespace Corvetape::Bench {
namespace {

constexpr const char* UsualFolders =
    "/usr/share/games/wesnoth/1.16/data/core/music:"
    "/usr/share/games/warzone2100/music";
constexpr size_t SongsOfRadio = 12;
constexpr size_t Rounds = 2;
constexpr double LongestSong = 360;
constexpr double ShortestSong = 70;
constexpr double LeastPiece = 60;  ///< what the recorder calls a song, in seconds
constexpr double SlotSeconds = 0.05;

/// A song from its first sound to its last. Nothing if it is too short, or no music.
std::vector<Frame> WholeSong(const std::string& file, const WorkFolder& work) {
    const std::string raw = work / "song.raw";
    const Cost decoded =
        Measure({{"ffmpeg", "-nostdin", "-v", "quiet", "-y", "-t", fmt::format("{}", LongestSong), "-i", file,
                  "-f", "s16le", "-ac", "2", "-ar", std::to_string(JoinedRate), raw},
                 work.Path(),
                 {}});
    if (decoded.ExitCode != 0) return {};
    std::vector<Frame> song = ReadFrames(raw);
    const auto isAudible = [](const Frame& frame) {
        return std::abs(int{frame.Left}) > 600 || std::abs(int{frame.Right}) > 600;
    };
    song.erase(std::find_if(song.rbegin(), song.rend(), isAudible).base(), song.end());
    song.erase(song.begin(), std::ranges::find_if(song, isAudible));
    if (static_cast<double>(song.size()) < ShortestSong * JoinedRate) return {};
    return song;
}

/// A song follows: after the end of the one before, or some seconds before that, with a fade or without.
void Join(MadeRadio& radio, const std::vector<Frame>& song, SimRandom& random) {
    constexpr std::array<double, 4> fades = {0, 1, 3, 6};
    const uint64_t kind = random.Below(fades.size() + 1);
    const auto frames = [](double seconds) { return static_cast<size_t>(seconds * JoinedRate); };
    size_t fade = 0;
    if (kind < fades.size()) {
        radio.Sound.resize(radio.Sound.size() - frames(random.Between(2.0, 12.0)));
        fade = frames(fades[kind]);
    }
    RadioJoin join;
    join.OldEnd = static_cast<double>(radio.Sound.size()) / JoinedRate;
    const size_t begin = radio.Sound.size() - fade;
    join.NewBegin = static_cast<double>(begin) / JoinedRate;
    for (size_t i = 0; i < fade; ++i) {
        const double angle = std::acos(0.0) * static_cast<double>(i) / static_cast<double>(fade);
        const auto mixed = [&](int16_t old, int16_t next) {
            const double sum = std::cos(angle) * old + std::sin(angle) * next;
            return static_cast<int16_t>(std::clamp(sum, -32768.0, 32767.0));
        };
        Frame& frame = radio.Sound[begin + i];
        frame = {mixed(frame.Left, song[i].Left), mixed(frame.Right, song[i].Right)};
    }
    radio.Sound.insert(radio.Sound.end(), song.begin() + static_cast<std::ptrdiff_t>(fade), song.end());
    radio.Joins.push_back(join);
}

std::vector<std::string> FilesBelow(const std::string& folders) {
    std::vector<std::string> files;
    for (size_t begin = 0; begin <= folders.size();) {
        const size_t end = std::min(folders.find(':', begin), folders.size());
        std::error_code error;
        const std::string folder = folders.substr(begin, end - begin);
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder, error)) {
            const std::string kind = entry.path().extension().string();
            if (kind == ".ogg" || kind == ".opus" || kind == ".mp3") files.push_back(entry.path().string());
        }
        begin = end + 1;
    }
    std::ranges::sort(files);
    return files;
}

int Make(const std::string& folder, const std::string& music) {
    const WorkFolder work;
    std::filesystem::create_directories(folder);
    std::vector<std::string> files = FilesBelow(music);
    SimRandom random(5);
    MadeRadio radio;
    size_t number = 0;
    const auto keep = [&] {
        const MeasuredRadio measured = MeasureRadio(radio, {number % 2 == 1, number / 2 % 2 == 1}, work);
        const bool kept = !measured.Slots.empty() && Keep(measured, fmt::format("{}/{}", folder, number++));
        radio = {};
        return kept;
    };
    for (size_t round = 0; round < Rounds; ++round) {
        for (size_t i = files.size(); i > 1; --i) std::swap(files[i - 1], files[random.Below(i)]);
        for (const std::string& file : files) {
            const std::vector<Frame> song = WholeSong(file, work);
            if (song.empty()) continue;
            if (radio.Sound.empty()) {
                radio.Sound = song;
            } else {
                Join(radio, song, random);
            }
            if (radio.Joins.size() + 1 == SongsOfRadio && !keep()) return 1;
        }
    }
    return radio.Joins.empty() || keep() ? 0 : 1;
}

struct Counts {
    size_t Joins = 0;
    size_t Found = 0;
    size_t Within = 0;  ///< cuts within a song
};

void Count(const MeasuredRadio& radio, const std::vector<SongChange>& changes, float least, Counts& counts) {
    std::set<size_t> found;
    double last = 0;
    for (const SongChange& change : changes) {
        const double at = static_cast<double>(change.Slot) * SlotSeconds;
        if (change.Evidence < least || at - last < LeastPiece) continue;
        last = at;
        const auto join = std::ranges::find_if(radio.Joins, [&](const RadioJoin& each) {
            return std::abs(each.Middle() - at) <= 0.5 + (each.OldEnd - each.NewBegin) / 2;
        });
        if (join == radio.Joins.end()) {
            ++counts.Within;
        } else {
            found.insert(static_cast<size_t>(join - radio.Joins.begin()));
        }
    }
    counts.Joins += radio.Joins.size();
    counts.Found += found.size();
}

int Search(const std::string& folder) {
    std::vector<MeasuredRadio> radios;
    std::vector<std::vector<SongChange>> changes;
    double hours = 0;
    while (std::filesystem::exists(fmt::format("{}/{}", folder, radios.size()))) {
        radios.push_back(ReadMeasured(fmt::format("{}/{}", folder, radios.size()), {}));
        SongChanges search;
        search.Restart(0);
        changes.emplace_back();
        for (const SlotFeatures& slot : radios.back().Slots) {
            if (const auto change = search.Add(slot)) changes.back().push_back(*change);
        }
        hours += static_cast<double>(radios.back().Slots.size()) * SlotSeconds / 3600;
    }
    fmt::print(
        "{:.1f} hours\n\n| least evidence | songs found | cuts within songs, an hour |\n|---|---|---|\n",
        hours);
    for (const float least : {0.0F, 0.4F, 0.8F, SongChanges::LeastEvidence, 1.6F, 2.0F, 2.4F}) {
        Counts counts;
        for (size_t i = 0; i < radios.size(); ++i) Count(radios[i], changes[i], least, counts);
        fmt::print("| {:.1f} | {} of {} | {:.1f} |\n", least, counts.Found, counts.Joins,
                   static_cast<double>(counts.Within) / hours);
    }
    return radios.empty() ? 1 : 0;
}

}  // namespace
}  // namespace Corvetape::Bench

int main(int count, char** words) {
    using namespace Corvetape::Bench;
    const std::vector<std::string> arguments(words + 1, words + count);
    if (arguments.empty()) {
        fmt::print("bench-changes make FOLDER [FOLDERS OF MUSIC] | bench-changes FOLDER\n");
        return 0;  // part of all measurements, which it would make much longer
    }
    if (arguments[0] == "make" && arguments.size() > 1) {
        return Make(arguments[1], arguments.size() > 2 ? arguments[2] : UsualFolders);
    }
    return Search(arguments[0]);
}
