#include "recording/heard_song.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "media/provider_wmp.h"

namespace Corvetape {

namespace {

/// So many buffers of silence before the first sound, half a second, are no rest within the music.
constexpr size_t LeastSilence = 10;

/// So many seconds after its first sound a player has said where its piece began, or does not say it.
constexpr int32_t PlayerSaysWithin = 10;

/// What a player says is this exact, with the second in which the sound was noticed.
constexpr int64_t PlayerErrorMs = 4000;

constexpr int64_t NanosecondsPerMs = 1'000'000;

}  // namespace

void HeardSong::Tick() {
    const bool boundary = std::exchange(Boundaries, Parts.Cut.Boundaries) != Parts.Cut.Boundaries;
    const bool sounded = NewSound();
    if (boundary) {
        // What sounded before the boundary is of the song before.
        HasSound = Parts.Signal.SilentBufferCount == 0 && Buffers > 0;
        BeginHeard = true;
        Age = 0;
        return;
    }
    if (HasSound) {
        ++Age;
    } else if (sounded) {
        HasSound = true;
        BeginHeard = BeginHeard || SilenceWasFirst();
    }
    AskPlayer();
}

/// Something was heard since the last tick that was not silent.
bool HeardSong::NewSound() {
    const uint64_t appended = Parts.Signal.History.Appended();
    const uint64_t fresh = appended - std::exchange(Buffers, appended);
    return static_cast<uint64_t>(std::max(Parts.Signal.SilentBufferCount, 0)) < fresh;
}

/// Silence was heard before the first sound. What the history has forgotten was silent, or sound would have
/// been noticed in it.
bool HeardSong::SilenceWasFirst() const {
    const LevelHistory& history = Parts.Signal.History;
    if (history.Appended() > history.Size()) return true;
    size_t silent = 0;
    while (silent < history.Size() && std::abs(history[silent]) <= Parts.Pause.SilenceAmplitude) ++silent;
    return silent >= LeastSilence;
}

/// A player knows better than the silence whether its piece began here or was only let go on.
void HeardSong::AskPlayer() {
    const bool first = Boundaries == 0;
    if (PlayerHasSaid || !first || !HasSound || Age > PlayerSaysWithin) return;
    if (Parts.Players == nullptr || Parts.Media.ProviderName != MediaPlayerName) return;
    const PlayerReport& player = Parts.Players->Present();
    if (!player.Playing || !player.BeganAtMs) return;
    PlayerHasSaid = true;
    const int64_t soundSinceMs = Parts.Clock.MonotonicNanoseconds() / NanosecondsPerMs - int64_t{Age} * 1000;
    BeginHeard = *player.BeganAtMs >= soundSinceMs - PlayerErrorMs;
}

}  // namespace Corvetape
