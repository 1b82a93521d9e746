#include "recording/automatic/silences.h"

#include <algorithm>
#include <utility>

namespace Corvetape {

void Silences::Restart() {
    Count = 0;
    EmptySlots = 0;
    LevelBefore = 0;
    Dropout = false;
}

void Silences::Add(const HeardSlot& slot) {
    Silent[static_cast<size_t>(Count % Capacity)] = slot.Silent ? 1 : 0;
    ++Count;
    if (slot.Level == 0) {
        ++EmptySlots;
        return;
    }
    // A slot that a dropout begins or ends in still has some sound, so that the slots beside it are loud.
    const bool within = EmptySlots > 0 && EmptySlots <= LongestDropout;
    if (within && LevelBefore >= SoundRound && slot.Level >= SoundRound) Dropout = true;
    EmptySlots = 0;
    LevelBefore = slot.Level;
}

bool Silences::TakeDropout() {
    return std::exchange(Dropout, false);
}

std::optional<SlotRun> Silences::Present() const {
    int64_t begin = Count;
    while (begin > Oldest() && At(begin - 1)) --begin;
    if (begin == Count) return std::nullopt;
    return SlotRun{begin, Count};
}

std::optional<SlotRun> Silences::First(SlotRun within, int64_t least) const {
    int64_t slot = std::max(within.Begin, Oldest());
    const int64_t last = std::min(within.End, Count);
    while (slot < last) {
        if (!At(slot)) {
            ++slot;
            continue;
        }
        SlotRun run{slot, slot};
        while (run.Begin > Oldest() && At(run.Begin - 1)) --run.Begin;
        while (run.End < Count && At(run.End)) ++run.End;
        if (run.Length() >= least) return run;
        slot = run.End;
    }
    return std::nullopt;
}

std::optional<SlotRun> Silences::Longest(SlotRun within, int64_t least) const {
    std::optional<SlotRun> longest;
    auto run = First(within, least);
    while (run) {
        if (!longest || run->Length() > longest->Length()) longest = run;
        run = First({run->End, within.End}, least);
    }
    return longest;
}

std::optional<int64_t> Silences::SoundFrom(int64_t slot) const {
    for (int64_t each = std::max(slot, Oldest()); each < Count; ++each) {
        if (!At(each)) return each;
    }
    return std::nullopt;
}

}  // namespace Corvetape
