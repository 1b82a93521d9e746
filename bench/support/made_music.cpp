#include "support/made_music.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <vector>

#include "audio/wav_file.h"
#include "platform/linux/files/linux_files.h"
#include "platform/virtual/sim_random.h"

namespace Corvetape::Bench {

namespace {

constexpr uint32_t Rate = 44100;
constexpr double LeadIn = 10;
constexpr double NoiseFloor = -70;
constexpr double DecaySeconds = 0.15;  // of a beat to a third of its loudness
constexpr uint64_t StepFrames = 441;   // the loudness changes every 10 ms
constexpr size_t BlockFrames = StepFrames * 256;

/// What makes the songs of a radio unlike each other.
struct Rhythm {
    uint64_t Seed = 0;
    double BeatSeconds = 0;
    double Ground = 0;  ///< between the beats, of 1
    double Peak = 0;
};

Rhythm RhythmOf(uint64_t seed) {
    SimRandom random(seed);
    return {seed, random.Between(0.4, 0.75), random.Between(0.03, 0.15), random.Between(8000.0, 24000.0)};
}

double LoudnessAt(const Rhythm& rhythm, double seconds) {
    const double beat = std::floor(seconds / rhythm.BeatSeconds);
    SimRandom accents(MixSeed(rhythm.Seed, static_cast<uint64_t>(beat)));
    const double fading = std::exp((beat * rhythm.BeatSeconds - seconds) / DecaySeconds);
    return rhythm.Ground + (1 - rhythm.Ground) * accents.Between(0.3, 1.0) * fading;
}

/// Endless noise between -1 and 1.
class Noise {
 public:
    Noise() {
        SimRandom random(4711);
        for (auto& side : Sides) {
            side.resize(65536);
            for (float& sample : side) sample = static_cast<float>(random.Between(-1.0, 1.0));
        }
    }
    double Left(uint64_t at) const { return Sides[0][at % Sides[0].size()]; }
    double Right(uint64_t at) const { return Sides[1][at % Sides[1].size()]; }

 private:
    std::array<std::vector<float>, 2> Sides;
};

/// How loud a frame of a song is for its fades, 0 to 1.
double FadeAt(const RadioTimeline::SongShape& shape, uint64_t position, uint64_t length) {
    double gain = 1;
    if (position < shape.FadeInFrames) {
        gain = static_cast<double>(position) / static_cast<double>(shape.FadeInFrames);
    }
    const uint64_t left = length - position;
    if (left < shape.FadeOutFrames) {
        gain = std::min(gain, static_cast<double>(left) / static_cast<double>(shape.FadeOutFrames));
    }
    return gain;
}

Frame Sum(Frame frame, double left, double right) {
    const auto add = [](int16_t sample, double more) {
        return static_cast<int16_t>(std::clamp(sample + std::lround(more), -32768L, 32767L));
    };
    return {add(frame.Left, left), add(frame.Right, right)};
}

/// Adds what a song gives to a block that begins at a frame of the radio.
void AddSong(const RadioTimeline& radio, size_t number, const Noise& noise, uint64_t from,
             std::span<Frame> block) {
    const ScriptedSong& song = radio.Songs()[number];
    const RadioTimeline::SongShape& shape = radio.ShapeOf(number);
    const Rhythm rhythm = RhythmOf(shape.Seed);
    const uint64_t first = std::max(from, song.Begin);
    const uint64_t after = std::min<uint64_t>(from + block.size(), song.End);
    double loudness = 0;
    for (uint64_t frame = first; frame < after; ++frame) {
        const uint64_t position = frame - song.Begin;
        if (frame == first || position % StepFrames == 0) {
            const uint64_t step = position / StepFrames * StepFrames;
            loudness = rhythm.Peak * LoudnessAt(rhythm, static_cast<double>(step) / Rate);
        }
        const double gain = loudness * FadeAt(shape, position, song.End - song.Begin);
        const uint64_t sound = shape.Seed * 12'347 + position;
        Frame& sum = block[frame - from];
        sum = Sum(sum, gain * noise.Left(sound), gain * noise.Right(sound));
    }
}

}  // namespace

std::shared_ptr<const RadioTimeline> MakeMusic(const MusicOptions& options) {
    SimRandom random(options.Seed);
    RadioScript script;
    script.Pause(LeadIn, NoiseFloor);
    for (size_t number = 1; number <= options.Songs; ++number) {
        ScriptSong song;
        song.Seconds = random.Between(50.0, 70.0);
        song.Seed = MixSeed(options.Seed, number) % 1'000'000;
        song.OverlapSeconds = options.OverlapSeconds;
        song.Media = {"Made-up FM", "Artist " + std::to_string(number), "Title " + std::to_string(number), "",
                      ""};
        script.Song(std::move(song));
        if (options.GapSeconds > 0) script.Pause(options.GapSeconds, NoiseFloor);
    }
    script.Pause(LeadIn, NoiseFloor);
    return std::make_shared<const RadioTimeline>(script, Rate);
}

bool WriteMusic(const RadioTimeline& radio, const std::string& path) {
    LinuxFiles disk;
    const auto file = WavFile::Create(disk, path, MakeWaveFormat(Rate));
    if (!file) return false;
    const Noise noise;
    const double floor = AmplitudeOf(NoiseFloor);
    std::vector<Frame> block(BlockFrames);
    for (uint64_t from = 0; from < radio.Length(); from += block.size()) {
        block.resize(std::min<uint64_t>(BlockFrames, radio.Length() - from));
        for (size_t at = 0; at < block.size(); ++at) {
            block[at] = Sum({}, floor * noise.Left(from + at), floor * noise.Right(from + at));
        }
        for (size_t number = 0; number < radio.Songs().size(); ++number) {
            AddSong(radio, number, noise, from, block);
        }
        if (!file->Write(block)) return false;
    }
    return file->FinishData() && file->FinishRiff() && file->Close();
}

}  // namespace Corvetape::Bench
