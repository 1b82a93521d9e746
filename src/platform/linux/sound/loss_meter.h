#pragma once

#include <cstdint>
#include <optional>

#include "platform/wave_in.h"

namespace Corvetape {

/// Finds lost audio by comparing the frames that have arrived with a clock, because no sound server says
/// so when it throws audio away.
///
/// The lag is what the clock expects less what has arrived. A healthy stream's lag jumps up and down by its
/// delivery in blocks, grows for a while when somebody stalls and falls back when the backlog comes, and
/// creeps with the difference of two clocks. Lost audio raises it for good. So: the lowest lag is followed,
/// slowly upwards, at once downwards, and a lag that stays clearly above it while frames arrive steadily
/// is a loss.
class LossMeter {
 public:
    struct Loss {
        WaveInIncidentKind Kind = WaveInIncidentKind::ClockDrift;
        uint64_t Frames = 0;
    };

    explicit LossMeter(uint32_t framesPerSecond);

    /// Begins anew at `now` (nanoseconds of the monotonic clock, as everywhere here).
    void Start(int64_t now);

    /// The stream stands still for a known reason. What is missing is told when frames have arrived again
    /// for a second. A `certain` interruption is told in any case, another one if something is missing.
    void Interrupted(WaveInIncidentKind kind, bool certain);

    /// `frames` have arrived at `now`. Returns a loss when it is over and its length is known.
    std::optional<Loss> Arrived(int64_t now, uint64_t frames);

 private:
    std::optional<Loss> Settle(int64_t now, double lag, int64_t needed);
    void Follow(int64_t now, double lag);

    double rate;
    double clearly;  // frames above the lowest lag that no healthy stream shows
    int64_t origin = 0;
    int64_t last = 0;  // latest arrival
    uint64_t received = 0;
    bool flowing = false;  // something has arrived since Start
    int64_t warmUntil = 0;
    double lowest = 0;

    int64_t periodBegin = 0;
    double periodLowest = 0;

    bool suspicious = false;
    int64_t suspiciousSince = 0;
    double suspiciousLowest = 0;

    std::optional<WaveInIncidentKind> reason;
    bool mustTell = false;
};

}  // namespace Corvetape
