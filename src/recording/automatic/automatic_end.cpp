#include "recording/automatic/automatic_end.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace Corvetape {

namespace {

/// A title that is reported in time changes at most this long before the silence that ends its song.
constexpr int64_t EarliestTitle = 5 * AutomaticEnd::SecondSlots;

/// What a player says arrives up to so much before or after the sound of it.
constexpr int64_t BeforeNews = 3 * AutomaticEnd::SecondSlots;
constexpr int64_t AfterNews = 3 * AutomaticEnd::SecondSlots;

/// A pause shorter than this is one between two beats.
constexpr int64_t LeastPause = 2;

/// A silence of so many slots at a cut is a gap.
constexpr int64_t LeastGap = 3;
constexpr int64_t SilenceOfStop = AutomaticEnd::SecondSlots / 2;

/// Evidence for a place that the learned delay does not speak for, or against what the titles say.
constexpr float EvidenceFarAway = 3.8F;

/// With less it is not known whether there is a fade at all.
constexpr float FadeIsKnown = 0.5F;

Certainty CertaintyOf(const EvidenceCut& cut) {
    constexpr float sure = 0.85F;
    constexpr float likely = 0.7F;
    if (cut.Confidence >= sure) return Certainty::Sure;
    return cut.Confidence >= likely ? Certainty::Likely : Certainty::Unsure;
}

}  // namespace

void AutomaticEnd::Restart(bool goesOn) {
    if (!goesOn) {
        Present = {};
        ForgetSource();
    }
    Standing.reset();
    // A player's pause and stop were about sound that is gone.
    PausedAt.reset();
    ResumedAt.reset();
    StoppedAt.reset();
    if (!Present.HasSound) {
        if (!Changes.empty()) Present.Media = Changes.back().Media;
        Changes.clear();
    }
    // Another title came while nothing was recorded: the song that is written has ended before the slots.
    for (Change& change : Changes) {
        change.At = 0;
        change.Last.reset();
        change.Exact = change.Unplaced = false;
        change.Unheard = true;
    }
    if (Last) Last->Slot = 0;
    Anew = true;
    Quiet.Restart();
    Next = 0;
    Unrecorded = !Changes.empty();
    Dropping = !Present.HasSound || Unrecorded;
    Present.Begin = 0;
}

size_t AutomaticEnd::Forget(bool goesOn) {
    const size_t dropped = goesOn ? JoinChanges() : 0;
    if (!goesOn) {
        if (!Changes.empty()) Present.Media = Changes.back().Media;
        Changes.clear();
        const STATIONANDSONGDATA media = Present.Media;
        Present = Song{media, {}, End(), Present.Named, false};
    }
    Unrecorded = goesOn;
    PausedAt.reset();
    ResumedAt.reset();
    StoppedAt.reset();
    Next = End();
    Dropping = true;
    return dropped;
}

void AutomaticEnd::Heard(const HeardSlot& slot) {
    Quiet.Add(slot);
    if (Quiet.TakeDropout() && !Dropping) ++Present.Trust.Dropouts;
}

std::vector<AutomaticStep> AutomaticEnd::Decide(bool wanted) {
    std::vector<AutomaticStep> steps;
    DropSilence(steps);
    while (DecideChange(steps, false)) DropSilence(steps);
    DecideBySound(steps, wanted);
    DecideSilence(steps, wanted);
    DecideStop(steps, wanted);
    HoldPause(steps, false);
    DropSilence(steps);
    WriteSafe(steps);
    return steps;
}

std::vector<AutomaticStep> AutomaticEnd::Finish(bool wanted) {
    std::vector<AutomaticStep> steps;
    DropSilence(steps);
    while (DecideChange(steps, true)) DropSilence(steps);
    DecideSilence(steps, wanted);
    HoldPause(steps, true);
    DropSilence(steps);
    if (Dropping) {
        MoveTo(steps, End());
        return steps;
    }
    const std::optional<SlotRun> silence = Quiet.Present();
    const bool ends = silence && (StoppedAt || silence->Length() >= SilenceThatEnds);
    Write(steps, ends ? std::max(silence->Begin, Next) : End());
    Present.Trust.End = ends ? Certainty::Sure : Certainty::Unsure;
    MoveTo(steps, End());
    return steps;
}

