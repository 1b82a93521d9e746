#include "live/soak/radio.h"

#include <numeric>

namespace Corvetape {

Frame Radio::At(uint64_t frame) {
    if (!Sounds(frame)) return {};
    uint64_t mixed = frame + 0x9E3779B97F4A7C15U;
    mixed = (mixed ^ (mixed >> 30U)) * 0xBF58476D1CE4E5B9U;
    mixed = (mixed ^ (mixed >> 27U)) * 0x94D049BB133111EBU;
    mixed ^= mixed >> 31U;
    const auto sample = [](uint64_t bits) {
        return static_cast<int16_t>(static_cast<int32_t>(bits % 16000) - 8000);
    };
    return {sample(mixed & 0xFFFFFFFFU), sample(mixed >> 32U)};
}

bool Radio::Sounds(uint64_t frame) {
    const uint64_t round = std::accumulate(SongSeconds.begin(), SongSeconds.end(), uint64_t{0}) +
                           PauseSeconds * SongSeconds.size();
    uint64_t second = frame / FramesPerSecond % round;
    for (const uint64_t song : SongSeconds) {
        if (second < song) return true;
        second -= song;
        if (second < PauseSeconds) return false;
        second -= PauseSeconds;
    }
    return false;
}

}  // namespace Corvetape
