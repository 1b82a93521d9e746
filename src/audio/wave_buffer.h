#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "platform/wave_in.h"

namespace Corvetape {

/// Buffers in a second; all durations of the recording logic are counted in buffers of 50 ms.
inline constexpr int32_t BuffersPerSecond = 20;
inline constexpr int32_t BufferMilliseconds = 50;

/// Frames of one buffer: 2205 at 44.1 kHz, 2400 at 48 kHz.
constexpr uint32_t FramesPerBufferOf(const WaveFormat& format) {
    return format.nAvgBytesPerSec / 4 / BuffersPerSecond;
}

/// Where audio that waits in the ring was written ahead to: up to this byte of the audio of a file. A mark
/// belongs to one stretch of audio that was written ahead, and to none by default.
struct AheadMark {
    uint64_t Stretch = 0;
    uint64_t End = 0;

    bool operator==(const AheadMark&) const = default;
};

/// 50 ms of the signal as it is somewhere: the header that a device filled, and what was noted of the audio
/// since. It does not own its samples.
struct SignalBuffer : WaveHeader {
    uint64_t StreamPosition = 0;       ///< number of the first frame among all that any input has given
    uint64_t FramesLostBefore = 0;     ///< frames that the device lost between the buffer before and this one
    uint32_t DeviceChangesBefore = 0;  ///< times that the device went and came back since the buffer before
    uint32_t ClippedSamples = 0;       ///< samples at full scale, as the analysis found them
    AheadMark Ahead;                   ///< in the ring: where it was written ahead
};

/// The frames that a buffer holds.
inline std::span<Frame> FramesOf(const SignalBuffer& buffer) {
    return {buffer.lpData, buffer.dwBytesRecorded / sizeof(Frame)};
}

/// 50 ms of the signal with its samples. Not movable once a device has its header.
struct WaveBuffer : SignalBuffer {
    std::vector<Frame> Samples;
};

}  // namespace Corvetape
