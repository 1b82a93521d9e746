#include "audio/drain.h"

#include <algorithm>

#include "audio/cut_search.h"

namespace Corvetape {

namespace {

/// Where the old song ends, as the first slot that is not its, and where the new one begins.
struct CutPlace {
    int32_t OldEnd = 0;
    int32_t NewBegin = 0;
};

CutPlace FindCut(const AudioRing& ring, int32_t cut, CutReach reach) {
    const CutPlace atTheCut = {cut, cut};
    if (reach.Before + reach.After < 0) return atTheCut;  // no audio near the cut
    const auto start = static_cast<size_t>(ring.Wrapped(int64_t{cut} - reach.Before));
    const auto end = static_cast<size_t>(ring.Wrapped(int64_t{cut} + reach.After));
    const auto stretch = FindQuietStretch(ring.AudioLevels, start, end);
    // Full-scale audio has no pause: both songs meet at the cut, and nothing is thrown away.
    if (!stretch) return atTheCut;
    return {static_cast<int32_t>(stretch->OldEnd), ring.Wrapped(static_cast<int64_t>(stretch->NewStart) + 1)};
}

/// The whole window goes into both songs, as far as it has arrived. The new song begins one slot after the
/// window's start.
CutPlace DuplicateWindow(const AudioRing& ring, int32_t cut, CutReach wanted, int32_t unwritten) {
    const int32_t arrived = RingDistance(cut, ring.AudioWriteIndex, ring.Size());
    const int32_t oldEnd = std::min(wanted.After, arrived);
    const int32_t newBegin = std::min(1 - std::min(wanted.Before, unwritten), arrived);
    return {ring.Wrapped(int64_t{cut} + oldEnd), ring.Wrapped(int64_t{cut} + newBegin)};
}

}  // namespace

AudioDrain::AudioDrain(DrainParts parts) : Parts(parts) {}

bool AudioDrain::Active() const {
    const EndOfSong mode = Parts.Pause.EndOfSongDetection;
    const bool byCut = mode == EndOfSong::MediaData || mode == EndOfSong::FixedTime;
    return byCut && Parts.Flags.RecordingEnabled && Parts.Ring.Size() > 0;
}

bool AudioDrain::DrainAudioRing(bool now) {
    if (!Active()) return true;
    return Parts.Cut.CutPending ? CarryOutCut(now) : DrainPlainly();
}

bool AudioDrain::DrainPlainly() {
    const int32_t fill = Parts.Ring.Unread();
    return fill < FillToDrain || WriteSlots(fill - SlotsKept) != Result::EndProgram;
}

bool AudioDrain::CarryOutCut(bool now) {
    AudioRing& ring = Parts.Ring;
    const int32_t cut = ring.Wrapped(Parts.Cut.CutIndex);
    const CutReach wanted = {SlotsOf(Parts.Pause.EndOfSongThreshold[0]),
                             SlotsOf(Parts.Pause.EndOfSongThreshold[1])};
    const int32_t arrived = RingDistance(cut, ring.AudioWriteIndex, ring.Size());
    if (!now && arrived < wanted.After) return true;

    const int32_t unwritten = RingDistance(ring.AudioReadIndex, cut, ring.Size());
    if (unwritten > ring.Unread()) return DropPassedCut();
    const CutPlace place = Parts.Pause.DuplicatepartOfSong
                               ? DuplicateWindow(ring, cut, wanted, unwritten)
                               : FindCut(ring, cut, ReachOf(wanted, unwritten, arrived));
    if (unwritten >= 1) {
        // A song that would end at the read index is followed once round the ring: the end is looked at
        // after each slot.
        const int32_t count = RingDistance(ring.AudioReadIndex, place.OldEnd, ring.Size());
        const Result result = WriteSlots(count > 0 ? count : ring.Size());
        if (result != Result::Done) return result == Result::Stopped;
        Parts.Song.CloseSongFile(SongEnd::Boundary);
    } else if (!Parts.Song.SongFileOpen()) {
        Parts.Song.NoteBoundary();
    }
    ring.AudioReadIndex = place.NewBegin;
    Parts.Cut.Settle();
    return true;
}

/// The cut is before everything that is unread: the ring was opened anew, or reading began again after it.
/// What is unread belongs to the new song.
bool AudioDrain::DropPassedCut() {
    if (Parts.Song.SongFileOpen()) {
        Parts.Song.CloseSongFile(SongEnd::Boundary);
    } else {
        Parts.Song.NoteBoundary();
    }
    Parts.Cut.Settle();
    return true;
}

AudioDrain::Result AudioDrain::WriteSlots(int32_t count) {
    AudioRing& ring = Parts.Ring;
    if (!Parts.Song.SongFileOpen() && !Parts.Song.CreateSongFile()) return Result::EndProgram;
    for (int32_t i = 0; i < count; ++i) {
        const SongWriter::Written written = Parts.Song.WriteBuffer(ring[ring.AudioReadIndex]);
        if (written == SongWriter::Written::NoFile) return Result::EndProgram;
        // What could not be written stays unread, and is written if recording is enabled again.
        if (written == SongWriter::Written::Failed) return Result::Stopped;
        ring.AudioReadIndex = ring.Wrapped(int64_t{ring.AudioReadIndex} + 1);
    }
    return Result::Done;
}

void AudioDrain::WriteAhead() {
    const bool waits = Parts.Pause.EndOfSongDetection != EndOfSong::Silence;
    if (!waits || !Parts.Flags.RecordingEnabled || Parts.Ring.Size() == 0) return;
    if (BuffersToRetry > 0 && --BuffersToRetry > 0) return;
    AudioRing& ring = Parts.Ring;
    const auto slotBefore = [&](int32_t slots) {
        return ring.Wrapped(int64_t{ring.AudioWriteIndex} - slots);
    };
    const int32_t unread = ring.Unread();
    int32_t missing = 0;  // at the ring's end; all before them was written ahead
    while (missing < unread && !Parts.Song.IsEndOfAhead(ring[slotBefore(missing + 1)].Ahead)) ++missing;
    if (missing == unread) Parts.Song.DropAhead();
    for (; missing > 0; --missing) {
        const int32_t slot = slotBefore(missing);
        const auto mark = Parts.Song.WriteAhead(ring[slot]);
        if (!mark) {
            BuffersToRetry = BuffersPerSecond;
            return;
        }
        ring.MarkAhead(slot, *mark);
    }
}

bool AudioDrain::MakeRoom() {
    if (!DrainAudioRing(false)) return false;
    if (!Active() || !Parts.Cut.CutPending || !Parts.Ring.Full()) return true;
    // The audio after the cut has not arrived. What is before the cut's window can be written already.
    const int32_t cut = Parts.Ring.Wrapped(Parts.Cut.CutIndex);
    const int32_t unwritten = RingDistance(Parts.Ring.AudioReadIndex, cut, Parts.Ring.Size());
    const int32_t surplus = unwritten - SlotsOf(Parts.Pause.EndOfSongThreshold[0]);
    if (surplus <= 0 || Parts.Ring.Size() <= FillToDrain) return CarryOutCut(true);
    return WriteSlots(surplus) != Result::EndProgram;
}

bool AudioDrain::FinishCut() {
    if (!Active() || !Parts.Cut.CutPending) return true;
    // Nothing comes that the cut could be made in. A song that a title has ended may be written already.
    const AudioRing& ring = Parts.Ring;
    const bool isWritten = ring.Wrapped(Parts.Cut.CutIndex) == ring.AudioReadIndex;
    return Parts.Cut.Ended && isWritten ? DropPassedCut() : CarryOutCut(true);
}

bool AudioDrain::WriteOut() {
    if (!Active() || Parts.Ring.Unread() == 0) return true;
    return WriteSlots(Parts.Ring.Unread()) != Result::EndProgram;
}

bool AudioDrain::Empty() {
    const bool written = FinishCut() && WriteOut();
    Parts.Cut.Settle();
    Parts.Ring.AudioReadIndex = Parts.Ring.AudioWriteIndex;
    return written;
}

}  // namespace Corvetape
