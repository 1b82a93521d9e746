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

    /// The stream stands still for a known reason. What is missing is reported when frames have arrived again
    /// for a second. A `certain` interruption is reported in any case, another one if something is missing.
    void Interrupted(WaveInIncidentKind kind, bool certain);

    /// `frames` have arrived at `now`. Returns a loss when it is over and its length is known.
    std::optional<Loss> Arrived(int64_t now, uint64_t frames);

 private:
    std::optional<Loss> Settle(int64_t now, double lag, int64_t needed);
    void Follow(int64_t now, double lag);

    double Rate;
    double Clearly;  // frames above the lowest lag that no healthy stream shows
    int64_t Origin = 0;
    int64_t Last = 0;  // latest arrival
    uint64_t Received = 0;
    bool Flowing = false;  // something has arrived since Start
    int64_t WarmUntil = 0;
    double Lowest = 0;

    int64_t PeriodBegin = 0;
    double PeriodLowest = 0;

    bool Suspicious = false;
    int64_t SuspiciousSince = 0;
    double SuspiciousLowest = 0;

    std::optional<WaveInIncidentKind> Reason;
    bool MustReport = false;
};

}  // namespace Corvetape