void AutomaticEnd::DropSilence(std::vector<AutomaticStep>& steps) {
    if (!Dropping) return;
    const std::optional<int64_t> sound = Quiet.SoundFrom(Next);
    if (!sound) {
        MoveTo(steps, End());
        return;
    }
    MoveTo(steps, *sound);
    // Another title came while nothing was recorded: the song before has ended then.
    if (Unrecorded && !Changes.empty() && Changes.front().At <= *sound) return;
    // What is heard while the player says that it pauses is soon said to be the player again, or is of
    // somebody else.
    const bool paused = PausedAt && !ResumedAt && Present.HasSound;
    if (paused && End() - *sound < AfterNews) return;
    if (const auto silence = Quiet.Present(); paused && silence) {
        // It was short, and is over: of somebody else.
        if (silence->Length() >= SecondSlots) MoveTo(steps, End());
        return;
    }
    if (Present.HasSound) {
        if (!Unrecorded) ++Present.Trust.PausesCut;
        PausedAt.reset();
        ResumedAt.reset();
        // It has moved by the pause, which the player may say later: that is no beginning and no jump.
        TrackBegan.reset();
    } else {
        BeginWith(*sound);
    }
    Unrecorded = false;
    Dropping = false;
}

/// A song begins with this sound, before which nothing was recorded. The first that is heard may have been
/// joined in its middle, also where there was silence before it, unless its player says that it began there.
void AutomaticEnd::BeginWith(int64_t sound) {
    Present.Begin = sound;
    Finder.Begins(sound);
    if (Present.Trust.Begin != Certainty::None) return;
    const auto silence = Quiet.First({sound - 1, sound}, 1);
    const bool between =
        silence && silence->Length() >= SilenceOfStop && Quiet.SoundFrom(0).value_or(sound) < silence->Begin;
    Present.Joined = silence && !between;
    const bool sure = TrackBegan ? silence && BeganAt(sound) : between;
    Present.Trust.Begin = sure ? Certainty::Sure : Certainty::Unsure;
}

/// The track that plays began there, as far as its player knows.
bool AutomaticEnd::BeganAt(int64_t slot) const {
    return TrackBegan && std::abs(*TrackBegan - slot) <= AfterNews;
}

bool AutomaticEnd::DecideChange(std::vector<AutomaticStep>& steps, bool last) {
    if (Changes.empty()) return false;
    const Change change = Changes.front();
    const int64_t now = End();
    if (Dropping) {
        if (GoesOn()) {
            Drop(steps);
            return true;
        }
        // The song before ended where its silence began, or while nothing was recorded.
        const Certainty certainty = Unrecorded ? Certainty::Unsure : Certainty::Sure;
        Close(steps, change.Wanted, true, certainty);
        Begin(change, Next, certainty);
        return true;
    }
    if (change.Unheard) {
        // Until something is heard the title may change again.
        if (!last && now <= change.At) return false;
        const bool taken = change.Joined && SameTitle(change.Media, Present.Media);
        if (change.Weak || taken) {
            Drop(steps);
        } else {
            CutUnheard(steps, change);
        }
        return true;
    }
    if (IsTakenBack(change)) {
        Drop(steps);
        return true;
    }
    const int64_t end = EndOfSearch();
    last = last || end < now;
    if (!last && now < change.At + LastEdge) return false;
    // The sound after the change is needed for a cut without a gap.
    const bool early = !last && now < change.At + SlotsAfterChange;
    std::optional<EvidenceCut> cut = early ? Finder.FindGap(change.At, Next, end, change.Exact)
                                           : Finder.Find(change.At, Next, end, change.Exact);
    const bool gap = cut && cut->IsGap();
    if (early && !gap) return false;
    const float least = change.Weak ? EvidenceFarAway : LeastEvidence;
    if (cut && (gap || change.Exact || cut->Evidence >= least)) {
        Finder.Teach();
        Cut(steps, *cut, change);
        return true;
    }
    const bool over = now >= change.At + SlotsAfterChange + WaitForEvidence || Changes.size() > 1;
    if (!last && !over) {
        const int64_t later = now - SlotsAfterChange;
        cut = later > change.At ? Finder.Find(later, Next, now, false) : std::nullopt;
        if (!cut || cut->Evidence < EvidenceFarAway) return false;
        Change moved = change;
        moved.Later = later - change.At;
        Cut(steps, *cut, moved);
        return true;
    }
    if (change.Weak) {
        Drop(steps);
        return true;
    }
    const EvidenceCut quietest = Finder.Quietest(change.At, Next, end);
    Present.Trust.AgainstEvidence = true;
    Cut(steps, quietest, change);
    return true;
}

