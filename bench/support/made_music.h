#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "sim/radio_script.h"

namespace Corvetape::Bench {

/// How the songs of a made-up radio follow one another.
struct MusicOptions {
    uint64_t Seed = 1;
    size_t Songs = 60;
    double GapSeconds = 0;      ///< of noise at -70 dBFS
    double OverlapSeconds = 0;  ///< of a cross-fade; without gaps only
};

/// A radio of songs of 50 to 70 s after ten seconds of near silence, every one with artist and title.
std::shared_ptr<const RadioTimeline> MakeMusic(const MusicOptions& options);

/// Writes such a radio as 16-bit stereo WAV. Its songs rise and fall as music does: beats that die away over
/// a quieter ground, in the measure of the song, each as loud as chance has it. They begin and end in full
/// sound. False if the disk refuses.
bool WriteMusic(const RadioTimeline& radio, const std::string& path);

}  // namespace Corvetape::Bench
