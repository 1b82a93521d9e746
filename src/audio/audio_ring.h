#pragma once

#include <cstdint>
#include <vector>

#include "audio/wave_buffer.h"

namespace Corvetape {

/// Slots from `from` forward to `to` in a ring of `size` slots: 0 to size - 1, and 0 in a ring without slots.
int32_t RingDistance(int32_t from, int32_t to, int32_t size);

/// The last seconds of the signal, by default 20, kept until the best place for a cut is known. Each slot is
/// one buffer. Filled by the routing, emptied by AudioDrain; nothing is allocated but in Open.
class AudioRing {
 public:
    /// Most slots that a ring is made of, ten minutes. A setting beyond it would only fill the memory.
    static constexpr int32_t MostSlots = 12'000;

    AudioRing() = default;
    AudioRing(const AudioRing&) = delete;
    AudioRing& operator=(const AudioRing&) = delete;

    /// Makes the ring anew: all slots empty, all levels 0, both indices at slot 0. A number of slots outside
    /// 1 to MostSlots is taken as the nearer end.
    void Open(int32_t audioBuffers, uint32_t framesPerBuffer);

    /// Makes room for so many slots, if there are fewer. What it holds stays; slots get other numbers, those
    /// of the two indices among them.
    void Grow(int32_t audioBuffers);

    /// Slots, 0 before the first Open.
    int32_t Size() const { return static_cast<int32_t>(Slots.size()); }

    /// Slots from AudioReadIndex to AudioWriteIndex.
    int32_t Unread() const { return RingDistance(AudioReadIndex, AudioWriteIndex, Size()); }

    /// Unread slots at the end of the ring whose audio begins at this frame or later, counted as
    /// StreamPosition.
    int32_t UnreadFrom(uint64_t position) const;

    /// One more buffer would reach audio that was not read yet, after which all of it counts as read.
    bool Full() const { return Unread() == Size() - 1; }

    /// The slot's buffer. Empty slots hold no bytes.
    const SignalBuffer& operator[](int32_t slot) const { return Slots[static_cast<size_t>(slot)]; }

    /// A slot number brought into the ring, whatever it was.
    int32_t Wrapped(int64_t slot) const;

    /// Notes the level of the slot that is written next.
    void SetLevel(int32_t level);

    /// Copies a buffer, header, notes and samples, into the slot at AudioWriteIndex and advances the index.
    /// Nothing happens in a ring without slots.
    void Put(const SignalBuffer& buffer);

    /// Notes where the audio of a slot was written ahead. It is forgotten when the slot takes another buffer.
    void MarkAhead(int32_t slot, const AheadMark& mark) { Slots[static_cast<size_t>(slot)].Ahead = mark; }

    std::vector<int32_t> AudioLevels;  ///< one a slot: the measure that the search for a cut works on
    int32_t AudioWriteIndex = 0;       ///< slot that is written next
    int32_t AudioReadIndex = 0;        ///< slot that is read next
    uint64_t SlotsPut = 0;             ///< slots filled since the last Open
    uint64_t Openings = 0;             ///< calls of Open
    uint64_t OverrunBuffers = 0;       ///< wanted buffers that were written over before they were read

 private:
    std::vector<SignalBuffer> Slots;
    std::vector<Frame> Samples;  ///< of all slots, one after the other
    uint32_t FramesPerSlot = 0;
};

}  // namespace Corvetape