/// One more than the last slot that the change that waits may be looked for in: not beyond a place where the
/// input stood still while another title came.
int64_t AutomaticEnd::EndOfSearch() const {
    const auto next = std::ranges::find_if(Changes, &Change::Unheard);
    return next == Changes.end() ? End() : std::max(next->At, Next);
}

/// The songs meet where the input stood still. Silence on either side of that place is in neither.
void AutomaticEnd::CutUnheard(std::vector<AutomaticStep>& steps, const Change& change) {
    const int64_t place = std::max(change.At, Next);
    const std::optional<SlotRun> silence = Quiet.First({place - 1, place}, 1);
    Write(steps, silence ? std::min(silence->Begin, place) : place);
    Close(steps, change.Wanted, true, Certainty::Unsure);
    MoveTo(steps, place);
    Begin(change, place, Certainty::Unsure);
    Dropping = true;
}

void AutomaticEnd::Cut(std::vector<AutomaticStep>& steps, const EvidenceCut& cut, const Change& change) {
    // Nobody speaks between the tracks of a player.
    const int64_t from = change.At + change.Later;
    if (!cut.IsGap() && !change.Exact && !change.Last) {
        const auto talk = Finder.Talk(from, Next, End());
        if (talk) return CutOutTalk(steps, *talk, change);
    }
    Certainty certainty = CertaintyOf(cut);
    const bool asTold = change.Exact && std::abs(change.Later + cut.OldEnd) <= SecondSlots / 2;
    if (asTold && certainty == Certainty::Unsure) certainty = Certainty::Likely;
    int64_t oldEnd = from + cut.OldEnd;
    int64_t newBegin = from + cut.NewBegin;
    const int64_t half = cut.FadeSlots / 2;
    if (half > 0 && (certainty != Certainty::Unsure || cut.Confidence >= FadeIsKnown)) {
        oldEnd += Share == FadeShare::New ? -half : half;
        newBegin += Share == FadeShare::Old ? half : -half;
    }
    if (cut.IsGap()) {
        // Only where the source is known to cut is searched, and the silence may have begun before that.
        const auto silence = Quiet.First({oldEnd - 1, oldEnd}, 1);
        if (silence) oldEnd = silence->Begin;
    } else if (const auto silence = Quiet.First({newBegin - 1, oldEnd + 1}, LeastGap)) {
        // A gap where none was expected, as the titles come otherwise than they did.
        oldEnd = silence->Begin;
        newBegin = silence->End;
    }
    oldEnd = std::clamp(oldEnd, Next, End());
    if (change.Last) {
        // A song that was skipped at once is in neither of those beside it.
        const auto second = Finder.Find(*change.Last, oldEnd, End(), change.Exact);
        if (second) newBegin = *change.Last + second->NewBegin;
    }
    newBegin = std::clamp(newBegin, Next, End());
    Write(steps, oldEnd);
    const std::string source = LearnsAs();
    Present.Trust.EndCut = CutOrigin{source, EdgeOf(oldEnd, change), change.Exact};
    Close(steps, change.Wanted, true, certainty);
    MoveTo(steps, newBegin);
    Begin(change, newBegin, certainty);
    if (!change.Last) Present.Trust.BeginCut = CutOrigin{source, EdgeOf(newBegin, change), change.Exact};
    Dropping = newBegin > oldEnd;
    Present.OldEnd = oldEnd;
}

