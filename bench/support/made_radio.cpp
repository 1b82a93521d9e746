#include "support/made_radio.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <numbers>

#include "support/measured_process.h"

namespace Corvetape::Bench {

namespace {

constexpr double BeginningSeconds = 28;
constexpr double EndingSeconds = 21;

/// How much quieter music is while somebody speaks over it.
constexpr double Ducked = 0.3;
constexpr int SpeechIsAudible = 600;

/// Peak of the noise of the room that is spoken in: without it the pauses between words would be silence.
constexpr int64_t RoomNoise = 260;

constexpr const char* Voices[] = {"en-gb", "en-us+f3", "en-gb-scotland", "en-us+m3"};
constexpr const char* Texts[] = {
    "You are listening to the finest music of the valley, all day and all night long. Stay with us for more.",
    "That was a song that we have played for many years now, and the next one is quite a bit younger than "
    "that.",
    "It is a quarter past seven. There are clouds over the hills, and some rain is expected in the "
    "afternoon.",
    "Here is something from the other side of the lake, recorded by friends of ours on a cold winter "
    "evening.",
};

constexpr JoinKind Kinds[] = {{"hard join"},
                              {"fade 1 s", 1},
                              {"fade 3 s", 3},
                              {"fade 6 s", 6},
                              {"gap 0.2 s", 0, 0.2},
                              {"gap 1 s", 0, 1},
                              {"end to beginning", 0, 0, Talk::None, SongCut::AtItsEnd},
                              {"talk between", 0, 0, Talk::Between},
                              {"talk over", 0, 0, Talk::Over}};

size_t FramesIn(double seconds) {
    return static_cast<size_t>(seconds * JoinedRate);
}

int16_t Sample(double value) {
    return static_cast<int16_t>(std::clamp(value, -32768.0, 32767.0));
}

Frame Mix(const Frame& one, double oneGain, const Frame& other, double otherGain) {
    return {Sample(oneGain * one.Left + otherGain * other.Left),
            Sample(oneGain * one.Right + otherGain * other.Right)};
}

bool IsSilent(const Frame& frame) {
    return std::abs(frame.Left) < SpeechIsAudible && std::abs(frame.Right) < SpeechIsAudible;
}

/// A song as it is played: its first part and its last. Nothing if it is too short.
std::vector<Frame> PlayedSong(const MusicShelf& music, size_t number, double cutOff, SimRandom& random) {
    std::vector<Frame> song = music.Beginning(number);
    std::vector<Frame> ending = music.Ending(number);
    ending.resize(ending.size() - std::min(FramesIn(cutOff), ending.size()));
    // Joins are anywhere in the slots that the recorder counts.
    const size_t beginning = FramesIn(random.Between(BeginningSeconds, BeginningSeconds + 1));
    if (song.size() < beginning || ending.size() < FramesIn(EndingSeconds)) return {};
    song.resize(beginning);
    song.insert(song.end(), ending.end() - static_cast<std::ptrdiff_t>(FramesIn(EndingSeconds)),
                ending.end());
    return song;
}

void AppendGap(MadeRadio& radio, double seconds, SimRandom& random) {
    const auto noise = [&] { return static_cast<int16_t>(random.Between(int64_t{-18}, int64_t{18})); };
    for (size_t i = 0; i < FramesIn(seconds); ++i) radio.Sound.push_back({noise(), noise()});
}

/// Somebody speaks over the music round a frame.
void SpeakOver(MadeRadio& radio, size_t middle, std::span<const Frame> sentence) {
    const size_t begin = middle - std::min(middle, sentence.size() / 2);
    for (size_t i = 0; i < sentence.size() && begin + i < radio.Sound.size(); ++i) {
        Frame& frame = radio.Sound[begin + i];
        frame = Mix(frame, Ducked, sentence[i], 1);
    }
}

/// A song joins what was played before.
void Append(MadeRadio& radio, std::span<const Frame> song, const JoinKind& kind, const SpeechShelf& speech,
            SimRandom& random) {
    RadioJoin join;
    join.Kind = kind;
    std::span<const Frame> sentence;
    if (kind.Spoken != Talk::None) sentence = speech.Sentence(random.Below(speech.Size()));
    const size_t oldEnd = radio.Sound.size();
    AppendGap(radio, kind.Gap, random);
    if (kind.Spoken == Talk::Between) radio.Sound.insert(radio.Sound.end(), sentence.begin(), sentence.end());
    const size_t overlap = FramesIn(kind.Fade);
    const size_t newBegin = radio.Sound.size() - overlap;
    for (size_t i = 0; i < overlap; ++i) {
        const double angle = std::numbers::pi / 2 * static_cast<double>(i) / static_cast<double>(overlap);
        Frame& frame = radio.Sound[newBegin + i];
        frame = Mix(frame, std::cos(angle), song[i], std::sin(angle));
    }
    radio.Sound.insert(radio.Sound.end(), song.begin() + static_cast<std::ptrdiff_t>(overlap), song.end());
    if (kind.Spoken == Talk::Over) SpeakOver(radio, newBegin, sentence);
    join.OldEnd = static_cast<double>(oldEnd) / JoinedRate;
    join.NewBegin = static_cast<double>(newBegin) / JoinedRate;
    radio.Joins.push_back(join);
}

bool Convert(std::vector<std::string> words, const WorkFolder& work) {
    words.insert(words.begin(), {"ffmpeg", "-nostdin", "-v", "quiet", "-y"});
    return Measure({std::move(words), work.Path(), {}}).ExitCode == 0;
}

/// Seconds between a cut and the join. Where somebody speaks, either end of the talk will do.
double ErrorOf(double cut, const RadioJoin& join) {
    if (join.Kind.Spoken != Talk::Between) return std::abs(cut - join.Middle());
    return std::min(std::abs(cut - join.OldEnd), std::abs(cut - join.NewBegin));
}

}  // namespace

std::span<const JoinKind> RadioKinds() {
    return Kinds;
}

SpeechShelf::SpeechShelf(const WorkFolder& work) {
    for (const char* voice : Voices) {
        for (const char* text : Texts) {
            const std::string raw = work / "speech.raw";
            const Cost spoken =
                Measure({{"espeak-ng", "-v", voice, "-w", "speech.wav", text}, work.Path(), {}});
            if (spoken.ExitCode != 0) return;
            if (!Convert(
                    {"-i", "speech.wav", "-f", "s16le", "-ac", "2", "-ar", std::to_string(JoinedRate), raw},
                    work))
                return;
            std::vector<Frame> frames = ReadFrames(raw);
            frames.erase(frames.begin(), std::ranges::find_if_not(frames, IsSilent));
            frames.erase(std::find_if_not(frames.rbegin(), frames.rend(), IsSilent).base(), frames.end());
            SimRandom random(Sentences.size() + 1);
            const auto noise = [&] { return static_cast<int16_t>(random.Between(-RoomNoise, RoomNoise)); };
            for (Frame& frame : frames) frame = Mix(frame, 1, {noise(), noise()}, 1);
            if (frames.size() >= FramesIn(3)) Sentences.push_back(std::move(frames));
        }
    }
}

MadeRadio ComposeRadio(const RadioShelves& shelves, size_t joins, std::span<const JoinKind> kinds,
                       SimRandom& random) {
    MadeRadio radio;
    radio.Sound.resize(FramesIn(RadioLeadIn));
    size_t before = shelves.Music.Size();
    JoinKind kind = random.Pick(kinds);
    for (size_t number = 0; number <= joins;) {
        const size_t next = random.Below(shelves.Music.Size());
        if (next == before) continue;
        // What follows a song says how it ends.
        const JoinKind following = random.Pick(kinds);
        const double cutOff = following.Cut == SongCut::AtItsEnd ? 0 : random.Between(2.0, 12.0);
        const std::vector<Frame> song = PlayedSong(shelves.Music, next, cutOff, random);
        if (song.empty()) continue;
        before = next;
        if (number++ == 0) {
            radio.Sound.insert(radio.Sound.end(), song.begin(), song.end());
        } else {
            Append(radio, song, kind, shelves.Speech, random);
        }
        kind = following;
    }
    return radio;
}

bool WriteRadio(const MadeRadio& radio, StationSound station, const WorkFolder& work,
                const std::string& path) {
    const std::string raw = work / "radio.raw";
    {
        std::ofstream file(raw, std::ios::binary | std::ios::trunc);
        file.write(reinterpret_cast<const char*>(radio.Sound.data()),
                   static_cast<std::streamsize>(radio.Sound.size() * sizeof(Frame)));
        if (!file.flush()) return false;
    }
    const std::string rate = std::to_string(JoinedRate);
    const std::string gain = station.GainControl ? "dynaudnorm=framelen=1000:gausssize=15:maxgain=4," : "";
    const std::string made = work / (station.ByMp3 ? "radio.mp3" : "radio.wav");
    std::vector<std::string> words = {
        "-f", "s16le", "-ac", "2",   "-ar",
        rate, "-i",    raw,   "-af", gain + "volume=1.2,alimiter=limit=0.9:level=disabled"};
    if (station.ByMp3)
        words.insert(words.end(), {"-c:a", "libmp3lame", "-b:a", "128k", "-compression_level", "7"});
    words.insert(words.end(), {"-ar", rate, made});
    if (!Convert(words, work)) return false;
    if (station.ByMp3 && !Convert({"-i", made, path}, work)) return false;
    std::error_code error;
    if (!station.ByMp3 && made != path) std::filesystem::rename(made, path, error);
    return !error;
}

std::vector<double> TitleTimes(const MadeRadio& radio, const TitleDelay& delay, SimRandom& random) {
    std::vector<double> times = {RadioLeadIn};
    for (const RadioJoin& join : radio.Joins) {
        times.push_back(delay.Means == TitleDelay::Meaning::Middle ? join.Middle() : join.NewBegin);
    }
    for (double& time : times) time = std::max(time + delay.Delay + random.Between(0.0, delay.Jitter), 0.0);
    return times;
}

bool WriteTitles(const std::vector<double>& times, const std::string& path) {
    std::ofstream table(path);
    for (size_t song = 0; song < times.size(); ++song) {
        table << fmt::format("{:.3f},Radio,Artist {},Title {}\n", times[song], song, song);
    }
    return bool{table.flush()};
}

double NearestError(const std::vector<FoundSong>& found, const RadioJoin& join) {
    double best = FarthestCut;
    for (size_t i = 1; i < found.size(); ++i) {
        best = std::min(best, ErrorOf((found[i - 1].End + found[i].Begin) / 2, join));
        if (join.Kind.Spoken != Talk::Between) continue;
        // All of the talk in no song, which is best.
        const double both =
            std::max(std::abs(found[i - 1].End - join.OldEnd), std::abs(found[i].Begin - join.NewBegin));
        best = std::min(best, both);
    }
    return best;
}

}  // namespace Corvetape::Bench
