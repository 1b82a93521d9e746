#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "sim/radio_script.h"

namespace Corvetape::Bench {

inline constexpr uint32_t HourRate = 44100;

/// What the made-up hours differ in.
struct HourOptions {
    uint64_t Seed = 1;
    bool Rests = false;  ///< nearly silent moments of 0.1 to 0.4 s inside songs
};

/// An hour of radio: 18 songs of three minutes and a bit, with gaps of 1.0 to 2.5 s at -70 dBFS between
/// them, so that every boundary is known to the frame.
std::shared_ptr<const RadioTimeline> MakeHour(const HourOptions& options);

/// Writes a radio as 16-bit stereo WAV. False if the disk refuses.
bool WriteHour(const std::shared_ptr<const RadioTimeline>& hour, const std::string& path);

}  // namespace Corvetape::Bench
