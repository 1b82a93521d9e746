#include "recording/automatic/automatic_recorder.h"

#include <algorithm>
#include <utility>

namespace Corvetape {

namespace {

constexpr int64_t MarginSlots = MarginRecorder::MostSeconds * AutomaticEnd::SecondSlots;

}  // namespace

AutomaticRecorder::AutomaticRecorder(AutomaticParts parts)
    : Parts(parts), Places(parts.Ring, parts.Pause, parts.Learned), End(Places) {}

/// The mode was chosen, or the ring was opened anew: what is unread in it is heard first.
void AutomaticRecorder::Begin() {
    AudioRing& ring = Parts.Ring;
    ring.Grow(RingSlots);
    Begun = true;
    Opening = ring.Openings;
    PutBefore = ring.SlotsPut - static_cast<uint64_t>(ring.Unread());
    SongEnded.reset();
    Parts.Cut.Ended.reset();  // the song that was open goes on
    Heard = 0;
    Read = 0;
    Written = 0;
    Places.Restart(Parts.Format.nSamplesPerSec);
    const bool isOpen = Parts.Song.SongFileOpen();
    // What a full disk has refused is gone with the slots. That its song is over still holds.
    DropSound();
    if (Left || !isOpen) Waiting.clear();
    if (std::exchange(Left, false)) End.ForgetSource();
    End.Restart(isOpen);
    if (!End.ChangePending()) Passed.clear();
}

/// Of what waits for the disk, the ends of songs stay.
void AutomaticRecorder::DropSound() {
    std::erase_if(Waiting, [](const AutomaticStep& step) {
        return step.What == AutomaticStep::Kind::Write || step.What == AutomaticStep::Kind::MoveTo;
    });
}

int64_t AutomaticRecorder::Hear() {
    AudioRing& ring = Parts.Ring;
    if (!Active() || ring.Size() == 0) return Heard;
    if (!Begun || Opening != ring.Openings) Begin();
    const auto fresh = static_cast<int64_t>(ring.SlotsPut - PutBefore);
    PutBefore = ring.SlotsPut;
    for (int64_t i = 0; i < fresh; ++i) {
        const auto slot = static_cast<size_t>(ring.Wrapped(int64_t{ring.AudioWriteIndex} - fresh + i));
        const int32_t level = ring.AudioLevels[slot];
        End.Heard({level, level <= Parts.Pause.SilenceAmplitude});
    }
    Heard += fresh;
    Places.Follow(Heard);
    return Heard;
}

void AutomaticRecorder::Look(const SourceLook& look) {
    if (!Active()) return;
    Places.Ask(look.LearnsAs);
    // Tags name a piece by its own: all pieces of an album may be "Live at ...".
    if (look.OfFile || !look.Media.Album.empty()) {
        Titles.Forget();
    } else {
        Titles.Learn(look.LearnsAs, look.Media.Song);
    }
    if (!End.Look(look, Parts.Flags.RecordCurrentSong)) return;
    Parts.Signal.History.ReplaceLast(MarkMediaChange);
    Parts.Cut.NoteBoundary();
    PassOn();
    Parts.Cut.Announce(true, Parts.Ring.AudioWriteIndex);
}

/// From here on the flags mean the song whose title is shown.
void AutomaticRecorder::PassOn() {
    const RecordingFlags before = Parts.Flags;
    if (Parts.Flags.RecordingEnabled) Parts.Flags.PassOn();
    Passed.push_back({before, Parts.Flags});
}

/// The song goes on whose title was shown before, and so does what was wished for it, unless somebody has
/// wished something else meanwhile.
void AutomaticRecorder::TakeBack(size_t changes) {
    changes = std::min(changes, Passed.size());
    if (changes == 0) return;
    Parts.Flags.TakeBack(Passed.front().Before, Passed[changes - 1].After);
    Passed.erase(Passed.begin(), Passed.begin() + static_cast<std::ptrdiff_t>(changes));
}

bool AutomaticRecorder::Drain() {
    if (!Active() || Parts.Ring.Size() == 0) return true;
    Hear();
    if (SongEnded && Heard >= *SongEnded + MarginSlots) AddMargin();
    if (!Parts.Flags.RecordingEnabled) {
        // What a full disk has refused may be wanted when there is room again, as long as it is there.
        if (!DiskRefuses() || Lost(Read)) Discard();
        return true;
    }
    const auto share = std::clamp(Parts.Settings.FadeGoesTo, 0, 2);
    End.ShareFades(static_cast<FadeShare>(share));
    const bool carried = Carry(End.Decide(Parts.Flags.RecordCurrentSong));
    Parts.Cut.Announce(End.ChangePending(), Parts.Cut.CutIndex);
    return carried;
}

/// There is sound that belongs to the open song and could not be written. What follows a song that has ended
/// the recording is not that.
bool AutomaticRecorder::DiskRefuses() const {
    const auto write = std::ranges::find(Waiting, AutomaticStep::Kind::Write, &AutomaticStep::What);
    return Parts.Song.SongFileOpen() && write != Waiting.end();
}

/// Nothing is recorded. The song whose file is open goes on later, or ends then if it is over by now.
void AutomaticRecorder::Discard() {
    DropSound();
    TakeBack(End.Forget(Parts.Song.SongFileOpen() && Waiting.empty()));
    if (!End.ChangePending()) Passed.clear();
    // One change is left of all that were noticed. It passes on what one of them could not.
    while (Passed.size() > 1) {
        const PassedOn newest = Passed.back();
        Passed.pop_back();
        PassedOn& both = Passed.back();
        both.After = newest.After;
        both.Before.RecordingEnabled = both.Before.RecordingEnabled && newest.Before.RecordingEnabled;
    }
    Read = Heard;
    Parts.Ring.AudioReadIndex = Parts.Ring.AudioWriteIndex;
    Parts.Cut.Announce(false, Parts.Cut.CutIndex);
}

bool AutomaticRecorder::Finish() {
    if (!Active()) return true;
    Hear();
    bool carried = true;
    if (Parts.Flags.RecordingEnabled && Begun) carried = Carry(End.Finish(Parts.Flags.RecordCurrentSong));
    AddMargin();
    Begun = false;
    // What is open is closed by somebody else, who asks for its name here.
    if (Parts.Song.SongFileOpen() && !Parts.Cut.Ended) {
        Parts.Cut.Ended = Present();
    }
    Parts.Cut.Announce(false, Parts.Cut.CutIndex);
    return carried;
}

bool AutomaticRecorder::EndRecording() {
    if (!Active()) return true;
    const bool carried = Finish();
    if (Parts.Song.SongFileOpen()) Parts.Song.CloseSongFile(SongEnd::Stopped);
    Parts.Cut.Settle();
    return carried;
}

bool AutomaticRecorder::Carry(std::vector<AutomaticStep> steps) {
    std::ranges::move(steps, std::back_inserter(Waiting));
    return Run();
}

bool AutomaticRecorder::Run() {
    while (!Waiting.empty()) {
        const AutomaticStep& step = Waiting.front();
        if (step.What == AutomaticStep::Kind::Write) {
            const Done done = Write(step.Slot);
            if (done == Done::EndProgram) return false;
            if (done == Done::Later) return true;
        } else if (step.What == AutomaticStep::Kind::Close) {
            Close(step);
        } else if (step.What == AutomaticStep::Kind::Undo) {
            TakeBack(step.Undone);
        } else {
            Read = step.Slot;
        }
        Waiting.pop_front();
        Parts.Ring.AudioReadIndex = Places.RingSlot(Read);
        if (!Parts.Flags.RecordingEnabled) return true;
    }
    return true;
}

/// What has been decided may not be carried out yet: the song that is written is the one that the next close
/// ends.
EndedSong AutomaticRecorder::Present() const {
    const auto close = std::ranges::find(Waiting, AutomaticStep::Kind::Close, &AutomaticStep::What);
    if (close != Waiting.end()) return ClosedBy(*close);
    return {Titles.Clean(End.Media()), End.Wanted(Parts.Flags.RecordCurrentSong), End.Trust(), EndsProgram()};
}

/// Talk between two songs is not the song that the program ends with.
EndedSong AutomaticRecorder::ClosedBy(const AutomaticStep& step) const {
    return {Titles.Clean(step.Media), step.Wanted, step.Trust, !step.Between && EndsProgram()};
}

/// The wish for the end came before the title of the next song did, if that has come.
bool AutomaticRecorder::EndsProgram() const {
    return (Passed.empty() ? Parts.Flags : Passed.front().Before).QuitAtEndOfSong;
}

AutomaticRecorder::Done AutomaticRecorder::Write(int64_t upTo) {
    // Nobody has drained for longer than the ring is long.
    Read = std::max(Read, Heard - Parts.Ring.Size() + 1);
    if (Read >= upTo) return Done::Yes;
    if (!Parts.Song.SongFileOpen()) {
        Parts.Margins.SongBegins(FramesOfSlots(Read - MarginSlots, Read));
        if (!Parts.Song.CreateSongFile()) return Done::EndProgram;
    }
    // A file that is full, or whose input goes on at another rate, is closed by the writer on its way.
    Parts.Cut.Ended = Present();
    const Done done = WriteSlots(upTo);
    Parts.Cut.Ended.reset();
    return done;
}

AutomaticRecorder::Done AutomaticRecorder::WriteSlots(int64_t upTo) {
    while (Read < upTo) {
        const SongWriter::Written written = Parts.Song.WriteBuffer(Parts.Ring[Places.RingSlot(Read)]);
        if (written == SongWriter::Written::NoFile) return Done::EndProgram;
        if (written == SongWriter::Written::Failed) return Done::Later;
        Written = ++Read;
    }
    return Done::Yes;
}

void AutomaticRecorder::Close(const AutomaticStep& step) {
    AddMargin();
    const EndedSong ended = ClosedBy(step);  // with what was wished when its title went
    const bool begins = TakePassed(step);
    if (Parts.Song.SongFileOpen()) {
        Parts.Cut.Ended = ended;
        Parts.Song.CloseSongFile(SongEnd::Boundary);
        if (Parts.Margins.WantsAfter()) SongEnded = Written;
    } else {
        Parts.Song.NoteBoundary();
    }
    Parts.Cut.Ended.reset();
    if (begins) Parts.Cut.NoteBoundary();
}

/// Passes on what is wished for the next song, unless that was done when it was noticed. Recording may end
/// with the song that is closed, or go on for the next one, so this comes ahead of the close. True if the
/// next song begins only now.
bool AutomaticRecorder::TakePassed(const AutomaticStep& step) {
    if (step.Between || (step.Passed && Passed.empty())) return false;
    if (step.Passed) {
        const PassedOn noticed = Passed.front();
        Passed.pop_front();
        // While nothing was recorded nothing was passed on. Who has wished something since has seen the
        // title.
        if (noticed.Before.RecordingEnabled) return false;
        if (Parts.Flags.Wishes != noticed.After.Wishes) return true;
    }
    Parts.Flags.PassOn();
    return true;
}

/// What the ring still holds of these slots, one after the other.
std::vector<Frame> AutomaticRecorder::FramesOfSlots(int64_t from, int64_t end) const {
    std::vector<Frame> frames;
    for (int64_t slot = std::max<int64_t>(from, 0); slot < std::min(end, Heard); ++slot) {
        if (Lost(slot)) continue;
        const std::span<const Frame> more = FramesOf(Parts.Ring[Places.RingSlot(slot)]);
        frames.insert(frames.end(), more.begin(), more.end());
    }
    return frames;
}

/// Hands on what has followed the song that was closed last.
void AutomaticRecorder::AddMargin() {
    const std::optional<int64_t> slot = std::exchange(SongEnded, std::nullopt);
    if (slot) Parts.Margins.SongFollowedBy(FramesOfSlots(*slot, *slot + MarginSlots));
}

}  // namespace Corvetape
