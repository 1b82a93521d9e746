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

LossMeter::LossMeter(uint32_t framesPerSecond) : Rate(framesPerSecond), Clearly(ClearSeconds * Rate) {}

void LossMeter::Start(int64_t now) {
    *this = LossMeter(static_cast<uint32_t>(Rate));
    Origin = now;
    Last = now;
}

void LossMeter::Interrupted(WaveInIncidentKind kind, bool certain) {
    if (!Reason || Weight(kind) > Weight(*Reason)) Reason = kind;
    MustReport = MustReport || certain;
    Suspicious = false;
}

std::optional<LossMeter::Loss> LossMeter::Arrived(int64_t now, uint64_t frames) {
    const int64_t gap = now - Last;
    Last = now;
    if (!Flowing) {
        Flowing = true;
        // How old the first frames are is not known. Only if the stream was away from the start on, the
        // time since then counts.
        if (!Reason) {
            Origin = now;
            frames = 0;
        }
        PeriodBegin = now;
        WarmUntil = now + WarmUp;
    }
    Received += frames;
    const double lag = static_cast<double>(now - Origin) / 1e9 * Rate - static_cast<double>(Received);
    if (gap > SteadyGap) Suspicious = false;
    if (Reason) return Settle(now, lag, SettleExplained);
    if (now < WarmUntil) {
        Follow(now, lag);
        return std::nullopt;
    }
    if (gap > OverrunGap && lag > Lowest + Clearly) {
        Interrupted(WaveInIncidentKind::Overrun, false);
        return Settle(now, lag, SettleExplained);
    }
    if (lag > Lowest + Clearly) return Settle(now, lag, SettleUnexplained);
    Suspicious = false;
    Follow(now, lag);
    return std::nullopt;
}

std::optional<LossMeter::Loss> LossMeter::Settle(int64_t now, double lag, int64_t needed) {
    if (!Suspicious) {
        Suspicious = true;
        SuspiciousSince = now;
        SuspiciousLowest = lag;
    }
    SuspiciousLowest = std::min(SuspiciousLowest, lag);
    if (now - SuspiciousSince < needed) return std::nullopt;

    const double missing = std::max(SuspiciousLowest - Lowest, 0.0);
    const Loss loss{Reason.value_or(WaveInIncidentKind::ClockDrift),
                    static_cast<uint64_t>(std::llround(missing))};
    const bool report = MustReport || missing >= Clearly;
    Lowest = SuspiciousLowest;
    PeriodBegin = now;
    PeriodLowest = lag;
    Suspicious = false;
    Reason.reset();
    MustReport = false;
    return report ? std::optional(loss) : std::nullopt;
}

void LossMeter::Follow(int64_t now, double lag) {
    Lowest = std::min(Lowest, lag);
    PeriodLowest = std::min(PeriodLowest, lag);
    const int64_t length = now - PeriodBegin;
    if (length < Second) return;
    const double drift = HighestDrift * Rate * static_cast<double>(length) / 1e9;
    const double rise = std::max(PeriodLowest - Lowest, 0.0);
    Lowest += now < WarmUntil ? rise : std::min(rise, drift);
    PeriodBegin = now;
    PeriodLowest = lag;
}

}  // namespace Corvetape
