#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "audio/song_changes.h"
#include "recording/automatic/automatic_end.h"

namespace Corvetape::Test {

/// Finds what the test says is there.
class FakeFinder : public CutFinder {
 public:
    struct Place {
        int64_t OldEnd = 0;
        int64_t NewBegin = 0;
        float Confidence = 1;
        float Evidence = 10;
        int32_t Fade = 0;
    };

    void Begins(int64_t /*slot*/) override {}
    std::optional<EvidenceCut> Find(int64_t change, int64_t from, int64_t end, bool /*exact*/) override {
        ++Searches;
        return At(change, from, end);
    }
    EvidenceCut At(int64_t change, int64_t from, int64_t end) const {
        for (const Place& place : Places) {
            const auto old = static_cast<int32_t>(place.OldEnd - change);
            if (old < FirstEdge || old > LastEdge || place.OldEnd < from || place.NewBegin > end) continue;
            return EvidenceCut{old, static_cast<int32_t>(place.NewBegin - change), place.Fade,
                               place.Confidence, place.Evidence};
        }
        return EvidenceCut{0, 0, 0, 0.2F, 0.5F};
    }
    std::optional<EvidenceCut> FindGap(int64_t change, int64_t from, int64_t end, bool /*exact*/) override {
        const EvidenceCut found = At(change, from, end);
        return found.IsGap() ? std::optional(found) : std::nullopt;
    }
    void Teach() override { ++Taught; }
    void TeachGap(EdgeRange gap, bool /*exact*/) override { Gaps.push_back(gap); }
    std::optional<EdgeRange> Talk(int64_t change, int64_t from, int64_t /*end*/) override {
        if (!Spoken || Spoken->Begin < from) return std::nullopt;
        return EdgeRange{static_cast<int32_t>(Spoken->Begin - change),
                         static_cast<int32_t>(Spoken->End - change)};
    }
    EvidenceCut Quietest(int64_t /*change*/, int64_t /*from*/, int64_t /*end*/) override {
        return {-7, -7, 0, 0, 0};
    }
    std::optional<int64_t> SongChange(int64_t end) override {
        if (!Heard || end < *Heard + SongChanges::SlotsAfter) return std::nullopt;
        return std::exchange(Heard, std::nullopt);
    }

    std::vector<Place> Places;
    std::vector<EdgeRange> Gaps;
    std::optional<SlotRun> Spoken;
    std::optional<int64_t> Heard;  ///< another song begins there by the sound alone
    int32_t Taught = 0;
    int32_t Searches = 0;  ///< by the sound, which takes its time
};

/// A song as the steps make it.
struct MadeSong {
    std::string Title;
    std::vector<SlotRun> Pieces;
    SongTrust Trust;
    bool Wanted = false;
    bool Passed = false;
    bool Between = false;
};

/// Plays to an AutomaticEnd, a look twice a second and a decision every second, and follows its steps.
class AutomaticRig {
 public:
    AutomaticRig() : End(Finder) {}

    /// So many slots of music, or of silence.
    void Play(int64_t slots, int32_t level = 8000) {
        for (int64_t i = 0; i < slots; ++i) {
            End.Heard({level, level <= 100});
            ++Now;
            if (Now % 10 == 0 && Looks) LookNow();
            if (Now % 20 == 0) Follow(End.Decide(Wanted));
        }
    }
    void Silence(int64_t slots) { Play(slots, 0); }

    /// What the source says from now on.
    void Say(const std::string& title) {
        Said.Media.Song = title;
        Looks = true;
        LookNow();
    }

    /// A player begins a track now.
    void Track(const std::string& id, const std::string& title, int64_t at = 0) {
        Said.TrackId = id;
        Said.Status = PlayerStatus::Playing;
        Said.Source = "player";
        Began = Now - at;
        Say(title);
    }
    void Status(PlayerStatus status) {
        Said.Status = status;
        Looks = true;
        LookNow();
    }

    void LookNow() {
        Said.Slot = Now;
        if (Began) Said.Position = Now - *Began;
        if (End.Look(Said, Wanted)) ++Changes;
    }

    void Finish() {
        Follow(End.Finish(Wanted));
        Present.Title = End.Media().Song;
    }

    void Follow(const std::vector<AutomaticStep>& steps) {
        for (const AutomaticStep& step : steps) {
            switch (step.What) {
                case AutomaticStep::Kind::Write:
                    if (!Present.Pieces.empty() && Present.Pieces.back().End == Read) {
                        Present.Pieces.back().End = step.Slot;
                    } else {
                        Present.Pieces.push_back({Read, step.Slot});
                    }
                    Read = step.Slot;
                    break;
                case AutomaticStep::Kind::Close:
                    Songs.push_back({step.Media.Song, Present.Pieces, step.Trust, step.Wanted, step.Passed,
                                     step.Between});
                    Present = {};
                    break;
                case AutomaticStep::Kind::MoveTo:
                    Read = step.Slot;
                    break;
                case AutomaticStep::Kind::Undo:
                    Undone += step.Undone;
                    break;
            }
        }
    }

    FakeFinder Finder;
    AutomaticEnd End;
    SourceLook Said;
    std::optional<int64_t> Began;
    bool Looks = false;
    bool Wanted = true;
    int64_t Now = 0;
    int64_t Read = 0;
    int32_t Changes = 0;
    size_t Undone = 0;
    MadeSong Present;
    std::vector<MadeSong> Songs;
};

}  // namespace Corvetape::Test
