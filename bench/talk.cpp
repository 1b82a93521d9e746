// How well talk between two songs is found, how often it is found where nobody speaks, and what the sound
// alone says where no title has changed.
//
//   bench-talk FOLDER OF MUSIC [JOINS]
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <vector>

#include "audio/cut_evidence.h"
#include "audio/talk_search.h"
#include "platform/virtual/sim_random.h"
#include "support/joined_music.h"
#include "support/measured_process.h"

namespace Corvetape::Bench {
namespace {

constexpr size_t SlotFrames = JoinedRate / 20;
constexpr size_t Voices = 4;
constexpr std::array<const char*, Voices> VoiceNames = {"en-gb", "en-us+f3", "de", "en+m5"};
constexpr std::array<const char*, 3> Sentences = {
    "Good evening, it is eight o'clock, and here is the next hour of music without a break.",
    "That one was ten years old. What comes now was made last week, and nobody has heard it yet.",
    "The road along the river is closed tonight. Drive with care, and stay where you can hear us."};

std::vector<Frame> Spoken(const WorkFolder& work, size_t number) {
    const std::string name = work.Path() + "/speech";
    Measure({{"espeak-ng", "-v", VoiceNames[number % Voices], "-w", name + ".wav",
              Sentences[number % Sentences.size()]},
             work.Path(),
             {}});
    Measure({{"ffmpeg", "-nostdin", "-v", "quiet", "-y", "-i", name + ".wav", "-af", "volume=0.8", "-ar",
              "44100", "-ac", "2", "-f", "s16le", name + ".raw"},
             work.Path(),
             {}});
    std::ifstream file(name + ".raw", std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    std::vector<Frame> frames(bytes.size() / sizeof(Frame));
    std::memcpy(frames.data(), bytes.data(), frames.size() * sizeof(Frame));
    const auto loud = [](const Frame& frame) { return std::abs(int{frame.Left}) > 300; };
    frames.erase(frames.begin(), std::ranges::find_if(frames, loud));
    while (!frames.empty() && !loud(frames.back())) frames.pop_back();
    return frames;
}

FeatureHistory Heard(const std::vector<Frame>& frames) {
    FeatureHistory history(frames.size() / SlotFrames);
    FeatureMeter meter(JoinedRate);
    for (size_t at = 0; at + SlotFrames <= frames.size(); at += SlotFrames) {
        history.Add(meter.Measure(std::span(frames).subspan(at, SlotFrames)));
    }
    return history;
}

/// The strongest evidence of a hard join anywhere round a place.
float StrongestAt(CutEvidence& evidence, const FeatureHistory& history, int64_t place) {
    const EdgeRow& row = evidence.Score(history, place)[0];
    return *std::ranges::max_element(row);
}

struct Counts {
    size_t Joins = 0;
    size_t Reachable = 0;  ///< both ends may be looked for
    size_t Found = 0;
    size_t Near = 0;  ///< both ends within 100 ms
};

struct Results {
    Counts Talk;
    Counts Hard;
    Counts Within;
    std::vector<float> AtJoins;
    std::vector<float> InSongs;
};

void Append(std::vector<Frame>& sound, std::span<const Frame> more) {
    sound.insert(sound.end(), more.begin(), more.end());
}

void MeasureJoin(const MusicShelf& music, const std::vector<Frame>& speech, SimRandom& random,
                 CutEvidence& evidence, Results& results) {
    const std::vector<Frame> old = music.Beginning(random.Below(music.Size()));
    const std::vector<Frame> next = music.Beginning(random.Below(music.Size()));
    const auto seconds = [](double length) { return static_cast<size_t>(length * JoinedRate); };
    const size_t cut = seconds(random.Between(25.0, 30.0));
    if (old.size() < cut || next.size() < seconds(25)) return;
    const auto beginning = std::span(next).first(seconds(25));
    const double delay = random.Between(-1.0, 6.0);
    for (const bool talk : {false, true}) {
        std::vector<Frame> sound(old.begin(), old.begin() + static_cast<ptrdiff_t>(cut));
        if (talk) Append(sound, speech);
        const auto newBegin = static_cast<int64_t>(sound.size() / SlotFrames);
        Append(sound, beginning);
        const FeatureHistory history = Heard(sound);
        const int64_t change = newBegin + static_cast<int64_t>(delay * 20);
        const auto found = FindTalk(history, change, {FirstEdge, LastEdge});
        Counts& counts = talk ? results.Talk : results.Hard;
        ++counts.Joins;
        const double earliest = static_cast<double>(change + FirstEdge) / 20;
        if (static_cast<double>(cut) / JoinedRate > earliest && delay > -3) ++counts.Reachable;
        if (!talk) results.AtJoins.push_back(StrongestAt(evidence, history, change));
        if (!found) continue;
        ++counts.Found;
        const double begin = static_cast<double>((change + found->First) * 50) -
                             1000.0 * static_cast<double>(cut) / JoinedRate;
        const double end = static_cast<double>((change + found->Last - newBegin) * 50);
        if (talk && std::abs(begin) <= 100 && std::abs(end) <= 100) ++counts.Near;
    }
}

void MeasureSong(const std::vector<Frame>& song, CutEvidence& evidence, Results& results) {
    const FeatureHistory history = Heard(song);
    constexpr int64_t step = 11 * 20;  // what is searched round one place is not searched round the next
    for (int64_t place = -FirstSlotOfSearch; place + SlotsAfterChange < history.End(); place += step) {
        ++results.Within.Joins;
        ++results.Within.Reachable;
        results.Within.Found += FindTalk(history, place, {FirstEdge, LastEdge}) ? 1 : 0;
        results.InSongs.push_back(StrongestAt(evidence, history, place));
    }
}

void Print(const char* name, const Counts& counts) {
    fmt::print("| {} | {} | {} | {} | {} |\n", name, counts.Joins, counts.Reachable, counts.Found,
               counts.Near);
}

void Run(const std::string& folder, size_t joins) {
    const WorkFolder work;
    const MusicShelf music(folder, work);
    SimRandom random(1);
    CutEvidence evidence;
    Results results;
    std::vector<std::vector<Frame>> speech;
    for (size_t i = 0; i < Voices * Sentences.size(); ++i) speech.push_back(Spoken(work, i));
    for (size_t i = 0; i < joins; ++i)
        MeasureJoin(music, speech[i % speech.size()], random, evidence, results);
    for (size_t i = 0; i < music.Size(); ++i) {
        MeasureSong(music.Beginning(i), evidence, results);
        MeasureSong(music.Ending(i), evidence, results);
    }
    fmt::print(
        "{} songs\n\n| | places | both ends in reach | talk found | both ends within 100 ms "
        "|\n|---|---|---|---|---|\n",
        music.Size());
    Print("talk between songs", results.Talk);
    Print("hard joins", results.Hard);
    Print("within songs", results.Within);
    std::ranges::sort(results.AtJoins, std::greater());
    fmt::print("\n| joins found without a title | false alarms an hour |\n|---|---|\n");
    for (const double share : {0.1, 0.25, 0.5, 0.75, 0.9}) {
        if (results.AtJoins.empty() || results.InSongs.empty()) return;
        const float limit =
            results.AtJoins[static_cast<size_t>(share * static_cast<double>(results.AtJoins.size() - 1))];
        const auto over = std::ranges::count_if(results.InSongs, [&](float each) { return each >= limit; });
        const double hours = static_cast<double>(results.InSongs.size()) * 11 / 3600;
        fmt::print("| {:.0f} % | {:.1f} |\n", share * 100, static_cast<double>(over) / hours);
    }
}

}  // namespace
}  // namespace Corvetape::Bench

int main(int count, char** words) {
    if (count < 2) {
        fmt::print("bench-talk FOLDER OF MUSIC [JOINS]\n");
        return 2;
    }
    Corvetape::Bench::Run(words[1], count > 2 ? std::strtoull(words[2], nullptr, 10) : 200);
}
