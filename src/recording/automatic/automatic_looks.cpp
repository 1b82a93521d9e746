// What a look at the source says about the songs.
#include <algorithm>
#include <cstdlib>
#include <utility>

#include "recording/automatic/automatic_end.h"

namespace Corvetape {

namespace {

/// A reported position is this exact, and one that jumps further was sought.
constexpr int64_t SeekSlots = 30;

/// A track whose beginning is longer ago was not noticed when it began.
constexpr int64_t NewTrack = 10 * AutomaticEnd::SecondSlots;

/// Where the track that plays began, if its player says so and it was not long ago.
std::optional<int64_t> BeginOf(const SourceLook& look) {
    if (look.TrackId.empty() || !look.Position || *look.Position > NewTrack) return std::nullopt;
    return look.Slot - *look.Position;
}

/// Whether a look means the track of the one before. A player may name a title before it names its track.
bool IsTrackOf(const SourceLook& before, const SourceLook& look, bool sameTitle) {
    if (look.Source != before.Source) return false;
    const bool unnamed = look.TrackId.empty() || before.TrackId.empty();
    return look.TrackId == before.TrackId || (sameTitle && unnamed);
}

}  // namespace

bool SameTitle(const STATIONANDSONGDATA& one, const STATIONANDSONGDATA& other) {
    return one.Artist == other.Artist && one.Song == other.Song;
}

void AutomaticEnd::ForgetSource() {
    Present.Media = {};
    Present.Trust = {};
    Present.Named = false;
    Changes.clear();
    Last.reset();
    TrackBegan.reset();
    LastStatus = PlayerStatus::Unknown;
}

bool AutomaticEnd::Look(const SourceLook& look, bool wanted) {
    FollowStatus(look);
    NoteStanding(look);
    if (look.Others) Present.Trust.Mixed = true;
    const bool anew = std::exchange(Anew, false);
    if (look.Media.Song.empty()) {
        // A player that pauses shows none, and its song goes on.
        if (look.Status != PlayerStatus::Paused) TitleVanished = true;
        return false;
    }
    const bool vanished = std::exchange(TitleVanished, false);
    const std::optional<SourceLook> before = std::exchange(Last, look);
    STATIONANDSONGDATA& newest = Changes.empty() ? Present.Media : Changes.back().Media;
    // Something else may have played long before.
    const bool heard = !Dropping || Present.HasSound;
    if (!before && (!heard || End() - Present.Begin <= NewTrack)) {
        newest = look.Media;
        Present.Named = true;
        // It had no title before that, so nothing of it was missed.
        if (look.OfInput && vanished) NoteBegin(look.Slot);
        return false;
    }
    const bool sameTitle = SameTitle(look.Media, newest);
    const bool sameTrack = before && IsTrackOf(*before, look, sameTitle);
    if (sameTrack && look.TrackId.empty()) Last->TrackId = before->TrackId;
    const bool again = sameTrack && !look.TrackId.empty() && IsRestart(look);
    if (sameTrack && !again && (sameTitle || !look.TrackId.empty())) {
        PlaceChange(look);
        NoteSeek(look);
        newest = look.Media;  // album and cover may come late, and a title may be corrected
        const bool weak = sameTitle && vanished && look.TrackId.empty();
        if (!weak) return false;
    }
    Change change;
    change.At = look.Slot;
    change.Media = look.Media;
    change.Weak = sameTitle && sameTrack && !again;
    change.Wanted = wanted;
    change.Mixed = look.Others || (Present.Trust.Mixed && before && look.Source != before->Source);
    change.Unheard = look.Deaf || anew;
    if (change.Unheard) {
        change.At = anew ? 0 : look.Slot;
    } else if (const auto began = BeginOf(look)) {
        change.At = *began;
        change.Exact = true;
    } else if (const auto end = EndOf(before); end && std::abs(*end - look.Slot) <= SeekSlots) {
        change.At = *end;
        change.Exact = true;
    }
    return NoteChange(look, std::move(change));
}

/// Where the track before ends by its own length.
std::optional<int64_t> AutomaticEnd::EndOf(const std::optional<SourceLook>& before) const {
    if (!before || !TrackBegan || !before->Length || before->TrackId.empty()) return std::nullopt;
    return *TrackBegan + *before->Length;
}

/// The player has said where the track began whose change is waiting: often a second after it said its title.
void AutomaticEnd::PlaceChange(const SourceLook& look) {
    if (Changes.empty() || !Changes.back().Unplaced) return;
    const auto began = BeginOf(look);
    if (!began) return;
    Change& change = Changes.back();
    change.Unplaced = false;
    if (change.Joined) {
        change.Last = began;
        return;
    }
    change.At = *began;
    change.Exact = true;
}

/// The track plays from its beginning again.
bool AutomaticEnd::IsRestart(const SourceLook& look) const {
    if (!look.Position || !TrackBegan || *look.Position > NewTrack) return false;
    return look.Slot - *look.Position - *TrackBegan > SeekSlots && !PausedAt;
}

void AutomaticEnd::NoteSeek(const SourceLook& look) {
    if (!look.Position || look.Status != PlayerStatus::Playing || look.TrackId.empty()) return;
    const int64_t began = look.Slot - *look.Position;
    // While nothing is heard the position goes on alone.
    if (TrackBegan && !PausedAt && !look.Deaf && std::abs(began - *TrackBegan) > SeekSlots) {
        (Changes.empty() ? Present.Trust : Changes.back().Trust).Sought = true;
    }
    NoteBegin(began);
}

void AutomaticEnd::NoteBegin(int64_t slot) {
    TrackBegan = slot;
    // Often the player says so a second after its sound.
    if (Changes.empty() && Present.Joined && BeganAt(Present.Begin)) Present.Trust.Begin = Certainty::Sure;
}

/// A stream that has run dry says that it plays. The position shows that nothing comes.
void AutomaticEnd::NoteStanding(const SourceLook& look) {
    if (!look.Position || look.Status != PlayerStatus::Playing) {
        Standing.reset();
        return;
    }
    if (!Standing || Standing->TrackId != look.TrackId) Standing = look;
    const int64_t elapsed = look.Slot - Standing->Slot;
    if (elapsed < SecondSlots) return;
    const int64_t moved = *look.Position - *Standing->Position;
    const bool stands = moved >= -2 && moved < elapsed / 2;
    if (stands && !PausedAt) {
        PausedAt = Standing->Slot;
        ResumedAt.reset();
    }
    if (Stands && !stands && PausedAt) ResumedAt = look.Slot;
    Stands = stands;
    Standing = look;
}

void AutomaticEnd::FollowStatus(const SourceLook& look) {
    const bool was = LastStatus == PlayerStatus::Playing || LastStatus == PlayerStatus::Unknown;
    const bool gone = look.Source.empty() && Last && !Last->Source.empty();
    const PlayerStatus now = gone ? PlayerStatus::Stopped : look.Status;
    if (now == LastStatus) return;
    LastStatus = now;
    switch (now) {
        case PlayerStatus::Paused:
            PausedAt = look.Slot;
            ResumedAt.reset();
            break;
        case PlayerStatus::Stopped:
            if (was || PausedAt) StoppedAt = look.Slot;
            break;
        case PlayerStatus::Playing:
            if (PausedAt) ResumedAt = look.Slot;
            break;
        case PlayerStatus::Unknown:
            break;
    }
}

bool AutomaticEnd::TakesTitle(const Change& change) {
    if (!Changes.empty() || change.Weak) return false;
    // Between two songs the title is that of the next one.
    const bool between = Dropping && !Present.HasSound;
    const bool unnamed = Present.Media.Song.empty() && change.At - Present.Begin <= NewTrack;
    const int64_t begin = Present.Begin - change.At;
    const bool late = !Present.Named && begin >= FirstEdge && begin <= LastEdge;
    if (!between && !unnamed && !late) return false;
    if (late && !between && !change.Unheard) {
        const int64_t gap = std::max<int64_t>(Present.OldEnd - change.At, FirstEdge);
        Finder.TeachGap({static_cast<int32_t>(gap), static_cast<int32_t>(begin)}, change.Exact);
    }
    Present.Media = change.Media;
    Present.Named = true;
    Present.Trust.Mixed = change.Mixed;
    return true;
}

bool AutomaticEnd::NoteChange(const SourceLook& look, Change change) {
    StoppedAt.reset();
    TrackBegan.reset();
    NoteSeek(look);
    if (TakesTitle(change)) return false;
    const bool soon = !Changes.empty() && change.At - Changes.back().At < OneChange;
    if (soon && change.Unheard == Changes.back().Unheard) {
        Change& first = Changes.back();
        first.Media = change.Media;
        first.Mixed = first.Mixed || change.Mixed;
        if (change.Exact) first.Last = change.At;
        // A title that only vanishes once more was never another one that is taken back.
        first.Joined = first.Joined || !(first.Weak && change.Weak);
        // A banner that has gone again.
        const STATIONANDSONGDATA& song = Changes.size() > 1 ? (Changes.end() - 2)->Media : Present.Media;
        first.Weak = look.TrackId.empty() && !first.Exact && SameTitle(first.Media, song);
        first.Unplaced = !first.Unheard && !BeginOf(look);
        return false;
    }
    change.Unplaced = !change.Unheard && !BeginOf(look);
    Changes.push_back(std::move(change));
    return true;
}

/// The title from before is back, of something that is no track: an advertisement, which says nothing of the
/// sound. A song that has changed under it would not have the title of the one before.
bool AutomaticEnd::IsTakenBack(const Change& change) const {
    const bool joined = change.Joined && !change.Last && SameTitle(change.Media, Present.Media);
    return !change.Exact && (joined || IsBanner());
}

/// The change that waits was taken back by the next one while it could not have been cut yet. Later the same
/// song plays again. A title that has only vanished was no other one.
bool AutomaticEnd::IsBanner() const {
    if (Changes.size() < 2 || Changes[0].Weak) return false;
    if (Changes[1].Exact || !SameTitle(Changes[1].Media, Present.Media)) return false;
    return Changes[1].At - Changes[0].At < SlotsAfterChange + WaitForEvidence;
}

/// The song that was silent, or was not recorded for a while, goes on in spite of the change that waits.
bool AutomaticEnd::GoesOn() const {
    return !Changes.empty() && (Changes.front().Weak || (Present.HasSound && IsBanner()));
}

/// No song begins with the change that waits, nor with the one that takes it back.
void AutomaticEnd::Drop(std::vector<AutomaticStep>& steps) {
    AutomaticStep step;
    step.What = AutomaticStep::Kind::Undo;
    step.Slot = Next;
    step.Undone = TakeDropped();
    steps.push_back(std::move(step));
}

size_t AutomaticEnd::TakeDropped() {
    const size_t count = IsBanner() ? 2 : 1;
    Changes.erase(Changes.begin(), Changes.begin() + static_cast<std::ptrdiff_t>(count));
    return count;
}

/// While nothing is recorded: nothing is made of the songs between the one that ended with the first change
/// and the one whose title is shown. Returns how many changes were none.
size_t AutomaticEnd::JoinChanges() {
    size_t dropped = 0;
    while (GoesOn()) dropped += TakeDropped();
    if (Changes.size() < 2) return dropped;
    Change joined = Changes.back();
    joined.At = Changes.front().At;
    joined.Wanted = Changes.front().Wanted;
    joined.Weak = false;
    joined.Unplaced = false;
    Changes.clear();
    Changes.push_back(std::move(joined));
    return dropped;
}

}  // namespace Corvetape
