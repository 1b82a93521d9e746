// What a hundred thousand entries of a watch list cost: reading them from their file and showing them on
// their page, and the one question that each song asks. Argument: the kind of the entries.
#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <array>
#include <string>

#include "platform/virtual/sim_random.h"
#include "post/lists/watch_pages.h"
#include "sim/sim_machine.h"
#include "support/noted_reports.h"

namespace Corvetape {
namespace {

constexpr int Entries = 100'000;
constexpr std::string_view SongName =
    "The Unknown Singers with Friends - A Song That Is on No List (1234567890 Mix)";

/// What entries look like. As a list grows by itself most are names without anything special.
enum Kind : int { Names, Begins, Holds, HoldsSeveral, OneAny, Digits, Ranges, Mixed };

constexpr std::array<const char*, Mixed + 1> KindNames = {
    "names", "begin*", "*part*", "*several*parts*", "??? - name", "## - name", "[ranges] - [!name]", "mixed"};

std::string Entry(int kind, int number, SimRandom& random) {
    switch (kind) {
        case Begins:
            return fmt::format("The Singers {} - *", number);
        case Holds:
            return fmt::format("*Song {}*", number);
        case HoldsSeveral:
            return fmt::format("*The*Singers*with*a*Song*{:06} *", number);
        case OneAny:
            return fmt::format("??? Singers ?????? - Song {}", number);
        case Digits:
            return fmt::format("## - Song {}", number);
        case Ranges:
            return fmt::format("[A-Tt][!0-9][a-z] [!a-r]ingers - Song {}[!0-9]*", number);
        case Mixed: {
            const int half =
                number % 2 == 0 ? Names : static_cast<int>(random.Between(Begins, int64_t{Ranges}));
            return Entry(half, number, random);
        }
        default:
            return fmt::format("The Singers - Song {}", number);
    }
}

/// A recorder's watch lists and their pages, with a file for the songs to drop.
struct Recorder {
    explicit Recorder(int kind) {
        Folders.Paths[2] = "/home/user";
        SimRandom random(1);
        std::string text;
        for (int i = 0; i < Entries; ++i) text += Entry(kind, i, random) + "\r\n";
        Machine.Files.Append(Lists.FileOf(WatchListKind::Exclude), text);
    }

    SimMachine Machine;
    WorkingFolders Folders;
    frmMain Form;
    WatchLists Lists{Machine.Files, Folders};
    Test::NotedReports Reports{Machine, Form};
    WatchPages Pages{Form, Lists, Machine.Processes, Reports.Say};
};

void Loading(benchmark::State& state) {
    Recorder recorder(static_cast<int>(state.range(0)));
    for (auto _ : state) recorder.Pages.LoadWatchLists();
    const size_t count = recorder.Lists.List(WatchListKind::Exclude).Entries().size();
    if (count != Entries) state.SkipWithError("entries were lost");
    state.SetLabel(KindNames[static_cast<size_t>(state.range(0))]);
}

void OneSong(benchmark::State& state) {
    Recorder recorder(static_cast<int>(state.range(0)));
    recorder.Pages.LoadWatchLists();
    bool excluded = false;
    for (auto _ : state) benchmark::DoNotOptimize(excluded |= recorder.Lists.IsSongExcluded(SongName));
    if (excluded) state.SkipWithError("the song was found");
    state.SetLabel(KindNames[static_cast<size_t>(state.range(0))]);
}

BENCHMARK(Loading)->DenseRange(Names, Mixed)->Unit(benchmark::kMillisecond);
BENCHMARK(OneSong)->DenseRange(Names, Mixed)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace Corvetape

BENCHMARK_MAIN();