/// Where a song was cut, counted from the title: a correction by hand begins there.
int32_t AutomaticEnd::EdgeOf(int64_t slot, const Change& change) {
    return static_cast<int32_t>(slot - change.At);
}

/// What is spoken between two songs is a piece of its own.
void AutomaticEnd::CutOutTalk(std::vector<AutomaticStep>& steps, EdgeRange talk, const Change& change) {
    const int64_t begin = change.At + change.Later + talk.First;
    const int64_t end = change.At + change.Later + talk.Last;
    Write(steps, begin);
    Present.Trust.EndCut = CutOrigin{LearnsAs(), EdgeOf(begin, change), false};
    Close(steps, change.Wanted, true, Certainty::Likely);
    Present = Song{{}, {}, begin, true, false};
    Present.Media.StationName = change.Media.StationName;
    Present.Trust.Begin = Certainty::Likely;
    Write(steps, end);
    Close(steps, change.Wanted, true, Certainty::Likely);
    steps.back().Between = true;
    Begin(change, end, Certainty::Likely);
    Present.Trust.BeginCut = CutOrigin{LearnsAs(), EdgeOf(end, change), false};
    Present.OldEnd = begin;
}

void AutomaticEnd::Begin(const Change& change, int64_t slot, Certainty certainty) {
    Present = Song{change.Media, change.Trust, slot, true, false};
    Present.Trust.Begin = certainty;
    Present.Trust.Mixed = change.Mixed;
    Changes.pop_front();
}

void AutomaticEnd::DecideSilence(std::vector<AutomaticStep>& steps, bool wanted) {
    if (Dropping) return;
    // Without titles a short one counts, too, which is over by now.
    const bool untitled = Untitled() && End() - Present.Begin >= LeastUntitled;
    const auto found = untitled ? Quiet.Longest({Present.Begin + LeastUntitled, End()}, SilenceWithoutTitles)
                                : Quiet.Present();
    if (!found || found->Begin < Next) return;
    const SlotRun silence = *found;
    const bool isLong = silence.Length() >= SilenceThatEnds;
    if (!isLong && (!untitled || silence.End == End())) return;
    if (PausedAt) return;
    if (!Changes.empty()) {
        const Change change = Changes.front();
        const int64_t begin = silence.Begin - change.At;
        if (begin < FirstEdge || begin > EarliestTitle) return;
        const EvidenceCut cut{static_cast<int32_t>(begin), static_cast<int32_t>(silence.End - change.At), 0,
                              1, 0};
        Finder.TeachGap({cut.OldEnd, cut.NewBegin}, change.Exact);
        Cut(steps, cut, change);
        return;
    }
    Write(steps, silence.Begin);
    // Music may rest for a second.
    EndSong(steps, wanted, silence, isLong ? Certainty::Sure : Certainty::Likely);
}

/// The song has ended, most often in a silence, and nobody has said what comes next.
void AutomaticEnd::EndSong(std::vector<AutomaticStep>& steps, bool wanted, SlotRun gap, Certainty certainty) {
    Close(steps, wanted, false, certainty);
    const STATIONANDSONGDATA media = Present.Media;
    const bool mixed = Present.Trust.Mixed;
    Present = Song{StoppedAt ? STATIONANDSONGDATA{} : media, {}, gap.End, false, false};
    Present.Trust.Begin = certainty;
    Present.Trust.Mixed = mixed && Last && Last->Others;
    Present.OldEnd = gap.Begin;
    if (StoppedAt) Last.reset();
    StoppedAt.reset();
    Dropping = true;
    MoveTo(steps, gap.End);
}

/// Nobody reports titles, and another song has begun by the sound alone. That is right more often than not,
/// but never sure.
void AutomaticEnd::DecideBySound(std::vector<AutomaticStep>& steps, bool wanted) {
    if (!Untitled()) return;
    const std::optional<int64_t> change = Finder.SongChange(End());
    if (!change || *change < Next || *change - Present.Begin < LeastUntitled) return;
    if (Dropping || PausedAt || StoppedAt) return;
    // As near as a player would say it: a gap there, or the best place.
    const std::optional<EvidenceCut> cut = Finder.Find(*change, Next, End(), true);
    const int64_t oldEnd = std::clamp(*change + (cut ? cut->OldEnd : 0), Next, End());
    const int64_t newBegin = std::clamp(*change + (cut ? cut->NewBegin : 0), oldEnd, End());
    Write(steps, oldEnd);
    EndSong(steps, wanted, {oldEnd, newBegin}, Certainty::Unsure);
    Dropping = cut && cut->IsGap();
}

