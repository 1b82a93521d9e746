#include "recording/timed_pieces.h"

#include <utility>

namespace Corvetape {

void TimedPieces::Tick() {
    if (!Active()) return;
    CutState& cut = Parts.Cut;
    ++cut.FixedTimeSeconds;
    // The time may have been shortened since the last cut. Without a time nothing is cut.
    const int32_t due = Parts.Pause.EndOfSongTimer;
    if (due > 0 && cut.FixedTimeSeconds >= due) cut.RaiseByTime(Parts.Ring.AudioWriteIndex);
}

/// What the ring holds belongs to no piece.
void TimedPieces::BeginAnew() {
    Parts.Cut.FixedTimeSeconds = 0;
    Parts.Cut.NotePiece();
    Parts.Ring.AudioReadIndex = Parts.Ring.AudioWriteIndex;
}

/// Carries the pending cut out with what is there.
void TimedPieces::CutNow() {
    if (!Parts.Drain.DrainAudioRing(true)) Requests.End.Raise();
}

void TimedPieces::BreakOff() {
    RecordingFlags& flags = Parts.Flags;
    if (!flags.RecordCurrentSong) return;
    const bool last = flags.StopAtEndOfSong;
    // By position: what was skipped after a pause is silence too, and is not in the ring.
    const int32_t silent = Parts.Ring.UnreadFrom(Parts.Writer.SilenceBegin());
    const int32_t heard = Parts.Ring.Unread() - silent;  // that waits in the ring, before the silence
    const bool hasPiece = Parts.Writer.SongFileOpen() || heard > 0;
    Parts.Cut.Settle();
    if (heard > 0) {
        Parts.Cut.RaiseBySilence(Parts.Ring.Wrapped(int64_t{Parts.Ring.AudioWriteIndex} - silent));
        CutNow();
        Parts.Cut.Settle();
    } else {
        Parts.Writer.TakeSilenceOff();
        Parts.Writer.CloseSongFile(SongEnd::Boundary);
    }
    BeginAnew();
    const bool kept = hasPiece && Parts.Media.SongMedia.TempFileName == Parts.Writer.SongBaseName();
    // Where the disk is nearly full, recording has ended with this piece.
    if (kept || !flags.RecordingEnabled) return;
    flags.BeginPiece(true);
    flags.StopAtEndOfSong = last;
}

void TimedPieces::CutAtOnce() {
    RecordingFlags& flags = Parts.Flags;
    Parts.Cut.Ended.reset();  // the end of song was by media data a moment ago
    if (flags.RecordCurrentSong) {
        flags.EndPiece(false);
        // What ends here is what nobody wanted, and not the song that recording is to end with.
        const bool last = std::exchange(flags.DisableAtEndOfSong, false);
        Parts.Writer.CloseSongFile();
        flags.DisableAtEndOfSong = last;
        BeginAnew();
        flags.BeginPiece(true);
        return;
    }
    const bool waiting = flags.RecordNextSong;
    flags.EndPiece(true);
    Parts.Cut.RaiseByClick(Parts.Ring.AudioWriteIndex);
    CutNow();
    Parts.Cut.FixedTimeSeconds = 0;
    Parts.Cut.NotePiece();
    flags.BeginPiece(false);
    flags.KeepWaiting(waiting);  // a discarded short piece must not use up the wish for the next one
}

}  // namespace Corvetape
