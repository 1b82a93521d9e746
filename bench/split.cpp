// What it costs to split an hour into its 18 songs, beside copying it and beside other tools.
//
//   bench-split [RUNS]
//
// Everything is measured in one run, by turns, so that a busy machine is busy for all of them, with the hour
// in memory and nothing else waiting for the disk. Medians of RUNS (5).
#include <fmt/format.h>
#include <unistd.h>

#include <cstdlib>
#include <optional>

#include "support/made_hour.h"
#include "support/measured_process.h"
#include "support/work_folder.h"

namespace Corvetape::Bench {
namespace {

constexpr const char* Program = CORVETAPE_BINARY_DIR "/bin/corvetape-cli";

struct Contender {
    std::string Name;
    std::string Tool;  ///< that must be installed
    MeasuredCommand Command;
    std::vector<Cost> Costs{};
};

MeasuredCommand Shell(const std::string& folder, const std::string& line) {
    return {{"sh", "-c", line}, folder, ""};
}

std::vector<Contender> ContendersFor(const std::string& folder) {
    const auto split = [&](std::vector<std::string> words) {
        MeasuredCommand command{
            {Program, "split", "--out", "out", "--home", "home", "--set", "Source.LengthOfPause=500"},
            folder,
            ""};
        command.Words.insert(command.Words.end(), words.begin(), words.end());
        return command;
    };
    return {
        {"`cat in > out`", "cat", {{"cat", "hour.wav"}, folder, folder + "/out.wav"}},
        {"`cat in \\| cat > out`", "cat", Shell(folder, "cat hour.wav | cat > out.wav")},
        {"`corvetape-cli split`, to WAV files", Program, split({"hour.wav"})},
        {"the same without handing the songs on", Program,
         split({"hour.wav", "--set", "Options.EncodeOffline=1"})},
        {"ffmpeg, silence detection alone",
         "ffmpeg",
         {{"ffmpeg", "-nostdin", "-i", "hour.wav", "-af", "silencedetect=n=-60dB:d=0.5", "-f", "null", "-"},
          folder,
          ""}},
        {"sox silence, new files",
         "sox",
         {{"sox", "hour.wav", "out/song.wav", "silence", "1", "0.05", "0.1%", "1", "0.5", "0.1%", ":",
           "newfile", ":", "restart"},
          folder,
          ""}},
        {"mp3splt, from MP3 to MP3 files without decoding them anew",
         "mp3splt",
         {{"mp3splt", "-Q", "-s", "-p", "th=-60,min=0.5", "-d", "out", "hour.mp3"}, folder, ""}},
        {"`corvetape-cli split`, from MP3 to WAV files", Program, split({"hour.mp3"})},
    };
}

/// Runs a contender once in an empty folder, with no work left for the disk.
bool RunOnce(const std::string& folder, Contender& contender) {
    std::filesystem::remove_all(folder + "/out");
    std::filesystem::remove(folder + "/out.wav");
    std::filesystem::create_directory(folder + "/out");
    sync();
    contender.Costs.push_back(Measure(contender.Command));
    if (contender.Costs.back().ExitCode == 0) return true;
    fmt::print(stderr, "{} failed with code {}\n", contender.Name, contender.Costs.back().ExitCode);
    return false;
}

bool MakeFiles(const WorkFolder& folder) {
    if (!WriteHour(MakeHour({}), folder / "hour.wav")) return false;
    const MeasuredCommand lame{{"lame", "--quiet", "-b", "128", "hour.wav", "hour.mp3"}, folder.Path(), ""};
    if (IsInstalled("lame") && Measure(lame).ExitCode != 0) return false;
    std::filesystem::create_directory(folder / "home");
    return true;
}

void Print(const std::vector<Contender>& contenders, size_t runs) {
    const double copy = MedianOf(contenders.front().Costs).WallSeconds;
    fmt::print("An hour of 44.1 kHz stereo WAV with 18 songs; medians of {} runs, by turns.\n\n", runs);
    fmt::print("| what | wall s | of cat's | processor s | memory MB |\n|---|---|---|---|---|\n");
    for (const Contender& contender : contenders) {
        if (contender.Costs.empty()) {
            fmt::print("| {} | not installed | | | |\n", contender.Name);
            continue;
        }
        const Cost cost = MedianOf(contender.Costs);
        fmt::print("| {} | {:.2f} | {:.2f} | {:.2f} | {:.0f} |\n", contender.Name, cost.WallSeconds,
                   cost.WallSeconds / copy, cost.ProcessorSeconds, cost.Megabytes);
    }
    fmt::print(
        "\nWhere the system can, `cat in > out` copies inside the kernel and touches no sample; the pipe\n"
        "copies through a program. Memory is that of the program itself, without the encoders.\n");
}

int Main(size_t runs) {
    const WorkFolder folder;
    if (!MakeFiles(folder)) {
        fmt::print(stderr, "bench-split: the hour cannot be made in {}\n", folder.Path());
        return 1;
    }
    std::vector<Contender> contenders = ContendersFor(folder.Path());
    for (size_t run = 0; run < runs; ++run) {
        for (Contender& contender : contenders) {
            const bool wanted = IsInstalled(contender.Tool) &&
                                (IsInstalled("lame") || contender.Command.Words.back() != "hour.mp3");
            if (wanted && !RunOnce(folder.Path(), contender)) return 1;
        }
    }
    Print(contenders, runs);
    return 0;
}

}  // namespace
}  // namespace Corvetape::Bench

int main(int count, char** words) {
    return Corvetape::Bench::Main(count > 1 ? std::strtoul(words[1], nullptr, 10) : 5);
}