void AutomaticEnd::DecideStop(std::vector<AutomaticStep>& steps, bool wanted) {
    if (!StoppedAt || !Changes.empty()) return;
    if (Dropping) {
        // What is paused, or has ended in a silence, ends with its player.
        if (Present.HasSound) {
            EndSong(steps, wanted, {Next, Next});
        } else {
            Present.Media = {};
            Last.reset();
        }
        StoppedAt.reset();
        PausedAt.reset();
        return;
    }
    const auto silence = SilenceOf(*StoppedAt, SilenceOfStop, false);
    if (silence && silence->Begin >= Next) {
        Write(steps, silence->Begin);
        EndSong(steps, wanted, *silence);
    } else if (End() >= *StoppedAt + AfterNews) {
        StoppedAt.reset();  // something else is heard, which goes on
    }
}

/// The silence that a player's news is about, of at least so many slots. The music may rest near it too: what
/// still goes on a second after the news is it, or else the longest. Nothing while it may still come.
std::optional<SlotRun> AutomaticEnd::SilenceOf(int64_t news, int64_t least, bool last) const {
    const std::optional<SlotRun> present = Quiet.Present();
    const bool goesOn = present && present->Length() >= SilenceOfStop;
    if (goesOn && End() >= news + SecondSlots && present->Begin < news + AfterNews) return present;
    if (!last && End() < news + AfterNews) return std::nullopt;
    return Quiet.Longest({std::max(news - BeforeNews, Next), news + AfterNews}, least);
}

void AutomaticEnd::HoldPause(std::vector<AutomaticStep>& steps, bool last) {
    if (!PausedAt || Dropping) return;
    const auto silence = SilenceOf(*PausedAt, LeastPause, last);
    if (silence && silence->Begin >= Next) {
        Write(steps, silence->Begin);
        Dropping = true;
    } else if (End() >= *PausedAt + AfterNews) {
        PausedAt.reset();  // something else is heard, which goes on
        ResumedAt.reset();
    }
}

void AutomaticEnd::WriteSafe(std::vector<AutomaticStep>& steps) {
    if (Dropping) return;
    int64_t safe = End() - (Untitled() ? KeptBackUntitled : KeptBack);
    if (!Changes.empty()) safe = std::min(safe, Changes.front().At + FirstEdge - FadeSlots.back() / 2);
    for (const std::optional<int64_t>& news : {PausedAt, StoppedAt}) {
        if (news) safe = std::min(safe, *news - BeforeNews);
    }
    if (const auto silence = Quiet.Present()) safe = std::min(safe, silence->Begin);
    Write(steps, safe);
}

void AutomaticEnd::Write(std::vector<AutomaticStep>& steps, int64_t upTo) {
    if (upTo <= Next) return;
    AutomaticStep step;
    step.Slot = upTo;
    steps.push_back(std::move(step));
    Next = upTo;
    Present.HasSound = true;
}

void AutomaticEnd::Close(std::vector<AutomaticStep>& steps, bool wanted, bool passed, Certainty end) {
    AutomaticStep step;
    step.What = AutomaticStep::Kind::Close;
    step.Slot = Next;
    step.Media = Present.Media;
    step.Trust = Present.Trust;
    step.Trust.End = end;
    step.Wanted = wanted;
    step.Passed = passed;
    steps.push_back(std::move(step));
}

void AutomaticEnd::MoveTo(std::vector<AutomaticStep>& steps, int64_t slot) {
    if (slot == Next) return;
    AutomaticStep step;
    step.What = AutomaticStep::Kind::MoveTo;
    step.Slot = slot;
    steps.push_back(std::move(step));
    Next = slot;
}

}  // namespace Corvetape
