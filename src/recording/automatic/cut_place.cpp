#include "recording/automatic/cut_place.h"

#include <algorithm>
#include <memory>

#include "audio/cut_search.h"
#include "audio/talk_search.h"

namespace Corvetape {

namespace {

/// A player is right about the beginning of its track to so many slots, its way to the input included.
constexpr int32_t ExactReach = 30;

}  // namespace

CutPlace::CutPlace(const AudioRing& ring, const PauseSettings& pause, LearnedCuts& learned)
    : Ring(ring), Pause(pause), Learned(learned), Features(HistorySlots) {}

void CutPlace::Restart(uint32_t framesPerSecond) {
    Meter = std::make_unique<FeatureMeter>(framesPerSecond);
    Features.Restart(0);
    Listener = std::make_unique<FeatureMeter>(framesPerSecond);
    Changes.Restart(0);
    Heard = 0;
    SongBegin = 0;
}

int32_t CutPlace::RingSlot(int64_t slot) const {
    return Ring.Wrapped(int64_t{Ring.AudioWriteIndex} - (Heard - slot));
}

/// Slots that were measured for the last question and are asked for again are not measured twice. Where the
/// player says that its track began, the silence before is what shows its first sound.
void CutPlace::Measure(int64_t from, int64_t end, bool exact) {
    const int64_t least = exact ? 0 : SongBegin;
    const int64_t first = std::max({from, Heard - (Ring.Size() - 1), least});
    const bool hasEarlier = Features.First() < least;
    if (first < Features.First() || first > Features.End() || hasEarlier) {
        Features.Restart(first);
        Meter->Restart();
    }
    for (int64_t slot = Features.End(); slot < std::min(end, Heard); ++slot) {
        Features.Add(Meter->Measure(FramesOf(Ring[RingSlot(slot)])));
    }
}

CutQuestion CutPlace::Question(int64_t change, int64_t from, int64_t end, bool exact) {
    LastSource = Source;
    LastExact = exact;
    CutReach reach = {static_cast<int32_t>(change - from), static_cast<int32_t>(end - 1 - change)};
    if (exact) {
        // A player that falters elsewhere makes gaps that mean nothing.
        reach.Before = std::min(reach.Before, ExactReach);
        reach.After = std::min(reach.After, ExactReach);
    }
    return {Features, change, Ring.AudioLevels, static_cast<size_t>(RingSlot(change)), reach};
}

std::optional<EvidenceCut> CutPlace::Find(int64_t change, int64_t from, int64_t end, bool exact) {
    if (!Meter) return std::nullopt;
    Measure(change + FirstSlotOfSearch, std::min(end, change + SlotsAfterChange), exact);
    return Cutter.Decide(Question(change, from, end, exact), Learned.Of(Source, exact));
}

std::optional<EvidenceCut> CutPlace::FindGap(int64_t change, int64_t from, int64_t end, bool exact) {
    if (!Meter) return std::nullopt;
    return Cutter.DecideGap(Question(change, from, end, exact), Learned.Of(Source, exact));
}

void CutPlace::Teach() {
    Cutter.Teach(Learned.Of(LastSource, LastExact));
    Learned.Store(LastSource, LastExact);
}

void CutPlace::TeachGap(EdgeRange gap, bool exact) {
    Learned.Of(Source, exact).LearnGap(gap);
    Learned.Store(Source, exact);
}

std::optional<EdgeRange> CutPlace::Talk(int64_t change, int64_t from, int64_t end) {
    if (!Meter) return std::nullopt;
    Measure(change + FirstSlotOfSearch, std::min(end, change + SlotsAfterChange), false);
    const int64_t first = std::max<int64_t>(from - change, FirstEdge);
    const int64_t last = std::min<int64_t>(end - change, LastEdge);
    if (first >= last) return std::nullopt;
    return FindTalk(Features, change, {static_cast<int32_t>(first), static_cast<int32_t>(last)});
}

EvidenceCut CutPlace::Quietest(int64_t change, int64_t from, int64_t end) {
    const CutReach wanted = {SlotsOf(Pause.EndOfSongThreshold[0]), SlotsOf(Pause.EndOfSongThreshold[1])};
    const CutReach reach =
        ReachOf(wanted, static_cast<int32_t>(change - from), static_cast<int32_t>(end - change));
    EvidenceCut cut;
    if (reach.Before + reach.After < 0) return cut;
    const auto start = static_cast<size_t>(RingSlot(change - reach.Before));
    const auto found =
        FindQuietStretch(Ring.AudioLevels, start, static_cast<size_t>(RingSlot(change + reach.After)));
    if (!found) return cut;
    const auto slotsUpTo = [&](size_t slot) {
        return RingDistance(static_cast<int32_t>(start), static_cast<int32_t>(slot), Ring.Size()) -
               reach.Before;
    };
    cut.OldEnd = slotsUpTo(found->OldEnd);
    cut.NewBegin = slotsUpTo(found->NewStart) + 1;
    // Only what is quiet is left out. The quietest moment of full music belongs to somebody.
    const auto isLoud = [&](int32_t slot) {
        return Ring.AudioLevels[static_cast<size_t>(RingSlot(change + slot))] > QuietLevel;
    };
    bool loud = false;
    for (int32_t slot = cut.OldEnd; slot < cut.NewBegin; ++slot) loud = loud || isLoud(slot);
    if (loud) cut.OldEnd = cut.NewBegin = (cut.OldEnd + cut.NewBegin) / 2;
    return cut;
}

std::optional<int64_t> CutPlace::SongChange(int64_t end) {
    if (!Listener) return std::nullopt;
    if (Changes.End() < Heard - (Ring.Size() - 1)) {
        // Titles were reported for a while.
        Changes.Restart(Heard);
        Listener->Restart();
    }
    std::optional<int64_t> found;
    while (Changes.End() < std::min(end, Heard)) {
        const auto slot = FramesOf(Ring[RingSlot(Changes.End())]);
        const auto change = Changes.Add(Listener->Measure(slot));
        if (change && change->Evidence >= SongChanges::LeastEvidence) found = change->Slot;
    }
    return found;
}

}  // namespace Corvetape
