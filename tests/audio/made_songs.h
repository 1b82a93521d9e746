#pragma once

#include <cstdint>
#include <vector>

#include "audio/slot_features.h"
#include "platform/wave_in.h"

namespace Corvetape::Test {

/// What a made-up song sounds like: noise in the rhythm of its beats.
struct MadeSong {
    uint64_t Seed = 1;
    double Darkness = 0.5;     ///< of the low-pass, 0 (white) up to, not including, 1
    double Width = 0.2;        ///< of the stereo image, 0 (mono) to 1
    double BeatSeconds = 0.4;  ///< the level changes at random from beat to beat
};

/// Two songs in a row. Times in seconds; the join, or the middle of the fade, is at `Join`.
struct MadeJoin {
    MadeSong Old;
    MadeSong New;
    double Join = 15;
    double Fade = 0;  ///< of equal power
    double Length = 35;
    uint32_t FramesPerSecond = 44100;
};

/// The sound of a join.
std::vector<Frame> FramesOf(const MadeJoin& join);

/// The features of all slots of a sound, from slot 0 on.
FeatureHistory FeaturesOf(const std::vector<Frame>& frames, uint32_t framesPerSecond);

}  // namespace Corvetape::Test
