#include "audio/cut_search.h"

#include <algorithm>

#include "audio/wave_buffer.h"

namespace Corvetape {

int32_t QuietLimit(int32_t lowest) {
    const int64_t tenths = int64_t{lowest} * 12;  // 1.2 times in tenths; a half never occurs
    return static_cast<int32_t>(std::max<int64_t>((tenths + 5) / 10, QuietLevel));
}

std::optional<QuietStretch> FindQuietStretch(std::span<const int32_t> levels, size_t start, size_t end) {
    const size_t size = levels.size();
    if (start >= size || end >= size) return std::nullopt;
    const size_t last = (end + size - start) % size;  // steps from start to end
    const auto slotAt = [&](size_t step) { return (start + step) % size; };

    int32_t lowest = FullScaleLevel;
    std::optional<size_t> quietest;
    for (size_t step = last + 1; step-- > 0;) {
        const int32_t level = levels[slotAt(step)];
        if (level >= lowest) continue;
        lowest = level;
        quietest = step;
    }
    if (!quietest) return std::nullopt;

    const int32_t limit = QuietLimit(lowest);
    size_t first = *quietest;
    while (first > 0 && levels[slotAt(first - 1)] <= limit) --first;
    size_t lastQuiet = *quietest;
    while (lastQuiet < last && levels[slotAt(lastQuiet + 1)] <= limit) ++lastQuiet;
    return QuietStretch{slotAt(first), slotAt(lastQuiet)};
}

int32_t SlotsOf(int32_t milliseconds) {
    return std::max(milliseconds, 0) / BufferMilliseconds;
}

CutReach ReachOf(CutReach wanted, int32_t unwritten, int32_t arrived) {
    return {std::min(wanted.Before, unwritten), std::min(wanted.After, arrived - 1)};
}

}  // namespace Corvetape
