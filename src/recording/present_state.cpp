#include "recording/present_state.h"

namespace Corvetape {

namespace {

/// A busy system may hold buffers back for a moment.
constexpr double GoneAfterSeconds = 3;

/// Longer than the pauses that songs have within themselves and between them.
constexpr int32_t NoSoundAfterSeconds = 10;

}  // namespace

PresentState PresentStateOf(const PresentFacts& facts) {
    if (!facts.InputOpen) return PresentState::NoInput;
    if (facts.SecondsWithoutBuffers >= GoneAfterSeconds) return PresentState::InputGone;
    if (facts.Signal.SilenceSeconds >= NoSoundAfterSeconds) return PresentState::NoSound;
    if (facts.Flags.RecordCurrentSong) {
        return facts.Flags.StopAtEndOfSong ? PresentState::LastSong : PresentState::Recording;
    }
    return facts.Flags.RecordNextSong ? PresentState::Waiting : PresentState::Listening;
}

}  // namespace Corvetape
