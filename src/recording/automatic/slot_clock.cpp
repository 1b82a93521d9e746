#include "recording/automatic/slot_clock.h"

#include <algorithm>
#include <utility>

#include "audio/wave_buffer.h"

namespace Corvetape {

namespace {

/// An input that has lost sound is believed after so long.
constexpr int64_t RememberedMs = 5000;

}  // namespace

int64_t SlotClock::SlotAt(int64_t nowMs, int64_t arrived) {
    const int64_t before = std::exchange(Arrived, arrived);
    if (arrived < before || Moments.empty()) {
        Moments.clear();
        Stands = false;
        ArrivedAtMs = nowMs;
    } else if (arrived > before) {
        // How late slots are is not known by what came before the input stood still.
        if (std::exchange(Stands, false)) Moments.clear();
        ArrivedAtMs = nowMs;
    } else {
        Stands = nowMs - ArrivedAtMs > MostWaiting * BufferMilliseconds;
    }
    if (Stands) return arrived;
    Moments.push_back({nowMs, nowMs - arrived * BufferMilliseconds});
    while (nowMs - Moments.front().AtMs > RememberedMs) Moments.pop_front();
    const int64_t first = std::ranges::min(Moments, {}, &Moment::FirstSlotMs).FirstSlotMs;
    return std::clamp((nowMs - first) / BufferMilliseconds, arrived, arrived + MostWaiting);
}

}  // namespace Corvetape
