#pragma once

#include <cstdint>

#include "platform/wave_in.h"

namespace Corvetape {

/// A frame that carries its own number: 15 bits of it in each channel, so that a test can tell of every
/// single frame of a file where it came from. Samples are from -16384 to 16383; in each 50 ms the right
/// channel climbs by about 2200, so a stamped stretch is never silent.
constexpr Frame StampOf(uint64_t frame) {
    constexpr uint64_t mask = 0x7FFF;
    constexpr int32_t middle = 0x4000;
    return {static_cast<int16_t>(static_cast<int32_t>((frame >> 15U) & mask) - middle),
            static_cast<int16_t>(static_cast<int32_t>(frame & mask) - middle)};
}

/// The number that a stamp stands for, of all that look alike the one nearest to `near`. They look alike
/// every 2^30 frames, more than six hours. Meaningless for a frame that is no stamp.
constexpr uint64_t FrameOfStamp(Frame stamp, uint64_t near) {
    constexpr uint64_t period = uint64_t{1} << 30U;
    const auto high = static_cast<uint64_t>(stamp.Left + 0x4000);
    const auto low = static_cast<uint64_t>(stamp.Right + 0x4000);
    const uint64_t number = (high << 15U) | low;
    const uint64_t ahead = (number - near) % period;
    if (ahead <= period / 2 || near + ahead < period) return near + ahead;
    return near + ahead - period;
}

}  // namespace Corvetape
