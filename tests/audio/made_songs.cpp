#include "audio/made_songs.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <span>

#include "platform/virtual/sim_random.h"

namespace Corvetape::Test {

namespace {

/// A song frame by frame.
class Player {
 public:
    Player(const MadeSong& song, uint32_t framesPerSecond)
        : Song(song),
          Random(song.Seed),
          FramesPerBeat(static_cast<int64_t>(song.BeatSeconds * framesPerSecond)) {}

    struct Sound {
        double Left = 0;
        double Right = 0;
    };

    Sound Next() {
        if (Count++ % FramesPerBeat == 0) Level = Random.Between(0.3, 1.0) * 12'000;
        const double middle = Filtered(Middle);
        const double side = Song.Width * Filtered(Side);
        return {Level * (middle + side), Level * (middle - side)};
    }

 private:
    double Filtered(double& state) {
        state = Song.Darkness * state + (1 - Song.Darkness) * Random.Between(-1.0, 1.0);
        return state;
    }

    MadeSong Song;
    SimRandom Random;
    int64_t FramesPerBeat;
    int64_t Count = 0;
    double Level = 0;
    double Middle = 0;
    double Side = 0;
};

/// How far a fade has come, 0 to 1.
double ShareAt(const MadeJoin& join, double seconds) {
    if (join.Fade <= 0) return seconds < join.Join ? 0 : 1;
    return std::clamp((seconds - join.Join) / join.Fade + 0.5, 0.0, 1.0);
}

}  // namespace

std::vector<Frame> FramesOf(const MadeJoin& join) {
    Player oldSong(join.Old, join.FramesPerSecond);
    Player newSong(join.New, join.FramesPerSecond);
    std::vector<Frame> frames(static_cast<size_t>(join.Length * join.FramesPerSecond));
    for (size_t i = 0; i < frames.size(); ++i) {
        const double seconds = static_cast<double>(i) / join.FramesPerSecond;
        const double angle = ShareAt(join, seconds) * std::numbers::pi / 2;
        const Player::Sound before = oldSong.Next();
        const Player::Sound after = newSong.Next();
        const auto sample = [&](double oldPart, double newPart) {
            const double value = std::cos(angle) * oldPart + std::sin(angle) * newPart;
            return static_cast<int16_t>(std::clamp(value, -32768.0, 32767.0));
        };
        frames[i] = {sample(before.Left, after.Left), sample(before.Right, after.Right)};
    }
    return frames;
}

FeatureHistory FeaturesOf(const std::vector<Frame>& frames, uint32_t framesPerSecond) {
    const size_t framesPerSlot = framesPerSecond / 20;
    const size_t slots = frames.size() / framesPerSlot;
    FeatureHistory history(slots);
    FeatureMeter meter(framesPerSecond);
    for (size_t slot = 0; slot < slots; ++slot) {
        history.Add(meter.Measure(std::span(frames).subspan(slot * framesPerSlot, framesPerSlot)));
    }
    return history;
}

}  // namespace Corvetape::Test
