#include "sim/radio_script.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

#include "platform/virtual/sim_random.h"

namespace Corvetape {

int16_t AmplitudeOf(double decibelsFullScale) {
    constexpr double fullScale = std::numeric_limits<int16_t>::max();
    return static_cast<int16_t>(
        std::lround(fullScale * std::pow(10.0, std::min(decibelsFullScale, 0.0) / 20)));
}

RadioScript& RadioScript::Song(ScriptSong song) {
    const double seconds = song.Seconds;
    Items.push_back({ItemKind::Song, seconds, 0, std::move(song)});
    return *this;
}

RadioScript& RadioScript::Pause(double seconds, double noiseFloorDb) {
    Items.push_back({ItemKind::Pause, seconds, AmplitudeOf(noiseFloorDb), {}});
    return *this;
}

RadioScript& RadioScript::Silence(double seconds) {
    Items.push_back({ItemKind::Silence, seconds, 0, {}});
    return *this;
}

RadioScript& RadioScript::Click(int16_t peak, double seconds) {
    Items.push_back({ItemKind::Click, seconds, peak, {}});
    return *this;
}

RadioScript& RadioScript::SilenceForever() {
    IsEndless = true;
    return *this;
}

RadioScript& RadioScript::Stamped() {
    IsStamped = true;
    return *this;
}

RadioScript& RadioScript::Drift(int64_t millionths) {
    DriftMillionths = millionths;
    return *this;
}

RadioTimeline::RadioTimeline(const RadioScript& script, uint32_t framesPerSecond)
    : Rate(framesPerSecond),
      EffectiveRate(framesPerSecond / (1.0 + static_cast<double>(script.DriftMillionths) * 1e-6)),
      Endless(script.IsEndless),
      StampSongs(script.IsStamped) {
    using Kind = RadioScript::ItemKind;
    uint64_t overlapBefore = 0;
    for (size_t at = 0; at < script.Items.size(); ++at) {
        const RadioScript::Item& item = script.Items[at];
        if (item.Kind != Kind::Song) {
            AddRun(item.Kind == Kind::Silence ? Run::Making::Zeros : Run::Making::Noise,
                   Frames + FramesOf(item.Seconds), item.Peak);
            continue;
        }
        uint64_t overlapAfter = 0;
        if (at + 1 < script.Items.size() && script.Items[at + 1].Kind == Kind::Song) {
            // Half a song at most, or three songs would sound at once.
            const double most = std::min(item.Seconds, script.Items[at + 1].Seconds) / 2;
            overlapAfter = FramesOf(std::min(item.Song.OverlapSeconds, most));
        }
        AddSong(item.Song, overlapBefore, overlapAfter);
        overlapBefore = overlapAfter;
    }
    if (Endless) AddRun(Run::Making::Zeros, std::numeric_limits<uint64_t>::max());
}

uint64_t RadioTimeline::FramesOf(double seconds) const {
    return static_cast<uint64_t>(std::llround(std::max(seconds, 0.0) * EffectiveRate));
}

/// `Frames` stands after the overlap with the song before, which has that stretch among its runs.
void RadioTimeline::AddSong(const ScriptSong& song, uint64_t overlapBefore, uint64_t overlapAfter) {
    const uint64_t begin = Frames - overlapBefore;
    const uint64_t end = begin + FramesOf(song.Seconds);
    AllSongs.push_back({begin, end, song.Media});

    SongShape shape = {song.Seed,
                       song.PeakLeft,
                       song.PeakRight,
                       song.Sound,
                       FramesOf(song.FadeInSeconds),
                       FramesOf(song.FadeOutSeconds)};
    if (overlapBefore > 0) shape.FadeInFrames = overlapBefore;
    if (overlapAfter > 0) shape.FadeOutFrames = overlapAfter;
    Shapes.push_back(shape);

    const uint64_t level = std::min(std::max(Frames, begin + shape.FadeInFrames), end);
    AddRun(Run::Making::Mixed, level);
    AddSongRuns(song, begin, std::max(level, end - std::min(shape.FadeOutFrames, end - begin)));
    AddRun(Run::Making::Mixed, end);
}

/// The level part of a song up to `end`, with its rests.
void RadioTimeline::AddSongRuns(const ScriptSong& song, uint64_t begin, uint64_t end) {
    for (const ScriptRest& rest : song.Rests) {
        const uint64_t restBegin = std::clamp(begin + FramesOf(rest.AtSecond), Frames, end);
        AddRun(Run::Making::Song, restBegin);
        AddRun(Run::Making::Noise, std::clamp(restBegin + FramesOf(rest.Seconds), Frames, end),
               AmplitudeOf(rest.NoiseFloorDb));
    }
    AddRun(Run::Making::Song, end);
}

void RadioTimeline::AddRun(Run::Making how, uint64_t end, int16_t peak) {
    if (end <= Frames) return;
    const uint64_t begin = Frames;
    Frames = end;
    if (how == Run::Making::Zeros && end == std::numeric_limits<uint64_t>::max()) Frames = begin;
    AllRuns.push_back({how, begin, end, peak, AllRuns.size(), Shapes.empty() ? 0 : Shapes.size() - 1});
}

SourceMedia RadioTimeline::MediaAt(uint64_t frame) const {
    const auto after = std::ranges::upper_bound(AllSongs, frame, {}, &ScriptedSong::Begin);
    return after == AllSongs.begin() ? SourceMedia{} : std::prev(after)->Media;
}

namespace {

constexpr std::array<const char*, 8> BandFirst = {"Copper", "Silent", "Paper",   "Northern",
                                                  "Velvet", "Hollow", "Crimson", "Wandering"};
constexpr std::array<const char*, 8> BandLast = {"Lanterns", "Herons",  "Engines", "Orchards",
                                                 "Sparrows", "Magnets", "Ferries", "Clocks"};
constexpr std::array<const char*, 8> TitleFirst = {"Blue",   "Late",  "Golden",  "Broken",
                                                   "Little", "Windy", "Distant", "Second"};
constexpr std::array<const char*, 8> TitleLast = {"Harbour", "Morning", "Window", "River",
                                                  "Letter",  "Station", "Garden", "Mirror"};

template <typename Words>
std::string TwoWords(SimRandom& random, const Words& first, const Words& last) {
    return std::string(random.Pick(first)) + " " + random.Pick(last);
}

std::vector<ScriptRest> RandomRests(SimRandom& random, const RandomRadioOptions& options, double seconds) {
    std::vector<ScriptRest> rests;
    const auto count = random.Between(int64_t{1}, int64_t{3});
    const double part = seconds / static_cast<double>(count + 1);
    for (int64_t number = 1; number <= count; ++number) {
        const double at = part * static_cast<double>(number) + random.Between(-part / 4, part / 4);
        rests.push_back(
            {at, random.Between(options.ShortestRest, options.LongestRest), options.NoiseFloorDb});
    }
    return rests;
}

ScriptSong RandomSong(SimRandom& random, const RandomRadioOptions& options, uint64_t number) {
    ScriptSong song;
    song.Seconds = random.Between(options.ShortestSong, options.LongestSong);
    song.Seed = options.Seed * 4099 + number;
    song.PeakLeft = random.Pick(options.Peaks);
    song.PeakRight = song.PeakLeft;
    song.Media.StationName = "Radio Script " + std::to_string(options.Seed);
    song.Media.Artist = "The " + TwoWords(random, BandFirst, BandLast);
    song.Media.Song = TwoWords(random, TitleFirst, TitleLast) + " No. " + std::to_string(number);
    song.Media.Album = TwoWords(random, TitleFirst, BandLast);
    if (random.Chance(options.RestChance)) song.Rests = RandomRests(random, options, song.Seconds);
    return song;
}

ScriptSong RandomJingle(SimRandom& random, const RandomRadioOptions& options, uint64_t number) {
    ScriptSong jingle;
    jingle.Seconds = random.Between(5.0, 20.0);
    jingle.Seed = options.Seed * 4099 + number + 16384;
    jingle.PeakLeft = jingle.PeakRight = random.Pick(options.Peaks);
    jingle.Media.StationName = "Radio Script " + std::to_string(options.Seed);
    return jingle;
}

void AddPause(RadioScript& script, SimRandom& random, const RandomRadioOptions& options) {
    const double seconds = random.Between(options.ShortestPause, options.LongestPause);
    if (!random.Chance(options.ClickChance)) {
        script.Pause(seconds, options.NoiseFloorDb);
        return;
    }
    script.Pause(seconds / 2, options.NoiseFloorDb)
        .Click(random.Pick(options.Peaks))
        .Pause(seconds / 2, options.NoiseFloorDb);
}

}  // namespace

RadioScript RandomRadio(const RandomRadioOptions& options) {
    SimRandom random(options.Seed);
    RadioScript script;
    script.IsStamped = options.Stamped;
    AddPause(script, random, options);
    double seconds = 0;
    bool overlaps = false;
    for (uint64_t number = 1; seconds < options.Seconds || overlaps; ++number) {
        if (!overlaps && random.Chance(options.JingleChance)) {
            script.Song(RandomJingle(random, options, number));
            seconds += script.Items.back().Seconds;
            AddPause(script, random, options);
        }
        ScriptSong song = RandomSong(random, options, number);
        overlaps = random.Chance(options.OverlapChance) && seconds + song.Seconds < options.Seconds;
        if (overlaps) song.OverlapSeconds = options.OverlapSeconds;
        seconds += song.Seconds;
        script.Song(std::move(song));
        if (!overlaps) AddPause(script, random, options);
    }
    return script;
}

}  // namespace Corvetape
