#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "platform/event_loop.h"

namespace Corvetape {

/// The timers of a loop, in the order of their due times. It knows no clock: whoever drives it says what
/// time it is, in nanoseconds.
class TimerQueue {
 public:
    /// One timer. Owned by its LoopTimer, and kept alive while its handler runs.
    struct Entry {
        uint64_t Number = 0;  ///< in the order of making
        std::function<void()> Fired;
        int64_t Interval = 0;
        int64_t Due = 0;
        int64_t Slack = 0;  ///< how late it may come so that wake-ups can be shared
        bool Active = false;
        bool Running = false;  ///< its handler is under way
    };

    std::shared_ptr<Entry> Add(std::function<void()> fired);
    void Remove(const std::shared_ptr<Entry>& entry);

    /// Starts anew, first due after one interval.
    static void Start(Entry& entry, int64_t now, std::chrono::milliseconds interval,
                      TimerPrecision precision);

    /// When the loop must wake up at the latest. Nothing if no timer waits.
    std::optional<int64_t> NextWake() const;

    /// The next timer that is due at `now`, already set to its following date, or empty. The caller runs
    /// its handler. Equal due times come in the order of making.
    std::shared_ptr<Entry> TakeDue(int64_t now);

 private:
    uint64_t Made = 0;
    std::vector<std::shared_ptr<Entry>> Entries;
};

}  // namespace Corvetape
