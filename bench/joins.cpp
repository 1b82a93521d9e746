// How far the cuts lie from the true joins of real songs, by the quietest stretch and by evidence. The
// modules alone are measured, not the whole recorder. Each radio has titles that are late by a delay of its
// own, -1 to 6 s, and by up to 0.8 s of jitter.
//
//   bench-joins [FOLDER OF MUSIC] [RADIOS OF EACH KIND]
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <vector>

#include "audio/analyze.h"
#include "audio/evidence_cut.h"
#include "support/joined_music.h"

namespace Corvetape::Bench {
namespace {

constexpr const char* UsualFolder = "/usr/share/games/wesnoth/1.16/data/core/music";
constexpr size_t SongsOfRadio = 30;
constexpr int64_t Change = 400;  // slot
constexpr double LengthSeconds = 33;
constexpr int32_t UsualReach = 60;  // slots, of the search by titles

constexpr JoinKind Kinds[] = {{"hard join"},      {"fade 1 s", 1, 0},    {"fade 3 s", 3, 0},
                              {"fade 6 s", 6, 0}, {"gap 0.2 s", 0, 0.2}, {"gap 1 s", 0, 1}};

/// Errors in milliseconds: by the quietest stretch, and by evidence in the first five songs of a radio, up to
/// the twentieth, and from then on.
using Errors = std::array<std::vector<double>, 4>;

/// Cuts by how sure they were.
struct Certainty {
    double Below = 0;
    size_t Cuts = 0;
    size_t Near = 0;  ///< within 300 ms
};
using Certainties = std::array<Certainty, 5>;

struct Sound {
    FeatureHistory History{HistorySlots};
    std::vector<int32_t> Levels;
};

Sound Heard(const std::vector<Frame>& frames) {
    constexpr size_t framesPerSlot = JoinedRate / 20;
    Sound sound;
    FeatureMeter meter(JoinedRate);
    for (size_t slot = 0; (slot + 1) * framesPerSlot <= frames.size(); ++slot) {
        const auto part = std::span(frames).subspan(slot * framesPerSlot, framesPerSlot);
        sound.History.Add(meter.Measure(part));
        const Loudness loudness = MeasurePeaks(part);
        sound.Levels.push_back(std::max(loudness.MaxLeft, loudness.MaxRight));
    }
    return sound;
}

double MillisecondsOf(double slots) {
    return slots * 50;
}

void CountByCertainty(float confidence, double error, Certainties& certainties) {
    for (Certainty& certainty : certainties) {
        if (confidence >= certainty.Below) continue;
        ++certainty.Cuts;
        if (error <= 300) ++certainty.Near;
        return;
    }
}

/// One radio, song by song; each teaches it.
void PlayRadio(const MusicShelf& shelf, const JoinKind& kind, SimRandom& random, Errors& errors,
               Certainties& certainties) {
    const double delay = random.Between(-1.0, 6.0);
    EvidenceCutter cutter;
    CutPrior prior;
    size_t before = random.Below(shelf.Size());
    for (size_t song = 0; song < SongsOfRadio;) {
        const size_t next = random.Below(shelf.Size());
        if (next == before) continue;
        const double join = Change * 0.05 - delay - random.Between(0.0, 0.8);
        std::vector<Frame> ending = shelf.Ending(before);
        const auto cutOff = static_cast<size_t>(random.Between(2.0, 12.0) * JoinedRate);
        ending.resize(ending.size() - std::min(cutOff, ending.size()));
        const std::vector<Frame> beginning = shelf.Beginning(next);
        before = next;
        const auto frames = Joined({ending, beginning, kind, join, LengthSeconds}, random);
        if (!frames) continue;  // silence of this song was longer than its sound
        const Sound sound = Heard(*frames);
        const double truth = join * 20 - Change;
        const auto quiet = FindQuietStretch(sound.Levels, Change - UsualReach, Change + UsualReach);
        if (quiet) {
            const double middle = (static_cast<double>(quiet->OldEnd + quiet->NewStart) + 1) / 2 - Change;
            errors[0].push_back(MillisecondsOf(std::abs(middle - truth)));
        }
        const auto cut = cutter.Decide({sound.History, Change, sound.Levels, Change, {170, 199}}, prior);
        if (cut) {
            const double error = MillisecondsOf(std::abs((cut->OldEnd + cut->NewBegin) / 2.0 - truth));
            errors[song < 5 ? 1 : song < 20 ? 2 : 3].push_back(error);
            if (song >= 5 && !cut->IsGap()) CountByCertainty(cut->Confidence, error, certainties);
        }
        cutter.Teach(prior);
        ++song;
    }
}

std::string Summary(std::vector<double>& errors) {
    if (errors.empty()) return "-";
    std::ranges::sort(errors);
    return fmt::format("{:.0f}/{:.0f}", errors[errors.size() / 2], errors[errors.size() * 9 / 10]);
}

int Main(const std::string& folder, uint64_t radios) {
    const WorkFolder work;
    const MusicShelf shelf(folder, work);
    if (shelf.Size() < 2) {
        fmt::print("No music below {}: install the Debian package wesnoth-1.16-music, or name a folder.\n",
                   folder);
        return 0;
    }
    fmt::print("{} songs, {} radios of {} joins for each kind. Error in ms, median/90 %.\n\n", shelf.Size(),
               radios, SongsOfRadio);
    fmt::print("| join | quietest stretch | first 5 songs | songs 6 to 20 | songs 21 to {} |\n",
               SongsOfRadio);
    fmt::print("|---|---|---|---|---|\n");
    Certainties certainties = {{{0.3}, {0.5}, {0.7}, {0.85}, {2}}};
    uint64_t seed = 0;
    for (const JoinKind& kind : Kinds) {
        Errors errors;
        for (uint64_t radio = 0; radio < radios; ++radio) {
            SimRandom random(++seed);
            PlayRadio(shelf, kind, random, errors, certainties);
        }
        fmt::print("| {} | {} | {} | {} | {} |\n", kind.Name, Summary(errors[0]), Summary(errors[1]),
                   Summary(errors[2]), Summary(errors[3]));
    }
    fmt::print("\n| confidence below | cuts | within 300 ms |\n|---|---|---|\n");
    for (const Certainty& certainty : certainties) {
        const double share = certainty.Cuts == 0 ? 0
                                                 : 100.0 * static_cast<double>(certainty.Near) /
                                                       static_cast<double>(certainty.Cuts);
        fmt::print("| {} | {} | {:.0f} % |\n", std::min(certainty.Below, 1.0), certainty.Cuts, share);
    }
    return 0;
}

}  // namespace
}  // namespace Corvetape::Bench

int main(int count, char** words) {
    return Corvetape::Bench::Main(count > 1 ? words[1] : Corvetape::Bench::UsualFolder,
                                  count > 2 ? std::strtoull(words[2], nullptr, 10) : 4);
}
