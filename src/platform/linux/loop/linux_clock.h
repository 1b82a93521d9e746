#pragma once

#include "platform/clock.h"

namespace Corvetape {

/// The clocks of this machine. The time zone is looked up again at each call, so that a change of it
/// shows without a restart. The monotonic clock stands still while the machine sleeps.
class LinuxClock : public Clock {
 public:
    DateTime LocalNow() const override;
    int64_t MonotonicNanoseconds() const override;
};

}  // namespace Corvetape
