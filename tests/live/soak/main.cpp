// The radio of scripts/soak-live, and the comparison of what was kept of it with what it has played.
//
//   live-radio play SECOND       plays from that second on, as raw frames, for ever
//   live-radio compare FOLDER    reads FOLDER/events, FOLDER/songs, FOLDER/log,
//   FOLDER/music

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <regex>
#include <string>
#include <vector>

#include "live/soak/truth.h"
#include "platform/linux/sound/sound_file_source.h"

namespace Corvetape {
namespace {

namespace fs = std::filesystem;

constexpr double Second = Radio::FramesPerSecond;

/// Something that the script did, at a second of the radio.
struct Fault {
    std::string Name;
    double Begin = 0;
    double End = 0;  ///< when it was over
};

int Play(double second) {
    std::vector<Frame> frames(4410);
    for (auto frame = static_cast<uint64_t>(std::llround(second * Second));;) {
        for (Frame& each : frames) each = Radio::At(frame++);
        if (std::fwrite(frames.data(), sizeof(Frame), frames.size(), stdout) != frames.size()) return 0;
    }
}

/// Lines of "SECOND NAME begins" and "SECOND NAME ends"; what has no end is over at once.
std::vector<Fault> ReadFaults(const fs::path& file) {
    std::vector<Fault> faults;
    std::ifstream lines(file);
    double second = 0;
    std::string name;
    std::string what;
    while (lines >> second >> name >> what) {
        if (what == "begins") {
            faults.push_back({name, second, second});
        } else if (const auto of = std::ranges::find(faults, name, &Fault::Name); of != faults.end()) {
            of->End = second;
        }
    }
    return faults;
}

/// Frames that the log tells of as lost, line by line.
std::vector<uint64_t> ReadTold(const fs::path& file) {
    std::vector<uint64_t> told;
    std::ifstream lines(file);
    const std::regex lost("sound were lost \\(([0-9]+) frames\\)");
    std::smatch found;
    for (std::string line; std::getline(lines, line);) {
        if (std::regex_search(line, found, lost)) told.push_back(std::stoull(found[1]));
    }
    return told;
}

struct KeptSongs {
    size_t Count = 0;
    size_t Whole = 0;
    uint64_t ToldLost = 0;  ///< frames, as the songs' own lines tell
};

KeptSongs ReadSongs(const fs::path& file) {
    KeptSongs songs;
    std::ifstream lines(file);
    for (std::string line; std::getline(lines, line);) {
        const auto song = nlohmann::json::parse(line, nullptr, false);
        if (song.is_discarded() || !song.value("kept", false)) continue;
        ++songs.Count;
        if (song.value("whole", false)) ++songs.Whole;
        songs.ToldLost += song.value("lost_frames", uint64_t{0});
    }
    return songs;
}

size_t TakeFiles(const fs::path& folder, Truth& truth) {
    size_t count = 0;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (entry.path().extension() != ".wav") continue;
        const auto opened = SoundFileSource::Open(entry.path(), Radio::FramesPerSecond);
        if (!opened.Source) {
            fmt::print("{}\n", opened.Error);
            continue;
        }
        std::vector<Frame> frames(static_cast<size_t>(opened.Source->TotalFrames()));
        frames.resize(opened.Source->Read(frames));
        truth.Take(frames);
        ++count;
    }
    return count;
}

/// The fault that a stretch is missing for; null if there is none.
const Fault* ReasonOf(const Stretch& missing, const std::vector<Fault>& faults) {
    constexpr double reach = 3;  // a player and a stream need their time to begin anew
    const auto isIt = [&](const Fault& fault) {
        return static_cast<double>(missing.Begin) / Second >= fault.Begin - reach &&
               static_cast<double>(missing.End) / Second <= fault.End + reach;
    };
    const auto found = std::ranges::find_if(faults, isIt);
    return found == faults.end() ? nullptr : &*found;
}

int Compare(const fs::path& folder) {
    std::vector<Fault> faults = ReadFaults(folder / "events");
    const auto end = std::ranges::find(faults, "end", &Fault::Name);
    if (end == faults.end()) {
        fmt::print("the run has no end\n");
        return 2;
    }
    const auto endFrame = static_cast<uint64_t>(end->Begin * Second);
    Truth truth(endFrame + Radio::FramesPerSecond);
    const size_t files = TakeFiles(folder / "music", truth);
    const KeptSongs songs = ReadSongs(folder / "songs");
    const std::vector<uint64_t> told = ReadTold(folder / "log");

    fmt::print("| | |\n|---|---|\n");
    fmt::print("| recorded | {:.1f} min |\n",
               (end->Begin - static_cast<double>(truth.FirstKept()) / Second) / 60);
    fmt::print("| songs kept, told as whole | {}, {} |\n", songs.Count, songs.Whole);
    fmt::print("| music files | {} |\n", files);
    fmt::print("| sound of the radio in them | {:.3f} s |\n", static_cast<double>(truth.KeptFrames) / Second);
    fmt::print("| of it more than once | {} frames |\n", truth.TwiceFrames);
    fmt::print("| frames that the radio has not played | {} |\n", truth.ForeignFrames);

    uint64_t unexplained = 0;
    std::map<const Fault*, uint64_t> missing;
    for (const Stretch& each : truth.Missing(endFrame)) {
        const Fault* const reason = ReasonOf(each, faults);
        missing[reason] += each.Frames();
        if (reason != nullptr) continue;
        unexplained += each.Frames();
        fmt::print("| missing for no reason | {} frames at {:.3f} s |\n", each.Frames(),
                   static_cast<double>(each.Begin) / Second);
    }
    for (const Fault& fault : faults) {
        const Stretch gap = truth.GapAround(static_cast<uint64_t>((fault.Begin + 0.5) * Second));
        fmt::print(
            "| {} at {:.1f} s, for {:.1f} s | {:.3f} s of sound missing, {:.3f} s ({} frames) from the last "
            "kept frame to the next |\n",
            fault.Name, fault.Begin, fault.End - fault.Begin, static_cast<double>(missing[&fault]) / Second,
            static_cast<double>(gap.Frames()) / Second, gap.Frames());
    }
    for (const uint64_t frames : told) {
        fmt::print("| told in the log as lost | {:.3f} s ({} frames) |\n",
                   static_cast<double>(frames) / Second, frames);
    }
    fmt::print("| told in the lines of the kept songs | {:.3f} s ({} frames) |\n",
               static_cast<double>(songs.ToldLost) / Second, songs.ToldLost);
    fmt::print("| missing for no reason | {} frames |\n", unexplained);
    return unexplained == 0 && truth.ForeignFrames == 0 && truth.KeptFrames > 0 ? 0 : 1;
}

int Run(const std::vector<std::string>& arguments) {
    if (arguments.size() != 3) {
        fmt::print(stderr, "usage: live-radio play|compare SECOND|FOLDER\n");
        return 2;
    }
    if (arguments[1] == "play") return Play(std::stod(arguments[2]));
    return Compare(arguments[2]);
}

}  // namespace
}  // namespace Corvetape

int main(int count, char** arguments) {
    return Corvetape::Run({arguments, arguments + count});
}
