#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

#include "audio/wave_buffer.h"

namespace Corvetape::Test {

/// Frames of a buffer at 44.1 kHz, and its bytes.
inline constexpr uint32_t BufferFrames = 2205;
inline constexpr int64_t BufferBytes = 8820;

/// A full buffer that owns its samples and has its header in order.
inline WaveBuffer MakeBuffer(Frame frame, uint64_t position = 0, uint32_t frames = BufferFrames) {
    WaveBuffer buffer;
    buffer.Samples.assign(frames, frame);
    buffer.lpData = buffer.Samples.data();
    buffer.dwBufferLength = frames * static_cast<uint32_t>(sizeof(Frame));
    buffer.dwBytesRecorded = buffer.dwBufferLength;
    buffer.StreamPosition = position;
    return buffer;
}

/// The frame that fills the buffer with this number, unlike that of any near one.
inline Frame MarkOf(int32_t number) {
    return {static_cast<int16_t>(number % 32000), static_cast<int16_t>(-(number % 32000) - 1)};
}

/// The buffer with this number in an unbroken stream.
inline WaveBuffer NumberedBuffer(int32_t number) {
    return MakeBuffer(MarkOf(number), static_cast<uint64_t>(number) * BufferFrames);
}

}  // namespace Corvetape::Test
