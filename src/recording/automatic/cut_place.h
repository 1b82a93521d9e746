#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "audio/audio_ring.h"
#include "audio/evidence_cut.h"
#include "audio/pause_settings.h"
#include "audio/slot_features.h"
#include "audio/song_changes.h"
#include "recording/automatic/automatic_end.h"
#include "recording/automatic/learned_cuts.h"

namespace Corvetape {

/// Finds the places of cuts in the ring. Slots are counted from the first one heard. What a slot sounds like
/// is measured only where a cut is asked for, and where nobody reports titles. Nothing is allocated but in
/// the constructor and Restart.
class CutPlace : public CutFinder {
 public:
    /// All of them outlive it.
    CutPlace(const AudioRing& ring, const PauseSettings& pause, LearnedCuts& learned);

    /// The ring was opened anew, with so many frames in a second.
    void Restart(uint32_t framesPerSecond);

    /// How many slots have been heard; the newest is the last one of the ring.
    void Follow(int64_t heard) { Heard = heard; }

    /// Whose titles they are from now on.
    void Ask(const std::string& source) { Source = source; }

    void Begins(int64_t slot) override { SongBegin = slot; }
    std::optional<EvidenceCut> Find(int64_t change, int64_t from, int64_t end, bool exact) override;
    std::optional<EvidenceCut> FindGap(int64_t change, int64_t from, int64_t end, bool exact) override;
    void Teach() override;
    void TeachGap(EdgeRange gap, bool exact) override;
    std::optional<EdgeRange> Talk(int64_t change, int64_t from, int64_t end) override;
    EvidenceCut Quietest(int64_t change, int64_t from, int64_t end) override;
    std::optional<int64_t> SongChange(int64_t end) override;

    /// The slot of the ring that a slot is in.
    int32_t RingSlot(int64_t slot) const;

 private:
    void Measure(int64_t from, int64_t end, bool exact);
    CutQuestion Question(int64_t change, int64_t from, int64_t end, bool exact);

    const AudioRing& Ring;
    const PauseSettings& Pause;
    LearnedCuts& Learned;
    FeatureHistory Features;
    std::unique_ptr<FeatureMeter> Meter;
    EvidenceCutter Cutter;
    std::unique_ptr<FeatureMeter> Listener;  ///< of all that is heard
    SongChanges Changes;
    std::string Source;
    std::string LastSource;  ///< that the last Find was for
    bool LastExact = false;
    int64_t Heard = 0;
    int64_t SongBegin = 0;  ///< nothing before is looked at, but for an exact change
};

}  // namespace Corvetape
