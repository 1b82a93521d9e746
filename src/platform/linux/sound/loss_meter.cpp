#include "platform/linux/sound/loss_meter.h"

#include <algorithm>
#include <cmath>

namespace Corvetape {
namespace {

constexpr int64_t Second = 1'000'000'000;
constexpr double ClearSeconds = 0.1;
constexpr int64_t SettleExplained = Second;
constexpr int64_t SettleUnexplained = 2 * Second;

/// Frames come every 50 ms; after a longer silence a backlog may be on its way.
constexpr int64_t SteadyGap = Second / 2;

/// A server keeps more than 20 s for a client that does not read; only after so long a gap of our own can
/// it have thrown something away.
constexpr int64_t OverrunGap = 15 * Second;

/// A stream that has just begun may still change how early it delivers.
constexpr int64_t WarmUp = 5 * Second / 2;

/// Sound cards and system clocks differ by 0.05 % at the most.
constexpr double HighestDrift = 0.002;

int Weight(WaveInIncidentKind kind) {
    switch (kind) {
        case WaveInIncidentKind::ServerLost:
            return 3;
        case WaveInIncidentKind::DeviceLost:
            return 2;
        case WaveInIncidentKind::Overrun:
            return 1;
        default:
            return 0;
    }
}

}  // namespace

LossMeter::LossMeter(uint32_t framesPerSecond) : rate(framesPerSecond), clearly(ClearSeconds * rate) {}

void LossMeter::Start(int64_t now) {
    *this = LossMeter(static_cast<uint32_t>(rate));
    origin = now;
    last = now;
}

void LossMeter::Interrupted(WaveInIncidentKind kind, bool certain) {
    if (!reason || Weight(kind) > Weight(*reason)) reason = kind;
    mustTell = mustTell || certain;
    suspicious = false;
}

std::optional<LossMeter::Loss> LossMeter::Arrived(int64_t now, uint64_t frames) {
    const int64_t gap = now - last;
    last = now;
    if (!flowing) {
        flowing = true;
        // How old the first frames are is not known. Only if the stream was away from the start on, the
        // time since then counts.
        if (!reason) {
            origin = now;
            frames = 0;
        }
        periodBegin = now;
        warmUntil = now + WarmUp;
    }
    received += frames;
    const double lag = static_cast<double>(now - origin) / 1e9 * rate - static_cast<double>(received);
    if (gap > SteadyGap) suspicious = false;
    if (reason) return Settle(now, lag, SettleExplained);
    if (now < warmUntil) {
        Follow(now, lag);
        return std::nullopt;
    }
    if (gap > OverrunGap && lag > lowest + clearly) {
        Interrupted(WaveInIncidentKind::Overrun, false);
        return Settle(now, lag, SettleExplained);
    }
    if (lag > lowest + clearly) return Settle(now, lag, SettleUnexplained);
    suspicious = false;
    Follow(now, lag);
    return std::nullopt;
}

std::optional<LossMeter::Loss> LossMeter::Settle(int64_t now, double lag, int64_t needed) {
    if (!suspicious) {
        suspicious = true;
        suspiciousSince = now;
        suspiciousLowest = lag;
    }
    suspiciousLowest = std::min(suspiciousLowest, lag);
    if (now - suspiciousSince < needed) return std::nullopt;

    const double missing = std::max(suspiciousLowest - lowest, 0.0);
    const Loss loss{reason.value_or(WaveInIncidentKind::ClockDrift),
                    static_cast<uint64_t>(std::llround(missing))};
    const bool tell = mustTell || missing >= clearly;
    lowest = suspiciousLowest;
    periodBegin = now;
    periodLowest = lag;
    suspicious = false;
    reason.reset();
    mustTell = false;
    return tell ? std::optional(loss) : std::nullopt;
}

void LossMeter::Follow(int64_t now, double lag) {
    lowest = std::min(lowest, lag);
    periodLowest = std::min(periodLowest, lag);
    const int64_t length = now - periodBegin;
    if (length < Second) return;
    const double drift = HighestDrift * rate * static_cast<double>(length) / 1e9;
    const double rise = std::max(periodLowest - lowest, 0.0);
    lowest += now < warmUntil ? rise : std::min(rise, drift);
    periodBegin = now;
    periodLowest = lag;
}

}  // namespace Corvetape
