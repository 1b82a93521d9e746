#include "audio/audio_ring.h"

#include <algorithm>

namespace Corvetape {

int32_t RingDistance(int32_t from, int32_t to, int32_t size) {
    if (size <= 0) return 0;
    const int64_t distance = (int64_t{to} - from) % size;
    return static_cast<int32_t>(distance < 0 ? distance + size : distance);
}

void AudioRing::Open(int32_t audioBuffers, uint32_t framesPerBuffer) {
    const auto count = static_cast<size_t>(std::clamp(audioBuffers, 1, MostSlots));
    FramesPerSlot = framesPerBuffer;
    Samples.assign(count * framesPerBuffer, Frame{});
    Slots.assign(count, SignalBuffer{});
    for (size_t i = 0; i < count; ++i) Slots[i].lpData = Samples.data() + i * framesPerBuffer;
    AudioLevels.assign(count, 0);
    AudioWriteIndex = 0;
    AudioReadIndex = 0;
}

int32_t AudioRing::Wrapped(int64_t slot) const {
    if (Slots.empty()) return 0;
    const int64_t rest = slot % Size();
    return static_cast<int32_t>(rest < 0 ? rest + Size() : rest);
}

void AudioRing::SetLevel(int32_t level) {
    if (Slots.empty()) return;
    AudioLevels[static_cast<size_t>(AudioWriteIndex)] = level;
}

void AudioRing::Put(const SignalBuffer& buffer) {
    if (Slots.empty()) return;
    SignalBuffer& slot = Slots[static_cast<size_t>(AudioWriteIndex)];
    Frame* const ownSamples = slot.lpData;
    slot = buffer;
    slot.lpData = ownSamples;
    slot.dwBytesRecorded = std::min<uint32_t>(buffer.dwBytesRecorded, FramesPerSlot * sizeof(Frame));
    std::ranges::copy(FramesOf(buffer).first(FramesOf(slot).size()), ownSamples);
    AudioWriteIndex = Wrapped(int64_t{AudioWriteIndex} + 1);
}

}  // namespace Corvetape
