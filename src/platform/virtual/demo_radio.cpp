#include "platform/virtual/demo_radio.h"

#include <algorithm>
#include <cmath>

#include "platform/virtual/demo_score.h"
#include "platform/virtual/demo_synth.h"
#include "platform/virtual/sim_random.h"

namespace Corvetape {

namespace {

uint64_t FramesOf(double seconds, uint32_t rate) {
    return static_cast<uint64_t>(std::llround(seconds * rate));
}

/// A sample of noise at -70 dBFS: -10 to 10. Depends on the frame alone.
int16_t FloorSample(uint64_t seed, uint64_t position) {
    return static_cast<int16_t>(static_cast<int64_t>(MixSeed(seed, position) % 21) - 10);
}

}  // namespace

DemoRadio::DemoRadio(uint64_t seed, uint32_t framesPerSecond)
    : Seed(seed), Rate(framesPerSecond), Current(Song(0)) {
    Media.StationName = Current.Media.StationName;
}

DemoRadio::~DemoRadio() = default;

DemoSong DemoRadio::SongAfter(uint64_t end, uint64_t number) const {
    DemoSong song;
    song.Begin = end + FramesOf(DemoPauseBefore(Seed, number), Rate);
    song.End = song.Begin + FramesOf(PlanDemoSong(Seed, number).Seconds, Rate);
    song.Media = NameDemoSong(Seed, number);
    return song;
}

DemoSong DemoRadio::Song(uint64_t number) const {
    DemoSong song;
    for (uint64_t at = 0; at <= number; ++at) song = SongAfter(song.End, at);
    return song;
}

SourceMedia DemoRadio::NowPlaying() const {
    return Media;
}

size_t DemoRadio::Read(std::span<Frame> frames) {
    const size_t wanted = frames.size();
    while (!frames.empty()) {
        const uint64_t border = Next < Current.Begin ? Current.Begin : Current.End;
        const std::span<Frame> part =
            frames.first(static_cast<size_t>(std::min<uint64_t>(frames.size(), border - Next)));
        if (Next < Current.Begin) {
            for (size_t at = 0; at < part.size(); ++at) {
                part[at] = {FloorSample(Seed, 2 * (Next + at)), FloorSample(Seed, 2 * (Next + at) + 1)};
            }
        } else {
            Synth->Read(part);
        }
        frames = frames.subspan(part.size());
        Pass(part.size());
    }
    return wanted;
}

/// Moves on; at the borders of a song the synthesiser comes and goes.
void DemoRadio::Pass(uint64_t frames) {
    Next += frames;
    if (Next == Current.Begin) {
        Synth = std::make_unique<DemoSynth>(ComposeDemoSong(Seed, Number), Rate, Current.End - Current.Begin);
        Media = Current.Media;
    } else if (Next == Current.End) {
        Synth.reset();
        ++Number;
        Current = SongAfter(Current.End, Number);
    }
}

}  // namespace Corvetape
