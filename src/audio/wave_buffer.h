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

/// 50 ms of the signal as it lies somewhere: the header that a device filled, and what was noted of the audio
/// since. It does not own its samples.
struct SignalBuffer : WaveHeader {
    uint64_t StreamPosition = 0;       ///< number of the first frame among all that any input has given
    uint64_t FramesLostBefore = 0;     ///< frames that the device lost between the buffer before and this one
    uint32_t DeviceChangesBefore = 0;  ///< times that the device went and came back since the buffer before
    uint32_t ClippedSamples = 0;       ///< samples at full scale, as the analysis found them
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
