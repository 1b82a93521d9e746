#include "audio/audio_ring.h"

#include <algorithm>
#include <utility>

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
    SlotsPut = 0;
    ++Openings;
}

void AudioRing::Grow(int32_t audioBuffers) {
    const int32_t before = Size();
    const int32_t count = std::min(audioBuffers, MostSlots);
    if (before == 0 || count <= before) return;
    std::vector<Frame> samples(static_cast<size_t>(count) * FramesPerSlot);
    std::vector<SignalBuffer> slots(static_cast<size_t>(count));
    std::vector<int32_t> levels(static_cast<size_t>(count), 0);
    for (int32_t i = 0; i < count; ++i) {
        const auto to = static_cast<size_t>(i);
        Frame* const own = samples.data() + to * FramesPerSlot;
        if (i < before) {
            // The oldest comes first, so that the next to be written follows the newest.
            const auto from = static_cast<size_t>(Wrapped(int64_t{AudioWriteIndex} + i));
            std::ranges::copy(FramesOf(Slots[from]), own);
            slots[to] = Slots[from];
            levels[to] = AudioLevels[from];
        }
        slots[to].lpData = own;
    }
    AudioReadIndex = before - Unread();
    AudioWriteIndex = before;
    Samples = std::move(samples);
    Slots = std::move(slots);
    AudioLevels = std::move(levels);
}

int32_t AudioRing::Wrapped(int64_t slot) const {
    if (Slots.empty()) return 0;
    const int64_t rest = slot % Size();
    return static_cast<int32_t>(rest < 0 ? rest + Size() : rest);
}

int32_t AudioRing::UnreadFrom(uint64_t position) const {
    const int32_t unread = Unread();
    int32_t count = 0;
    while (count < unread &&
           (*this)[Wrapped(int64_t{AudioWriteIndex} - count - 1)].StreamPosition >= position) {
        ++count;
    }
    return count;
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
    ++SlotsPut;
}

}  // namespace Corvetape
