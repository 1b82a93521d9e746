#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace Corvetape {

/// What the end of songs asks of a slot of 50 ms.
struct HeardSlot {
    int32_t Level = 0;  ///< 0 to 32768, as the analysis measures it
    bool Silent = false;
};

/// Slots from Begin up to, not including, End.
struct SlotRun {
    int64_t Begin = 0;
    int64_t End = 0;

    int64_t Length() const { return End - Begin; }
    bool operator==(const SlotRun&) const = default;
};

/// Which of the last two minutes of slots were silent. Nothing is allocated but in the constructor.
class Silences {
 public:
    static constexpr int64_t Capacity = 2400;

    Silences() : Silent(Capacity) {}

    void Restart();
    void Add(const HeardSlot& slot);

    /// One more than the last slot.
    int64_t End() const { return Count; }

    /// The silence that the signal is in now.
    std::optional<SlotRun> Present() const;

    /// The first silence of at least `least` slots that is in, or reaches into, `within`; all of it, as far
    /// as it is remembered.
    std::optional<SlotRun> First(SlotRun within, int64_t least) const;

    /// The longest silence of at least `least` slots that is in, or reaches into, `within`; all of it.
    std::optional<SlotRun> Longest(SlotRun within, int64_t least) const;

    /// The first slot with sound from `slot` on; nothing if none was heard.
    std::optional<int64_t> SoundFrom(int64_t slot) const;

    /// True once for each dropout: less than 0.2 s of nothing in the middle of sound, seen when the sound has
    /// come back.
    bool TakeDropout();

 private:
    static constexpr int64_t LongestDropout = 3;
    static constexpr int32_t SoundRound = 650;

    bool At(int64_t slot) const { return Silent[static_cast<size_t>(slot % Capacity)] != 0; }
    int64_t Oldest() const { return Count > Capacity ? Count - Capacity : 0; }

    std::vector<uint8_t> Silent;
    int64_t Count = 0;
    int64_t EmptySlots = 0;   ///< at the end, of level 0
    int32_t LevelBefore = 0;  ///< of the slot before them
    bool Dropout = false;
};

}  // namespace Corvetape
