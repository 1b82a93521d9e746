#include "recording/present_state.h"

namespace Corvetape {

namespace {

/// A busy system may hold buffers back for a moment.
constexpr double GoneAfterSeconds = 3;

/// Longer than the pauses that songs have within themselves and between them.
constexpr int32_t NoSoundAfterSeconds = 10;

/// The watch over the disk has ended the recording, or will with this song, and nobody has begun anew since.
bool EndedByDisk(const PresentFacts& facts) {
    const int32_t info = facts.Messages.PendingInfo;
    return IsDiskMessage(info) && (facts.Flags.DisableAtEndOfSong || !facts.Flags.RecordingEnabled);
}

}  // namespace

PresentState PresentStateOf(const PresentFacts& facts) {
    if (!facts.InputOpen) return PresentState::NoInput;
    if (facts.SecondsWithoutBuffers >= GoneAfterSeconds) return PresentState::InputGone;
    if (facts.Signal.SilenceSeconds >= NoSoundAfterSeconds) return PresentState::NoSound;
    if (EndedByDisk(facts)) {
        return facts.Flags.RecordingEnabled ? PresentState::DiskFull : PresentState::DiskStopped;
    }
    const bool wanted = facts.Flags.RecordCurrentSong || facts.Flags.RecordNextSong;
    if (wanted && !facts.Flags.RecordingEnabled) return PresentState::NotEnabled;
    if (facts.Flags.RecordCurrentSong) {
        return facts.Flags.StopAtEndOfSong ? PresentState::LastSong : PresentState::Recording;
    }
    return facts.Flags.RecordNextSong ? PresentState::Waiting : PresentState::Listening;
}

}  // namespace Corvetape
